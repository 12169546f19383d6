#pragma once
// The Data control: a hidden child of a form that holds one live recordset over the application
// database for as long as its form is loaded, and tells the controls bound to it when its current
// row moves.
//
// A form makes it, names it, points it at the database in its load and opens it:
//
//     auto *data1 = new Data(this);
//     data1->setObjectName("Data1");
//     data1->setRecordSource("unit");            // a table name or a select statement
//     data1->setDatabaseName(st.databasefile);   // trimmed; overwrites any placeholder
//     data1->Refresh();                          // opens (or reopens) the recordset; may throw VbError
//
// Binding. A bound control keeps a pointer to its Data control and follows it:
//   - rowMoved()    after every move, search, refresh, add or delete made through the Data control:
//                   show currentText(field) / currentValue(field) of the current row (empty/null
//                   where there is none);
//   - refreshed()   after Refresh(): a list built from the rows (a combo's list, a grid) is rebuilt
//                   with listOf(field), which reads a snapshot and leaves the current row alone;
//   - validate()    before a move: a control holding a typed value writes it now with
//                   writeField(), so that nothing typed is lost by moving on.
// Work done on Recordset() directly (the code's own Edit/Update, a FindFirst on the handle) is not
// seen by the bound controls until the form calls rowMoved() or goes through the Data control's own
// moves. The Data control's moves and searches throw VbError as the recordset does, so a form that
// passes errors over wraps each in ResumeNext as it does any database statement.
//
// DBCombo (platform/dbcombo.h) binds a list to it; the bound grid, text and check boxes of other
// forms bind the same way.

#include "platform/recordset.h"

#include <QStringList>
#include <QWidget>

namespace kw {

class Data : public QWidget {
    Q_OBJECT
public:
    explicit Data(QWidget *parent = nullptr);
    ~Data() override;

    QString DatabaseName() const { return databaseName_; }
    void setDatabaseName(const QString &path);
    QString RecordSource() const { return recordSource_; }
    void setRecordSource(const QString &source);
    // dbOpenDynaset (the default) or dbOpenSnapshot; takes effect at the next Refresh.
    int RecordsetType() const { return type_; }
    void setRecordsetType(int type) { type_ = type; }

    // Opens the database (again, when its name changed) and the record source afresh, on its
    // first row. Throws VbError (3024 no such file, 3078 unknown table ...); the recordset is not
    // open then and the bound controls show nothing.
    void Refresh();
    bool isOpen() const { return rs_.isOpen(); }

    // The live recordset; throws VbError(91) before the first successful Refresh.
    Recordset &recordset();
    Database database() const { return db_; }

    // Moves and searches through the control, so that the bound controls follow.
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    void FindFirst(const QString &criterion);
    void FindNext(const QString &criterion);
    void FindLast(const QString &criterion);
    void AddNew();   // after Update the new row is reached with MoveLast (a dynaset adds at its end)
    void Update();
    void Delete();   // then MoveNext, as on any recordset
    // Edit, put one value, Update: what a bound control does with a typed value.
    void writeField(const QString &field, const QVariant &value);

    // True when there is a row to show: open, not empty, neither before the first nor after the last.
    bool hasCurrentRow() const;
    // The field of the current row; null / empty without a current row or without such a field.
    QVariant currentValue(const QString &field) const;
    QString currentText(const QString &field) const;
    // One field of every row, in the order of the record source, read from a snapshot of it.
    QStringList listOf(const QString &field) const;

    // For code that worked on recordset() directly: tell the bound controls.
    void notifyRowMoved() { emit rowMoved(); }

signals:
    void validate();
    void rowMoved();
    void refreshed();

private:
    template <class Move>
    void move(Move &&m);

    QString databaseName_;
    QString recordSource_;
    int type_ = dbOpenDynaset;
    Database db_;
    Recordset rs_;
};

}  // namespace kw
