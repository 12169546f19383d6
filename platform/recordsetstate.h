#pragma once
// Inside the recordset layer: what a Database and a Recordset handle point at, and the
// conversions between the engine's field types and SQLite's storage classes.

#include "platform/recordset.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlError>
#include <optional>

namespace kw::detail {

struct DatabaseHandle {
    QString connection;
    QString path;
    bool open = false;

    ~DatabaseHandle();
    QSqlDatabase sql() const { return QSqlDatabase::database(connection, false); }
    void close();
    void closeConnection();  // without leaving the list of open handles
    void registerOpen();
};

struct Row {
    qint64 rowid = 0;
    std::vector<QVariant> values;
    bool deleted = false;
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
    EditMode mode = EditMode::None;
    std::vector<QVariant> buffer;
    std::vector<bool> changed;

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

}  // namespace kw::detail
