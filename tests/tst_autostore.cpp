// AutoStore: running file names for the default and a chosen base, the timing by Timer1 on the
// replaceable clock, a bad directory, the counter's end, the interval bounds, and the form.
#include "live/autostore.h"
#include "live/cycle.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/recordset.h"
#include "platform/screen.h"
#include "platform/vbformat.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/startup.h"
#include "shell/state.h"
#include "shell/uihooks.h"
#include "support/simfixture.h"
#include "support/testfiles.h"

#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

using namespace kw;

namespace {
constexpr double kSecond = 1.0 / 86400.0;
}  // namespace

class TestAutostore : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        resetState();
        boxes_ = ScriptedDialogs{};
        setDialogs(&boxes_);
        liveHooks().autostore = [this] { written_ << QFileInfo(autostoreOnce()).fileName(); };
        written_.clear();
        now_ = 46000.5;
        setNowSource([this] { return now_; });
    }
    void cleanup()
    {
        setNowSource({});
        setDialogs(nullptr);
        uiHooks() = UiHooks{};
        liveHooks().autostore = nullptr;
        setScreenPointer(kPointerNormal);
    }

    // Three storages by the clock under the default base, then three under a chosen one. The
    // default keeps its ".mes" inside the name; a chosen name loses its extension.
    void runningNamesForTheDefaultAndAChosenBase()
    {
        QTemporaryDir dir;
        st.automessfile = dir.filePath(QStringLiteral("AutomessXXX.mes"));
        std::tie(st.autostoreinterval, st.autostoreon, st.liveread) = std::tuple(5, 1, 1);
        st.autostorenext = now_ + 5 * kSecond;
        for (int second = 0; second <= 16; ++second) {
            timer1Tick();
            now_ += kSecond;
        }
        QCOMPARE(written_, QStringList({"AutomessXXX.mes.mes", "AutomessXXX.mes1.mes", "AutomessXXX.mes2.mes"}));
        for (const QString &name : std::as_const(written_))
            QVERIFY(QFile::exists(dir.filePath(name)));
        QVERIFY(boxes_.shown.empty());

        autostoreStop();
        QCOMPARE(st.autostorecount, 0);
        boxes_.files.push_back(dir.filePath(QStringLiteral("Bench.Mes")));
        QVERIFY(autostoreChooseFile());
        QCOMPARE(st.automessfile, dir.filePath(QStringLiteral("Bench")));
        QCOMPARE(std::tuple(boxes_.fileRequests.back().title, boxes_.fileRequests.back().flags), std::tuple(QStringLiteral("Save Data"), 8198));
        written_.clear();
        st.autostoreon = 1;
        st.liveread = 1;
        for (int k = 0; k < 3; ++k) {
            st.autostorenext = now_;
            timer1Tick();
        }
        QCOMPARE(written_, QStringList({"Bench.mes", "Bench1.mes", "Bench2.mes"}));

        // A cancelled dialog and a name of another kind leave the base alone.
        QVERIFY(!autostoreChooseFile());
        boxes_.files.push_back(dir.filePath(QStringLiteral("notes.txt")));
        autostoreChooseFile();
        QCOMPARE(st.automessfile, dir.filePath(QStringLiteral("Bench")));
    }

    // A directory that is not there: the box once for each storage, the run and the count go on.
    void badDirectoryToldOnceEachStorage()
    {
        QTemporaryDir dir;
        st.automessfile = dir.filePath(QStringLiteral("gone/run"));
        autostoreOnce();
        autostoreOnce();
        QCOMPARE(std::tuple(kwtest::boxesOf(boxes_), st.autostorecount, screenPointer()),
                 std::tuple(QStringList({"Auto Save|Bad Filename", "Auto Save|Bad Filename"}), 2, kPointerNormal));
    }

    // At the top the number stops rising and the last file is written over for ever. Each
    // storage deletes the old file first and writes a whole measurement file.
    void counterStopsAtItsLimit()
    {
        QTemporaryDir dir;
        st.automessfile = dir.filePath(QStringLiteral("long"));
        st.autostorecount = kAutostoreCountLimit - 1;
        const QString first = QFileInfo(autostoreOnce()).fileName();
        QCOMPARE((QStringList{first, QFileInfo(autostoreOnce()).fileName()}), (QStringList{"long2147483599.mes", "long2147483600.mes"}));
        QCOMPARE(st.autostorecount, kAutostoreCountLimit);
        QVERIFY(kwtest::writeFile(dir.filePath(QStringLiteral("long2147483600.mes")), "stale"));
        QCOMPARE(QFileInfo(autostoreOnce()).fileName(), QStringLiteral("long2147483600.mes"));
        Database stored = OpenDatabase(dir.filePath(QStringLiteral("long2147483600.mes")));
        QCOMPARE(std::pair(stored.OpenRecordset(QStringLiteral("select count(*) as n from measurement"), dbOpenSnapshot).FieldNumber(QStringLiteral("n")),
                           stored.OpenRecordset(QStringLiteral("settings"), dbOpenSnapshot).FieldNumber(QStringLiteral("vernr"))),
                 std::pair(2001.0, 100.0));
        stored.Close();
        QCOMPARE(st.autostorecount, kAutostoreCountLimit);
        QVERIFY(boxes_.shown.empty());
    }

    void intervalBoundsAndTheBusyPointer()
    {
        QCOMPARE((QStringList{autostoreTakeInterval(QStringLiteral("3")), autostoreTakeInterval(QStringLiteral("4000")),
                              autostoreTakeInterval(QStringLiteral("x")), autostoreTakeInterval(QStringLiteral("120"))}),
                 (QStringList{"5", "3600", "5", "120"}));
        QCOMPARE(st.autostoreinterval, 120);

        // While the hourglass shows, the buttons do nothing.
        st.autostorecount = 7;
        st.autostoreon = 1;
        setScreenPointer(kPointerHourglass);
        autostoreStop();
        QVERIFY(!autostoreExit());
        autostoreStartPause();
        QVERIFY(!autostoreChooseFile());
        QCOMPARE(std::tuple(st.autostorecount, st.autostoreon), std::tuple(7, uint8_t(1)));
        QVERIFY(boxes_.shown.empty());
    }

    // The form on the simulator: Start connects and ticks Auto and shows the next time; Pause
    // keeps the count; closing the form by its frame ends storing but live reading goes on.
    void formStartsPausesAndClosesByTheFrame()
    {
        SimBench bench;
        setNowSource([this] { return now_; });
        Mdi window;
        loadMain(window);
        bench.boxes().shown.clear();  // the start in an empty directory has its own boxes
        QWidget *form = showForm(QStringLiteral("autost"));
        QVERIFY(form);
        auto *start = form->findChild<QPushButton *>(QStringLiteral("Command2"));
        start->click();
        QCOMPARE(std::tuple(start->text(), st.portopen, st.ckauto, st.liveread), std::tuple(QStringLiteral("Pause"), int16_t(1), uint8_t(1), uint8_t(1)));
        QCOMPARE(form->findChild<QLabel *>(QStringLiteral("Label4"))->text(), vbLongTime(now_ + 60 * kSecond));
        st.autostorecount = 4;
        start->click();
        QCOMPARE(std::tuple(start->text(), st.autostoreon, st.ckauto, st.autostorecount), std::tuple(QStringLiteral("Start"), uint8_t(0), uint8_t(0), 4));
        start->click();
        QCOMPARE(st.ckauto, uint8_t(1));
        unloadForm(QStringLiteral("autost"));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!formLoaded(QStringLiteral("autost")));
        QCOMPARE(std::tuple(st.autostoreon, st.ckauto), std::tuple(uint8_t(0), uint8_t(1)));
        QVERIFY2(bench.shown().isEmpty(), qPrintable(bench.shown().join(QLatin1Char('\n'))));
    }

private:
    ScriptedDialogs boxes_;
    QStringList written_;
    double now_ = 0;
};

QTEST_MAIN(TestAutostore)
#include "tst_autostore.moc"
