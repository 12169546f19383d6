// PaperCursors and PreviewCursors: the crosshairs as dashed and dotted lines and the read-outs of
// grafik as they stand, so that a "---" on the screen is a "---" on the page.
#include "plot/reportparts.h"

#include "platform/surface.h"
#include "platform/vbformat.h"
#include "plot/axes.h"
#include "plot/page.h"
#include "plot/plotform.h"
#include "shell/state.h"

#include <QLabel>
#include <QWidget>
#include <algorithm>

namespace kw {

namespace {

QString readout(const char *name)
{
    auto *form = dynamic_cast<QWidget *>(plotForm());
    const QLabel *label = form ? form->findChild<QLabel *>(QLatin1String(name)) : nullptr;
    return label ? label->text() : QString();
}

void clampCursors()
{
    const int32_t width = int32_t(kPlotWidth);
    st.cursor1x = std::clamp<int32_t>(st.cursor1x, 0, width);
    st.cursor2x = std::clamp<int32_t>(st.cursor2x, 0, width);
    for (int32_t *y : {&st.cursor1y, &st.cursor2y}) {
        if (*y < st.grafikmin)
            *y = st.grafikmin;
        else if (*y > st.grafikmax)
            *y = st.grafikmax;
    }
}

void crosshair(Surface &page, int32_t x, int32_t y, double end, const QString &name, uint8_t colour)
{
    page.line(x, st.grafikmin, x, st.grafikmax, colour);
    page.line(0, y, end, y, colour);
    page.currentY = y;
    page.currentX = end;
    page.foreColour = colour;
    page.print(name);
}

void values(Surface &page, const QString &prefix, const char *freq, const char *level, const QString &unit,
            uint8_t colour)
{
    page.foreColour = colour;
    page.currentX = 1000;
    page.print(prefix + vbTrim(readout(freq)) + QStringLiteral("   Lev.:") + vbTrim(readout(level)) + unit);
}

}  // namespace

void pageCursors(Surface &page, const PageStyle &style)
{
    const int mode = page.drawMode;
    page.drawWidth = 1;
    page.drawStyle = kStyleDash;
    clampCursors();
    crosshair(page, st.cursor1x, st.cursor1y, style.paper ? 1030000 : 1020000,
              style.paper ? QStringLiteral("C1") : QStringLiteral("CA"), ink(5));
    page.drawStyle = kStyleDot;
    crosshair(page, st.cursor2x, st.cursor2y, 1010000, style.paper ? QStringLiteral("C2") : QStringLiteral("CB"),
              ink(2));

    page.setFont(style.font, style.cursorValues, false);
    page.currentY = st.grafikmax;
    const QString unit = vbTrim(st.unit);
    values(page, style.paper ? QStringLiteral("C1: Freq.: ") : QStringLiteral("Cursor 1: Freq.: "), "freqa", "leva",
           unit, ink(5));
    values(page, style.paper ? QStringLiteral("C2: Freq.: ") : QStringLiteral("Cursor 2: Freq.: "), "freqb", "levb",
           unit, ink(2));
    values(page, style.paper ? QStringLiteral("C1-C2: Freq.: ") : QStringLiteral("Cursor 1-2: Freq.: "), "freqab",
           "levab", QStringLiteral("dB"), 0);

    page.drawMode = mode;
    page.drawWidth = 1;
    page.drawStyle = kStyleSolid;
}

}  // namespace kw
