#include "plot/cursormouse.h"

#include "link/acquisition.h"
#include "link/commands.h"
#include "link/connection.h"
#include "plot/cursors.h"
#include "shell/state.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kw {

namespace {

constexpr int32_t kNearCursor = 10000;  // one per cent of the plot width

// To the nearest whole unit, halves to even; a position far off the screen stops at the range.
int32_t rounded(double v)
{
    constexpr double low = std::numeric_limits<int32_t>::min();
    constexpr double high = std::numeric_limits<int32_t>::max();
    if (std::isnan(v))
        return 0;
    return int32_t(std::clamp(std::nearbyint(v), low, high));
}

bool near(int64_t mouseX, int32_t cursorX)
{
    return mouseX > int64_t(cursorX) - kNearCursor && mouseX < int64_t(cursorX) + kNearCursor;
}

void drag(int32_t &cursorX, int32_t &cursorY, int32_t oldX, int32_t oldY, double x, double y)
{
    cursorX = rounded(x);
    cursorY = rounded(y);
    if (cursorX != oldX || cursorY != oldY)
        DrawCursors();
}

}  // namespace

int cursorMouseMove(bool leftDown, double x, double y)
{
    // A move during a pass would draw inverting lines into a half-made picture.
    if (st.drawbusy == 1 || st.cursorsactive != 1)
        return kPointerUnchanged;
    if (!leftDown)
        st.cursorgrab = 0;
    const int64_t mouseX = std::isfinite(x) ? int64_t(std::clamp(std::trunc(x), -1e15, 1e15)) : 0;
    const bool near1 = near(mouseX, st.cursor1x);
    const bool near2 = near(mouseX, st.cursor2x);

    if (st.cursorgrab == 1 || (st.cursorgrab == 0 && near1)) {
        if (leftDown) {
            st.cursorgrab = 1;
            drag(st.cursor1x, st.cursor1y, st.cursor1oldx, st.cursor1oldy, x, y);
        }
        return kPointerCursor;
    }
    if (st.cursorgrab == 2 || near2) {
        if (leftDown) {
            st.cursorgrab = 2;
            drag(st.cursor2x, st.cursor2y, st.cursor2oldx, st.cursor2oldy, x, y);
        }
        return kPointerCursor;
    }
    return kPointerCrosshair;
}

void plotDoubleClick()
{
    if (st.mode != 0)
        return;
    if (st.portopen == 0)
        connectunit();
    readallsettings();
    readtraces();
    st.redrawflag = 1;
}

}  // namespace kw
