#include "sim/emissions.h"

#include "sim/signal.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace kt {

namespace {

using Table = std::vector<std::pair<double, double>>;

double interpolate(const Table &t, double x)
{
    if (x <= t.front().first)
        return t.front().second;
    if (x >= t.back().first)
        return t.back().second;
    auto hi = std::upper_bound(t.begin(), t.end(), x, [](double v, const auto &row) { return v < row.first; });
    auto lo = hi - 1;
    return lo->second + (hi->second - lo->second) * (x - lo->first) / (hi->first - lo->first);
}

// A combined biconical/log-periodic antenna, typical factors 30-1000 MHz.
const Table kBilog = {{30, 18.0},  {40, 13.0},  {50, 10.0},  {60, 8.0},   {80, 7.0},   {100, 9.5},
                      {150, 8.5},  {200, 10.5}, {300, 13.5}, {400, 15.5}, {500, 17.5}, {600, 19.0},
                      {700, 20.0}, {800, 21.0}, {900, 22.5}, {1000, 24.0}};
// 10 m of RG-58.
const Table kCable = {{10, 0.46}, {30, 0.81}, {100, 1.61}, {300, 3.09}, {1000, 7.05}};
// A 25 dB class EMC preamplifier.
const Table kPreamp = {{0.009, 20.0}, {0.05, 24.0}, {0.1, 25.5}, {1, 26.0},  {10, 26.0},  {30, 26.0},
                       {100, 25.9},   {300, 25.6},  {500, 25.3}, {700, 25.0}, {1000, 24.5}};
constexpr double kPreampNoiseFigure = 7.0;

std::vector<Emission> makeBench()
{
    std::vector<Emission> list;
    // A 33.33 MHz clock with its harmonics; odd ones stronger, as from a square wave. Three sit
    // above the radiated class B line at 3 m (40 dBuV/m to 230 MHz, 47 above).
    const double clock = 100.0 / 3.0;
    for (int n = 1; n * clock < 1000.0; ++n) {
        double field = (n % 2 ? 34.0 : 30.0) - 4.0 * std::log10(double(n));
        if (n == 4)
            field = 44.0;  // 133.3 MHz, 4 dB over
        if (n == 8)
            field = 51.0;  // 266.7 MHz, 4 dB over
        if (n == 12)
            field = 49.5;  // 400.0 MHz, 2.5 dB over
        list.push_back({n * clock, field, EmissionKind::Clock});
    }
    // Pulsed carriers: peak, quasi-peak and average tell them apart.
    list.push_back({148.5, 45.0, EmissionKind::Pulsed, 0.010, 0.002, 0.0013});
    list.push_back({520.0, 52.0, EmissionKind::Pulsed, 0.100, 0.005, 0.0371});
    list.push_back({815.2, 48.0, EmissionKind::Pulsed, 0.001, 0.0002, 0.0});
    // A data link's carrier, 3 dB under the line, with a short burst 12 dB over it four times a
    // second. A burst is one zero-span sample long, so each lands in exactly one sample: the
    // peak is the burst's, the quasi-peak settles 2-4.5 dB under it, the average near the carrier.
    Emission link{41.0, 49.0, EmissionKind::Pulsed, 0.25, kZeroSpanStep, 0.0917};
    link.restField = 37.0;
    list.push_back(link);
    // Broadcast FM in the room.
    const std::array<std::pair<double, double>, 6> fm = {
        {{88.9, 58.0}, {93.6, 66.0}, {97.4, 61.0}, {101.1, 70.0}, {104.5, 55.0}, {107.7, 63.0}}};
    for (auto [f, field] : fm)
        list.push_back({f, field, EmissionKind::Ambient});
    std::sort(list.begin(), list.end(), [](const Emission &a, const Emission &b) { return a.freq < b.freq; });
    return list;
}

}  // namespace

const std::vector<Emission> &benchEmissions()
{
    static const std::vector<Emission> list = makeBench();
    return list;
}

double antennaFactor(double mhz) { return interpolate(kBilog, mhz); }
double cableLoss(double mhz) { return interpolate(kCable, mhz); }
double preampGain(double mhz) { return interpolate(kPreamp, mhz); }

double polarisationDb(double mhz, const SimScene &scene)
{
    if (!scene.vertical)
        return 0.0;
    return mhz < 200.0 ? 3.0 : -5.0;
}

double fieldToInputDbm(double fieldDbuvm, double mhz, const SimScene &scene)
{
    // dBuV/m - AF = dBuV at the antenna port; the cable takes its share; 107 dB from dBuV to dBm.
    return fieldDbuvm - antennaFactor(mhz) - cableLoss(mhz) - 107.0 + (scene.preamp ? preampGain(mhz) : 0.0);
}

double preampNoiseMw(double mhz, int rbwKHz)
{
    const double dbm = -174.0 + 10.0 * std::log10(std::max(rbwKHz, 1) * 1000.0) + kPreampNoiseFigure + preampGain(mhz);
    return std::pow(10.0, dbm / 10.0);
}

bool pulseOn(const Emission &e, double t, double dwell)
{
    if (e.kind != EmissionKind::Pulsed)
        return true;
    double into = std::fmod(t + e.phase, e.period);
    if (into < 0)
        into += e.period;
    return into < e.width || into + dwell >= e.period;
}

double fieldAt(const Emission &e, double t, double dwell)
{
    return pulseOn(e, t, dwell) ? e.field : e.restField;
}

double broadbandMw(double mhz, int rbwKHz, const SimScene &scene)
{
    // A switching regulator's hump around 60 MHz, 32 dBuV/m at its top in 120 kHz, noise-like.
    const double x = (mhz - 60.0) / 15.0;
    const double field = 32.0 - 4.34 * x * x + 10.0 * std::log10(std::max(rbwKHz, 1) / 120.0) + polarisationDb(mhz, scene);
    if (field < -40.0)
        return 0.0;
    return std::pow(10.0, fieldToInputDbm(field, mhz, scene) / 10.0);
}

double rbwResponseDb(double dfMHz, int rbwKHz)
{
    const double half = std::max(rbwKHz, 1) / 2000.0;  // MHz
    const double a = 3.0103 * (dfMHz / half) * (dfMHz / half);
    return -std::min(a, 120.0);
}

bool burstOn(const SimScene &scene, double t)
{
    if (t >= scene.burstFrom && t < scene.burstUntil)
        return true;
    return scene.burstPeriod > 0 && std::fmod(t, scene.burstPeriod) < scene.burstLength;
}

}  // namespace kt
