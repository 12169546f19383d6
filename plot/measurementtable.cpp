#include "plot/measurementtable.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <algorithm>
#include <chrono>
#include <filesystem>

namespace kw {

namespace {

// What tells one state of a file from the next: its size, its time of change to the nanosecond,
// and the change counter that SQLite keeps in the file's header and raises at every commit.
struct Stamp {
    QString path;
    qint64 size = -1;
    qint64 changedNs = 0;
    QByteArray counter;
    bool operator==(const Stamp &) const = default;
};

std::optional<Stamp> stampOf(const QString &path)
{
    std::error_code error;
    const std::filesystem::path file = std::filesystem::path(path.toStdString());
    const auto changed = std::filesystem::last_write_time(file, error);
    if (error)
        return std::nullopt;
    const QFileInfo info(path);
    Stamp s;
    s.path = info.canonicalFilePath();
    s.size = info.size();
    s.changedNs = qint64(std::chrono::duration_cast<std::chrono::nanoseconds>(changed.time_since_epoch()).count());
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
            ok = q.exec(QStringLiteral("select frequency, sample_dbmw, average_dbmw, maxhold_dbmw, memory_dbmw, "
                                       "qpeak_dbmw, ambient_h_dbmw, ambient_v_dbmw from measurement"));
            while (ok && q.next()) {
                MeasurementTable::Row row;
                for (int c = 0; c < kMeasColumns; ++c) {
                    const QVariant v = q.value(c);
                    bool isNumber = false;
                    const double d = v.isNull() ? 0.0 : v.toDouble(&isNumber);
                    if (isNumber)
                        row[size_t(c)] = float(d);
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
