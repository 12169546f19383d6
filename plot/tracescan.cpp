#include "plot/tracescan.h"

#include "platform/vbformat.h"
#include "plot/page.h"
#include "plot/plotform.h"
#include "plot/plotline.h"
#include "shell/state.h"

namespace kw {

namespace {

struct Shown {
    bool on;
    const Trace *data;
    uint8_t colour;
    const char *tag;
    double date;
};

}  // namespace

void scanArrays()
{
    Surface *area = plotSurface();
    if (!area)
        return;
    PlotForm *form = currentPage() ? nullptr : plotForm();
    // A page draws the trace of a stepped run along its frequencies even below 1 MHz of span.
    const bool zeroSpan = st.span < 1 && (form || st.mode != 1);
    if (form) {
        form->setButtons(true, !zeroSpan, true);
        form->setMemoryLabel(QStringLiteral("Mem B"));
    }
    Surface &p1 = *area;
    p1.drawWidth = traceWidth();

    const Shown traces[] = {
        {st.viewsample != 0, &st.sampledata, 2, "   Sam:", st.sampledate},
        {st.viewaverage != 0, &st.averagedata, 9, "   Ave:", st.averagedate},
        {st.viewmaxhold != 0, &st.maxholddata, 12, "   Max:", st.maxholddate},
        {st.viewb || st.viewab, &st.memorydata, 3, "   Mem:", st.memorydate},
    };
    const int32_t n = st.pointcount;
    const int32_t last = std::min<int32_t>(n, kTraceSize - 1);
    const float start = st.freqstart;
    const double width = double(st.freqstop - st.freqstart);
    for (int32_t i = 2; i <= last; ++i) {
        double x1 = 0, x2 = 0;
        float f1 = 0, f2 = 0;
        if (zeroSpan) {
            x1 = double(i - 2) * 1000000.0 / n;
            x2 = double(i - 1) * 1000000.0 / n;
        } else {
            f1 = float(double(start) + double(i - 2) * width / n);
            f2 = float(double(start) + double(i - 1) * width / n);
        }
        for (const Shown &t : traces) {
            if (!t.on)
                continue;
            const int16_t y1 = (*t.data)[size_t(i - 1)];
            const int16_t y2 = (*t.data)[size_t(i)];
            if (zeroSpan)
                p1.line(x1, y1, x2, y2, ink(t.colour));
            else
                PlotLine(f1, y1, f2, y2, t.colour);
            // Strictly greater: among equal values the first in trace order and index stays. The
            // peak is the screen's; a report leaves it alone.
            if (form && y2 > st.peaklevel) {
                st.peaklevel = y2;
                st.peakfreq = zeroSpan ? float(x2) : f2;
            }
        }
    }

    if (!form)
        return;
    QString caption;
    for (const Shown &t : traces)
        if (t.on)
            caption = vbTrim(caption) + QLatin1String(t.tag) + vbLongTime(t.date);
    form->setCaption(caption);
}

}  // namespace kw
