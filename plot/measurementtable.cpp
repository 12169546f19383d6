#include "plot/measurementtable.h"

#include <QDateTime>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <algorithm>

namespace kw {

namespace {

struct Cached {
    QString path;
    qint64 size = -1;
    QDateTime changed;
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
    const QFileInfo info(path);
    if (!info.isFile())
        return nullptr;
    Cached &c = cache();
    const QString canonical = info.canonicalFilePath();
    const QDateTime changed = info.lastModified();
    if (c.table && c.path == canonical && c.size == info.size() && c.changed == changed)
        return c.table;
    auto table = readFile(path);
    if (table)
        c = Cached{canonical, info.size(), changed, table};
    return table;
}

}  // namespace kw
