// A run killed at any moment leaves a file that opens, with every row written before the kill.

#include "platform/recordset.h"
#include "support/programdir.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSet>
#include <QtTest>
#include <csignal>

using namespace kw;

namespace {

// The test "Crash": Sweep + Step over 30-42 MHz with a limit near the clock harmonic at 33.3 MHz.
void defineCrashTest(const QString &db)
{
    Database app = OpenDatabase(db);
    app.Execute(QStringLiteral("insert into test select 'Crash', config, peak, average, peakdet, 1, 0, unit, ref, atten, "
                               "0, 30, 42, 1, 0, -12, 1, 0, 0 from test where Name = 'CISPR 32 B radiated 3 m'"));
    app.Close();
}

struct Killed {
    QStringList reported;
    QString lastKind;
};

}  // namespace

class TestEmcCrash : public QObject {
    Q_OBJECT
private slots:
    void killedAtRandom()
    {
        test::TempProgramDir dir;
        const QString db = dir.file(QStringLiteral("default.mdb"));
        defineCrashTest(db);
        const QString helper = QCoreApplication::applicationDirPath() + QStringLiteral("/emcrunhelper");
        QVERIFY(QFile::exists(helper));
        // Each kill waits for a few rows of one kind, then a random moment more.
        const QStringList kinds = {"new", "flag", "marked", "step", "sweep"};
        QSet<QString> killedIn;
        auto *rng = QRandomGenerator::global();
        for (int k = 0; k < 20; ++k) {
            const QString file = dir.file(QStringLiteral("crash%1.emc").arg(k));
            QProcess run;
            run.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            // A killed helper cannot remove its own temporary files: they go where this test removes them.
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("TMPDIR"), dir.path());
            run.setProcessEnvironment(environment);
            run.start(helper, {db, file});
            QVERIFY(run.waitForStarted());
            const QString wanted = kinds[k % kinds.size()];
            const int rowsBefore = 1 + int(rng->bounded(4));
            Killed seen;
            int found = 0;
            QElapsedTimer clock;
            clock.start();
            while (found < rowsBefore && clock.elapsed() < 60000 && run.state() == QProcess::Running) {
                run.waitForReadyRead(100);
                while (run.canReadLine()) {
                    const QString line = QString::fromLatin1(run.readLine()).trimmed();
                    seen.reported << line;
                    if (line.startsWith(wanted + QLatin1Char(' ')))
                        ++found;
                }
            }
            QVERIFY2(found >= rowsBefore, qPrintable(QStringLiteral("no %1 rows from the run").arg(wanted)));
            QThread::usleep(rng->bounded(30000));
            ::kill(pid_t(run.processId()), SIGKILL);
            run.waitForFinished();
            seen.reported += QString::fromLatin1(run.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            killedIn << wanted;

            // The file opens, its three tables read, and every reported row is there.
            Database f = OpenDatabase(file);
            Recordset settings = f.OpenRecordset(QStringLiteral("select * from settings"), dbOpenSnapshot);
            QCOMPARE(settings.RecordCount(), 1);
            Recordset limits = f.OpenRecordset(QStringLiteral("select * from limitlines"), dbOpenSnapshot);
            QVERIFY(limits.RecordCount() > 0);
            Recordset rows = f.OpenRecordset(QStringLiteral("select * from measurement order by frequency"), dbOpenSnapshot);
            for (const QString &line : seen.reported) {
                const QStringList parts = line.split(QLatin1Char(' '));
                if (parts.size() != 2 || parts[0] == QLatin1String("pass"))
                    continue;
                rows.FindFirst(QStringLiteral("frequency = ") + parts[1]);
                QVERIFY2(!rows.NoMatch(), qPrintable(QStringLiteral("kill %1: row %2 is gone").arg(k).arg(line)));
                if (parts[0] == QLatin1String("marked") || parts[0] == QLatin1String("step"))
                    QVERIFY(rows.FieldNumber(QStringLiteral("Maxhold_dBmW")) > -1000);
                if (parts[0] == QLatin1String("flag"))
                    QVERIFY(rows.FieldNumber(QStringLiteral("sample_dBmW")) != -1000);
            }
            f.Close();
        }
        QCOMPARE(killedIn.size(), kinds.size());
    }
};

QTEST_MAIN(TestEmcCrash)
#include "tst_emccrash.moc"
