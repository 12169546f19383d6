#pragma once
// What the analyser is set to, and how it takes the setting commands and answers the queries.
// Values it cannot hold are clamped or moved to the nearest one it has, as the instrument does.

#include <QByteArray>
#include <QString>
#include <array>
#include <optional>

namespace kt {

struct Settings {
    double centerfreq = 500.0;   // MHz, 0..1050
    int span = 1000;             // MHz, 0 = zero span
    double reflevel = -30.0;     // dBm
    int attenuator = 10;         // dB
    int bandwith = 400;          // kHz
    int videofilter = 0;
    int dbperdiv = 10;
    int shown = 0;               // "#vm": 0 Sample, 1 Memory B, 2 A-B, 3 Average, 4 Max hold
    int calc = 0;                // average and max hold running
    int tgon = 0;
    double tglevel = -50.0;
    int es = 0;                  // "#es": 1 after a zero span set-up or a stepped run
    double triggerlevel = -30.0;
    int triggeron = 0;
    int calcStarts = 0;          // counts "#dm1": each restarts average and max hold
    int savedToB = 0;            // counts "#sa": each copies trace A into memory B

    // The analyser cannot resolve the span with too narrow a bandwidth in its fixed sweep time:
    // it reports itself uncalibrated when the span holds more than 4000 bandwidths.
    bool uncalibrated() const { return span > 0 && span * 1000.0 / bandwith > 4000.0; }
};

// The spans, bandwidths and attenuations the analyser has.
int nearestSpan(double span);
int nearestBandwidth(double bandwidth);
int nearestAttenuator(double attenuator);

class SettingsModel {
public:
    explicit SettingsModel(bool trackingGenerator) : trackingGenerator_(trackingGenerator) {}

    Settings &settings() { return settings_; }
    const Settings &settings() const { return settings_; }

    // The answer to a setting or query command, with its carriage return; nothing when the
    // analyser does not know the command.
    std::optional<QByteArray> handle(const QString &command);

private:
    std::optional<QByteArray> query(const QString &tag);
    std::optional<QByteArray> set(const QString &tag, const QString &value);

    bool trackingGenerator_;
    Settings settings_;
    std::array<Settings, 10> memories_{};  // "#sv"/"#rc" 0..9
};

}  // namespace kt
