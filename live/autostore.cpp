#include "live/autostore.h"

#include "link/commands.h"
#include "link/connection.h"
#include "live/cycle.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "platform/screen.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "shell/uihooks.h"
#include "store/measurementfile.h"

#include <QFile>

#include <algorithm>

namespace kw {

namespace {

constexpr double kSecondsPerDay = 86400.0;

bool pointerBusy() { return screenPointer() == kPointerHourglass; }

void untickAuto() { autoClicked(false); }

}  // namespace

bool autostoreChooseFile()
{
    if (pointerBusy())
        return false;
    FileRequest request;
    request.save = true;
    request.title = QStringLiteral("Save Data");
    request.filter = QStringLiteral("Measurement (*.mes) |*.mes");
    request.defaultExt = QStringLiteral("MES");
    request.filterIndex = 1;
    request.flags = FileRequest::CreatePrompt | FileRequest::HideReadOnly | FileRequest::OverwritePrompt;
    request.dir = st.automessfile;
    const std::optional<QString> chosen = dialogs().chooseFile(request);
    if (!chosen)
        return false;
    // Everything from the first ".MES" on is dropped, in whatever case it was typed. A name with
    // another extension has none to cut at: the base stays as it was.
    const int ext = chosen->toUpper().indexOf(QLatin1String(".MES"));
    if (ext >= 0)
        st.automessfile = chosen->left(ext);
    return true;
}

void autostoreStartPause()
{
    if (pointerBusy())
        return;
    if (st.autostoreon != 0) {
        st.autostoreon = 0;
        untickAuto();
    } else {
        st.autostoreon = 1;
    }
    if (st.portopen == 0)
        connectunit();
    if (st.autostoreon == 1 && st.portopen == 1) {
        readallsettings();
        autoClicked(true);
        st.autostorenext = nowDate() + st.autostoreinterval / kSecondsPerDay;
        if (liveHooks().autostoreNextShown)
            liveHooks().autostoreNextShown();
    }
}

void autostoreStop()
{
    if (pointerBusy())
        return;
    st.autostoreon = 0;
    st.autostorecount = 0;
    untickAuto();
}

bool autostoreExit()
{
    if (pointerBusy())
        return false;
    st.autostorecount = 0;
    untickAuto();
    return true;
}

QString autostoreTakeInterval(const QString &text)
{
    // The whole-number part of what was typed; nothing readable counts as 0 and becomes the least.
    double typed = 0;
    try {
        typed = vbCDbl(text);
    } catch (const VbError &) {
        typed = vbVal(text);
    }
    const double clamped = std::clamp(typed, double(kAutostoreMinInterval), double(kAutostoreMaxInterval));
    st.autostoreinterval = vbCLng(clamped);
    return vbCStr(int(st.autostoreinterval));
}

QString autostoreFileName()
{
    return vbTrim(st.automessfile) + vbTrim(vbFormat(int(st.autostorecount), QStringLiteral("##########"))) +
           QStringLiteral(".mes");
}

QString autostoreOnce()
{
    ResumeNext onError;
    setScreenPointer(kPointerHourglass);
    const QString name = autostoreFileName();
    QFile::remove(name);
    onError.clear();
    st.measurefile = name;
    uint8_t failed = 0;
    onError([&] {
        failed = CreateMeasurementFile();
        WriteMeasurementFile();
    });
    // The writers pass their own errors over; a file that could not be made is the failure.
    if (onError.number == 0 && (failed != 0 || !QFile::exists(name)))
        onError.number = 75;
    setScreenPointer(kPointerNormal);
    if (onError.number != 0)
        dialogs().message(QStringLiteral("Auto Save"), QStringLiteral("Bad Filename"), Buttons::Ok);
    if (st.autostoreprint == 1 && uiHooks().printReport)
        uiHooks().printReport();
    if (st.autostorecount < kAutostoreCountLimit)
        ++st.autostorecount;
    return vbTrim(name);
}

}  // namespace kw
