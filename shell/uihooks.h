#pragma once
// What the routines tell the windows. The main window installs these; without windows (tests,
// benchmarks) they do nothing. Routines never include a widget header.

#include <functional>

namespace kw {

struct UiHooks {
    std::function<void()> captionChanged;        // st.caption
    std::function<void()> toolbarChanged;        // st.ckrm, st.ckauto
    std::function<void(bool)> toolboxVisible;
    std::function<void(bool)> uncalVisible;      // the "UNCAL" label of the plot
    std::function<void()> closeBoxcom;
    std::function<void()> showTransmission;      // the debug form Tr
    std::function<void()> refreshForms;          // repaint measur, track, detec from the record
    // Before setting.def is written: the forms put their placement (twips) into st.formpos.
    std::function<void()> storeFormPositions;
    std::function<void()> configurationChanged;  // configname and the distance labels of grafik
    // The printed report on the printer, for AutoStore and the trigger; the main window's forms
    // install the report's PrintReport.
    std::function<void()> printReport;
};

UiHooks &uiHooks();

// Helpers that call a hook when one is installed.
void notifyCaption();
void notifyToolbar();

}  // namespace kw
