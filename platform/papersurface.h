#pragma once
// The paper: a surface over a printer, which may be a real one or a PDF file. Each sheet is the
// printable area of the page; the user scale spans it as on any other surface.

#include "platform/paintersurface.h"

#include <QString>

class QPrinter;

namespace kw {

class PaperSurface : public PainterSurface {
public:
    // Draws on printer, which must outlive the surface. The document starts with the first
    // drawing on it.
    explicit PaperSurface(QPrinter &printer);
    ~PaperSurface() override;
    PaperSurface(const PaperSurface &) = delete;
    PaperSurface &operator=(const PaperSurface &) = delete;

    // 1 portrait, 2 landscape, for the sheet that is begun next (before the first drawing, or
    // by newPage).
    void setOrientation(int orientation);
    // Ends the sheet; the next drawing goes on a new one.
    void newPage();
    // Ends the document: the sheets leave for the printer or the file.
    void endDoc();
    // False when the printer could not be opened (no printer, a file that cannot be written).
    bool ok() const;

private:
    QRectF sheet() const;

    QPrinter &printer_;
    bool started_ = false;
};

// The printer of the reports: the one the printer set-up chose, for the run of the program.
QPrinter &reportPrinter();
// A printer that writes a PDF file at the resolution of the paper.
void makePdfPrinter(QPrinter &printer, const QString &path);

}  // namespace kw
