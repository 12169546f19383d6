#include "editors/definitionplot.h"

#include "platform/vbformat.h"
#include "plot/axes.h"
#include "plot/limitwalk.h"

#include <cmath>

namespace kw {

namespace {

constexpr int kLabelColour = 5;
constexpr int kGridColour = 7;
constexpr int kLimitColour = 12;

struct Painter {
    DefinitionPictures p;
    const DefinitionRange &r;
    const LevelView &view;

    double x(float f) const { return linearX(f, r.fmin, r.fmax); }

    void straight(float f1, double l1, float f2, double l2, int colour) const
    {
        if (f1 < 0.0f || f2 < 0.0f)
            return;
        const double x1 = x(f1);
        const double x2 = x(f2);
        if (x1 < 0 || x2 < 0)
            return;
        p.plot.line(x1, l1, x2, l2, colour);
    }

    // DrawLimitSegment; a component's segments are always straight.
    void segment(float f1, float l1, float f2, float l2, int colour) const
    {
        if (!view.logarithmic || view.component || l1 == l2 || f1 == f2) {
            straight(f1, l1, f2, l2, colour);
            return;
        }
        limitPieces(f1, l1, f2, l2, true, [this, colour](float fa, double la, float fb, double lb) {
            p.plot.line(x(fa), la, x(fb), lb, colour);
        });
    }

    void frequencyLabel(float f) const
    {
        if (f < 0.0f)
            return;
        const double at = x(f);
        if (at < 0)
            return;
        const double bottom = p.plot.scaleTop() + p.plot.scaleHeight();
        p.plot.line(at, bottom, at, bottom - p.plot.scaleHeight() / 40.0, kLabelColour);
        Surface &s = p.frequencies;
        s.line(at, 10, at, 7, kLabelColour);
        s.foreColour = kLabelColour;
        s.currentX = at;
        s.currentY = 8;
        s.print(FormatFrequency(f));
    }

    void levelLabel(float l) const
    {
        Surface &s = p.levels;
        s.line(8, l, 10, l, kLabelColour);
        s.foreColour = kLabelColour;
        s.currentX = 0;
        s.currentY = l;
        s.print(vbFormat(float(view.shown(l)), QStringLiteral("###0.0")));
    }
};

}  // namespace

bool definitionRange(const DefinitionPoints &points, DefinitionRange &range)
{
    if (points.empty())
        return false;
    const auto &[f0, l0] = points.front();
    range.fmin = f0 >= 1.0f ? f0 : 0.0f;
    range.fmax = f0;
    range.lmin = l0;
    range.lmax = l0;
    for (size_t i = 1; i < points.size(); ++i) {
        const auto &[f, l] = points[i];
        if (f >= range.fmax)
            range.fmax = f;
        if (l < range.lmin)
            range.lmin = l;
        if (l > range.lmax)
            range.lmax = l;
    }
    return true;
}

void drawDefinition(DefinitionPictures pictures, const DefinitionPoints &points, DefinitionRange &r,
                    const LevelView &view)
{
    if (r.lmin == r.lmax) {
        r.lmax += 1.0f;
        r.lmin -= 1.0f;
    }
    const double span = std::abs(double(r.lmax) - double(r.lmin));
    double top = 0, height = 0;
    if (view.component && view.sign == -1) {
        // A bigger gain is stored as a lower number: the scale turns over so that it stands higher.
        top = r.lmin - span / 20.0;
        height = (double(r.lmax) - r.lmin) + span / 10.0;
    } else {
        top = r.lmax + span / 20.0;
        height = (double(r.lmin) - r.lmax) - span / 10.0;
    }
    pictures.plot.setScale(0, top, kPlotWidth, height);
    pictures.levels.setScale(0, top, 10, height);
    Surface &f = pictures.frequencies;
    f.setScale(0, 10, f.deviceWidth() > 0 && pictures.plot.deviceWidth() > 0
                          ? f.deviceWidth() / pictures.plot.deviceWidth() * kPlotWidth
                          : kPlotWidth,
               -11);
    pictures.plot.clear();
    pictures.levels.clear();
    pictures.frequencies.clear();

    const Painter paint{pictures, r, view};
    paint.frequencyLabel(r.fmin);
    for (int i = 1; i <= 9; ++i) {
        const float fi = r.fmin + (r.fmax - r.fmin) * float(i) / 10.0f;
        paint.segment(fi, r.lmax + 2.0f, fi, r.lmin - 2.0f, kGridColour);
        paint.frequencyLabel(fi);
    }
    paint.levelLabel(r.lmin);
    paint.segment(r.fmin, r.lmin, r.fmax, r.lmin, kGridColour);
    for (int i = 1; i <= 4; ++i) {
        const float li = r.lmin + (r.lmax - r.lmin) * float(i) / 5.0f;
        paint.segment(r.fmin, li, r.fmax, li, kGridColour);
        paint.levelLabel(li);
    }
    paint.levelLabel(r.lmax);
    paint.segment(r.fmin, r.lmax, r.fmax, r.lmax, kGridColour);
    for (size_t i = 1; i < points.size(); ++i)
        paint.segment(points[i - 1].first, points[i - 1].second, points[i].first, points[i].second, kLimitColour);
}

}  // namespace kw
