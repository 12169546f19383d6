#pragma once
// The bench the simulated analyser looks at: a device under test radiating at 3 m into a bilog
// antenna and 10 m of RG-58, in a room with broadcast FM around it. Levels here are what reaches the
// analyser's input, in dBm; the analyser's own noise and scaling live in signal.h.

#include <random>
#include <vector>

namespace kt {

struct SimScene {
    bool dutOn = true;      // the operator switches the device off for an ambient sweep
    bool ambientOn = true;  // broadcast FM in the room
};

enum class EmissionKind { Clock, Pulsed, Ambient };

struct Emission {
    double freq;       // MHz
    double field;      // dBuV/m at 3 m while on
    EmissionKind kind;
    double period = 0;  // s, pulsed only
    double width = 0;   // s, pulsed only
    double phase = 0;   // s, pulsed only
};

// All emitters of the bench, ordered by frequency.
const std::vector<Emission> &benchEmissions();

// Antenna factor (dB/m) and cable loss (dB) of the delivered measuring chain at f MHz.
double antennaFactor(double mhz);
double cableLoss(double mhz);
// Field strength at the antenna to power at the analyser input.
double fieldToInputDbm(double fieldDbuvm, double mhz);

// Whether a pulsed emitter is on at time t (seconds), or at any moment of [t, t + dwell].
bool pulseOn(const Emission &e, double t, double dwell = 0);

// The device's broadband hump as noise-like power at the input, mW, at f MHz in the given RBW.
double broadbandMw(double mhz, int rbwKHz);

// Response of the resolution filter (Gaussian, 3 dB at +-RBW/2) to a carrier df MHz away, in dB (<= 0).
double rbwResponseDb(double dfMHz, int rbwKHz);

}  // namespace kt
