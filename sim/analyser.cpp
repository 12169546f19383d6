#include "sim/analyser.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace kt {

namespace {
const char kCr = 13;

QByteArray line(const QString &text) { return text.toLatin1() + kCr; }
}  // namespace

Analyser::Analyser(const Options &options)
    : options_(options), baud_(options.baud), settings_(!options.model.contains(QLatin1String("3400")))
{
    signal_.scene().dutOn = options.dutOn;
    signal_.scene().preamp = options.preamp;
}

// Seconds on the analyser's own clock: pulses and sweeps follow it.
double Analyser::now() const
{
    using namespace std::chrono;
    static const steady_clock::time_point start = steady_clock::now();
    return duration<double>(steady_clock::now() - start).count();
}

QByteArray Analyser::sampleBlock()
{
    BlockFaults faults;
    faults.wrongChecksum = options_.faults.wrongChecksum;
    faults.cutShortAt = options_.faults.blockCutAt;
    return buildSampleBlock(settings(), signal_, now(), faults);
}

// Up to firmware 1.04 a step is confirmed with "RD" and the block is then asked for; later firmware
// sends the block of the step unasked, its trailer naming the frequency, and from 1.10 "#ss2" moves
// on by the step of the bandwidth by itself. After 1.46, or above 19200 baud, "RD" follows the block.
QByteArray Analyser::step(const QString &command)
{
    const double firmware = options_.firmware.toDouble();
    if (firmware <= 1.04)
        return QByteArray("RD\r");
    QByteArray out = sampleBlock();
    Settings &s = settings();
    if (command == QLatin1String("#ss2") && firmware > 1.09)
        s.centerfreq = std::min(1050.0, std::round((s.centerfreq + stepSizeMHz(s.bandwith)) * 1000.0) / 1000.0);
    if (firmware > 1.46 || baud_ > 19200)
        out += "RD\r";
    return out;
}

QByteArray Analyser::receive(char byte)
{
    QByteArray out;
    Faults &faults = options_.faults;
    if (!faults.noEcho) {
        const bool wrong = faults.wrongEcho || faults.wrongEchoes > 0;
        if (faults.wrongEchoes > 0)
            --faults.wrongEchoes;
        out += wrong ? static_cast<char>(byte ^ 1) : byte;
    }
    if (byte != kCr) {
        // Every command starts with "#": one arriving mid-line means the program started over.
        if (byte == '#')
            line_.clear();
        line_ += byte;
        return out;
    }
    const QString command = QString::fromLatin1(line_);
    line_.clear();
    if (command.isEmpty())
        return out;  // a bare carriage return is only echoed
    log_ << command;
    if (faults.silentAfter == 0)
        faults.noReply = true;
    else if (faults.silentAfter > 0)
        --faults.silentAfter;
    if (faults.noReply)
        return out;
    const QByteArray reply = answer(command);
    out += reply;
    if (!reply.isEmpty())
        out += options_.faults.noise;
    return out;
}

// The answer to one complete command. Settings are confirmed with "RD"; queries answer with
// their two-letter tag and the value, except "#KT" and "#VN", which answer the value alone.
QByteArray Analyser::answer(const QString &command)
{
    if (command == QLatin1String("#KT"))
        return line(options_.faults.unknownModel ? QStringLiteral("3300") : options_.model);
    if (command == QLatin1String("#VN"))
        return line(options_.faults.vnZero ? QStringLiteral("0") : options_.firmware);
    if (command.startsWith(QLatin1String("#br"))) {
        // The new speed holds from the next byte on; the echo has gone out at the old one.
        const int speed = command.mid(3).toInt();
        if (speed == 4800 || speed == 9600 || speed == 19200 || speed == 38400 || speed == 115200)
            baud_ = speed;
        return {};
    }
    if (command == QLatin1String("#cr"))
        return QByteArray("cr") + static_cast<char>(options_.warmup) + kCr;
    if (command.startsWith(QLatin1String("#kl"))) {
        remote_ = command.mid(3).toDouble() != 0;
        return line(QStringLiteral("RD"));
    }
    if (command == QLatin1String("#bm1"))
        return sampleBlock();
    if (command == QLatin1String("#ss1") || command == QLatin1String("#ss2"))
        return step(command);
    const QByteArray reply = settings_.handle(command).value_or(QByteArray());
    // "#dm1" starts average and max hold again; "#sa" copies trace A into memory B.
    const Settings &s = settings();
    if (s.calcStarts != calcStartsSeen_) {
        calcStartsSeen_ = s.calcStarts;
        signal_.restartCalc(now());
    }
    if (s.savedToB != savedToBSeen_) {
        savedToBSeen_ = s.savedToB;
        signal_.saveMemoryB(s, now());
    }
    return reply;
}

void Analyser::burst(double seconds)
{
    SimScene &scene = signal_.scene();
    scene.burstFrom = now();
    scene.burstUntil = scene.burstFrom + seconds;
}

QByteArray Analyser::watch()
{
    Settings &s = settings();
    if (!s.triggeron || !signal_.triggered(s, now()))
        return {};
    s.triggeron = 0;
    return line(QStringLiteral("RD"));
}

}  // namespace kt
