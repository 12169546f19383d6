// The recordset layer under the loads the system puts on it: a measurement of 2001 points written
// row by row (AddNew/Update, each its own commit), read back as a snapshot, and the searches of
// the correction chain (FindLast/FindFirst on a component table) for a whole trace.

#include "platform/recordset.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>

using namespace kw;

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bench.mes"));
    Database db = CreateDatabase(path);
    std::vector<FieldDef> fields{{QStringLiteral("Frequency"), FieldType::Single}};
    for (const char *name : {"Sample_dBmW", "Average_dBmW", "Maxhold_dBmW", "QPeak_dBmW", "memory_dBmW"})
        fields.push_back({QString::fromLatin1(name), FieldType::Single});
    db.AppendTable({QStringLiteral("Measurement"), fields});

    QElapsedTimer t;
    t.start();
    Recordset rs = db.OpenRecordset(QStringLiteral("select * from measurement"));
    for (int i = 1; i <= 2001; ++i) {
        rs.AddNew();
        rs.SetField(QStringLiteral("Frequency"), 0.5 * (i - 1));
        for (const char *name : {"Sample_dBmW", "Average_dBmW", "Maxhold_dBmW", "memory_dBmW"})
            rs.SetField(QString::fromLatin1(name), -40.0 - i % 50 / 2.5);
        rs.SetField(QStringLiteral("QPeak_dBmW"), 0);
        rs.Update();
    }
    rs.Close();
    const double writeMs = double(t.nsecsElapsed()) / 1e6;
    std::printf("write 2001 rows, one commit each: %.0f ms (%.2f ms a row; no target, the system writes this way)\n", writeMs,
                writeMs / 2001);

    t.restart();
    Recordset snap = db.OpenRecordset(QStringLiteral("select * from measurement order by frequency"), dbOpenSnapshot);
    const int n = snap.RecordCount();
    const double openMs = double(t.nsecsElapsed()) / 1e6;
    std::printf("open a snapshot of %d rows: %.1f ms (a drawing pass opens it once)\n", n, openMs);

    // A component of 16 points and a trace of 2001 ascending frequencies: one FindLast/FindLast/
    // FindFirst triple for each row crossed and each point that falls on a row, as the chain does.
    db.AppendTable({QStringLiteral("losdef"), {{QStringLiteral("losnr"), FieldType::Long},
                                                {QStringLiteral("frequency"), FieldType::Single},
                                                {QStringLiteral("level_dbmw"), FieldType::Single}}});
    for (int i = 0; i < 16; ++i)
        db.Execute(QStringLiteral("insert into losdef values (1, %1, %2)").arg(30 + i * 64).arg(10 + i));
    Recordset part = db.OpenRecordset(QStringLiteral("select * from losdef where losnr = 1 order by frequency"), dbOpenSnapshot);
    t.restart();
    int searches = 0;
    for (int i = 0; i < 2001; ++i) {
        const QString f = QString::number(30 + i * 0.5);
        part.FindLast(QStringLiteral("frequency = ") + f);
        part.FindLast(QStringLiteral("frequency < ") + f);
        part.FindFirst(QStringLiteral("frequency > ") + f);
        searches += 3;
    }
    const double findMs = double(t.nsecsElapsed()) / 1e6;
    std::printf("%d finds on a 16-row component: %.1f ms (%.1f us each; the chain needs about 50 a trace, "
                "target: a whole trace of 5 components well under 100 ms)\n",
                searches, findMs, findMs * 1000 / searches);
    db.Close();
    return 0;
}
