#include "emc/passes.h"

#include "emc/emchooks.h"
#include "emc/merge.h"
#include "emc/rundriver.h"
#include "link/acquisition.h"
#include "link/commands.h"
#include "link/connection.h"
#include "live/cycle.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/screen.h"
#include "platform/vbformat.h"
#include "plot/drawplot.h"
#include "shell/state.h"

namespace kw {

namespace {

bool timer2 = false;

void enableTimer2(bool on)
{
    timer2 = on;
    if (liveHooks().timer2Enabled)
        liveHooks().timer2Enabled(on);
}

// Every 50 steps: the time a step took, in the caption of emc, and the plot drawn once.
void showSteptime()
{
    const double now = nowDate();
    const double seconds = (now - st.steptimebase) * 86400.0 / 50.0;
    if (emcHooks().captionShown)
        emcHooks().captionShown(QStringLiteral("Time per Step : ") + vbFormat(seconds, QStringLiteral("0.00")) + QStringLiteral("s"));
    st.steptimebase = now;
    st.stepcounter = 0;
    st.averagedate = now;
    st.maxholddate = now;
    DrawPlot();
}

}  // namespace

bool steppedpending() { return timer2; }

void startstepped()
{
    st.mode = 1;
    setzerospan();
    st.stoprun = 0;
    eraseall();
    st.filemode = 1;
    st.dat = nowDate();
    st.stepfreq = st.freqstart;
    if (st.bandwith == 9) {
        st.stepsize = 0.01;
        st.span = 10;
    } else if (st.bandwith == 120) {
        st.stepsize = 0.12;
        st.span = 500;
    } else {
        st.stepsize = 0.4;
        st.span = 1000;
    }
    st.centerfreq = float(st.stepfreq);
    setcenterfreq();
    querycenterfreq();
    showRunFrequency(st.centerfreq);
    doEvents();
    // The first block primes the analyser and is not stored.
    if (firmwareNumber() <= 1.09f) {
        stepold();
        readstep();
        stepold();
    } else {
        stepnew();
        readstep();
        stepnew();
    }
    st.steptimebase = nowDate();
    enableTimer2(true);
}

void steptick()
{
    timer2 = false;
    readstep();
    const float firmware = firmwareNumber();
    if (st.stoprun == 0 && !(st.centerfreq > st.freqstop) && st.portopen == 1) {
        if (firmware <= 1.09f) {
            st.stepfreq += st.stepsize;
            st.centerfreq = float(st.stepfreq);
            setcenterfreq();
            if (firmware < 1.05f)
                querycenterfreq();
            stepold();
        } else {
            // The analyser moves on by itself.
            stepnew();
        }
        showRunFrequency(st.centerfreq);
        // The block just read lands at the frequency as it now stands: with the old firmware
        // that is one step on already.
        stepresultrow();
        if (++st.stepcounter >= 50)
            showSteptime();
        enableTimer2(true);
        return;
    }
    enableTimer2(false);
    if (st.secondpass == 0 && st.stoprun == 0 && st.polhorizontal && st.polvertical && st.portopen == 1) {
        st.secondpass = 1;
        dialogs().message(QStringLiteral("EMC - Stepped"), QStringLiteral("Set Antenna to vertical position"), Buttons::Ok);
        setes0();
        startstepped();
        runfinish();
        return;
    }
    st.redrawflag = 1;
    setpreset();
    normalpointer();
    runfinish();
}

}  // namespace kw
