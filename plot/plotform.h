#pragma once
// What a drawing pass needs of the form grafik: its three picture areas and the few controls the
// pass sets. The form implements it; benchmarks and tests use HeadlessPlot.

#include "platform/paintersurface.h"

#include <QString>

namespace kw {

struct CursorReadouts;

class PlotForm {
public:
    virtual ~PlotForm() = default;
    virtual Surface &picture1() = 0;  // the plot
    virtual Surface &picture2() = 0;  // level labels, left of the plot
    virtual Surface &picture3() = 0;  // frequency labels, below the plot

    virtual void setCaption(const QString &text) = 0;
    virtual QString caption() const = 0;
    virtual void setLogBox(bool enabled, bool checked) = 0;         // Check1 "Log"
    virtual void setUnitLabel(const QString &text) = 0;             // Label6
    virtual void setDistanceLabel(bool visible, const QString &text) = 0;  // Label5
    virtual void setMemoryLabel(const QString &text) = 0;           // Label4
    virtual void setButtons(bool peak, bool centre, bool twice) = 0;  // Command1..3 enabled
    // The pass is over: show what was drawn.
    virtual void showPicture() = 0;
    // The cursors moved: show their lines and read-outs. Nothing else of the picture changed.
    virtual void showCursors(const CursorReadouts &) {}
};

// The form the passes draw on; nullptr while grafik is not loaded.
PlotForm *plotForm();
void setPlotForm(PlotForm *form);

// Three image areas laid out as grafik lays them out at a given plot size, with the controls
// recorded as plain values.
class HeadlessPlot : public PlotForm {
public:
    HeadlessPlot(int plotWidth, int plotHeight);

    Surface &picture1() override { return p1; }
    Surface &picture2() override { return p2; }
    Surface &picture3() override { return p3; }
    void setCaption(const QString &text) override { captionText = text; }
    QString caption() const override { return captionText; }
    void setLogBox(bool enabled, bool checked) override { logEnabled = enabled; logChecked = checked; }
    void setUnitLabel(const QString &text) override { unitText = text; }
    void setDistanceLabel(bool visible, const QString &text) override { distanceVisible = visible; distanceText = text; }
    void setMemoryLabel(const QString &text) override { memoryText = text; }
    void setButtons(bool peak, bool centre, bool twice) override { command1 = peak; command2 = centre; command3 = twice; }
    void showPicture() override {}

    ImageSurface p1, p2, p3;
    QString captionText, unitText, distanceText, memoryText;
    bool logEnabled = true, logChecked = false, distanceVisible = false;
    bool command1 = true, command2 = true, command3 = true;
};

// The horizontal scales that the resize of grafik gives the areas: Picture1 0..1000000, Picture2
// 0..10, Picture3 running on to the right at the plot's scale.
void setHorizontalScales(PlotForm &form);

}  // namespace kw
