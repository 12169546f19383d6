// The four sequences that bring the record and the analyser into line. Their order is part of
// the protocol: the analyser takes some settings only in a given state (the bandwidth, for one,
// is forced to 400 kHz and set to its real value only after the span).

#include "link/commands.h"
#include "link/connection.h"
#include "shell/state.h"
#include "shell/uihooks.h"

namespace kw {

void refreshforms()
{
    if (uiHooks().refreshForms)
        uiHooks().refreshForms();
}

void readallsettings()
{
    if (st.portopen != 1)
        return;
    busypointer();
    setes0();
    querycenterfreq();
    queryreadmode();
    readreflevel();
    queryvideofilter();
    queryspan();
    querybandwith();
    queryattenuator();
    querytrackgen();
    querytglevel();
    querycalc();
    querydbperdiv();
    queryuncal();
    st.filemode = 0;
    refreshforms();
    normalpointer();
}

void setallsettings()
{
    if (st.portopen != 1)
        return;
    busypointer();
    setbw400();
    setes0();
    setcenterfreq();
    setreflevel();
    setvideofilter();
    setattenuator();
    setvmstart();
    settrackgen();
    setdbperdiv();
    refreshforms();
    setreadmode();
    setspan();
    setbandwith();
    if (st.calc != 0)
        setcalcon();
    else
        setcalcoff();
    normalpointer();
}

void setpreset()
{
    if (st.portopen != 1)
        return;
    busypointer();
    st.vmtrace = 0;
    setes0();
    setvmtrace();
    st.centerfreq = 500.0f;
    st.span = 1000;
    st.readmode = 0;
    setcenterfreq();
    setreflevel();
    setvideofilter();
    setspan();
    setbandwith();
    setattenuator();
    setvmstart();
    settrackgen();
    setdbperdiv();
    setbw400();
    normalpointer();
}

void setzerospan()
{
    if (st.portopen != 1)
        return;
    busypointer();
    setes0();
    setcenterfreq();
    setreflevel();
    setvideofilter();
    setspanzero();
    setbandwith();
    setattenuator();
    setvmstart();
    setdbperdiv();
    setcalcon();
    st.readmode = 0;
    setreadmode();
    normalpointer();
    readallsettings();
    setes1();
}

}  // namespace kw
