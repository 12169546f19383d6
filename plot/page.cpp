#include "plot/page.h"

#include "plot/plotform.h"
#include "shell/state.h"

namespace kw {

namespace {
Surface *page = nullptr;
int kind = -1;  // a PageKind while page is set
}  // namespace

PageScope::PageScope(Surface &surface, PageKind pageKind) : previousSurface_(page), previousKind_(kind)
{
    page = &surface;
    kind = int(pageKind);
}

PageScope::~PageScope()
{
    page = previousSurface_;
    kind = previousKind_;
}

Surface *currentPage() { return page; }
bool onPaper() { return page && kind == int(PageKind::Paper); }

Surface *plotSurface()
{
    if (page)
        return page;
    PlotForm *form = plotForm();
    return form ? &form->picture1() : nullptr;
}

uint8_t ink(uint8_t colour) { return page && st.printcolor == 0 ? 0 : colour; }
uint8_t axisColour(uint8_t colour) { return page ? 0 : colour; }

int limitWidth() { return onPaper() ? 6 : 2; }
int traceWidth() { return onPaper() ? 3 : 1; }
int curvedLimitPieces() { return onPaper() ? 16 : 50; }

}  // namespace kw
