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
    st.centerfreq = 123.456f;
    st.reflevel = -42.5f;
    st.attenuator = 30.0f;
    st.bandwith = 9;
    st.videofilter = 1;
    st.span = 20;
    st.unit = QStringLiteral("dBuV/m              ");
    st.correctionon = 1;
    st.configname = QStringLiteral("Radiated 3 m bilog, cable, preamplifier");
    st.readmode = 3;
    st.viewsample = 0;
    st.viewaverage = 1;
    st.viewmaxhold = 1;
    st.viewb = 1;
    st.viewab = 1;
    st.viewlimitmax = 1;
    st.viewlimitave = 1;
    st.limitnrmax = 8;
    st.limitnrave = 5;
    st.tgon = 1;
    st.tglevel = -12.5f;
    st.calc = 1;
}

Recordset settingsTable() { return OpenDatabase(st.databasefile).OpenRecordset(QStringLiteral("settings")); }

int rowsNamed(const QString &name)
{
    Recordset rs = OpenDatabase(st.databasefile)
                       .OpenRecordset(QStringLiteral("select * from settings where name = '") + name + QStringLiteral("'"),
                                      dbOpenSnapshot);
    return rs.RecordCount();
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
        QCOMPARE(check.RecordCount(), 1);
        QCOMPARE(check.FieldNumber(QStringLiteral("averagename")), 8.0);
        QCOMPARE(check.FieldNumber(QStringLiteral("maxholdname")), 5.0);

        resetState();
        st.databasefile = saved.databasefile;
        int refreshed = 0;
        uiHooks().refreshForms = [&] { ++refreshed; };
        Recordset again = settingsTable();
        QCOMPARE(loadsetting(again, QStringLiteral("bench RUN 7")), LoadOutcome::Loaded);
        QCOMPARE(refreshed, 1);
        QCOMPARE(st.centerfreq, saved.centerfreq);
        QCOMPARE(st.reflevel, saved.reflevel);
        QCOMPARE(st.attenuator, saved.attenuator);
        QCOMPARE(st.bandwith, saved.bandwith);
        QCOMPARE(st.videofilter, saved.videofilter);
        QCOMPARE(st.span, saved.span);
        QCOMPARE(st.unit, saved.unit);
        QCOMPARE(st.correctionon, saved.correctionon);
        QCOMPARE(st.configname, saved.configname);
        QCOMPARE(st.readmode, saved.readmode);
        QCOMPARE(st.viewsample, saved.viewsample);
        QCOMPARE(st.viewaverage, saved.viewaverage);
        QCOMPARE(st.viewmaxhold, saved.viewmaxhold);
        QCOMPARE(st.viewb, saved.viewb);
        QCOMPARE(st.viewab, saved.viewab);
        QCOMPARE(st.viewlimitmax, saved.viewlimitmax);
        QCOMPARE(st.viewlimitave, saved.viewlimitave);
        QCOMPARE(st.limitnrmax, saved.limitnrmax);
        QCOMPARE(st.limitnrave, saved.limitnrave);
        QCOMPARE(st.tgon, saved.tgon);
        QCOMPARE(st.tglevel, saved.tglevel);
        QCOMPARE(st.calc, saved.calc);
        QCOMPARE(st.portopen, int16_t(0));

        // A delivered setting reads its crossed columns the same way.
        QCOMPARE(loadsetting(again, QStringLiteral("Radiated 30-230 MHz, CISPR 32 B 3 m")), LoadOutcome::Loaded);
        QCOMPARE(st.limitnrmax, 8);
        QCOMPARE(st.limitnrave, 0);
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
        QCOMPARE(boxes_.shown[0].title, QStringLiteral("Save setting"));
        QCOMPARE(boxes_.shown[0].text, QStringLiteral("Setting exist ( pre-scan )\r\rOverwrite?\r\r"));
        QCOMPARE(boxes_.shown[0].buttons, Buttons::YesNo);
        Recordset look = settingsTable();
        look.FindFirst(QStringLiteral("name = 'Pre-scan'"));
        QCOMPARE(look.FieldNumber(QStringLiteral("centerfreq")), 100.0);

        boxes_.answers.push_back(Answer::Yes);
        QVERIFY(savesetting(data1, QStringLiteral("Pre-scan")));
        look = settingsTable();
        look.FindFirst(QStringLiteral("name = 'Pre-scan'"));
        QCOMPARE(look.FieldNumber(QStringLiteral("centerfreq")), 200.0);
        QCOMPARE(rowsNamed(QStringLiteral("Pre-scan")), 1);
    }

    // A name that is not there is told; an empty table makes the button do nothing; a quote in
    // a name only fails its own search.
    void namesThatMatchNothing()
    {
        Recordset data1 = settingsTable();
        const float before = st.centerfreq;
        QCOMPARE(loadsetting(data1, QStringLiteral(" nowhere ")), LoadOutcome::NotFound);
        QCOMPARE(kwtest::boxesOf(boxes_), QStringList({"load setting|Setting not exist ( nowhere )"}));
        QCOMPARE(st.centerfreq, before);

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
        QCOMPARE(rowsNamed(QStringLiteral("Fresh")), 1);

        st.span = 5;
        QWidget *load = showForm(QStringLiteral("loadset"));
        auto *combo = load->findChild<QComboBox *>(QStringLiteral("DBCombo1"));
        QCOMPARE(combo->count(), 3);
        QCOMPARE(combo->currentText(), QStringLiteral("Overview 0-1000 MHz"));
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
