#pragma once
// The analyser's traces as the simulator produces them: a fresh sweep of the bench for Sample,
// Average and Max hold accumulating sweep by sweep while calculation runs, Memory B and A-B, and in
// zero span a record of 2001 time samples 0.5 ms apart. Levels leave here as the analyser's bytes:
// 227 at the top of the screen (reference level plus attenuator), 2.5 bytes to the dB at 10 dB per
// division and 5 at 5 dB, clipped to 0..255.

#include "sim/emissions.h"
#include "sim/settings.h"

#include <QByteArray>
#include <array>
#include <cstdint>
#include <random>
#include <vector>

namespace kt {

constexpr int kPoints = 2001;
constexpr double kSweepSeconds = 0.1;     // one sweep of the analyser
constexpr double kZeroSpanStep = 0.0005;  // seconds between time samples in zero span

// The block is built from what the analyser is set to (sim/settings.h); the trace it holds is the
// one "#vm" selected (Settings::shown).
using SimSettings = Settings;

using Levels = std::vector<double>;  // kPoints levels in dBm

// Frequency of point i (1-based) of a sweep: the first lies one step above the start.
double pointFreq(const SimSettings &s, int i);
// The analyser's own average noise level at its input, dBm, for the bandwidth and attenuator; a
// preamplifier in the chain adds its noise ahead of it.
double noiseFloorDbm(const SimSettings &s);
// A level in dBm as the analyser's byte for the present scale.
uint8_t levelToByte(double dbm, const SimSettings &s);

// One sweep (or, in zero span, one time record) starting at time t seconds.
Levels measure(const SimSettings &s, const SimScene &scene, double t, std::mt19937 &rng);

class SimSignal {
public:
    explicit SimSignal(uint32_t seed = 3400);

    SimScene &scene() { return scene_; }

    // "#dm1": average and max hold start again from the next sweep.
    void restartCalc(double t);
    // "#sa": the present Sample trace becomes Memory B.
    void saveMemoryB(const SimSettings &s, double t);
    // One sweep at time t against the armed trigger level: true when a point lies above it, and
    // that sweep is then Memory B.
    bool triggered(const SimSettings &s, double t);

    // The kPoints level bytes of the trace that s.shown selects, as at time t (seconds, rising).
    QByteArray traceBytes(const SimSettings &s, double t);

    int sweepsAccumulated() const { return sweeps_; }

private:
    void accumulate(const SimSettings &s, double t);
    Levels sampleAt(const SimSettings &s, double t) { return measure(s, scene_, t, rng_); }

    SimScene scene_;
    std::mt19937 rng_;
    Levels average_;
    Levels maxhold_;
    Levels memoryb_;
    int sweeps_ = 0;
    double nextSweep_ = 0;
    bool restarted_ = true;
    // The frequency axis the accumulated traces belong to; another axis starts them again.
    double axisCentre_ = -1;
    int axisSpan_ = -1;
    int axisBandwith_ = -1;
};

}  // namespace kt
