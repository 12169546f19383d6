#include "plot/report.h"

#include "platform/printer.h"

#include "link/connection.h"
#include "platform/dialogs.h"
#include "platform/papersurface.h"
#include "platform/printer.h"
#include "plot/axes.h"
#include "plot/drawplot.h"
#include "plot/grid.h"
#include "plot/page.h"
#include "plot/reportparts.h"
#include "plot/resultspage.h"
#include "plot/tracescan.h"
#include "shell/forms.h"
#include "shell/state.h"

#include <QPrinter>

namespace kw {

namespace {

constexpr double kPageLeft = -100000;
constexpr double kPaperWidth = 1210000;
constexpr double kNotesSheetWidth = 1150000;
constexpr double kPreviewWidth = 1150000;

// R of the page scale: negative while the plot has a scale.
double plotRange() { return double(st.grafikmin) - double(st.grafikmax); }
// The page begins a fifth of the plot height above the plot.
double pageTop() { return double(st.grafikmax) - plotRange() / 5; }

void headline(Surface &page, const PageStyle &style)
{
    page.setFont(style.font, style.headline, true);
    page.foreColour = 0;
    page.currentY = double(st.grafikmax) - plotRange() / style.headlineDrop;
    page.currentX = 0;
    page.print(st.headline);
}

void frame(Surface &page, const PageStyle &style)
{
    page.drawWidth = style.frameWidth;
    page.line(0, st.grafikmin, 0, st.grafikmax, 0);
    page.line(kPlotWidth, st.grafikmin, kPlotWidth, st.grafikmax, 0);
    page.line(0, st.grafikmin, kPlotWidth, st.grafikmin, 0);
    page.line(0, st.grafikmax, kPlotWidth, st.grafikmax, 0);
    page.drawWidth = 1;
}

// Headline, header lines, frame, axis, grid, limits and traces: the part the paper and the
// preview share. The plot code draws on the page while the scope lives.
void plotPage(Surface &page, const PageStyle &style)
{
    PageScope scope(page, style.paper ? PageKind::Paper : PageKind::Preview);
    headline(page, style);
    page.setFont(style.font, style.labels, false);
    printHeaderLines(page);
    frame(page, style);
    DrawFrequencyGrid();
    DrawLevelGrid();
    // The page takes the scale of the screen as it is: no widening, no second pass.
    page.drawWidth = limitWidth();
    if (st.viewlimitmax)
        drawLimit(shownLimit(true));
    if (st.viewlimitave)
        drawLimit(shownLimit(false));
    page.drawWidth = traceWidth();
    if (st.filemode)
        scanMeasurementFile();
    else
        scanArrays();
    page.drawWidth = 1;
}

// The notes on a portrait sheet of their own, after the plot in landscape.
void notesSheet(PaperSurface &paper, const PageStyle &style)
{
    dialogs().message(QStringLiteral("Print"), QStringLiteral("Ready to print notes? (Turn the paper)"), Buttons::Ok);
    paper.setOrientation(1);
    paper.newPage();
    paper.setScale(kPageLeft, pageTop(), kNotesSheetWidth, plotRange() * 1.3);
    headline(paper, style);
    paper.setFont(style.font, 12, false);
    {
        PageScope scope(paper, PageKind::Paper);
        printHeaderLines(paper);
        if (st.mode == 0) {
            paper.setFont(style.font, 10, false);
            printSettingColumns(paper);
        }
    }
    printNotes(paper, style);
}

}  // namespace

const PageStyle &paperStyle()
{
    static const PageStyle style{true, QStringLiteral("arial"), 16, 10, 8, 14, 12, 4, 7};
    return style;
}

const PageStyle &previewStyle()
{
    static const PageStyle style{false, QStringLiteral("Courier New"), 8, 3, 3, 8, 3, 2, 5};
    return style;
}

void printReportOn(QPrinter &printer)
{
    if (st.printbusy == 1)
        return;
    busypointer();
    st.printbusy = 1;
    const PageStyle &style = paperStyle();
    // A report that fails part-way leaves what was drawn; the flags are cleared all the same.
    try {
        PaperSurface paper(printer);
        paper.setOrientation(st.printvertical ? 1 : 2);
        paper.setScale(kPageLeft, pageTop(), kPaperWidth, plotRange() * (st.printvertical ? 2.1 : 1.3));
        plotPage(paper, style);
        if (st.printcursor == 1) {
            PageScope scope(paper, PageKind::Paper);
            pageCursors(paper, style);
        }
        if (st.printnotes == 1) {
            if (st.printvertical == 0) {
                notesSheet(paper, style);
            } else {
                paper.currentY = st.grafikmin;
                paper.currentX = 0;
                printNotes(paper, style);
            }
        }
        printResultsPage(paper, style);
        paper.endDoc();
    } catch (const std::exception &) {
    }
    st.printbusy = 0;
    normalpointer();
}

void PrintReport() { printReportOn(printer()); }

void printReportToPdf(const QString &path)
{
    QPrinter printer(QPrinter::HighResolution);
    makePdfPrinter(printer, path);
    printReportOn(printer);
}

PreviewArea &previewArea()
{
    static PreviewArea area;
    return area;
}

void DrawPreview()
{
    if (st.printbusy == 1)
        return;
    if (!formLoaded(QStringLiteral("printe")))
        showForm(QStringLiteral("printe"));
    Surface *picture = previewArea().picture;
    if (!picture)
        return;
    st.printbusy = 1;
    const PageStyle &style = previewStyle();
    try {
        picture->setScale(kPageLeft, pageTop(), kPreviewWidth, plotRange() * (st.printvertical ? 2.3 : 1.3));
        growPreviewForResults(*picture);
        picture->clear();
        plotPage(*picture, style);
        if (st.printcursor == 1) {
            PageScope scope(*picture, PageKind::Preview);
            pageCursors(*picture, style);
        }
        if (st.printvertical == 1 && st.printnotes == 1) {
            picture->currentY = st.grafikmin;
            picture->currentX = 0;
            printNotes(*picture, style);
        }
        previewResults(*picture, style);
    } catch (const std::exception &) {
    }
    if (previewArea().shown)
        previewArea().shown();
    st.printbusy = 0;
}

}  // namespace kw
