#pragma once
// The two working modes of the main window. Normal mode shows the plot with the panels measur,
// track and detec; EMC mode shows the plot with the test form emc. Forms are shown and closed by
// name, so these work with whatever forms are registered.

namespace kw {

// "&EMC" of the Mode menu: the panels close, emc shows, the traces are erased, mode becomes 1.
// The view flags stay as they are.
void mnuemc();
// "&Normal": the view goes back to Sample alone, the panels show, emc closes, the traces are
// erased, mode becomes 0.
void mnunormal();

// The pieces the start-up and the measurement file reader use as well.
// Closes the forms of the other mode and shows those of this one, panels in the order measur,
// track, detec.
void showModeForms(bool emcMode);
// The ticks of mnuemc and mnunormal.
void tickModeMenu(bool emcMode);
// The Toolbox button of the tool bar panel works in normal mode only.
void enableToolbox(bool enabled);

}  // namespace kw
