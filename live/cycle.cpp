#include "live/cycle.h"

#include "link/acquisition.h"
#include "link/commands.h"
#include "link/connection.h"
#include "platform/clock.h"
#include "plot/drawplot.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <algorithm>
#include <cmath>

namespace kw {

namespace {
constexpr double kSecondsPerDay = 86400.0;
}

LiveHooks &liveHooks()
{
    static LiveHooks hooks;
    return hooks;
}

void Read()
{
    if (st.portopen == 0)
        connectunit();
    readallsettings();
    readtraces();
}

void SetRead()
{
    if (st.portopen == 0)
        connectunit();
    setallsettings();
    readallsettings();
    readtraces();
}

void autoClicked(bool ticked)
{
    st.ckauto = ticked;
    if (ticked && st.portopen == 0)
        connectunit();
    // The box as it stands now: a connection that failed has unticked it again.
    st.liveread = st.ckauto;
    if (st.triggerrun == 1) {
        // While trigger mode runs the analyser's traces belong to it: no continuous reading.
        st.liveread = 0;
        st.ckauto = 0;
    }
    notifyToolbar();
}

void toolboxPressed()
{
    st.liveread = 0;
    st.ckauto = 0;
    notifyToolbar();
}

void eraseall()
{
    st.pointcount = 2001;
    for (Trace *t : {&st.sampledata, &st.averagedata, &st.maxholddata, &st.memorydata})
        std::fill(t->begin() + 1, t->begin() + 2002, int16_t(0));
    st.grafikmin = 1000;
    st.grafikmax = -1000;
    st.peakfreq = 0.0f;
    st.peaklevel = -1000;
    st.filemode = 0;
    DrawPlot();
}

void timer1Tick()
{
    if (st.liveread == 1)
        readtraces();
    if (st.autostoreon == 1 && st.liveread == 1) {
        const double now = nowDate();
        if (std::round((st.autostorenext - now) * kSecondsPerDay) <= 0) {
            if (liveHooks().autostore)
                liveHooks().autostore();
            st.autostorenext = now + st.autostoreinterval / kSecondsPerDay;
            if (liveHooks().autostoreNextShown)
                liveHooks().autostoreNextShown();
        }
    }
    // A request seen here is served in this tick, also one made during the read above.
    if (st.redrawflag == 1) {
        DrawPlot();
        st.redrawflag = 0;
    }
}

void timer2Tick()
{
    if (liveHooks().timer2Enabled)
        liveHooks().timer2Enabled(false);
    if (liveHooks().emcStage)
        liveHooks().emcStage();
}

void timer3Tick() { ++st.tick20; }

}  // namespace kw
