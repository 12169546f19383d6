#pragma once
// The mouse over the plot: taking a cursor and dragging it, and the double click that reads.

namespace kw {

// Pointers of the plot by their classic numbers: over a cursor that can be taken, and elsewhere.
constexpr int kPointerUnchanged = -1;
constexpr int kPointerCrosshair = 2;
constexpr int kPointerCursor = 99;

// A move over Picture1 with x and y in plot units. A cursor is taken within one per cent of the
// width of its vertical line and stays held until the left button goes up, however far the mouse
// goes; cursor 1 wins where both are near. Returns the pointer to show.
int cursorMouseMove(bool leftDown, double x, double y);

// A double click on the plot in normal mode: connect if need be, read the settings and a trace.
void plotDoubleClick();

}  // namespace kw
