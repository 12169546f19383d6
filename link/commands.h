#pragma once
// The analyser's vocabulary: one routine per command, each building its text from the record or
// reading a reply into it, and the four sequences that bring record and analyser into line.
// Settings do nothing unless the analyser is connected, so a sequence runs on harmlessly after
// a failure; the failure box comes once from the transport.

namespace kw {

// ---- Settings ("RD" expected unless noted)
void setcenterfreq();   // "#cf" 0000.000, clamped to 0..1050 first, even offline
void setspan();         // "#sp"
void setspanzero();     // "#sp0"
void setreflevel();     // "#rl+00.0" / "#rl-00.0", then readreflevel
void setattenuator();   // "#at"
void setbandwith();     // "#bw"
void setbw400();        // "#bw400"
void setbw9();          // "#bw9"
void setvideofilter();  // "#vf"
void setdbperdiv();     // "#db"
void setreadmode();     // "#vm" + readmode
void setvmstart();      // "#vm0".."#vm2" by vmstart
void setvmtrace();      // "#vm" + vmtrace
void setcalcon();       // "#dm1", then "#vm" + readmode
void setcalcoff();      // "#dm0"
void settrackgen();     // "#tl", "#tg", and "#tl" again when on; 3420 only
void settglevel();      // "#tl+00.0" / "#tl-00.0", read back; 3420 only
void savememory();      // "#sv" + memorynumber
void recallmemory();    // "#rc" + memorynumber
void savetob();         // "#sa"
void setes0();          // "#es0"
void setes1();          // "#es1"
void settrigger();      // "#tr" 00.0
void settriggeroff();   // "#tr0", clears triggerrun even offline
void stepold();         // "#ss1", echo only
void stepnew();         // "#ss2", echo only

// ---- Queries: the value from the third character on; a failed query keeps the field
void querycenterfreq();
void queryspan();
void queryreflevel();
void queryattenuator();
void querybandwith();
void queryvideofilter();
void queryreadmode();
void querytrackgen();   // 3420 only
void querytglevel();    // 3420 only
void querycalc();
void querydbperdiv();
void queryuncal();      // firmware above 1.38 only; shows or hides "UNCAL"

// "#rl" read with trace A selected, the analyser left in readmode.
void readreflevel();

// ---- The four sequences, in their fixed order
void readallsettings();
void setallsettings();
void setpreset();
void setzerospan();

// Repaints the settings panels that are loaded and in normal window state.
void refreshforms();

// True where the connected model has a tracking generator (its name does not hold "3400").
bool hasTrackingGenerator();

}  // namespace kw
