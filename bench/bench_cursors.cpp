// A cursor move on a 1000 x 700 plot of four live traces: the lines of both cursors taken away and
// drawn again in the inverting mode, the read-outs set, and the picture handed to the screen.
// No pass may run and no trace may be touched.
#include "plot/cursormouse.h"
#include "plot/cursors.h"
#include "plot/drawplot.h"
#include "plot/plotform.h"
#include "shell/state.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <cmath>
#include <cstdio>

using namespace kw;

namespace {

class CountingPlot : public HeadlessPlot {
public:
    using HeadlessPlot::HeadlessPlot;
    void showPicture() override { ++passes; }
    void showCursors(const CursorReadouts &) override
    {
        // What the screen takes after a move: the picture as it stands.
        p1.image();
    }
    int passes = 0;
};

int16_t level(int i, int trace)
{
    const double noise = std::sin(i * 12.9898 + trace * 78.233) * 43758.5453;
    return int16_t(-220 + 20 * (noise - std::floor(noise)) + (i % 250 == 0 ? 100 : 0));
}

}  // namespace

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    CountingPlot plot(1000, 700);
    setPlotForm(&plot);

    st.freqstart = 0.0f;
    st.freqstop = 1000.0f;
    st.span = 1000;
    st.grafikmax = -50;
    st.grafikmin = -250;
    st.viewsample = st.viewaverage = st.viewmaxhold = st.viewb = 1;
    st.calc = 1;
    Trace *traces[] = {&st.sampledata, &st.averagedata, &st.maxholddata, &st.memorydata};
    for (int t = 0; t < 4; ++t)
        for (int i = 1; i <= 2001; ++i)
            (*traces[t])[size_t(i)] = level(i, t);
    DrawPlot();
    const int passes = plot.passes;
    Trace kept[4];
    for (int t = 0; t < 4; ++t)
        kept[t] = *traces[t];
    const int16_t peak = st.peaklevel;

    // Cursor 1 dragged across the plot by the mouse, one move per step.
    constexpr int kMoves = 2000;
    cursorMouseMove(true, double(st.cursor1x), -100);
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < kMoves; ++i)
        cursorMouseMove(true, 100000 + 400.0 * i, -100 - (i % 100));
    const double ms = double(clock.nsecsElapsed()) / 1e6 / kMoves;

    bool untouched = plot.passes == passes && st.peaklevel == peak;
    for (int t = 0; t < 4; ++t)
        untouched = untouched && *traces[t] == kept[t];
    std::printf("%-52s %8.3f ms  (target < 1 ms)  %s\n", "cursor move over four live traces", ms,
                ms < 1.0 ? "ok" : "MISSED");
    std::printf("%-52s %s\n", "passes run and traces touched by the moves", untouched ? "none" : "SOME");
    setPlotForm(nullptr);
    return ms < 1.0 && untouched ? 0 : 1;
}
