#pragma once
// A plot form whose areas remember what was drawn on them, in user units, for tests that check
// the drawing as numbers.

#include "plot/cursors.h"
#include "plot/plotform.h"
#include "shell/state.h"

#include <QStringList>
#include <vector>

namespace kwtest {

struct DrawnLine {
    double x1, y1, x2, y2;
    int colour;
    int width;
    int style = kw::kStyleSolid;
    int mode = kw::kModeCopyPen;
};

struct DrawnText {
    double x, y;
    QString text;
    int colour;
};

class RecordingSurface : public kw::Surface {
public:
    RecordingSurface(double w, double h) : w_(w), h_(h) {}
    double deviceWidth() const override { return w_; }
    double deviceHeight() const override { return h_; }
    void clear() override
    {
        lines.clear();
        texts.clear();
        ++clears;
    }
    void line(double x1, double y1, double x2, double y2, int colour) override
    {
        lines.push_back({x1, y1, x2, y2, colour, drawWidth, drawStyle, drawMode});
    }
    void print(const QString &text) override
    {
        texts.push_back({currentX, currentY, text, foreColour});
        currentX = scaleLeft();
    }
    std::vector<DrawnLine> linesOf(int colour) const
    {
        std::vector<DrawnLine> out;
        for (const DrawnLine &l : lines)
            if (l.colour == colour)
                out.push_back(l);
        return out;
    }

    int verticalsOf(int colour) const
    {
        int n = 0;
        for (const DrawnLine &l : linesOf(colour))
            n += l.x1 == l.x2 ? 1 : 0;
        return n;
    }
    QStringList textList() const
    {
        QStringList out;
        for (const DrawnText &t : texts)
            out << t.text;
        return out;
    }

    std::vector<DrawnLine> lines;
    std::vector<DrawnText> texts;
    int clears = 0;

private:
    double w_, h_;
};

// The plot's frame: start..stop MHz, -20..-100 dB (-50..-250 plot units).
inline void plotFrame(float start, float stop)
{
    kw::st.freqstart = start;
    kw::st.freqstop = stop;
    kw::st.span = int16_t(stop - start);
    kw::st.grafikmax = -50;
    kw::st.grafikmin = -250;
}

class RecordingPlot : public kw::PlotForm {
public:
    RecordingPlot() : p1(1000, 700), p2(40, 727), p3(1073, 27)
    {
        kw::setHorizontalScales(*this);
        kw::setPlotForm(this);
    }
    ~RecordingPlot() override
    {
        if (kw::plotForm() == this)
            kw::setPlotForm(nullptr);
    }
    kw::Surface &picture1() override { return p1; }
    kw::Surface &picture2() override { return p2; }
    kw::Surface &picture3() override { return p3; }
    void setCaption(const QString &text) override { caption_ = text; }
    QString caption() const override { return caption_; }
    void setLogBox(bool enabled, bool checked) override
    {
        logEnabled = enabled;
        logChecked = checked;
    }
    void setUnitLabel(const QString &text) override { unit = text; }
    void setDistanceLabel(bool visible, const QString &text) override
    {
        distanceVisible = visible;
        distance = text;
    }
    void setMemoryLabel(const QString &text) override { memory = text; }
    void setButtons(bool a, bool b, bool c) override
    {
        buttons[0] = a;
        buttons[1] = b;
        buttons[2] = c;
    }
    void showPicture() override { ++shown; }
    void showCursors(const kw::CursorReadouts &) override { ++cursorsShown; }

    RecordingSurface p1, p2, p3;
    QString caption_, unit, distance, memory;
    bool logEnabled = true, logChecked = false, distanceVisible = false;
    bool buttons[3] = {true, true, true};
    int shown = 0;
    int cursorsShown = 0;
};

}  // namespace kwtest
