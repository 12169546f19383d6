// A whole Sweep + Step run against the simulator over the clock harmonic at 133.3 MHz, and the
// results table of the finished file: the stepped frequencies, worst first, the harmonic failing.
#include "emc/results.h"
#include "emc/resultsform.h"
#include "emc/rundriver.h"
#include "platform/recordset.h"
#include "shell/state.h"
#include "support/simfixture.h"

#include <QFile>
#include <QTableWidget>
#include <QtTest>

using namespace kw;

class TestResultsRun : public QObject {
    Q_OBJECT
private slots:
    void sweepAndStepThenResults()
    {
        SimBench bench;
        const QString db = bench.dir() + QStringLiteral("/default.mdb");
        QVERIFY(QFile::copy(qEnvironmentVariable("KW_DEFAULT_MDB"), db));
        QFile::setPermissions(db, QFile::ReadOwner | QFile::WriteOwner);
        st.databasefile = db;
        st.db = OpenDatabase(db);
        st.dbversion = 1.1f;
        const QString file = bench.dir() + QStringLiteral("/run.emc");
        bench.boxes().files.push_back(file);
        // The delivered radiated test over 130-137 MHz, Sweep + Step, rows marked from 6 dB under the line.
        st.db.Execute(QStringLiteral("insert into test select 'Harmonic', config, peak, average, 1, 1, 0, unit, ref, atten, 0, "
                                     "130, 137, 1, 0, -6, 1, 0, 0 from test where Name = 'CISPR 32 B radiated 3 m'"));
        st.testname = QStringLiteral("Harmonic");
        emcStart();

        const ResultTable table = readResults(file);
        QVERIFY2(table.error.isEmpty(), qPrintable(table.error));
        QVERIFY(!table.lines.empty());
        QCOMPARE(std::tuple(table.test, table.unit), std::tuple(QStringLiteral("Harmonic"), QStringLiteral("dBµV/m")));
        const ResultLine &worst = table.lines.front();
        QVERIFY2(std::abs(worst.frequency - 133.33) < 0.3, qPrintable(QString::number(worst.frequency)));
        QCOMPARE(std::tuple(worst.verdict, table.overall(), worst.polarisation), std::tuple(Verdict::Fail, Verdict::Fail, QLatin1Char('H')));
        QVERIFY(worst.qpeak && worst.average && worst.peakLimit && worst.marginFromQPeak);
        // The class B line of the delivered test: 40 dBµV/m quasi-peak up to 230 MHz.
        QVERIFY2(std::abs(*worst.peakLimit - 40.0) < 0.05, qPrintable(QString::number(*worst.peakLimit)));
        for (size_t i = 1; i < table.lines.size(); ++i)
            QVERIFY(!table.lines[i].worstMargin() || *table.lines[i].worstMargin() <= *table.lines[i - 1].worstMargin());

        // The finished run stays shown from its file: the form reads it without a load.
        QCOMPARE(shownMeasurementFile(), file);
        ResultsForm form;
        form.show();
        QCOMPARE(std::tuple(form.grid()->rowCount(), form.grid()->item(0, 9)->text()), std::tuple(int(table.lines.size()), QStringLiteral("FAIL")));
        st.db.Close();
    }
};

QTEST_MAIN(TestResultsRun)
#include "tst_resultsrun.moc"
