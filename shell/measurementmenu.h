#pragma once
// "Data > Save > Measurement" and "Data > Load > Measurements": a live trace to a ".mes" file, and
// any ".mes" or ".emc" file back onto the plot.

namespace kw {

class Mdi;

// Connects the two entries of the menu to their commands.
void registerMeasurementMenu(Mdi &window);

// mnusmeasurement: the save dialog, then the file made and written.
void mnusmeasurement(Mdi &window);
// mnulmeasure: the open dialog, then the file loaded and the plot asked to draw it.
void mnulmeasure(Mdi &window);

}  // namespace kw
