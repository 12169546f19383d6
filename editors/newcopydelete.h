#pragma once
// What the new/copy and delete dialogs do to the database, apart from their widgets: numbering
// by the counter row, the merging copy, and the unguarded delete.

#include "editors/editordata.h"
#include "editors/family.h"

namespace kw {

// The data sources of a new/copy dialog, named as the dialog's controls are.
struct NewCopyData {
    Family family = Family::Limit;
    EditorData data1;  // points of the target
    EditorData data2;  // head rows, target side
    EditorData data3;  // head rows, source side
    EditorData data4;  // the number counters
    EditorData data5;  // points of the source

    // Points every source at the file and opens it, as the dialog's load does.
    void open(const QString &databasefile);
};

enum class AddResult { Nothing, Exists, Added };

// "Add New". A new limit or component gets the counter + 1, written to the counter first, so a
// number is never issued twice, even after a delete. On Added, targetText holds the new row's
// name, which also becomes the family's name in work.
AddResult addNewDefinition(NewCopyData &d, const QString &typed, QString &targetText);

// "Copy" from the source row (data3) to the target row (data2). Limits and components merge: a
// source point is added unless the target has one of that frequency. Configurations take the
// source's five positions. Returns whether anything was written.
bool copyDefinition(NewCopyData &d);

// The data sources of a delete dialog.
struct DeleteData {
    Family family = Family::Limit;
    EditorData data1;  // points
    EditorData data2;  // head rows

    void open(const QString &databasefile);
};

// "Delete": finds the name and deletes its points, then its head row. The search is not tested:
// a name not found deletes the row the recordset stands on. A configuration is deleted as the
// current row, which the combo has already moved to. comboText is emptied, then set to the first
// name left. Returns whether a head row was deleted.
bool deleteDefinition(DeleteData &d, QString &comboText);

}  // namespace kw
