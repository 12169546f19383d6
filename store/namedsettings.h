#pragma once
// Settings stored under a name in table settings of the application database, and recalled.
// The dialogs hand in their recordset on the table; the work on it passes errors over.

#include <QString>

namespace kw {

class Recordset;

// The save dialog's button: a new row, or after a Yes the row of that name overwritten. True when
// stored (the dialog closes); false after a No (the dialog stays).
bool savesetting(Recordset &data1, const QString &name);
// The text of the question before an existing setting is overwritten.
QString overwriteQuestion(const QString &name);

enum class LoadOutcome { NoRows, Loaded, NotFound };
// The load dialog's button: the row of that name into the record and the visible panels, with
// nothing sent to the analyser. NoRows leaves the dialog open.
LoadOutcome loadsetting(Recordset &data1, const QString &name);

// The row's columns from and into the record, in the table's order.
void writesettingrow(Recordset &rs);
void readsettingrow(Recordset &rs);

}  // namespace kw
