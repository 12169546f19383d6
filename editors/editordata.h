#pragma once
// The Data controls of the editor forms and dialogs, with the quiet helpers their work is written
// with: the editors pass database errors over, so a source that does not open leaves the control
// closed and every use of it fails quietly.

#include "platform/datacontrol.h"

namespace kw {

class EditorData : public Data {
    Q_OBJECT
public:
    using Data::Data;

    // Points the control at the file and the source and opens it.
    void open(const QString &databasefile, const QString &source);
    // Refresh with errors passed over.
    void refresh();
    // Open and not at both ends at once.
    bool hasRows() const;
    // The recordset, or a closed one on which every operation fails.
    Recordset &rows();
    // A field of the current row as text or number; empty or 0 when there is none.
    QString text(const QString &field) const { return currentText(field); }
    double number(const QString &field) const { return currentValue(field).toDouble(); }
    // FindFirst through the control, errors passed over; true when it ran and found a row.
    bool findFirst(const QString &criterion);
    // The values of a field over all rows of the source, the current row left where it is.
    QStringList column(const QString &field) const { return listOf(field); }

private:
    Recordset closed_;
};

}  // namespace kw
