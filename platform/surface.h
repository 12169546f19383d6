#pragma once
// A picture area the plot draws on: a user scale over the area, lines, text at the current
// position, pen width and style, the foreground colour as an index of the 16-colour palette and
// the inverting draw mode of the cursors. The screen, the print preview and the paper each give
// one; the plot code only ever sees this interface.

#include <QColor>
#include <QString>

namespace kw {

// The classic 16-colour text-mode palette: the colour unit of all drawing.
QColor paletteColour(int index);

// Draw styles and modes by their classic numbers.
constexpr int kStyleSolid = 0;
constexpr int kStyleDash = 1;
constexpr int kStyleDot = 2;
constexpr int kModeCopyPen = 13;
constexpr int kModeNotXorPen = 10;

class Surface {
public:
    virtual ~Surface() = default;

    // User scale: the left edge is scaleLeft, the top edge scaleTop; width and height may be
    // negative, which turns the axis round. A width or height of 0 is refused and the old one
    // stays, so a degenerate scale never folds the whole picture onto one edge.
    void setScale(double left, double top, double width, double height);
    void setScaleLeft(double v) { left_ = v; }
    void setScaleTop(double v) { top_ = v; }
    void setScaleWidth(double v) { if (v != 0.0) width_ = v; }
    void setScaleHeight(double v) { if (v != 0.0) height_ = v; }
    double scaleLeft() const { return left_; }
    double scaleTop() const { return top_; }
    double scaleWidth() const { return width_; }
    double scaleHeight() const { return height_; }

    // Size of the area in device units (pixels, or points on paper).
    virtual double deviceWidth() const = 0;
    virtual double deviceHeight() const = 0;

    // Clears the area to its background and puts the current position to the scale's origin.
    virtual void clear() = 0;
    // A line in user units, in a palette colour, with the present width, style and mode.
    virtual void line(double x1, double y1, double x2, double y2, int colour) = 0;
    // Text whose top left corner stands at (currentX, currentY), in the foreground colour; the
    // position then moves to the start of the next line, as a print does.
    virtual void print(const QString &text) = 0;
    // The font of the following prints, by name and size in points; a surface without fonts of
    // its own passes over it.
    virtual void setFont(const QString &name, double points, bool bold, bool underline = false);
    // Width of a text in user units in the present font; 0 where the surface does not measure.
    virtual double textWidth(const QString &text) const;
    // A print that leaves the position behind the text on the same line, as a print ending in a
    // semicolon does: the parts of a header line in several colours follow one another.
    void printInline(const QString &text);

    double currentX = 0;
    double currentY = 0;
    int foreColour = 0;
    int drawWidth = 1;
    int drawStyle = kStyleSolid;
    int drawMode = kModeCopyPen;

protected:
    // User units to device units; non-finite input comes out far off the area.
    double toDeviceX(double x) const;
    double toDeviceY(double y) const;
    double fromDeviceDy(double dy) const;
    double fromDeviceDx(double dx) const;

private:
    double left_ = 0;
    double top_ = 0;
    double width_ = 1;
    double height_ = 1;
};

}  // namespace kw
