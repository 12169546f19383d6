#pragma once
// The KT3400 as the program meets it on the wire. One object holds the analyser's whole state;
// the pty server feeds it the bytes that arrive at its line speed and sends what it answers.
// Nothing here does input or output, so the model can be driven directly as well.

#include "sim/sampleblock.h"
#include "sim/settings.h"
#include "sim/signal.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>

namespace kt {

struct Faults {
    bool noEcho = false;         // the analyser echoes nothing
    bool wrongEcho = false;      // every echo comes back one code off
    int wrongEchoes = 0;         // only the next so many echoes come back one code off
    QByteArray noise;            // stray bytes the analyser sends after every answer
    bool noReply = false;        // echoes, but never answers a complete command
    int silentAfter = -1;        // answers only so many more commands, then falls silent
    bool unknownModel = false;   // "#KT" answers a model nobody knows
    bool vnZero = false;         // "#VN" answers 0
    bool wrongChecksum = false;  // sample blocks carry a checksum one off
    int blockCutAt = -1;         // sample blocks stop after so many bytes
};

struct Options {
    QString model = QStringLiteral("3420");
    QString firmware = QStringLiteral("1.70");
    int baud = 19200;             // the speed the analyser starts at
    int warmup = 0;               // what "#cr" reports: 0 means warmed up
    bool pacing = false;          // bytes take their line time (10 bits each)
    bool dutOn = true;            // the device under test radiates; the room's FM is there either way
    bool preamp = true;           // the chain holds the delivered preamplifier
    Faults faults;
};

class Analyser {
public:
    explicit Analyser(const Options &options = {});

    // One byte arrived at the analyser; returns what it sends back (echo, then any answer).
    QByteArray receive(char byte);

    int baud() const { return baud_; }
    const Options &options() const { return options_; }
    Options &options() { return options_; }
    // While the trigger is armed ("#tr" with a level) the analyser sweeps on its own; the server
    // calls this once a sweep. When the signal crosses the level it keeps that sweep as Memory B,
    // disarms, and reports "RD" unasked, which is returned here to be sent.
    QByteArray watch();
    // The bench's burst, starting now and lasting so many seconds.
    void burst(double seconds);
    bool armed() const { return settings_.settings().triggeron != 0; }

    // Every complete command received, in order, without its carriage return.
    const QStringList &commandLog() const { return log_; }
    void clearLog() { log_.clear(); }
    bool remote() const { return remote_; }
    Settings &settings() { return settings_.settings(); }
    // The bench the analyser looks at; tests switch the device off through signal().scene().
    SimSignal &signal() { return signal_; }

private:
    QByteArray answer(const QString &command);
    QByteArray sampleBlock();
    QByteArray step(const QString &command);
    double now() const;

    Options options_;
    int baud_;
    bool remote_ = false;
    SettingsModel settings_;
    QByteArray line_;
    QStringList log_;
    SimSignal signal_;
    int calcStartsSeen_ = 0;
    int savedToBSeen_ = 0;
};

}  // namespace kt
