#pragma once
// The printed report: the plot drawn on a page with a header above it, optional cursor values and
// optional notes; on the printer, into a PDF file, or on the preview form printe.

#include <QString>
#include <functional>

class QPrinter;

namespace kw {

class Surface;

// PrintReport: the report on the printer the printer set-up chose. Refused while a report or a
// preview pass runs.
void PrintReport();
// The same report on a given printer, e.g. one that writes a PDF file.
void printReportOn(QPrinter &printer);
// The report into a PDF file at path: one sheet, or two when the notes need a sheet of their own.
void printReportToPdf(const QString &path);

// DrawPreview: the report on the picture r of printe, which it loads when it is not there.
void DrawPreview();

// The picture r while printe is loaded: the surface, and how to show what was drawn on it.
struct PreviewArea {
    Surface *picture = nullptr;
    std::function<void()> shown;
};
PreviewArea &previewArea();

}  // namespace kw
