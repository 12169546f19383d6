// The run driver from the Start button to the finished file: the prompts of every sequence in
// order with the state at each pass, Stop, a cancelled dialog, an analyser that is off, and the
// header of the ".emc" file.

#include "emc/emchooks.h"
#include "emc/passes.h"
#include "emc/rundriver.h"
#include "platform/dialogs.h"
#include "platform/recordset.h"
#include "shell/state.h"
#include "support/simfixture.h"

#include <QFile>
#include <QtTest>

using namespace kw;

namespace {

const QString kRadiated = QStringLiteral("CISPR 32 B radiated 3 m");
QStringList events;  // prompts as "title|text", passes as "sweep(s,a,h)" / "stepped(s,v)"

QString passState()
{
    return QStringLiteral("%1,%2,%3").arg(st.secondpass).arg(st.ambientphase).arg(st.polarisationh ? "h" : "v");
}

int rowsOf(const QString &table)
{
    Database file = OpenDatabase(st.measurefile);
    Recordset rows = file.OpenRecordset(QStringLiteral("select * from ") + table, dbOpenSnapshot);
    const int n = rows.RecordCount();
    file.Close();
    return n;
}

// The header must be in the file before the first pass measures anything.
void record(const char *pass) { events << QStringLiteral("%1(%2)").arg(QLatin1String(pass), passState()) + (rowsOf("settings") == 1 ? "" : " no header"); }
void recordSweep() { record("sweep"); }
void recordStepped() { record("stepped"); }

// OK-only prompts into the event list; a Stop pressed while one of them is up.
class PromptRecorder : public ScriptedDialogs {
public:
    QString stopAt;
    Answer message(const QString &title, const QString &text, Buttons buttons) override
    {
        if (buttons == Buttons::Ok && title.startsWith(QLatin1String("EMC - ")))
            events << title + QLatin1Char('|') + text;
        if (text == stopAt)
            emcStop();
        return ScriptedDialogs::message(title, text, buttons);
    }
};

// The simulator behind Com2, the delivered database, and a file name waiting in the save dialog.
struct Run {
    SimBench bench;
    PromptRecorder prompts;
    QString file;
    std::vector<QString> controls;
    Run()
    {
        const QString db = bench.dir() + QStringLiteral("/default.mdb");
        QFile::copy(qEnvironmentVariable("KW_DEFAULT_MDB"), db);
        QFile::setPermissions(db, QFile::ReadOwner | QFile::WriteOwner);
        st.databasefile = db;
        st.db = OpenDatabase(db);
        st.dbversion = 1.1f;
        st.testname = kRadiated;
        file = bench.dir() + QStringLiteral("/run.emc");
        prompts.files.push_back(bench.dir() + QStringLiteral("/run"));  // the extension is added
        setDialogs(&prompts);
        events.clear();
        runPasses() = {&recordSweep, &recordStepped};
        emcHooks().comboEnabled = [this](bool on) { controls.push_back(on ? "combo on" : "combo off"); };
        emcHooks().startEnabled = [this](bool on) { controls.push_back(on ? "start on" : "start off"); };
    }
    ~Run()
    {
        emcHooks() = EmcHooks{};
        runPasses() = {&sweeprun, &startstepped};
        setDialogs(nullptr);
        st.db.Close();
    }
    void setTest(int mode, bool horizontal, bool vertical, bool ambient)
    {
        st.db.Execute(QStringLiteral("update test set mode = %1, horizontal = %2, vertical = %3, ambient = %4 where Name = '%5'")
                          .arg(mode).arg(int(horizontal)).arg(int(vertical)).arg(int(ambient)).arg(kRadiated));
    }
    QVariant setting(const QString &column)
    {
        Database f = OpenDatabase(file);
        Recordset row = f.OpenRecordset(QStringLiteral("select * from settings"), dbOpenSnapshot);
        const QVariant v = row.Eof() ? QVariant() : row.Field(column);
        f.Close();
        return v;
    }
};

const QString S = QStringLiteral("EMC - Sweep + Step|");
const QString T = QStringLiteral("EMC - Stepped|");
const QString H = QStringLiteral("Set to horizontal / L position");
const QString V = QStringLiteral("Set to vertical / N position");
const QString Off = QStringLiteral("Switch DUT Off");
const QString On = QStringLiteral("Switch DUT ON");

}  // namespace

struct SequenceCase { int mode; bool horizontal; bool vertical; bool ambient; QStringList expected; };

class TestEmcRun : public QObject {
    Q_OBJECT
private slots:
    void sequences_data()
    {
        QTest::addColumn<SequenceCase>("c");
        QTest::newRow("sweep H+V ambient") << SequenceCase{0, true, true, true, {S + H, S + Off, "sweep(0,1,h)", S + On, "sweep(1,0,h)",
                                                                                 S + V, S + Off, "sweep(1,2,v)", S + On, "sweep(1,0,v)"}};
        QTest::newRow("sweep V") << SequenceCase{0, false, true, false, {S + V, "sweep(0,0,v)"}};
        QTest::newRow("sweep V ambient") << SequenceCase{0, false, true, true, {S + V, S + Off, "sweep(0,2,v)", S + On, "sweep(1,0,v)"}};
        QTest::newRow("sweep neither") << SequenceCase{0, false, false, true, {"sweep(0,0,h)"}};
        QTest::newRow("step H+V") << SequenceCase{1, true, true, true, {T + H, "stepped(0,0,h)"}};
        QTest::newRow("step V") << SequenceCase{1, false, true, false, {T + V, "stepped(0,0,v)"}};
        QTest::newRow("step neither") << SequenceCase{1, false, false, false, {"stepped(0,0,h)"}};
    }
    // Every row of both tables: prompts in order, and what each pass is called with.
    void sequences()
    {
        QFETCH(SequenceCase, c);
        Run run;
        run.setTest(c.mode, c.horizontal, c.vertical, c.ambient);
        emcStart();
        QCOMPARE(events, c.expected);
        QCOMPARE(std::tuple(st.measurefile, run.controls.front(), run.controls.back()),
                 std::tuple(run.file, QStringLiteral("combo off"), QStringLiteral("start on")));
        // A Sweep + Step run is finished at once; a stepped one goes on under Timer2.
        QCOMPARE(std::pair(run.setting("grafikmin").toInt(), st.portopen), std::pair(c.mode == 0 ? int(st.grafikmin) : 0, int16_t(c.mode)));
    }

    // Stop pressed during a prompt: no further prompt or pass, and the run is finished.
    void stopAtAPrompt()
    {
        Run run;
        run.setTest(0, true, true, true);
        run.prompts.stopAt = Off;
        emcStart();
        QCOMPARE(events, (QStringList{S + H, S + Off}));
        QCOMPARE(std::pair(run.setting("grafikmin").toInt(), st.portopen), std::pair(int(st.grafikmin), int16_t(0)));
    }

    // Cancel at the dialog: no file, the controls free again, nothing sent.
    void cancelAtTheDialog()
    {
        Run run;
        run.prompts.files = {std::nullopt};
        QVERIFY(run.bench.connect());
        emcStart();
        QVERIFY(events.isEmpty() && !QFile::exists(run.file) && run.bench.log().isEmpty());
        QCOMPARE(run.controls, (std::vector<QString>{"combo off", "combo on", "start on"}));
        QCOMPARE(st.portopen, int16_t(1));
    }

    // The analyser off: the file is made and stays empty, no pass and no finish.
    void analyserOff()
    {
        Run run;
        run.bench.sim().unplug();
        emcStart();
        QVERIFY(events.isEmpty() && QFile::exists(run.file));
        QCOMPARE(rowsOf("settings") + rowsOf("limitlines"), 0);
        QCOMPARE(run.controls.back(), QStringLiteral("start on"));
    }

    // The header of a Sweep + Step test: the settings row by the ".emc" sources and the limit
    // points side by side.
    void header()
    {
        Run run;
        run.setTest(0, false, false, true);
        emcStart();
        const std::vector<std::pair<const char *, QVariant>> expected = {
            {"Vernr", 101}, {"centerfreq", 30.0}, {"reflevel", -30.0}, {"attenuator", 10.0}, {"bandwith", 120},
            {"videofilter", 0}, {"span", 0}, {"unit", QStringLiteral("dBµV/m").leftJustified(20)}, {"correctionon", 1},
            {"configname", kRadiated}, {"readmode", 0}, {"viewsample", 0}, {"viewaverage", 0}, {"viewmaxhold", 1},
            {"viewb", 1}, {"viewqpeak", 1}, {"viewlimitmax", 1}, {"viewlimitave", 0}, {"averagename", QStringLiteral("Not set")},
            {"maxholdname", QStringLiteral("CISPR 32 Class B radiated 3 m")}, {"tgon", 0}, {"tglevel", 0.0}, {"Mode", 2},
            {"viewab", 0}, {"lmaxdist", 3}, {"lavedist", 0}, {"configdist", 3}, {"headline", kRadiated}, {"Ambient", 1}};
        for (const auto &[column, value] : expected)
            QVERIFY2(run.setting(QLatin1String(column)).toString() == value.toString(),
                     qPrintable(QStringLiteral("%1: %2").arg(QLatin1String(column), run.setting(QLatin1String(column)).toString())));
        QVERIFY(!run.setting("lmaxlog").toBool() && !run.setting("lavelog").toBool());  // the class B line is flat

        Database file = OpenDatabase(run.file);
        Recordset limit = st.db.OpenRecordset(QStringLiteral("select * from limitdef where limitnr = 8 order by frequency"), dbOpenSnapshot);
        Recordset rows = file.OpenRecordset(QStringLiteral("select * from limitlines"), dbOpenSnapshot);
        QCOMPARE(rows.RecordCount(), limit.RecordCount());
        for (; !rows.Eof(); rows.MoveNext(), limit.MoveNext()) {
            QCOMPARE(std::pair(rows.FieldNumber(QStringLiteral("maxfreq")), rows.FieldNumber(QStringLiteral("Maxhold_dBmW"))),
                     std::pair(limit.FieldNumber(QStringLiteral("frequency")), limit.FieldNumber(QStringLiteral("level_dbmw"))));
            QVERIFY(rows.Field(QStringLiteral("avefreq")).isNull());
        }
        file.Close();
    }
};

QTEST_MAIN(TestEmcRun)
#include "tst_emcrun.moc"
