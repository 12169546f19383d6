#include "platform/papersurface.h"

#include <QPainter>
#include <QPageLayout>
#include <QPrinter>

namespace kw {

namespace {
// Line widths are counted in dots of the paper; at the resolution of a common laser printer a
// width of 1 is a hairline and the widths of the limit lines stay in proportion.
constexpr int kPaperDpi = 600;
}  // namespace

PaperSurface::PaperSurface(QPrinter &printer) : printer_(printer)
{
    printer_.setResolution(kPaperDpi);
    setTarget(&printer_, sheet());
}

PaperSurface::~PaperSurface() { endDoc(); }

QRectF PaperSurface::sheet() const
{
    return printer_.pageLayout().paintRectPixels(printer_.resolution()).toRectF();
}

void PaperSurface::setOrientation(int orientation)
{
    printer_.setPageOrientation(orientation == 1 ? QPageLayout::Portrait : QPageLayout::Landscape);
    moveTarget(sheet());
}

void PaperSurface::newPage()
{
    painter();  // a sheet not yet begun is begun, so that the next one is a second sheet
    printer_.newPage();
    moveTarget(sheet());
}

void PaperSurface::endDoc() { flush(); }

bool PaperSurface::ok() const { return printer_.isValid(); }

QPrinter &reportPrinter()
{
    static QPrinter printer(QPrinter::HighResolution);
    return printer;
}

void makePdfPrinter(QPrinter &printer, const QString &path)
{
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageMargins(QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter);
    printer.setResolution(kPaperDpi);
}

}  // namespace kw
