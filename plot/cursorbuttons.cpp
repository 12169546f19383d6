#include "plot/cursorbuttons.h"

#include "levels/levelmath.h"
#include "link/acquisition.h"
#include "link/commands.h"
#include "plot/axes.h"
#include "plot/cursors.h"
#include "shell/state.h"

#include <cmath>
#include <limits>
#include <optional>

namespace kw {

namespace {

double kiloHertzLog(float frequency) { return log10floor(double(frequency) * 1000.0); }

// Truncated towards zero; nothing where the division failed or the position leaves 32 bits.
std::optional<int32_t> position(double x)
{
    if (!std::isfinite(x) || x <= double(std::numeric_limits<int32_t>::min()) - 1.0 ||
        x >= double(std::numeric_limits<int32_t>::max()) + 1.0)
        return std::nullopt;
    return int32_t(std::trunc(x));
}

// The new centre goes out clamped; a running calculation starts again on it, and a connected
// analyser is read back with a trace.
void sendCentre()
{
    setcenterfreq();
    if (st.calc == 1)
        setcalcon();
    if (st.portopen == 1) {
        readallsettings();
        readtraces();
    }
}

}  // namespace

void cursorToPeak()
{
    std::optional<int32_t> x;
    if (st.logaxis) {
        if (st.peakfreq == 0.0f) {
            x = 0;
        } else {
            const double low = kiloHertzLog(st.decadelow);
            x = position((kiloHertzLog(st.peakfreq) - low) * kPlotWidth / (kiloHertzLog(st.decadehigh) - low));
        }
    } else {
        // In zero span start and stop are one frequency: the division fails and the button does
        // nothing.
        const double width = double(st.freqstop - st.freqstart);
        if (width != 0.0)
            x = position(double(st.peakfreq - st.freqstart) * kPlotWidth / width);
    }
    if (!x)
        return;
    st.cursor1x = *x;
    st.cursor1y = st.peaklevel;
    DrawCursors();
}

void centreOnCursor()
{
    if (!st.logaxis) {
        if (st.span >= 1)
            st.centerfreq = float(double(st.freqstop - st.freqstart) * st.cursor1x / kPlotWidth + double(st.freqstart));
        else
            st.centerfreq = st.freqstart;
    } else if (st.span == 0) {
        st.centerfreq = st.freqstart;
    } else {
        // The lower edge is subtracted here where the read-out adds it, so on a logarithmic axis
        // the new centre is not the frequency cursor 1 shows. Deliberate; do not "correct" it.
        const double a = kiloHertzLog(st.decadelow);
        const double b = kiloHertzLog(st.decadehigh);
        st.centerfreq = float(std::pow(10.0, (b - a) * st.cursor1x / kPlotWidth - a) / 1000.0);
    }
    sendCentre();
}

void doubleCentre()
{
    st.centerfreq = 2.0f * st.centerfreq;
    sendCentre();
}

}  // namespace kw
