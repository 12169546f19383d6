#pragma once
// The bench the simulated analyser looks at: a device under test radiating at 3 m into a bilog
// antenna, 10 m of RG-58 and a 25 dB preamplifier (the delivered 3 m configuration), in a room with
// broadcast FM around it. Levels here are what reaches the
// analyser's input, in dBm; the analyser's own noise and scaling live in signal.h.

#include <random>
#include <vector>

namespace kt {

struct SimScene {
    bool dutOn = true;      // the operator switches the device off for an ambient sweep
    bool ambientOn = true;  // broadcast FM in the room
    bool preamp = true;     // the preamplifier sits in the chain
    bool vertical = false;  // the antenna stands vertical; the device radiates differently then
    // A strong carrier switched on for a moment (a relay, a motor start) between these times in
    // seconds of the analyser's clock; what the trigger of the analyser is there to catch.
    double burstFrom = -1;
    double burstUntil = -1;
    // With a period above 0 the burst comes by itself, for burstLength seconds every period.
    double burstPeriod = 0;
    double burstLength = 0.3;
};

// The burst carrier: frequency in MHz and field at 3 m in dBuV/m.
constexpr double kBurstFreq = 433.92;
constexpr double kBurstField = 90.0;

// Whether the burst is on at time t (seconds of the analyser's clock).
bool burstOn(const SimScene &scene, double t);

enum class EmissionKind { Clock, Pulsed, Ambient };

struct Emission {
    double freq;       // MHz
    double field;      // dBuV/m at 3 m while on
    EmissionKind kind;
    double period = 0;  // s, pulsed only
    double width = 0;   // s, pulsed only
    double phase = 0;   // s, pulsed only
    double restField = kOff;  // dBuV/m between the pulses; kOff: the carrier is off then

    static constexpr double kOff = -1000.0;
};

// All emitters of the bench, ordered by frequency.
const std::vector<Emission> &benchEmissions();

// Antenna factor (dB/m), cable loss and preamplifier gain (dB) of the delivered chain at f MHz.
double antennaFactor(double mhz);
double cableLoss(double mhz);
double preampGain(double mhz);
// What the antenna's polarisation does to the device's field at f MHz, dB: the vertical position
// sees the low band stronger and the high band weaker; horizontal is the reference.
double polarisationDb(double mhz, const SimScene &scene);
// Field strength at the antenna to power at the analyser input.
double fieldToInputDbm(double fieldDbuvm, double mhz, const SimScene &scene);
// The preamplifier's own noise at the analyser input, mW, in the resolution bandwidth.
double preampNoiseMw(double mhz, int rbwKHz);

// Whether a pulsed emitter is on at time t (seconds), or at any moment of [t, t + dwell].
bool pulseOn(const Emission &e, double t, double dwell = 0);
// The field of an emitter at time t over a dwell, dBuV/m at 3 m; Emission::kOff when it is off.
double fieldAt(const Emission &e, double t, double dwell = 0);

// The device's broadband hump as noise-like power at the input, mW, at f MHz in the given RBW.
double broadbandMw(double mhz, int rbwKHz, const SimScene &scene);

// Response of the resolution filter (Gaussian, 3 dB at +-RBW/2) to a carrier df MHz away, in dB (<= 0).
double rbwResponseDb(double dfMHz, int rbwKHz);

}  // namespace kt
