#include "link/connection.h"

#include "link/transport.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/screen.h"
#include "platform/serialcontrol.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <QThread>

namespace kw {

namespace {

const QString kCaptionPrefix = QStringLiteral("KW3400R - V1.53       ");
const QChar kCr(13);

// The speeds the analyser may have been left at, tried in rising order.
const char *const kSearchSettings[] = {"4800,N,8,1", "9600,N,8,1", "19200,N,8,1", "38400,N,8,1", "115200,N,8,1"};

QString lineSettings() { return vbTrim(QString::number(st.baudrate)) + QStringLiteral(",N,8,1"); }

// Runs one statement of a routine whose run-time errors are passed over; tells whether it raised.
template <typename F>
bool raised(F &&statement)
{
    try {
        statement();
        return false;
    } catch (const VbError &) {
        return true;
    }
}

// Sends one character of the probe and waits for its echo; two tries, each emptying the
// receive buffer first.
bool probeCharacter(QChar c)
{
    SerialControl &comm = comm1();
    for (int attempt = 0; attempt < 2; ++attempt) {
        comm.clearInput();
        comm.output(QByteArray(1, static_cast<char>(c.unicode() & 0xFF)));
        if (waitforbyte() && readchar() == QString(c))
            return true;
    }
    return false;
}

// The whole reply to the probe must come within one time-out, not one per character.
bool readProbeReply()
{
    SerialControl &comm = comm1();
    st.waitstart = timerSeconds();
    for (;;) {
        if (comm.inBufferCount() > 0) {
            const QString c = readchar();
            if (c == kCr)
                return true;
            st.reply += c;
            continue;
        }
        if (timerSeconds() - st.waitstart > static_cast<float>(st.serialtimeout))
            return false;
        comm.waitForInput(20);
    }
}

// The analyser needs a moment at its new speed before it takes commands. The clock is watched in
// short sleeps, and nothing else runs meanwhile.
void settleOneSecond()
{
    const float start = timerSeconds();
    for (;;) {
        const float elapsed = timerSeconds() - start;
        if (elapsed >= 1.0f || elapsed < 0.0f)
            return;
        QThread::msleep(10);
    }
}

void setCaption(const QString &text)
{
    st.caption = text;
    notifyCaption();
}

}  // namespace

void busypointer()
{
    setScreenPointer(kPointerHourglass);
    st.busycursor = 1;
}

void normalpointer()
{
    setScreenPointer(kPointerNormal);
    st.busycursor = 0;
}

float firmwareNumber()
{
    try {
        return vbCSng(vbCDbl(st.firmware));
    } catch (const VbError &) {
        return 0.0f;
    }
}

void opencomport()
{
    SerialControl &comm = comm1();
    st.serialerror = 0;
    st.serialerrortext = QStringLiteral(" Can not open com. port");
    bool failed = false;
    if (comm.portOpen())
        failed |= raised([&] { comm.setPortOpen(false); });
    failed |= raised([&] { comm.setCommPort(st.comport); });
    failed |= raised([&] { comm.setSettings(lineSettings()); });
    failed |= raised([&] { comm.setPortOpen(true); });
    if (failed)
        serialfault();
}

void findunit()
{
    SerialControl &comm = comm1();
    st.serialerror = 0;
    st.reply.clear();
    st.unitfound = 0;
    if (!comm.portOpen())
        return;
    st.serialerrortext = QStringLiteral(" Unit not found ");
    st.command = QStringLiteral("#KT");
    comm.clearOutput();
    comm.setInputLen(1);
    st.command += kCr;
    for (const QChar c : std::as_const(st.command)) {
        if (!probeCharacter(c)) {
            st.unitfound = 0;
            return;
        }
    }
    if (!readProbeReply()) {
        serialfault();
        return;
    }
    st.unitfound = (st.reply == QLatin1String("3400") || st.reply == QLatin1String("3420")) ? 1 : 0;
}

void connectunit()
{
    SerialControl &comm = comm1();
    st.serialerror = 0;
    busypointer();
    opencomport();
    if (st.serialerror == 1 || !comm.portOpen())
        return;

    findunit();
    if (st.unitfound != 1) {
        for (const char *settings : kSearchSettings) {
            bool failed = false;
            if (comm.portOpen())
                failed |= raised([&] { comm.setPortOpen(false); });
            failed |= raised([&] { comm.setSettings(QString::fromLatin1(settings)); });
            failed |= raised([&] { comm.setPortOpen(true); });
            if (failed) {
                serialfault();
                return;
            }
            findunit();
            if (st.unitfound == 1)
                break;
        }
    }
    if (st.unitfound != 1) {
        st.serialerrortext = QStringLiteral("Unit not found");
        serialfault();
        return;
    }

    // The analyser moves to the wanted speed after echoing, so no "RD" can be awaited; it is told
    // even when it was found at that very speed.
    st.command = QStringLiteral("#br") + vbTrim(QString::number(st.baudrate));
    sendecho();
    if (st.serialerror)
        return;
    opencomport();
    if (st.serialerror)
        return;
    settleOneSecond();

    st.command = QStringLiteral("#kl1");
    sendcommand();
    if (st.serialerror)
        return;
    st.portopen = 1;
    st.ckrm = 1;
    notifyToolbar();

    st.command = QStringLiteral("#KT");
    querycommand();
    if (!st.serialerror)
        st.modelname = st.reply;

    st.command = QStringLiteral("#VN");
    querycommand();
    for (int again = 0; again < 2 && !st.serialerror && vbVal(st.reply) == 0; ++again) {
        st.command = QStringLiteral("#VN");
        querycommand();
    }
    st.firmware = vbFormat(vbVal(st.reply), QStringLiteral("0.00"));
    if (firmwareNumber() > 1.63f && uiHooks().toolboxVisible)
        uiHooks().toolboxVisible(true);

    setCaption(kCaptionPrefix + QStringLiteral("Unit:") + st.modelname + QStringLiteral("       Firmware:") + st.firmware);
    warmupwait();
    normalpointer();
}

void disconnectunit()
{
    if (!comm1().portOpen())
        return;
    busypointer();
    st.serialerror = 0;
    st.command = QStringLiteral("#kl0");
    sendcommand();
    if (!st.serialerror) {
        marklinkdown();
        setCaption(kCaptionPrefix + QStringLiteral("Offline"));
    }
    normalpointer();
}

// Every port in turn, quietly; one box at the end if none answered. comport is the loop
// variable, so a failed search leaves it at 5, and that is what gets saved.
void autosearch()
{
    SerialControl &comm = comm1();
    st.serialquiet = 1;
    busypointer();
    for (st.comport = 1; st.comport <= 4; ++st.comport) {
        bool failed = false;
        if (comm.portOpen())
            failed |= raised([&] { comm.setPortOpen(false); });
        failed |= raised([&] { comm.setCommPort(st.comport); });
        failed |= raised([&] { comm.setSettings(QStringLiteral("4800,N,8,1")); });
        failed |= raised([&] { comm.setPortOpen(true); });
        if (failed)
            continue;
        connectunit();
        if (st.portopen == 1) {
            dialogs().message(QStringLiteral("Autosearch"),
                              QStringLiteral("Unit found at port: ") + vbStr(double(st.comport)) + QStringLiteral("   Baud: ") +
                                  vbStr(double(st.baudrate)));
            if (uiHooks().closeBoxcom)
                uiHooks().closeBoxcom();
            break;
        }
    }
    st.serialquiet = 0;
    if (st.portopen == 0) {
        st.serialerrortext = QStringLiteral("Unit not found");
        serialfault();
    }
}

// The warm-up display was never wired to a form: its gauge is reached through a reference that
// nothing sets. So the first answer decides: 0 ends the wait normally, anything else ends it at
// once through the error path. Either way the connection does not wait for the analyser.
void warmupwait()
{
    if (firmwareNumber() < 1.34f || st.portopen == 0)
        return;
    busypointer();
    st.warmupon = 1;
    readwarmup();
    normalpointer();
}

void readwarmup()
{
    for (int attempt = 0; attempt < 4; ++attempt) {
        st.command = QStringLiteral("#cr");
        querycommand();
        if (st.serialerror == 1 || st.portopen == 0)
            return;
        if (st.reply.size() >= 3) {
            st.warmupvalue = static_cast<uint8_t>(st.reply.at(2).unicode() & 0xFF);
            return;
        }
    }
    serialfault();
}

}  // namespace kw
