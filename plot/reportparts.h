#pragma once
// The pieces a report page is made of, shared by the paper and the preview.

#include <QString>

namespace kw {

class Surface;

// What sets the paper and the preview apart, besides the surface.
struct PageStyle {
    bool paper;
    QString font;          // "arial" on paper, "Courier New" on the preview
    double headline;       // points, bold
    double labels;         // header lines, axis labels, limit names
    double cursorValues;   // the read-outs of PaperCursors / PreviewCursors
    double notesHeading;   // "Notes:"
    double notesText;
    int frameWidth;
    double headlineDrop;   // the headline stands R / headlineDrop above the plot
};

const PageStyle &paperStyle();
const PageStyle &previewStyle();

// The legend, RBW, print date and unit lines under the headline, at the present font.
void printHeaderLines(Surface &page);
// The settings in two columns on the notes sheet of a live measurement.
void printSettingColumns(Surface &page);
// "Notes:" and the text of the notes from the present position.
void printNotes(Surface &page, const PageStyle &style);
// PaperCursors on paper, PreviewCursors on the preview.
void pageCursors(Surface &page, const PageStyle &style);

}  // namespace kw
