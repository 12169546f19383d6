#include "plot/measurementtable.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <tuple>

namespace kw {

namespace {

// What tells one state of a file from the next: size and time of change to the nanosecond of the
// file and of its write-ahead log (where commits go first), and the change counter that SQLite
// keeps in the file's header.
struct Stamp {
    QString path;
    qint64 size = -1;
    qint64 changedNs = 0;
    qint64 logSize = -1;
    qint64 logChangedNs = 0;
    QByteArray counter;
    bool operator==(const Stamp &) const = default;
};

// Size and time of change of a file; -1 and 0 when there is none.
std::pair<qint64, qint64> sizeAndTime(const QString &path)
{
    std::error_code error;
    const std::filesystem::path file(path.toStdString());
    const auto changed = std::filesystem::last_write_time(file, error);
    if (error)
        return {-1, 0};
    const auto size = std::filesystem::file_size(file, error);
    return {error ? -1 : qint64(size),
            qint64(std::chrono::duration_cast<std::chrono::nanoseconds>(changed.time_since_epoch()).count())};
}

std::optional<Stamp> stampOf(const QString &path)
{
    Stamp s;
    std::tie(s.size, s.changedNs) = sizeAndTime(path);
    if (s.size < 0)
        return std::nullopt;
    std::tie(s.logSize, s.logChangedNs) = sizeAndTime(path + QStringLiteral("-wal"));
    s.path = QFileInfo(path).canonicalFilePath();
    QFile f(path);
    if (f.open(QIODevice::ReadOnly))
        s.counter = f.read(100).mid(24, 4);
    return s;
}

struct Cached {
    Stamp stamp;
    std::shared_ptr<const MeasurementTable> table;
};

Cached &cache()
{
    static Cached c;
    return c;
}

// The columns the scans read, in their order; one the table lacks reads as an empty cell, so a
// foreign or damaged file loses that line only.
QString columnList(const QSqlDatabase &db)
{
    static const char *const names[kMeasColumns] = {"frequency",  "sample_dbmw", "average_dbmw",   "maxhold_dbmw",
                                                    "memory_dbmw", "qpeak_dbmw", "ambient_h_dbmw", "ambient_v_dbmw"};
    QStringList present;
    QSqlQuery info(db);
    if (info.exec(QStringLiteral("pragma table_info(measurement)")))
        while (info.next())
            present << info.value(1).toString().toLower();
    QStringList list;
    for (const char *name : names)
        list << (present.contains(QLatin1String(name)) ? QLatin1String(name) : QLatin1String("null"));
    return list.join(QStringLiteral(", "));
}

// Read-only and straight from SQLite: the drawing only reads, and a table of 100,000 rows must be
// on the screen in a fraction of a second. The rows are sorted here, stable, with empty
// frequencies first, as the ordered query would give them.
std::shared_ptr<const MeasurementTable> readFile(const QString &path)
{
    static int serial = 0;
    const QString name = QStringLiteral("kwplot%1").arg(++serial);
    auto table = std::make_shared<MeasurementTable>();
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (db.open()) {
            QSqlQuery q(db);
            q.setForwardOnly(true);
            ok = q.exec(QStringLiteral("select ") + columnList(db) + QStringLiteral(" from measurement"));
            while (ok && q.next()) {
                MeasurementTable::Row row;
                for (int c = 0; c < kMeasColumns; ++c) {
                    const QVariant v = q.value(c);
                    bool isNumber = false;
                    const double d = v.isNull() ? 0.0 : v.toDouble(&isNumber);
                    if (isNumber)
                        row[size_t(c)] = asFloat(d);
                }
                table->rows.push_back(row);
            }
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    if (!ok)
        return nullptr;
    std::stable_sort(table->rows.begin(), table->rows.end(), [](const MeasurementTable::Row &a, const MeasurementTable::Row &b) {
        const auto &fa = a[kFrequency];
        const auto &fb = b[kFrequency];
        if (!fa || !fb)
            return !fa && fb;
        return *fa < *fb;
    });
    return table;
}

}  // namespace

std::shared_ptr<const MeasurementTable> readMeasurementTable(const QString &path)
{
    if (!QFileInfo(path).isFile())
        return nullptr;
    const auto stamp = stampOf(path);
    Cached &c = cache();
    if (stamp && c.table && c.stamp == *stamp)
        return c.table;
    auto table = readFile(path);
    if (table && stamp)
        c = Cached{*stamp, table};
    return table;
}

}  // namespace kw
