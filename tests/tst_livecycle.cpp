// The live cycle and its tool bar: buttons and timers of the main window, continuous reading and
// its refusal in trigger mode, erasing, and the deferred redraw.
#include "live/cycle.h"
#include "platform/dialogs.h"
#include "plot/grafik.h"
#include "shell/mdi.h"
#include "shell/startup.h"
#include "shell/state.h"
#include "shell/toolpanel.h"
#include "shell/uihooks.h"
#include "support/recordingplot.h"
#include "support/simfixture.h"

#include <QCheckBox>
#include <QImage>
#include <QPushButton>
#include <QTimer>
#include <QtTest>
#include <algorithm>
#include <functional>

using namespace kw;
using kwtest::RecordingPlot;

namespace {

// A real box runs an event loop of its own, in which the timers go on firing. This one lets the
// event loop run behind the first box for as long as whileUp takes; a box inside it is answered
// at once.
class ModalDialogs : public ScriptedDialogs {
public:
    std::function<void()> whileUp;
    int mostUpAtOnce = 0;

    Answer message(const QString &title, const QString &text, Buttons buttons) override
    {
        const Answer answer = ScriptedDialogs::message(title, text, buttons);
        mostUpAtOnce = std::max(mostUpAtOnce, ++up_);
        if (up_ == 1 && whileUp)
            whileUp();
        --up_;
        return answer;
    }

private:
    int up_ = 0;
};

}  // namespace

class TestLiveCycle : public QObject {
    Q_OBJECT
private slots:
    void init() { resetState(); }

    void eraseButtonClearsTracesWithoutTheAnalyser()
    {
        SimBench bench;
        Mdi window;
        loadMain(window);
        // Only the one-second tick runs after the load, and the plot starts erased.
        const auto active = [&](const char *timer) { return window.findChild<QTimer *>(QLatin1String(timer))->isActive(); };
        QCOMPARE(std::tuple(active("Timer1"), active("Timer2"), active("Timer3"), st.grafikmin), std::tuple(true, false, false, int16_t(1000)));
        std::tie(st.sampledata[10], st.maxholddata[2001], st.grafikmin, st.grafikmax, st.filemode) = std::tuple(-100, -90, -250, -50, 1);
        window.toolPanel()->findChild<QPushButton *>(QStringLiteral("Command4"))->click();
        QCOMPARE(std::tuple(st.sampledata[10], st.maxholddata[2001], st.grafikmin, st.grafikmax, st.filemode, st.portopen, bench.log()),
                 std::tuple(int16_t(0), int16_t(0), int16_t(1000), int16_t(-1000), uint8_t(0), int16_t(0), QStringList()));
    }

    // "Auto" is refused while trigger mode runs, and a serial fault stops it.
    void autoRunsUntilASerialFault()
    {
        SimBench bench;
        Mdi window;
        loadMain(window);
        QCheckBox *box = window.toolPanel()->ckauto();
        st.triggerrun = 1;
        box->click();
        QVERIFY(!box->isChecked() && st.liveread == 0);
        st.triggerrun = 0;
        box->click();
        QCOMPARE(std::tuple(box->isChecked(), st.portopen, st.liveread), std::tuple(true, int16_t(1), uint8_t(1)));
        bench.sim().withModel([](kt::Analyser &a) { a.options().faults.silentAfter = 0; });
        timer1Tick();
        QVERIFY(bench.boxes().count(QStringLiteral("Serial - Error")) >= 1 && st.liveread == 0 && !box->isChecked());
        bench.clearLog();
        timer1Tick();  // the next tick reads nothing
        QVERIFY(bench.log().isEmpty());
    }

    // A tick that finds no analyser is told once and the box stays unticked: the failed
    // connection has the last word, not the click.
    void autoWithoutAnAnalyserFallsBack()
    {
        SimBench bench({.faults = {.unknownModel = true}});
        Mdi window;
        loadMain(window);
        QCheckBox *box = window.toolPanel()->ckauto();
        box->click();
        QVERIFY(bench.shown().count(QStringLiteral("Serial - Error|Unit not found")) == 1 && !box->isChecked() && st.ckauto == 0 && st.liveread == 0);
    }

    // Behind a box Timer1 reads nothing: a click of Read that meets a vanished analyser while
    // Auto runs is told without a second box on top of it. Timer2 keeps its step for after the box.
    void aBoxHoldsTheTimers()
    {
        SimBench bench;
        ModalDialogs boxes;
        setDialogs(&boxes);
        Mdi window;
        loadMain(window);
        window.findChild<QTimer *>(QStringLiteral("Timer1"))->setInterval(20);
        window.toolPanel()->ckauto()->click();
        QCOMPARE(st.liveread, uint8_t(1));
        int steps = 0, stepsBehindABox = 0;
        liveHooks().emcStage = [&steps] { ++steps; };
        boxes.whileUp = [&] {
            liveHooks().timer2Enabled(true);
            const int before = steps;
            QTest::qWait(300);
            stepsBehindABox += steps - before;
        };
        bench.sim().stop();
        st.serialtimeout = 0;  // a read behind the box would fail at once
        window.toolPanel()->findChild<QPushButton *>(QStringLiteral("Command2"))->click();
        QVERIFY(boxes.count(QStringLiteral("Serial - Error")) >= 1);
        QCOMPARE(std::tuple(boxes.mostUpAtOnce, stepsBehindABox, st.liveread), std::tuple(1, 0, uint8_t(0)));
        QTRY_COMPARE(steps, 1);
        liveHooks().emcStage = nullptr;
        setDialogs(nullptr);
    }

    void readShowsTheSpectrumAsTheGreenSampleTrace()
    {
        SimBench bench;
        Mdi window;
        loadMain(window);
        window.menuEntry(QStringLiteral("mnusmeasurement"))->setEnabled(false);  // as after loading a file
        window.toolPanel()->findChild<QPushButton *>(QStringLiteral("Command2"))->click();
        const QStringList log = bench.log();
        QVERIFY(log.contains(QStringLiteral("#KT")) && log.contains(QStringLiteral("#bm1")));
        QVERIFY(log.indexOf(QStringLiteral("#rl")) < log.indexOf(QStringLiteral("#bm1")));
        QVERIFY(window.menuEntry(QStringLiteral("mnusmeasurement"))->isEnabled() && bench.boxes().count(QStringLiteral("Serial - Error")) == 0);
        // The spectrum is on the plot as the green Sample trace.
        auto *form = qobject_cast<Grafik *>(window.child(QStringLiteral("grafik")));
        QVERIFY(form && st.grafikmin < st.grafikmax);
        const QImage image = static_cast<ImageSurface &>(form->picture1()).image();
        int green = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                green += image.pixelColor(x, y) == paletteColour(2) ? 1 : 0;
        QVERIFY2(green > image.width() / 2, qPrintable(QString::number(green)));
        QVERIFY(form->windowTitle().contains(QStringLiteral("Sam:")));
    }

    void timerServesTheRedrawRequest()
    {
        RecordingPlot plot;
        st.redrawflag = 1;
        timer1Tick();
        QCOMPARE(std::tuple(plot.p1.clears, st.redrawflag), std::tuple(1, uint8_t(0)));
        timer1Tick();
        QCOMPARE(plot.p1.clears, 1);  // nothing asked, nothing drawn
    }

    void autostoreOnlyInTheLiveCycle()
    {
        ScriptedDialogs boxes;  // the reads of the ticks find no analyser
        setDialogs(&boxes);
        int stores = 0;
        liveHooks().autostore = [&stores] { ++stores; };
        st.autostoreon = 1;
        st.autostorenext = 0;
        timer1Tick();
        QCOMPARE(stores, 0);
        st.liveread = 1;
        timer1Tick();
        QVERIFY(stores == 1 && st.autostorenext > 0);
        liveHooks().autostore = nullptr;
        setDialogs(nullptr);
    }
};

QTEST_MAIN(TestLiveCycle)
#include "tst_livecycle.moc"
