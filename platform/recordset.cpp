#include "platform/recordset.h"

#include "platform/criteria.h"
#include "platform/recordsetstate.h"
#include "platform/vbformat.h"

#include <QSqlQuery>

namespace kw {

using namespace detail;

namespace {

constexpr int kNotSet = 91;
constexpr int kNullUse = 94;
constexpr int kNoEdit = 3020;
constexpr int kNoCurrent = 3021;
constexpr int kReadOnly = 3027;
constexpr int kDeleted = 3167;
constexpr int kNoField = 3265;
constexpr int kClosed = 3420;

enum class Direction { Forward, Backward };

void dropEdit(RecordsetState &s)
{
    s.mode = EditMode::None;
    s.buffer.clear();
    s.changed.clear();
}

const Row &currentRow(const RecordsetState &s)
{
    if (s.bof || s.eof || s.pos < 0 || s.pos >= qsizetype(s.rows.size()))
        throw VbError(kNoCurrent);
    const Row &row = s.rows[size_t(s.pos)];
    if (row.deleted)
        throw VbError(kDeleted);
    return row;
}

// The next row not deleted from `from` on in the direction, or -1.
qsizetype liveRow(const RecordsetState &s, qsizetype from, Direction d)
{
    const qsizetype step = d == Direction::Forward ? 1 : -1;
    for (qsizetype i = from; i >= 0 && i < qsizetype(s.rows.size()); i += step)
        if (!s.rows[size_t(i)].deleted)
            return i;
    return -1;
}

// A dynaset shows what other recordsets and statements of the program have since written to
// the rows it holds: a row is read again when it becomes current, all rows before a search. A
// row gone from the table is deleted here too. Rows others add do not join the set.
quint64 writesNow(const RecordsetState &s) { return *s.db->changes; }

bool stale(const RecordsetState &s, const Row &row)
{
    return s.followsOthers && s.seenAll != writesNow(s) && row.seen != writesNow(s);
}

QString selectedColumns(const RecordsetState &s)
{
    QStringList names;
    for (const Column &c : s.columns)
        names << quoted(c.name);
    return names.join(QStringLiteral(", "));
}

void takeValues(const RecordsetState &s, Row &row, const QSqlQuery &q, int first)
{
    for (size_t i = 0; i < s.columns.size(); ++i)
        row.values[i] = readValue(q.value(int(i) + first), s.columns[i].type);
    row.seen = writesNow(s);
}

void markGone(RecordsetState &s, Row &row)
{
    row.deleted = true;
    --s.live;
}

// A set whose columns can't be read back from its table (a computed column) stays as it was read.
void stopFollowing(RecordsetState &s) { s.followsOthers = false; }

void refreshRow(RecordsetState &s, qsizetype i)
{
    Row &row = s.rows[size_t(i)];
    if (row.deleted || !stale(s, row))
        return;
    QSqlQuery q(s.db->sql());
    q.setForwardOnly(true);
    if (!q.exec(QStringLiteral("select %1 from %2 where _rowid_ = %3").arg(selectedColumns(s), quoted(s.table)).arg(row.rowid))) {
        stopFollowing(s);
        return;
    }
    if (q.next())
        takeValues(s, row, q, 0);
    else
        markGone(s, row);
}

void refreshAll(RecordsetState &s)
{
    if (!s.followsOthers || s.seenAll == writesNow(s))
        return;
    QSqlQuery q(s.db->sql());
    q.setForwardOnly(true);
    if (!q.exec(QStringLiteral("select _rowid_, %1 from %2").arg(selectedColumns(s), quoted(s.table)))) {
        stopFollowing(s);
        return;
    }
    QHash<qint64, size_t> where;
    for (size_t i = 0; i < s.rows.size(); ++i)
        if (!s.rows[i].deleted)
            where.insert(s.rows[i].rowid, i);
    while (q.next()) {
        const auto it = where.constFind(q.value(0).toLongLong());
        if (it == where.cend())
            continue;
        takeValues(s, s.rows[*it], q, 1);
        where.erase(it);
    }
    for (const size_t i : std::as_const(where))
        markGone(s, s.rows[i]);
    s.seenAll = writesNow(s);
}

// This recordset has written: if it was up to date before, it still is.
void countWrite(RecordsetState &s)
{
    const bool upToDate = s.seenAll == writesNow(s);
    ++*s.db->changes;
    if (upToDate)
        s.seenAll = writesNow(s);
}

// The next row not deleted from `from` on, read again where others have written since.
qsizetype landOn(RecordsetState &s, qsizetype from, Direction d)
{
    for (;;) {
        const qsizetype i = liveRow(s, from, d);
        if (i < 0)
            return -1;
        refreshRow(s, i);
        if (!s.rows[size_t(i)].deleted)
            return i;
        from = d == Direction::Forward ? i + 1 : i - 1;
    }
}

void setCurrent(RecordsetState &s, qsizetype i)
{
    s.pos = i;
    s.bof = s.eof = false;
}

// The insert or update of the columns given a value since AddNew or Edit.
QString writeStatement(const RecordsetState &s)
{
    QStringList names;
    for (size_t i = 0; i < s.columns.size(); ++i)
        if (s.changed[i])
            names << quoted(s.columns[i].name);
    if (s.mode == EditMode::AddNew) {
        if (names.isEmpty())
            return QStringLiteral("insert into %1 default values").arg(quoted(s.table));
        QStringList marks;
        for (qsizetype i = 0; i < names.size(); ++i)
            marks << QStringLiteral("?");
        return QStringLiteral("insert into %1 (%2) values (%3)")
            .arg(quoted(s.table), names.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
    }
    QStringList sets;
    for (const QString &n : names)
        sets << n + QStringLiteral(" = ?");
    return QStringLiteral("update %1 set %2 where _rowid_ = ?").arg(quoted(s.table), sets.join(QStringLiteral(", ")));
}

void writeRow(RecordsetState &s)
{
    if (s.table.isEmpty())
        throw VbError(kReadOnly);
    if (s.mode == EditMode::Edit && std::find(s.changed.begin(), s.changed.end(), true) == s.changed.end())
        return;
    beforeWrite(*s.db);
    if (s.mode != s.lastWriteMode || s.changed != s.lastWriteChanged) {
        s.lastWriteSql = writeStatement(s);
        s.lastWriteMode = s.mode;
        s.lastWriteChanged = s.changed;
    }
    QSqlQuery &q = s.db->statement(s.lastWriteSql);
    int place = 0;
    for (size_t i = 0; i < s.columns.size(); ++i)
        if (s.changed[i])
            q.bindValue(place++, s.buffer[i]);
    if (s.mode == EditMode::Edit)
        q.bindValue(place, s.rows[size_t(s.pos)].rowid);
    const bool done = q.exec();
    const qint64 newRowid = q.lastInsertId().toLongLong();
    const QSqlError error = q.lastError();
    q.finish();
    if (!done)
        throw VbError(errorNumber(error));
    countWrite(s);
    if (s.mode == EditMode::AddNew) {
        Row row;
        row.rowid = newRowid;
        row.values = s.buffer;
        row.seen = writesNow(s);
        s.rows.push_back(std::move(row));
        ++s.live;
        // The row that was current stays current; an empty set is no longer at its beginning.
        if (s.bof && s.eof)
            s.bof = false;
    } else {
        s.rows[size_t(s.pos)].values = s.buffer;
        s.rows[size_t(s.pos)].seen = writesNow(s);
    }
}

}  // namespace

RecordsetState &Recordset::state() const
{
    if (!s_)
        throw VbError(kNotSet);
    if (!s_->open || !s_->db || !s_->db->open)
        throw VbError(kClosed);
    return *s_;
}

bool Recordset::isOpen() const { return s_ && s_->open && s_->db && s_->db->open; }

bool Recordset::Bof() const { return state().bof; }
bool Recordset::Eof() const { return state().eof; }
bool Recordset::NoMatch() const { return state().noMatch; }
int Recordset::RecordCount() const { return int(state().live); }

void Recordset::MoveFirst()
{
    RecordsetState &s = state();
    if (s.bof && s.eof)
        throw VbError(kNoCurrent);
    dropEdit(s);
    const qsizetype i = landOn(s, 0, Direction::Forward);
    if (i < 0) {
        s.bof = s.eof = true;
        return;
    }
    setCurrent(s, i);
}

void Recordset::MoveLast()
{
    RecordsetState &s = state();
    if (s.bof && s.eof)
        throw VbError(kNoCurrent);
    dropEdit(s);
    const qsizetype i = landOn(s, qsizetype(s.rows.size()) - 1, Direction::Backward);
    if (i < 0) {
        s.bof = s.eof = true;
        return;
    }
    setCurrent(s, i);
}

void Recordset::MoveNext()
{
    RecordsetState &s = state();
    if (s.eof)
        throw VbError(kNoCurrent);
    dropEdit(s);
    const qsizetype i = landOn(s, s.bof ? 0 : s.pos + 1, Direction::Forward);
    if (i < 0) {
        s.eof = true;
        s.bof = false;
        s.pos = qsizetype(s.rows.size());
        return;
    }
    setCurrent(s, i);
}

void Recordset::MovePrevious()
{
    RecordsetState &s = state();
    if (s.bof)
        throw VbError(kNoCurrent);
    dropEdit(s);
    const qsizetype i = landOn(s, s.eof ? qsizetype(s.rows.size()) - 1 : s.pos - 1, Direction::Backward);
    if (i < 0) {
        s.bof = true;
        s.eof = false;
        s.pos = -1;
        return;
    }
    setCurrent(s, i);
}

namespace {

enum class FindFrom { First, Last, Next, Previous };

void find(RecordsetState &s, const QString &text, FindFrom from)
{
    Criterion c = parseCriterion(text);
    bindCriterion(
        c, [&s](const QString &name) { return s.column(name); },
        [&s](int i) { return s.columns[size_t(i)].type == FieldType::Single; });
    refreshAll(s);
    const Direction d = from == FindFrom::First || from == FindFrom::Next ? Direction::Forward : Direction::Backward;
    qsizetype start = 0;
    switch (from) {
    case FindFrom::First: start = 0; break;
    case FindFrom::Last: start = qsizetype(s.rows.size()) - 1; break;
    case FindFrom::Next: start = s.eof ? -1 : (s.bof ? 0 : s.pos + 1); break;
    case FindFrom::Previous: start = s.bof ? -1 : (s.eof ? qsizetype(s.rows.size()) - 1 : s.pos - 1); break;
    }
    // The whole search runs before anything changes, so that a comparison that fails leaves
    // the position and NoMatch as they were.
    qsizetype found = -1;
    for (qsizetype i = liveRow(s, start, d); i >= 0; i = liveRow(s, d == Direction::Forward ? i + 1 : i - 1, d)) {
        if (matchesCriterion(c, s.rows[size_t(i)].values)) {
            found = i;
            break;
        }
    }
    dropEdit(s);
    s.noMatch = found < 0;
    if (found >= 0)
        setCurrent(s, found);
}

}  // namespace

void Recordset::FindFirst(const QString &criterion) { find(state(), criterion, FindFrom::First); }
void Recordset::FindLast(const QString &criterion) { find(state(), criterion, FindFrom::Last); }
void Recordset::FindNext(const QString &criterion) { find(state(), criterion, FindFrom::Next); }
void Recordset::FindPrevious(const QString &criterion) { find(state(), criterion, FindFrom::Previous); }

void Recordset::AddNew()
{
    RecordsetState &s = state();
    if (s.snapshot || s.table.isEmpty())
        throw VbError(kReadOnly);
    dropEdit(s);
    s.mode = EditMode::AddNew;
    s.buffer.assign(s.columns.size(), QVariant());
    s.changed.assign(s.columns.size(), false);
}

void Recordset::Edit()
{
    RecordsetState &s = state();
    if (s.snapshot || s.table.isEmpty())
        throw VbError(kReadOnly);
    currentRow(s);
    refreshRow(s, s.pos);  // the edit starts from the row as it is now
    const Row &row = currentRow(s);
    dropEdit(s);
    s.mode = EditMode::Edit;
    s.buffer = row.values;
    s.changed.assign(s.columns.size(), false);
}

void Recordset::Update()
{
    RecordsetState &s = state();
    if (s.mode == EditMode::None)
        throw VbError(kNoEdit);
    if (s.mode == EditMode::Edit)
        currentRow(s);
    writeRow(s);
    dropEdit(s);
}

void Recordset::CancelUpdate()
{
    RecordsetState &s = state();
    if (s.mode == EditMode::None)
        throw VbError(kNoEdit);
    dropEdit(s);
}

void Recordset::Delete()
{
    RecordsetState &s = state();
    if (s.snapshot || s.table.isEmpty())
        throw VbError(kReadOnly);
    currentRow(s);
    Row &row = s.rows[size_t(s.pos)];
    beforeWrite(*s.db);
    QSqlQuery q(s.db->sql());
    q.prepare(QStringLiteral("delete from %1 where _rowid_ = ?").arg(quoted(s.table)));
    q.addBindValue(row.rowid);
    if (!q.exec())
        throw VbError(errorNumber(q.lastError()));
    countWrite(s);
    dropEdit(s);
    markGone(s, row);
}

void Recordset::Close()
{
    RecordsetState &s = state();
    dropEdit(s);
    s.open = false;
    s.rows.clear();
}

QVariant Recordset::Field(const QString &name) const
{
    const RecordsetState &s = state();
    const int i = s.column(name);
    if (i < 0)
        throw VbError(kNoField);
    if (s.mode != EditMode::None)
        return s.buffer[size_t(i)];
    return currentRow(s).values[size_t(i)];
}

double Recordset::FieldNumber(const QString &name) const
{
    const QVariant v = Field(name);
    if (v.isNull())
        throw VbError(kNullUse);
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? -1.0 : 0.0;
    if (v.typeId() == QMetaType::QString)
        return vbCDbl(v.toString());
    return v.toDouble();
}

QString Recordset::FieldText(const QString &name) const
{
    const QVariant v = Field(name);
    if (v.isNull())
        throw VbError(kNullUse);
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    if (v.typeId() == QMetaType::Double) {
        const RecordsetState &s = state();
        if (s.columns[size_t(s.column(name))].type == FieldType::Single)
            return vbCStr(float(v.toDouble()));
        return vbCStr(v.toDouble());
    }
    return v.toString();
}

void Recordset::SetField(const QString &name, const QVariant &value)
{
    RecordsetState &s = state();
    const int i = s.column(name);
    if (i < 0)
        throw VbError(kNoField);
    if (s.mode == EditMode::None)
        throw VbError(kNoEdit);
    const Column &c = s.columns[size_t(i)];
    s.buffer[size_t(i)] = assignedValue(value, c.type, c.size);
    s.changed[size_t(i)] = true;
}

QStringList Recordset::FieldNames() const
{
    QStringList names;
    for (const Column &c : state().columns)
        names << c.name;
    return names;
}

}  // namespace kw
