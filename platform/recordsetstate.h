#pragma once
// Inside the recordset layer: what a Database and a Recordset handle point at, and the
// conversions between the engine's field types and SQLite's storage classes.

#include "platform/recordset.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <optional>

namespace kw::detail {

struct DatabaseHandle {
    QString connection;
    QString path;
    bool open = false;
    // Counts the writes to the file through any handle of this program, so that a dynaset can
    // tell that rows it read may have been changed by another recordset or statement since.
    quint64 *changes = nullptr;
    // The journal is set up at the first write through this handle: a file only read or checked
    // is never changed.
    mutable bool writing = false;

    // Statements prepared once and run again with new values: the row writes of the recordsets,
    // which repeat the same statement row after row. Finished before the connection closes.
    QHash<QString, std::shared_ptr<QSqlQuery>> prepared;

    ~DatabaseHandle();
    QSqlDatabase sql() const { return QSqlDatabase::database(connection, false); }
    // The statement of that text, prepared on first use; throws VbError when it does not prepare.
    QSqlQuery &statement(const QString &text);
    void close();
    void closeConnection();  // without leaving the list of open handles
    void registerOpen();
};

struct Row {
    qint64 rowid = 0;
    std::vector<QVariant> values;
    bool deleted = false;
    quint64 seen = 0;  // the file's count of writes when the values were read
};

enum class EditMode { None, Edit, AddNew };

struct Column {
    QString name;
    std::optional<FieldType> type;  // from the table's declaration, when the column is one of its own
    int size = 0;
};

struct RecordsetState {
    std::shared_ptr<DatabaseHandle> db;
    bool open = true;
    bool snapshot = true;
    QString table;  // the one table a dynaset writes to
    std::vector<Column> columns;
    QHash<QString, int> index;  // lower-case name -> column
    std::vector<Row> rows;
    qsizetype pos = 0;
    bool bof = true;
    bool eof = true;
    bool noMatch = false;
    qsizetype live = 0;  // rows not deleted
    quint64 seenAll = 0;  // the count of writes up to which all rows are as in the file
    bool followsOthers = false;  // a dynaset whose rows can be read again by row id
    EditMode mode = EditMode::None;
    std::vector<QVariant> buffer;
    std::vector<bool> changed;
    // The statement of the last write and what it wrote: a run writes the same columns row after row.
    EditMode lastWriteMode = EditMode::None;
    std::vector<bool> lastWriteChanged;
    QString lastWriteSql;

    int column(const QString &name) const { return index.value(name.toLower(), -1); }
};

// The declaration in SQLite of a field of the engine's type; text compares without regard to case.
QString declaredType(const FieldDef &field);
// The engine's type behind a SQLite declaration; nothing for a declaration of another origin.
std::optional<FieldType> typeOfDeclaration(const QString &declaration, int *size);
// A stored value as the engine hands it out for a column of that type.
QVariant readValue(const QVariant &stored, const std::optional<FieldType> &type);
// A value assigned to a column, converted to its type (throws 3421 or 3163).
QVariant assignedValue(const QVariant &value, const std::optional<FieldType> &type, int size);
// The engine's error number for a failed SQLite statement.
int errorNumber(const QSqlError &error);
// A name quoted for SQL.
QString quoted(const QString &name);
// The count of writes to the file at path (its canonical name), shared by all its handles.
quint64 *changesOf(const QString &path);
// Called before every statement that may write through h.
void beforeWrite(const DatabaseHandle &h);

}  // namespace kw::detail
