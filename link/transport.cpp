#include "link/transport.h"

#include "link/debugview.h"
#include "link/connection.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/serialcontrol.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "shell/uihooks.h"

namespace kw {

namespace {

// How long one look at the line may block before the clock is read again. Short enough that the
// strict time-out is kept to a few milliseconds, long enough that a silent line costs no CPU.
constexpr int kWaitSliceMs = 20;

const QChar kCr(13);

}  // namespace

SerialControl &comm1()
{
    static SerialControl control;
    return control;
}

// The analyser answers within the time-out or not at all, so a wait is a look at the receive
// buffer against the clock. The elapsed time is taken as the 32-bit float of seconds since
// midnight minus waitstart, so a wait across midnight sees a negative time and runs on.
bool waitforbyte() { return waitforbytes(1); }

bool waitforbytes(int count)
{
    SerialControl &comm = comm1();
    st.waitstart = timerSeconds();
    for (;;) {
        if (comm.inBufferCount() >= count)
            return true;
        const float elapsed = timerSeconds() - st.waitstart;
        if (elapsed > static_cast<float>(st.serialtimeout))
            return false;
        comm.waitForInput(kWaitSliceMs);
    }
}

QString readchar()
{
    const QByteArray bytes = comm1().input();
    if (bytes.isEmpty())
        return {};
    return QString(QChar(static_cast<uchar>(bytes.at(0))));
}

uint8_t readbyte()
{
    const QByteArray bytes = comm1().input();
    if (bytes.isEmpty())
        return 0;
    return static_cast<uint8_t>(bytes.at(0));
}

namespace {

// Numbers are formatted in the system's locale, but only a point may go on the wire.
void pointForFirstComma()
{
    const int comma = st.command.indexOf(QLatin1Char(','));
    if (comma >= 0)
        st.command[comma] = QLatin1Char('.');
}

// One character at a time, each waiting for its echo: the analyser echoes every character it
// takes, so it can never be overrun. Anything that arrived before a character is thrown away.
// Two attempts from the first character; the attempt count is tested at the head of the loop.
// False when both attempts failed (and the fault was reported).
bool sendWithEcho()
{
    SerialControl &comm = comm1();
    st.sendretry = 0;
    for (;;) {
        ++st.sendretry;
        if (st.transmissiondebug)
            debugView().clearAll();
        bool restart = false;
        for (const QChar c : std::as_const(st.command)) {
            if (st.sendretry > 2) {
                serialfault();
                return false;
            }
            comm.clearInput();
            comm.output(QByteArray(1, static_cast<char>(c.unicode() & 0xFF)));
            if (st.transmissiondebug)
                debugView().sent(c);
            if (!waitforbyte()) {
                restart = true;
                break;
            }
            const QString echo = readchar();
            if (st.transmissiondebug)
                debugView().received(echo);
            if (echo != QString(c)) {
                restart = true;
                break;
            }
        }
        if (!restart)
            return true;
    }
}

void prepareSend()
{
    pointForFirstComma();
    st.serialerrortext = QStringLiteral(" Data send error ( ") + st.command + QStringLiteral(" )");
    comm1().clearOutput();
    comm1().setInputLen(1);
}

// Reads up to a carriage return into reply. A failed wait is told when told is true.
void readLine(bool tellTimeout)
{
    st.reply.clear();
    if (st.transmissiondebug)
        debugView().clearReceived();
    for (;;) {
        if (!waitforbyte()) {
            if (tellTimeout)
                serialfault();
            return;
        }
        comm1().setInputLen(1);
        const QString c = readchar();
        if (st.transmissiondebug)
            debugView().received(c);
        if (c == kCr)
            return;
        st.reply += c;
    }
}

}  // namespace

void sendecho()
{
    st.serialerror = 0;
    if (!comm1().portOpen())
        return;
    prepareSend();
    if (!st.command.contains(kCr))
        st.command += kCr;
    sendWithEcho();
}

// A setting is confirmed by "RD". The command goes out at most three times, and each time one
// more carriage return is added to it, which the echo check then covers too: the analyser has
// always been driven that way.
void sendcommand()
{
    st.rdretry = 1;
    for (;;) {
        st.serialerror = 0;
        if (!comm1().portOpen())
            return;
        prepareSend();
        st.command += kCr;
        // An echo failure ends the command even where the fault is not shown (a quiet search).
        if (!sendWithEcho())
            return;
        readreply();
        if (st.reply == QLatin1String("RD")) {
            st.rdretry = 0;
            return;
        }
        if (st.rdretry > 2) {
            serialfault();
            st.rdretry = 0;
            return;
        }
        ++st.rdretry;
    }
}

void readreply()
{
    st.serialerrortext = QStringLiteral(" Data read error ( ") + st.command + QStringLiteral(" )");
    st.serialerror = 0;
    if (!comm1().portOpen()) {
        serialfault();
        return;
    }
    readLine(st.rdretry == 0);
}

void querycommand()
{
    if (st.portopen == 0)
        return;
    sendecho();
    if (st.serialerror)
        return;
    st.serialerrortext = QStringLiteral(" Data read error ( ") + st.command + QStringLiteral(" )");
    st.serialerror = 0;
    if (!comm1().portOpen()) {
        serialfault();
        return;
    }
    readLine(true);
}

// Unticking RM and Auto stops live reading too.
void marklinkdown()
{
    st.connectionstate2 = 0;
    st.portopen = 0;
    st.ckrm = 0;
    st.ckauto = 0;
    st.liveread = 0;
    notifyToolbar();
}

// A failure is told once, and not at all during a search. The port stays open; the next
// connection closes and reopens it.
void serialfault()
{
    if (st.serialquiet == 1 || st.serialerror == 1)
        return;
    normalpointer();
    dialogs().message(QStringLiteral("Serial - Error"), st.serialerrortext, Buttons::Ok);
    marklinkdown();
    st.serialerror = 1;
    st.stoprun = 0;
}

}  // namespace kw
