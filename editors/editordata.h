#pragma once
// The data sources an editor form holds: a database file, a record source (a table or a select
// statement) and the live recordset opened on them. Refresh opens the source anew, so rows that
// other forms added or removed show; a source that does not open leaves the recordset closed,
// and every use of it fails quietly the way the form's work passes errors over.

#include "platform/recordset.h"

#include <QString>

namespace kw {

struct EditorData {
    QString databaseName;
    QString recordSource;
    Recordset recordset;

    void refresh();
    // Open and not at both ends at once.
    bool hasRows() const;
    // A field of the current row as text or number; empty or 0 when there is none.
    QString text(const QString &field) const;
    double number(const QString &field) const;
    // FindFirst with errors passed over; true when it ran and found a row.
    bool findFirst(const QString &criterion);
    void close();
    // The values of a field over all rows of the source, in its order, read from a snapshot of
    // it so that the current row stays where it is.
    QStringList column(const QString &field);

private:
    Database database_;
    QString openedOn_;
};

}  // namespace kw
