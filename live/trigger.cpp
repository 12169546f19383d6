#include "live/trigger.h"

#include "levels/correction.h"
#include "levels/distance.h"
#include "link/acquisition.h"
#include "link/commands.h"
#include "link/commandtext.h"
#include "link/connection.h"
#include "link/debugview.h"
#include "link/transport.h"
#include "live/cycle.h"
#include "platform/onerror.h"
#include "platform/screen.h"
#include "platform/serialcontrol.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <QThread>

#include <algorithm>

namespace kw {

namespace {

// The analyser's trigger takes levels of its screen range.
constexpr float kTriggerLow = -99.8f;
constexpr float kTriggerHigh = -27.0f;
constexpr float kFreqLow = 0.0f;
constexpr float kFreqHigh = 1050.0f;
// One look at the line blocks this long before clicks get their turn.
constexpr int kWaitSliceMs = 20;

std::function<void(const QString &)> &statusView()
{
    static std::function<void(const QString &)> view;
    return view;
}

QString &status()
{
    static QString text = kTriggerIdle;
    return text;
}

void showStatus(const QString &text)
{
    status() = text;
    if (statusView())
        statusView()(text);
}

float clampTrigger(float value) { return std::clamp(value, kTriggerLow, kTriggerHigh); }

enum class Report { Crossed, Other, Stopped };

// Waits for the analyser's own report: "RD" is the crossing; three characters of anything else
// end the wait as a stop does. Between looks the line blocks briefly, then clicks get in.
Report waitForReport()
{
    SerialControl &comm = comm1();
    for (;;) {
        if (comm.inBufferCount() > 0) {
            comm.setInputLen(1);
            const QString c = readchar();
            st.reply += c;
            if (st.transmissiondebug)
                debugView().received(c);
            if (st.reply == QLatin1String("RD"))
                return Report::Crossed;
            if (st.reply.size() >= 3)
                return Report::Other;
            continue;
        }
        if (comm.portOpen())
            comm.waitForInput(kWaitSliceMs);
        else
            QThread::msleep(kWaitSliceMs);
        doEvents();
        if (st.triggerrun == 0)
            return Report::Stopped;
    }
}

}  // namespace

void setTriggerStatusView(std::function<void(const QString &)> view) { statusView() = std::move(view); }

QString triggerStatus() { return status(); }

void triggerStart()
{
    st.liveread = 0;
    autoClicked(false);
    st.triggerrun = 1;
    triggerLoop();
}

void triggerLoop()
{
    showStatus(kTriggerInit);
    eraseall();
    // The trace read after a trigger is the analyser's Memory B.
    st.viewmaxhold = 0;
    st.viewsample = 0;
    st.viewb = 1;
    st.viewab = 0;
    refreshforms();
    for (;;) {
        if (st.portopen == 0)
            connectunit();
        settrigger();
        // Arming failed: the failure has been told; the status stays and so does triggerrun.
        if (st.portopen == 0 || st.serialerror == 1)
            return;
        st.reply.clear();
        if (st.transmissiondebug)
            debugView().clearReceived();
        busypointer();
        showStatus(kTriggerWaiting);
        if (waitForReport() != Report::Crossed)
            break;
        showStatus(kTriggerReading);
        readallsettings();
        readtraces();
        if (st.triggerprint != 1)
            break;
        if (uiHooks().printReport)
            uiHooks().printReport();
    }
    ResumeNext onError;
    onError([] { settriggeroff(); });
    st.triggerrun = 0;
    normalpointer();
    showStatus(kTriggerIdle);
}

void triggerStop() { st.triggerrun = 0; }

QString triggerText()
{
    return vbFormat(st.triggervalue + st.unitoffset + st.attenuator, QStringLiteral("###0.0"));
}

QString triggerPaintText() { return vbFormat(st.unitoffset + st.triggervalue, QStringLiteral("###0.0")); }

void triggerFromText(const QString &text)
{
    try {
        st.triggervalue = clampTrigger(vbCSng(vbCDbl(text) - st.unitoffset - st.attenuator));
    } catch (const VbError &) {
        return;  // an unreadable level leaves the trigger as it was
    }
}

void triggerFromCursor()
{
    const float d = distancecorrection();
    resetcorrectionsegments();
    float f = st.cursor1freq;
    correctionat(f);
    const float c = st.correction - d;
    st.triggervalue = clampTrigger(st.cursor1level - st.unitoffset - st.attenuator - c);
}

void frequencyStep(int direction, QString &stepText)
{
    double step = 0;
    try {
        step = vbCDbl(stepText);
    } catch (const VbError &) {
        step = 0;  // an unreadable step moves nothing
    }
    stepText = vbCStr(step);
    st.centerfreq = std::clamp(vbCSng(st.centerfreq + direction * step), kFreqLow, kFreqHigh);
    refreshforms();
    if (st.portopen == 0) {
        connectunit();
        setcenterfreq();
        disconnectunit();
    } else {
        setcenterfreq();
    }
    if (st.calc == 1)
        sendSetting(QStringLiteral("#dm1"));
    if (st.portopen == 1) {
        readallsettings();
        readtraces();
    }
}

}  // namespace kw
