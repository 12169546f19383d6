#pragma once
// Databases and recordsets with the meanings the system's code relies on, over SQLite files.
//
// Database and Recordset are handles: copies refer to the same object, as object variables do.
// Every operation that fails throws VbError with the engine's number (3021 no current record,
// 3027 read-only, 3070 unknown field in a criterion, 3077 criterion syntax, 3360 criterion too complex, 3265 unknown field,
// 91 object not set, 3420 object closed ...), so that a caller that passes errors over wraps each
// statement in ResumeNext (platform/onerror.h) and goes on with the next.
//
// Both kinds of recordset read their rows when they are opened. A snapshot is read-only and keeps
// what it read. A dynaset writes every Update and Delete at once to its one base table (each
// statement its own transaction, so a crash loses at most the statement in flight); rows added
// through it appear at its end; what other recordsets and statements of the program write to its
// rows shows once it moves or searches. Criteria are evaluated in C++, never pasted into SQL.

#include <QString>
#include <QVariant>
#include <memory>
#include <vector>

namespace kw {

constexpr int dbOpenTable = 1;     // opened as a dynaset here
constexpr int dbOpenDynaset = 2;
constexpr int dbOpenSnapshot = 4;

// Field types by the engine's codes.
enum class FieldType { Boolean = 1, Byte = 2, Integer = 3, Long = 4, Single = 6, Double = 7, Date = 8, Text = 10, Memo = 12 };

struct FieldDef {
    QString name;
    FieldType type = FieldType::Single;
    int size = 0;  // characters, for Text
};

struct TableDef {
    QString name;
    std::vector<FieldDef> fields;  // in column order
};

namespace detail {
struct DatabaseHandle;
struct RecordsetState;
}  // namespace detail

class Recordset;

class Database {
public:
    Database() = default;  // not set: every operation throws VbError(91)

    bool isSet() const;   // opened and not closed
    QString Name() const;  // the path it was opened with

    // A table name or a select statement; dbOpenSnapshot or dbOpenDynaset.
    Recordset OpenRecordset(const QString &source, int type = dbOpenDynaset) const;
    // An action query (delete, update, insert) run as it stands.
    void Execute(const QString &sql) const;
    // TableDefs.Append of a table built from its field definitions.
    void AppendTable(const TableDef &table) const;
    // Copies what the write-ahead log holds into the file, as far as no reader needs it, so that
    // the log starts again from its beginning; not a write, and failures pass silently.
    void Checkpoint() const;
    // Closes the file; recordsets opened on it are closed with it, pending edits dropped.
    void Close();

private:
    friend Database OpenDatabase(const QString &path);
    friend Database CreateDatabase(const QString &path, const QString &locale);
    std::shared_ptr<detail::DatabaseHandle> h_;
};

// Opens an existing database file. Throws 3024 when there is no such file, 3343 when the file is
// not a database (it is never written to then), 3051 when it can't be opened.
Database OpenDatabase(const QString &path);
// Creates a new, empty database file; 3204 when the file exists. The locale text is accepted for
// the callers' sake: text compares without regard to case whatever it says.
Database CreateDatabase(const QString &path, const QString &locale = QString());

class Recordset {
public:
    Recordset() = default;  // not set: every operation throws VbError(91)

    bool isOpen() const;

    bool Bof() const;
    bool Eof() const;
    bool NoMatch() const;
    // The number of rows in the set (as the engine counts it after MoveLast), less deleted ones,
    // plus rows added through this dynaset. 0 for an empty set.
    int RecordCount() const;

    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();

    // A criterion that does not parse, names an unknown column or compares text with a number
    // throws before anything changes: NoMatch and the position keep their values. Without a
    // match NoMatch is true and the position stays where it was.
    void FindFirst(const QString &criterion);
    void FindLast(const QString &criterion);
    void FindNext(const QString &criterion);
    void FindPrevious(const QString &criterion);

    void AddNew();
    void Edit();
    void Update();
    void CancelUpdate();
    void Delete();
    void Close();

    // Field by name, without regard to case ("Tauf-30" finds "tauf-30"). During AddNew or Edit
    // the pending value. Text comes as QString, whole numbers as qlonglong, 32-bit float
    // columns as the double of the float, yes/no as bool, an empty cell as a null QVariant.
    QVariant Field(const QString &name) const;
    // The same, for assignment to a number or a text: an empty cell throws VbError(94).
    double FieldNumber(const QString &name) const;
    QString FieldText(const QString &name) const;
    // Assigns into the pending AddNew or Edit (3020 without one). The value is converted to the
    // column's type at once: 3421 when it does not convert or fit, 3163 for a text too long.
    void SetField(const QString &name, const QVariant &value);

    // The column names in their order.
    QStringList FieldNames() const;

private:
    friend class Database;
    detail::RecordsetState &state() const;
    std::shared_ptr<detail::RecordsetState> s_;
};

}  // namespace kw
