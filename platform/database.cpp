#include "platform/recordset.h"
#include "platform/recordsetstate.h"
#include "platform/vbformat.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QSqlRecord>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <map>
#include <set>

namespace kw {

namespace detail {

namespace {
constexpr int kNotSet = 91;
constexpr int kClosed = 3420;

std::atomic<int> connectionCounter{0};

// Marks a file made here, so that even a database without tables is not an empty file.
constexpr int kApplicationId = 0x4B573334;

QString newConnectionName() { return QStringLiteral("kwdb%1").arg(++connectionCounter); }

// The handles with a connection. A handle held by a global (the shared record) outlives the
// connection list of Qt Sql at the end of the program; this list is made after Qt's and so is
// gone before it, closing what is still open while that can be done.
struct OpenHandles {
    std::vector<DatabaseHandle *> handles;
    ~OpenHandles()
    {
        for (DatabaseHandle *h : handles)
            h->closeConnection();
    }
};

OpenHandles &openHandles()
{
    static OpenHandles list;
    return list;
}

// One name for a file however it was reached.
QString fileKey(const QString &path)
{
    const QFileInfo file(path);
    const QString folder = file.absoluteDir().canonicalPath();
    return (folder.isEmpty() ? file.absolutePath() : folder) + QLatin1Char('/') + file.fileName();
}

// The files this program has put on the write-ahead log and not yet given back.
std::set<QString> &loggedFiles()
{
    static std::set<QString> files;
    return files;
}

bool openElsewhere(const DatabaseHandle &h, const QString &key)
{
    const auto &list = openHandles().handles;
    return std::any_of(list.begin(), list.end(), [&](const DatabaseHandle *other) {
        return other != &h && !other->connection.isEmpty() && fileKey(other->path) == key;
    });
}

// Every statement is its own transaction. With a write-ahead log a commit is on disk as soon as
// the statement returns, so a crash of the program at any moment loses nothing written, and a
// power failure at worst the last commits, never the file; and a row costs microseconds, not the
// milliseconds of a synced rollback journal, which the row-by-row writing of a run needs.
void setJournal(const DatabaseHandle &h)
{
    QSqlQuery q(h.sql());
    q.exec(QStringLiteral("pragma journal_mode = wal"));
    q.exec(QStringLiteral("pragma synchronous = normal"));
    // A run's file is copied over from its log while the run waits on the analyser (see the run
    // file's hold); the log copies itself only when that has not happened for a long time.
    q.exec(QStringLiteral("pragma wal_autocheckpoint = 10000"));
}

// When the program's last handle on a file it has written closes, the file goes back to the
// rollback journal: at rest it is one file again, which a later reader (one that may not write,
// or the plot's read-only look) opens without leaving a log beside it. Another program that
// holds the file open makes this fail at once, and the file simply stays on the log.
void giveBackJournal(const DatabaseHandle &h, QSqlDatabase &d)
{
    const QString key = fileKey(h.path);
    if (!loggedFiles().count(key) || openElsewhere(h, key))
        return;
    loggedFiles().erase(key);
    QSqlQuery q(d);
    q.exec(QStringLiteral("pragma busy_timeout = 0"));
    q.exec(QStringLiteral("pragma journal_mode = delete"));
}
}  // namespace

void beforeWrite(const DatabaseHandle &h)
{
    if (h.writing)
        return;
    h.writing = true;
    // A file that may not be written keeps its journal; the statement fails by itself.
    if (!QFileInfo(h.path).isWritable())
        return;
    setJournal(h);
    loggedFiles().insert(fileKey(h.path));
}

DatabaseHandle::~DatabaseHandle() { close(); }

void DatabaseHandle::registerOpen() { openHandles().handles.push_back(this); }

void DatabaseHandle::close()
{
    if (connection.isEmpty())
        return;
    closeConnection();
    auto &list = openHandles().handles;
    list.erase(std::remove(list.begin(), list.end(), this), list.end());
}

void DatabaseHandle::closeConnection()
{
    if (connection.isEmpty())
        return;
    prepared.clear();
    {
        QSqlDatabase d = sql();
        if (d.isValid()) {
            giveBackJournal(*this, d);
            d.close();
        }
    }
    QSqlDatabase::removeDatabase(connection);
    connection.clear();
    open = false;
}

QSqlQuery &DatabaseHandle::statement(const QString &text)
{
    auto it = prepared.find(text);
    if (it == prepared.end()) {
        auto q = std::make_shared<QSqlQuery>(sql());
        if (!q->prepare(text))
            throw VbError(errorNumber(q->lastError()));
        it = prepared.insert(text, std::move(q));
    }
    return **it;
}

quint64 *changesOf(const QString &path)
{
    // Node-based, so the counters stay where they are while files are added.
    static std::map<QString, quint64> counts;
    return &counts[fileKey(path)];
}

QString quoted(const QString &name)
{
    QString n = name;
    n.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + n + QLatin1Char('"');
}

QString declaredType(const FieldDef &field)
{
    switch (field.type) {
    case FieldType::Boolean: return QStringLiteral("BOOLEAN");
    case FieldType::Byte: return QStringLiteral("TINYINT");
    case FieldType::Integer: return QStringLiteral("SMALLINT");
    case FieldType::Long: return QStringLiteral("INTEGER");
    case FieldType::Single: return QStringLiteral("FLOAT4");
    case FieldType::Double: return QStringLiteral("DOUBLE");
    case FieldType::Date: return QStringLiteral("DATETIME");
    case FieldType::Text: return QStringLiteral("VARCHAR(%1) COLLATE NOCASE").arg(field.size > 0 ? field.size : 255);
    case FieldType::Memo: return QStringLiteral("LONGTEXT COLLATE NOCASE");
    }
    return QString();
}

std::optional<FieldType> typeOfDeclaration(const QString &declaration, int *size)
{
    const QString d = declaration.toUpper();
    *size = 0;
    if (d.startsWith(QLatin1String("BOOL")) || d.startsWith(QLatin1String("BIT")))
        return FieldType::Boolean;
    if (d.startsWith(QLatin1String("TINYINT")) || d.startsWith(QLatin1String("BYTE")))
        return FieldType::Byte;
    if (d.startsWith(QLatin1String("SMALLINT")) || d.startsWith(QLatin1String("SHORT")))
        return FieldType::Integer;
    if (d.startsWith(QLatin1String("INT")) || d.startsWith(QLatin1String("LONG ")) || d == QLatin1String("LONG"))
        return FieldType::Long;
    if (d.startsWith(QLatin1String("FLOAT4")) || d.startsWith(QLatin1String("SINGLE")) || d.startsWith(QLatin1String("REAL4")))
        return FieldType::Single;
    if (d.startsWith(QLatin1String("DOUBLE")) || d.startsWith(QLatin1String("FLOAT")) || d.startsWith(QLatin1String("REAL")))
        return FieldType::Double;
    if (d.startsWith(QLatin1String("DATE")))
        return FieldType::Date;
    if (d.startsWith(QLatin1String("LONGTEXT")) || d.startsWith(QLatin1String("MEMO")))
        return FieldType::Memo;
    static const QRegularExpression text(QStringLiteral("^(VAR)?CHAR\\s*\\(\\s*(\\d+)\\s*\\)|^TEXT"));
    const auto m = text.match(d);
    if (m.hasMatch()) {
        *size = m.captured(2).toInt();
        return FieldType::Text;
    }
    return std::nullopt;
}

namespace {

bool isNumber(const QVariant &v)
{
    switch (v.typeId()) {
    case QMetaType::Int: case QMetaType::UInt: case QMetaType::LongLong: case QMetaType::ULongLong:
    case QMetaType::Double: case QMetaType::Float: case QMetaType::Bool:
        return true;
    default:
        return false;
    }
}

// A whole number in range, halves to even, as the engine converts into an integer column.
qlonglong wholeNumber(double v, double low, double high)
{
    const double r = std::nearbyint(v);
    if (!std::isfinite(r) || r < low || r > high)
        throw VbError(3421);
    return qlonglong(r);
}

double numberFrom(const QVariant &value)
{
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? -1.0 : 0.0;
    if (isNumber(value))
        return value.toDouble();
    bool ok = false;
    const double d = vbTrim(value.toString()).toDouble(&ok);
    if (!ok)
        throw VbError(3421);
    return d;
}

}  // namespace

QVariant readValue(const QVariant &stored, const std::optional<FieldType> &type)
{
    if (stored.isNull() || !type)
        return stored;
    if (*type == FieldType::Text || *type == FieldType::Memo)
        return stored.toString();
    if (!isNumber(stored))
        return stored;
    switch (*type) {
    case FieldType::Boolean: return QVariant(stored.toDouble() != 0);
    case FieldType::Byte: case FieldType::Integer: case FieldType::Long: return QVariant(qlonglong(stored.toDouble()));
    case FieldType::Single: return QVariant(double(float(stored.toDouble())));
    default: return QVariant(stored.toDouble());
    }
}

QVariant assignedValue(const QVariant &value, const std::optional<FieldType> &type, int size)
{
    if (value.isNull() || !type)
        return value;
    switch (*type) {
    case FieldType::Text:
    case FieldType::Memo: {
        QString text;
        if (value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Float)
            text = vbCStr(value.toDouble());
        else
            text = value.toString();
        if (*type == FieldType::Text && size > 0 && text.size() > size)
            throw VbError(3163);
        return text;
    }
    case FieldType::Boolean: return QVariant(numberFrom(value) != 0);
    case FieldType::Byte: return QVariant(wholeNumber(numberFrom(value), 0, 255));
    case FieldType::Integer: return QVariant(wholeNumber(numberFrom(value), -32768, 32767));
    case FieldType::Long: return QVariant(wholeNumber(numberFrom(value), -2147483648.0, 2147483647.0));
    case FieldType::Single: {
        const double d = numberFrom(value);
        if (!std::isfinite(d) || std::abs(d) > double(std::numeric_limits<float>::max()))
            throw VbError(3421);
        return QVariant(double(float(d)));
    }
    case FieldType::Double:
    case FieldType::Date: {
        const double d = numberFrom(value);
        if (!std::isfinite(d))
            throw VbError(3421);
        return QVariant(d);
    }
    }
    return value;
}

int errorNumber(const QSqlError &error)
{
    const QString t = error.databaseText() + QLatin1Char(' ') + error.driverText();
    if (t.contains(QLatin1String("no such table"), Qt::CaseInsensitive))
        return 3078;  // the engine cannot find the input table or query
    if (t.contains(QLatin1String("no such column"), Qt::CaseInsensitive))
        return 3061;  // too few parameters: an unknown name in a query
    if (t.contains(QLatin1String("already exists"), Qt::CaseInsensitive))
        return 3010;
    if (t.contains(QLatin1String("not a database"), Qt::CaseInsensitive))
        return 3343;
    if (t.contains(QLatin1String("locked"), Qt::CaseInsensitive) || t.contains(QLatin1String("busy"), Qt::CaseInsensitive))
        return 3260;
    if (t.contains(QLatin1String("readonly"), Qt::CaseInsensitive) || t.contains(QLatin1String("read-only"), Qt::CaseInsensitive))
        return 3027;
    if (t.contains(QLatin1String("syntax"), Qt::CaseInsensitive))
        return 3075;
    return 3146;  // a call to the engine failed
}

}  // namespace detail

using namespace detail;

namespace {

std::shared_ptr<DatabaseHandle> connect(const QString &path)
{
    auto h = std::make_shared<DatabaseHandle>();
    h->connection = newConnectionName();
    h->path = path;
    h->changes = changesOf(path);
    QSqlDatabase d = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), h->connection);
    h->registerOpen();
    d.setDatabaseName(path);
    d.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=3000"));
    if (!d.open())
        throw VbError(3051);
    h->open = true;
    return h;
}

const DatabaseHandle &handle(const std::shared_ptr<DatabaseHandle> &h)
{
    if (!h)
        throw VbError(kNotSet);
    if (!h->open)
        throw VbError(kClosed);
    return *h;
}

void run(const DatabaseHandle &h, const QString &sql)
{
    beforeWrite(h);
    QSqlQuery q(h.sql());
    const bool done = q.exec(sql);
    ++*h.changes;  // a failed statement may have changed rows before it failed
    if (!done)
        throw VbError(errorNumber(q.lastError()));
}

// "select * from LimitDef where ..." -> "LimitDef"; a bare name is a table of its own.
QString baseTable(const QString &select)
{
    static const QRegularExpression from(QStringLiteral("\\bfrom\\s+(\"[^\"]+\"|\\[[^\\]]+\\]|[\\w\\-]+)"),
                                         QRegularExpression::CaseInsensitiveOption);
    const auto m = from.match(select);
    if (!m.hasMatch())
        return QString();
    QString name = m.captured(1);
    if (name.startsWith(QLatin1Char('"')) || name.startsWith(QLatin1Char('[')))
        name = name.mid(1, name.size() - 2);
    return name;
}

// Rows of a grouped, joined or computed query have no one row of a table behind them.
bool writable(const QString &select)
{
    static const QRegularExpression derived(
        QStringLiteral("\\b(group\\s+by|join|distinct|union)\\b|\\b(count|sum|min|max|avg|total)\\s*\\(|\\bfrom\\s+\\S+\\s*(\\w+\\s*)?,"),
        QRegularExpression::CaseInsensitiveOption);
    return !derived.match(select).hasMatch();
}

bool isSelect(const QString &source)
{
    static const QRegularExpression select(QStringLiteral("^\\s*select\\s"), QRegularExpression::CaseInsensitiveOption);
    return select.match(source).hasMatch();
}

}  // namespace

bool Database::isSet() const { return h_ && h_->open; }

QString Database::Name() const { return handle(h_).path; }

Database OpenDatabase(const QString &path)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists() || !info.isFile())
        throw VbError(3024);
    // SQLite would take an empty file as an empty database and write into it; the engine
    // refuses a file that holds no database.
    if (info.size() == 0)
        throw VbError(3343);
    Database db;
    db.h_ = connect(path);
    QSqlQuery probe(db.h_->sql());
    if (!probe.exec(QStringLiteral("select count(*) from sqlite_master"))) {
        const int number = errorNumber(probe.lastError());
        probe = QSqlQuery();
        db.h_->close();
        throw VbError(number == 3260 ? 3051 : 3343);
    }
    probe = QSqlQuery();
    return db;
}

Database CreateDatabase(const QString &path, const QString &)
{
    if (path.isEmpty() || QFileInfo::exists(path))
        throw VbError(3204);
    Database db;
    db.h_ = connect(path);
    run(*db.h_, QStringLiteral("pragma application_id = %1").arg(kApplicationId));
    return db;
}

void Database::Execute(const QString &sql) const { run(handle(h_), sql); }

void Database::Checkpoint() const
{
    QSqlQuery q(handle(h_).sql());
    q.exec(QStringLiteral("pragma wal_checkpoint(passive)"));
}

void Database::AppendTable(const TableDef &table) const
{
    const DatabaseHandle &h = handle(h_);
    if (table.name.isEmpty() || table.fields.empty())
        throw VbError(3264);  // no field defined
    QStringList columns;
    for (const FieldDef &f : table.fields)
        columns << quoted(f.name) + QLatin1Char(' ') + declaredType(f);
    run(h, QStringLiteral("create table %1 (%2)").arg(quoted(table.name), columns.join(QStringLiteral(", "))));
}

void Database::Close()
{
    handle(h_);
    h_->close();
}

Recordset Database::OpenRecordset(const QString &source, int type) const
{
    const DatabaseHandle &h = handle(h_);
    auto s = std::make_shared<RecordsetState>();
    s->db = h_;
    s->snapshot = type == dbOpenSnapshot;
    QString sql = isSelect(source) ? source : QStringLiteral("select * from ") + quoted(vbTrim(source).remove(QLatin1Char('[')).remove(QLatin1Char(']')));
    s->table = baseTable(sql);

    // The declared types of the base table tell how its columns are read and written.
    QHash<QString, std::pair<std::optional<FieldType>, int>> declared;
    if (!s->table.isEmpty()) {
        QSqlQuery info(h.sql());
        if (info.exec(QStringLiteral("pragma table_info(%1)").arg(quoted(s->table)))) {
            while (info.next()) {
                int size = 0;
                const auto t = typeOfDeclaration(info.value(2).toString(), &size);
                declared.insert(info.value(1).toString().toLower(), {t, size});
            }
        }
    }

    // A dynaset writes its rows back by their row id. A query that can't give one (a join, a
    // grouping) opens all the same and refuses writing.
    QSqlQuery q(h.sql());
    q.setForwardOnly(true);
    bool withRowid = false;
    if (!s->snapshot && writable(sql)) {
        static const QRegularExpression select(QStringLiteral("^\\s*select\\s+"), QRegularExpression::CaseInsensitiveOption);
        QString keyed = sql;
        keyed.replace(select, QStringLiteral("select _rowid_ as kw_rowid_, "));
        withRowid = q.exec(keyed);
    }
    if (!withRowid)
        s->table.clear();
    if (!withRowid && !q.exec(sql))
        throw VbError(errorNumber(q.lastError()));
    const int firstColumn = withRowid ? 1 : 0;
    const QSqlRecord record = q.record();
    for (int i = firstColumn; i < record.count(); ++i) {
        Column c;
        c.name = record.fieldName(i);
        const auto it = declared.constFind(c.name.toLower());
        if (it != declared.cend()) {
            c.type = it->first;
            c.size = it->second;
        }
        s->index.insert(c.name.toLower(), int(s->columns.size()));
        s->columns.push_back(c);
    }
    while (q.next()) {
        Row row;
        if (withRowid)
            row.rowid = q.value(0).toLongLong();
        row.values.reserve(s->columns.size());
        for (size_t i = 0; i < s->columns.size(); ++i)
            row.values.push_back(readValue(q.value(int(i) + firstColumn), s->columns[i].type));
        s->rows.push_back(std::move(row));
    }
    s->live = qsizetype(s->rows.size());
    s->seenAll = *h.changes;
    s->followsOthers = withRowid;
    s->bof = s->eof = s->rows.empty();
    s->pos = 0;

    Recordset rs;
    rs.s_ = std::move(s);
    return rs;
}

}  // namespace kw
