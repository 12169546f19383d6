#include "sim/signal.h"

#include <algorithm>
#include <cmath>

namespace kt {

namespace {

double dbToMw(double dbm) { return std::pow(10.0, dbm / 10.0); }

// The envelope power of noise is exponentially distributed about its mean; the video filter
// smooths it to a mean of several.
double noiseDraw(std::mt19937 &rng, bool videofilter)
{
    std::exponential_distribution<double> e(1.0);
    if (!videofilter)
        return e(rng);
    double sum = 0;
    for (int k = 0; k < 8; ++k)
        sum += e(rng);
    return sum / 8.0;
}

// Power at the input for a point at f whose bin reaches halfbin either side, at time t, dwelling
// dwell seconds. Carriers inside the bin are seen at full level (the analyser peaks each bin).
double carriersMw(const SimScene &scene, double f, double halfbin, int rbw, double t, double dwell)
{
    const auto &list = benchEmissions();
    const double reach = halfbin + 6.0 * rbw / 1000.0;
    auto it = std::lower_bound(list.begin(), list.end(), f - reach,
                               [](const Emission &e, double v) { return e.freq < v; });
    double mw = 0;
    for (; it != list.end() && it->freq <= f + reach; ++it) {
        const bool ambient = it->kind == EmissionKind::Ambient;
        if (ambient ? !scene.ambientOn : !scene.dutOn)
            continue;
        const double emitted = fieldAt(*it, t, dwell);
        if (emitted <= Emission::kOff)
            continue;
        const double df = std::max(0.0, std::abs(it->freq - f) - halfbin);
        const double field = emitted + (ambient ? 0.0 : polarisationDb(it->freq, scene));
        mw += dbToMw(fieldToInputDbm(field, it->freq, scene) + rbwResponseDb(df, rbw));
    }
    if (burstOn(scene, t)) {
        const double df = std::max(0.0, std::abs(kBurstFreq - f) - halfbin);
        mw += dbToMw(fieldToInputDbm(kBurstField, kBurstFreq, scene) + rbwResponseDb(df, rbw));
    }
    return mw;
}

}  // namespace

double pointFreq(const SimSettings &s, int i)
{
    return s.centerfreq - s.span / 2.0 + double(s.span) / kPoints * i;
}

double noiseFloorDbm(const SimSettings &s)
{
    // kTB in the resolution bandwidth, a 12 dB noise figure, and the attenuator in front of it all.
    return -174.0 + 10.0 * std::log10(std::max(s.bandwith, 1) * 1000.0) + 12.0 + s.attenuator;
}

uint8_t levelToByte(double dbm, const SimSettings &s)
{
    const double top = s.reflevel + s.attenuator;
    const double perDb = 25.0 / (s.dbperdiv > 0 ? s.dbperdiv : 10);
    const double b = std::round(227.0 + (dbm - top) * perDb);
    return uint8_t(std::clamp(b, 0.0, 255.0));
}

Levels measure(const SimSettings &s, const SimScene &scene, double t, std::mt19937 &rng)
{
    Levels out(kPoints);
    const double noise = dbToMw(noiseFloorDbm(s));
    const bool zero = s.span <= 0;
    const double halfbin = zero ? 0.0 : double(s.span) / kPoints / 2.0;
    const double dwell = zero ? 0.0 : kSweepSeconds / kPoints;
    for (int i = 1; i <= kPoints; ++i) {
        const double f = zero ? s.centerfreq : pointFreq(s, i);
        const double ti = zero ? t + (i - 1) * kZeroSpanStep : t + (i - 1) * dwell;
        const double hump = scene.dutOn ? broadbandMw(f, s.bandwith, scene) : 0.0;
        const double preamp = scene.preamp ? preampNoiseMw(f, s.bandwith) : 0.0;
        // The tracking generator's output, looped to the input, stands as a flat line at its level.
        const double generator = s.tgon ? dbToMw(s.tglevel) : 0.0;
        const double mw = carriersMw(scene, f, halfbin, s.bandwith, ti, dwell) + generator +
                          (noise + preamp + hump) * noiseDraw(rng, s.videofilter != 0);
        out[i - 1] = 10.0 * std::log10(std::max(mw, 1e-30));
    }
    return out;
}

SimSignal::SimSignal(uint32_t seed) : rng_(seed), memoryb_(kPoints, -200.0) {}

void SimSignal::restartCalc(double t)
{
    restarted_ = true;
    sweeps_ = 0;
    nextSweep_ = t;
}

void SimSignal::saveMemoryB(const SimSettings &s, double t) { memoryb_ = sampleAt(s, t); }

bool SimSignal::triggered(const SimSettings &s, double t)
{
    Levels sweep = sampleAt(s, t);
    // The level is compared as the screen shows it before the attenuator is added back.
    const double highest = *std::max_element(sweep.begin(), sweep.end()) - s.attenuator;
    if (highest <= s.triggerlevel)
        return false;
    memoryb_ = std::move(sweep);
    return true;
}

void SimSignal::followAxis(const SimSettings &s, double t)
{
    if (s.centerfreq != axisCentre_ || s.span != axisSpan_ || s.bandwith != axisBandwith_) {
        axisCentre_ = s.centerfreq;
        axisSpan_ = s.span;
        axisBandwith_ = s.bandwith;
        restartCalc(t);
    }
}

void SimSignal::accumulate(const SimSettings &s, double t)
{
    followAxis(s, t);
    if (!s.calc)
        return;
    // The sweeps that ran since the last look; a long wait is summed up by its last hundred.
    const double elapsed = t >= nextSweep_ ? std::floor((t - nextSweep_) / kSweepRepeat) + 1.0 : 0.0;
    int due = int(std::min(elapsed, 100.0));
    double ts = elapsed > 100.0 ? nextSweep_ + (elapsed - 100.0) * kSweepRepeat : nextSweep_;
    if (sweeps_ == 0 && due == 0) {
        due = 1;
        ts = t;
    }
    for (int k = 0; k < due; ++k, ts += kSweepRepeat) {
        const Levels sweep = sampleAt(s, ts);
        if (restarted_) {
            average_ = sweep;
            maxhold_ = sweep;
            restarted_ = false;
        } else {
            // Video averaging of the logarithmic trace, settling over sixteen sweeps.
            const double w = 1.0 / std::min(sweeps_ + 1, 16);
            for (int i = 0; i < kPoints; ++i) {
                average_[i] += (sweep[i] - average_[i]) * w;
                maxhold_[i] = std::max(maxhold_[i], sweep[i]);
            }
        }
        ++sweeps_;
    }
    if (due > 0)
        nextSweep_ = ts;
}

QByteArray SimSignal::traceBytes(const SimSettings &s, double t)
{
    accumulate(s, t);
    Levels levels;
    QByteArray out(kPoints, '\0');
    switch (s.shown) {
    case 1:
        levels = memoryb_;
        break;
    case 2: {
        // A-B: the difference stands against the reference line, which is 0 dB.
        const Levels a = sampleAt(s, t);
        const double top = s.reflevel + s.attenuator;
        levels.resize(kPoints);
        for (int i = 0; i < kPoints; ++i)
            levels[i] = top + a[i] - memoryb_[i];
        break;
    }
    case 3:
        levels = sweeps_ > 0 ? average_ : sampleAt(s, t);
        break;
    case 4:
        levels = sweeps_ > 0 ? maxhold_ : sampleAt(s, t);
        break;
    default:
        levels = sampleAt(s, t);
        break;
    }
    for (int i = 0; i < kPoints; ++i)
        out[i] = char(levelToByte(levels[i], s));
    return out;
}

}  // namespace kt
