#pragma once
// Where a drawing pass puts its lines. The screen's pass draws on grafik's Picture1 and its label
// strips; a report pass draws the same axis, grid, limits and traces on one page (the paper or the
// preview), with its own widths and labels. The shared drawing code asks here, so there is one
// copy of it for every surface.

#include <cstdint>

namespace kw {

class Surface;

enum class PageKind { Preview, Paper };

// While one lives, the plot code draws on the page.
class PageScope {
public:
    PageScope(Surface &page, PageKind kind);
    ~PageScope();
    PageScope(const PageScope &) = delete;
    PageScope &operator=(const PageScope &) = delete;

private:
    Surface *previousSurface_;
    int previousKind_;
};

// The page of the running report pass; nullptr during the screen's pass.
Surface *currentPage();
bool onPaper();

// The plot area of the pass: the page, or Picture1 of grafik; nullptr without either.
Surface *plotSurface();

// A colour of the pass: on a page printed without colour everything is black.
uint8_t ink(uint8_t colour);
// Axis, grid and their labels: black on a page.
uint8_t axisColour(uint8_t colour);

// Widths and the pieces of a curved limit, by surface.
int limitWidth();
int traceWidth();
int curvedLimitPieces();

}  // namespace kw
