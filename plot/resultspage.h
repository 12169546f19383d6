#pragma once
// The results table of an EMC run as a page of the report: a sheet of its own on paper and in the
// PDF, a second sheet under the plot in the preview. Only with the option "Results" of setprn,
// which is off until the operator ticks it, and only for an ".emc" file shown.

#include <functional>

class QCheckBox;
class QWidget;

namespace kw {

class PaperSurface;
class Surface;
struct PageStyle;

// The option; off at the start of the program.
bool &resultsPageOption();

// The box "Results" of setprn; changed runs when the operator ticks or clears it.
QCheckBox *resultsOption(QWidget *setprn, const std::function<void()> &changed);

// On paper: the sheets of the table after the report's own, portrait.
void printResultsPage(PaperSurface &paper, const PageStyle &style);
// The preview: its height grows by a sheet before the plot is drawn, and the table is drawn on
// that sheet after it.
void growPreviewForResults(Surface &picture);
void previewResults(Surface &picture, const PageStyle &style);

}  // namespace kw
