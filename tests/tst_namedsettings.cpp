// Named settings: stored and recalled by name with every field, the crossed limit columns, the
// overwrite question, names that match nothing, and the dialogs over the delivered database.
#include "platform/dialogs.h"
#include "platform/recordset.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/startup.h"
#include "shell/state.h"
#include "shell/uihooks.h"
#include "store/namedsettings.h"
#include "support/programdir.h"
#include "support/testfiles.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

using namespace kw;

namespace {

// Everything a setting holds, away from the start values.
void setEverything()
{
    std::tie(st.centerfreq, st.reflevel, st.attenuator, st.bandwith, st.videofilter, st.span, st.readmode) =
        std::tuple(123.456f, -42.5f, 30.0f, 9, 1, 20, 3);
    st.unit = QStringLiteral("dBuV/m              ");
    st.configname = QStringLiteral("Radiated 3 m bilog, cable, preamplifier");
    st.correctionon = st.viewaverage = st.viewmaxhold = st.viewb = st.viewab = st.viewlimitmax = st.viewlimitave = st.tgon = st.calc = 1;
    st.viewsample = 0;
    std::tie(st.limitnrmax, st.limitnrave, st.tglevel) = std::tuple(8, 5, -12.5f);
}

Recordset settingsTable() { return OpenDatabase(st.databasefile).OpenRecordset(QStringLiteral("settings")); }

// The rows stored under a name: how many, and the first one's centre frequency.
std::pair<int, double> storedAs(const QString &name)
{
    Recordset rs = OpenDatabase(st.databasefile)
                       .OpenRecordset(QStringLiteral("select * from settings where name = '") + name + QStringLiteral("'"),
                                      dbOpenSnapshot);
    return {rs.RecordCount(), rs.Eof() ? 0.0 : rs.FieldNumber(QStringLiteral("centerfreq"))};
}

}  // namespace

class TestNamedSettings : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        resetState();
        boxes_.shown.clear();
        boxes_.answers.clear();
        setDialogs(&boxes_);
        st.databasefile = dir_.file(QStringLiteral("default.mdb"));
        QVERIFY(dir_.copyDefaultDatabase(QStringLiteral("default.mdb")));
    }
    void cleanup()
    {
        setDialogs(nullptr);
        uiHooks() = UiHooks{};
    }

    // Saved under a name, every field comes back after all were changed; the limit numbers
    // are stored crossed and come back straight; the panels are told, the analyser is not.
    void everyFieldComesBack()
    {
        setEverything();
        const State saved = st;
        Recordset data1 = settingsTable();
        QVERIFY(savesetting(data1, QStringLiteral("  Bench run 7 ")));
        QVERIFY(boxes_.shown.empty());

        Recordset check = OpenDatabase(st.databasefile)
                              .OpenRecordset(QStringLiteral("select * from settings where name = 'Bench run 7'"), dbOpenSnapshot);
        QCOMPARE(std::tuple(check.RecordCount(), check.FieldNumber(QStringLiteral("averagename")), check.FieldNumber(QStringLiteral("maxholdname"))),
                 std::tuple(1, 8.0, 5.0));

        resetState();
        st.databasefile = saved.databasefile;
        int refreshed = 0;
        uiHooks().refreshForms = [&] { ++refreshed; };
        Recordset again = settingsTable();
        QCOMPARE(std::tuple(loadsetting(again, QStringLiteral("bench RUN 7")), refreshed), std::tuple(LoadOutcome::Loaded, 1));
        const auto fields = [](const State &x) {
            return std::tuple(x.centerfreq, x.reflevel, x.attenuator, x.bandwith, x.videofilter, x.span, x.unit, x.correctionon,
                              x.configname, x.readmode, x.viewsample, x.viewaverage, x.viewmaxhold, x.viewb, x.viewab,
                              x.viewlimitmax, x.viewlimitave, x.limitnrmax, x.limitnrave, x.tgon, x.tglevel, x.calc);
        };
        QCOMPARE(fields(st), fields(saved));
        QCOMPARE(st.portopen, int16_t(0));

        // A delivered setting reads its crossed columns the same way.
        QCOMPARE(loadsetting(again, QStringLiteral("Radiated 30-230 MHz, CISPR 32 B 3 m")), LoadOutcome::Loaded);
        QCOMPARE(std::tuple(st.limitnrmax, st.limitnrave), std::tuple(8, 0));
    }

    // An existing name asks first: No keeps the row and the dialog, Yes writes over it.
    void overwriteAsksFirst()
    {
        Recordset data1 = settingsTable();
        st.centerfreq = 100.0f;
        QVERIFY(savesetting(data1, QStringLiteral("Pre-scan")));
        st.centerfreq = 200.0f;
        boxes_.answers.push_back(Answer::No);
        QVERIFY(!savesetting(data1, QStringLiteral("pre-scan")));
        QCOMPARE(boxes_.shown.size(), size_t(1));
        QCOMPARE(std::tuple(boxes_.shown[0].title, boxes_.shown[0].text, boxes_.shown[0].buttons),
                 std::tuple(QStringLiteral("Save setting"), QStringLiteral("Setting exist ( pre-scan )\r\rOverwrite?\r\r"), Buttons::YesNo));
        QCOMPARE(storedAs(QStringLiteral("Pre-scan")), std::pair(1, 100.0));

        boxes_.answers.push_back(Answer::Yes);
        QVERIFY(savesetting(data1, QStringLiteral("Pre-scan")));
        QCOMPARE(storedAs(QStringLiteral("Pre-scan")), std::pair(1, 200.0));
    }

    // A name that is not there is told; an empty table makes the button do nothing; a quote in
    // a name only fails its own search.
    void namesThatMatchNothing()
    {
        Recordset data1 = settingsTable();
        const float before = st.centerfreq;
        QCOMPARE(loadsetting(data1, QStringLiteral(" nowhere ")), LoadOutcome::NotFound);
        QCOMPARE(std::pair(kwtest::boxesOf(boxes_), st.centerfreq), std::pair(QStringList({"load setting|Setting not exist ( nowhere )"}), before));

        QCOMPARE(loadsetting(data1, QStringLiteral("it's")), LoadOutcome::NotFound);
        QCOMPARE(boxes_.shown.size(), size_t(2));

        OpenDatabase(st.databasefile).Execute(QStringLiteral("delete from settings"));
        Recordset empty = settingsTable();
        QCOMPARE(loadsetting(empty, QStringLiteral("Overview 0-1000 MHz")), LoadOutcome::NoRows);
        QCOMPARE(boxes_.shown.size(), size_t(2));
    }

    // The dialogs: saveset lists the names and takes one by a click; a name stops taking keys
    // past 80 characters; loadset starts on the first row and loads the chosen one.
    void dialogs()
    {
        Mdi window;
        loadMain(window);
        boxes_.shown.clear();  // the start in a directory without setting.def has its own boxes
        st.databasefile = dir_.file(QStringLiteral("default.mdb"));
        QWidget *save = showForm(QStringLiteral("saveset"));
        QVERIFY(save);
        auto *grid = save->findChild<QListWidget *>(QStringLiteral("DBGrid1"));
        auto *text1 = save->findChild<QLineEdit *>(QStringLiteral("Text1"));
        QCOMPARE(grid->count(), 2);
        emit grid->itemClicked(grid->item(0));
        QCOMPARE(text1->text(), QStringLiteral("Overview 0-1000 MHz"));
        text1->clear();
        QTest::keyClicks(text1, QString(85, QLatin1Char('n')));
        QCOMPARE(text1->text().size(), 81);
        text1->setText(QStringLiteral("Fresh"));
        QTest::mouseClick(save->findChild<QPushButton *>(QStringLiteral("Command1")), Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!formLoaded(QStringLiteral("saveset")));
        QCOMPARE(storedAs(QStringLiteral("Fresh")).first, 1);

        st.span = 5;
        QWidget *load = showForm(QStringLiteral("loadset"));
        auto *combo = load->findChild<QComboBox *>(QStringLiteral("DBCombo1"));
        QCOMPARE(std::tuple(combo->count(), combo->currentText()), std::tuple(3, QStringLiteral("Overview 0-1000 MHz")));
        QTest::mouseClick(load->findChild<QPushButton *>(QStringLiteral("Command1")), Qt::LeftButton);
        QCOMPARE(st.span, int16_t(1000));
        QVERIFY(boxes_.shown.empty());
    }

private:
    kw::test::TempProgramDir dir_{false};
    ScriptedDialogs boxes_;
};

QTEST_MAIN(TestNamedSettings)
#include "tst_namedsettings.moc"
