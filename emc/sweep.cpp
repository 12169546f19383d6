#include "emc/passes.h"

#include "emc/emchooks.h"
#include "emc/merge.h"
#include "link/acquisition.h"
#include "link/commands.h"
#include "link/connection.h"
#include "platform/clock.h"
#include "platform/onerror.h"
#include "platform/screen.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "store/runfile.h"

#include <algorithm>
#include <cmath>

namespace kw {

namespace {

// How long a slice's wait sleeps between its looks at the clock, Stop and the port.
constexpr int kDwellSlice = 20;

// The next sleep of a slice's wait: a whole look's interval, or to just past the end of the dwell
// when that comes sooner, so that the slice is read when its time is up and not up to a look later.
int dwellWait(float elapsed)
{
    const double left = (double(st.meastime) - double(elapsed)) * 1000.0;
    if (!(left < kDwellSlice))
        return kDwellSlice;
    return std::max(1, int(std::ceil(left)) + 1);
}

double stepsizefor(int16_t bandwith)
{
    if (bandwith == 9)
        return 0.01;
    return bandwith == 120 ? 0.12 : 0.4;
}

void showSecondsLeft(float elapsed)
{
    if (emcHooks().secondsLeft)
        emcHooks().secondsLeft(vbFormat(double(st.meastime) - elapsed, QStringLiteral("0s")));
}

bool running() { return st.stoprun != 1 && st.portopen == 1; }

// The row frequency of a marked row as the step takes it: two decimals.
void takerowfrequency()
{
    ResumeNext onError;
    onError([] { st.stepfreq = vbCDbl(vbFormat(st.rs2.FieldNumber(QStringLiteral("Frequency")), QStringLiteral("0.00"))); });
    st.centerfreq = float(st.stepfreq);
    setcenterfreq();
    if (firmwareNumber() < 1.05f)
        querycenterfreq();
    showRunFrequency(st.centerfreq);
}

}  // namespace

// The marked rows of the sweep measured again in zero span, each block into its row.
void remeasurerows()
{
    setzerospan();
    st.stoprun = 0;
    st.filemode = 1;
    st.stepcounter = 0;
    st.qpstate = 0;
    setes1();
    st.stepsize = stepsizefor(st.bandwith);
    ResumeNext onError;
    bool marked = false;
    holdrunfile();
    onError([&] {
        st.measdb = OpenDatabase(vbTrim(st.measurefile));
        st.rs2 = st.measdb.OpenRecordset(QStringLiteral("select * from measurement where sample_dBmW = 1 order by frequency"));
        st.rs2.MoveFirst();
        marked = !st.rs2.Eof();
    });
    if (marked) {
        takerowfrequency();
        // The first block primes the analyser and is thrown away.
        stepold();
        readstep();
        while (!st.rs2.Eof() && st.stoprun != 1 && st.portopen == 1) {
            stepold();
            doEvents();
            readstep();
            markedresultrow();
            onError([] { st.rs2.MoveNext(); });
            takerowfrequency();
        }
    }
    onError([] { st.rs2.Close(); });
    onError([] { st.measdb.Close(); });
}

void sweeprun()
{
    ResumeNext onError;
    bool haslimit = false;
    onError([&] {
        st.measdb = OpenDatabase(vbTrim(st.measurefile));
        const QString column = st.limitbezug != 0 ? QStringLiteral("avefreq") : QStringLiteral("maxfreq");
        st.rs2 = st.measdb.OpenRecordset(QStringLiteral("select * from limitlines order by ") + column, dbOpenSnapshot);
        haslimit = !(st.rs2.Eof() && st.rs2.Bof());
        if (!haslimit)
            return;
        // Cells of the other limit may be empty and sort first.
        while (!st.rs2.Eof() && st.rs2.Field(column).isNull())
            st.rs2.MoveNext();
        st.limitmark = float(st.rs2.FieldNumber(column));
    });
    bool interrupted = false;
    if (haslimit) {
        st.runstart = st.freqstart;
        st.runstop = st.freqstop;
        st.stepsize = stepsizefor(st.bandwith);
        st.span = 5;
        st.centerfreq = st.freqstart + float(st.span) / 2.0f;
        st.readmode = 4;
        st.vmtrace = 0;
        setvmtrace();
        setallsettings();
        st.stoprun = 0;
        // The sweep has no 120 kHz filter.
        if (st.bandwith == 9)
            setbw9();
        else
            setbw400();
        st.filemode = 1;
        st.dat = nowDate();
        st.stepfreq = st.freqstart;
        st.vmtrace = 4;
        setvmtrace();
        st.doneupto = st.freqstart;
        doEvents();
        st.nextrowfreq = st.freqstart;
        for (;;) {
            busypointer();
            setcalcon();
            st.waitstart = timerSeconds();
            checkpointrunfile();
            showRunFrequency(st.centerfreq);
            showSecondsLeft(0.0f);
            // Max Hold builds up on the analyser; the wait keeps Stop and the view boxes alive.
            // Over midnight the elapsed time reads negative and the slice waits longer.
            while (timerSeconds() - st.waitstart <= float(st.meastime)) {
                const float elapsed = timerSeconds() - st.waitstart;
                showSecondsLeft(elapsed);
                waitEvents(dwellWait(elapsed));
                if (!running()) {
                    interrupted = true;
                    break;
                }
            }
            if (interrupted)
                break;
            readsweep();
            sweepmerge();
            st.doneupto = st.freqstop;
            if (!(st.freqstop < st.runstop))
                break;
            st.centerfreq = st.freqstop + float(st.span) / 2.0f;
            setcenterfreq();
            st.freqstart = st.runstart;
        }
    }
    if (!interrupted) {
        onError([] { st.rs2.Close(); });
        onError([] { st.measdb.Close(); });
        if (haslimit) {
            st.freqstart = st.runstart;
            st.freqstop = st.runstop;
        }
        st.redrawflag = 1;
        if (st.ambientphase == 0) {
            flagrows();
            remeasurerows();
        }
        doEvents();
        if (haslimit) {
            st.freqstart = st.runstart;
            st.freqstop = st.runstop;
        }
    }
    onError([] { st.rs2.Close(); });
    onError([] { st.measdb.Close(); });
    normalpointer();
}

}  // namespace kw
