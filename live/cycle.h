#pragma once
// The rhythm of live work: one read, set and read, continuous reading, erasing, and the ticks of
// the three timers of the main window.

#include <functional>

namespace kw {

// Command2 "Read": connect if need be, read the settings and the traces.
void Read();
// Command3 "Set/Read": connect if need be, send all settings, read them back and the traces.
void SetRead();
// ckauto clicked (by hand or by code): continuous reading on or off; refused in trigger mode.
void autoClicked(bool ticked);
// Command6 "Toolbox" pressed: continuous reading ends.
void toolboxPressed();
// Clears the four traces and the scale and draws the empty plot. Does not touch the analyser.
void eraseall();

void timer1Tick();
void timer2Tick();
void timer3Tick();

// What the cycle hands to Parts that come with their own forms.
struct LiveHooks {
    std::function<void()> autostore;            // one AutoStore
    std::function<void()> autostoreNextShown;   // autostorenext changed: autost shows it
    std::function<void()> emcStage;             // one stage of the stepped EMC run
    std::function<void(bool)> timer2Enabled;    // the main window's Timer2 on or off
};
LiveHooks &liveHooks();

}  // namespace kw
