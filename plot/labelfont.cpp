#include "plot/labelfont.h"

#include <QFontMetricsF>
#include <algorithm>

namespace kw {

namespace {

constexpr int kSmallestPixels = 7;
constexpr int kNarrowest = 70;  // per cent of the normal width
constexpr int kNarrowingStep = 5;
constexpr double kGapPixels = 2.0;  // between the end of one frequency label and the next tick
constexpr double kTickShare = 0.8;  // the ticks take the last fifth of the level strip

// The widest texts the labels can have: "###0.00M" below 1000 MHz, "###0.0" in any level unit.
const QString kWidestFrequency = QStringLiteral("000.00M");
const QString kWidestLevel = QStringLiteral("-000.0");

QFont fitted(const QString &widest, double room, int largest)
{
    QFont font;
    font.setStyleHint(QFont::SansSerif);
    for (int pixels = largest; pixels >= kSmallestPixels; --pixels) {
        font.setPixelSize(pixels);
        for (int stretch = 100; stretch >= kNarrowest; stretch -= kNarrowingStep) {
            font.setStretch(stretch);
            if (QFontMetricsF(font).horizontalAdvance(widest) <= room)
                return font;
        }
    }
    return font;
}

// Larger pictures get larger labels, within what sits well beside the grid.
int largestFor(int pixels) { return std::clamp(8 + pixels / 150, 11, 13); }

}  // namespace

QFont frequencyLabelFont(int plotWidth)
{
    return fitted(kWidestFrequency, plotWidth / 10.0 - kGapPixels, largestFor(plotWidth));
}

QFont levelLabelFont(int stripWidth, int plotHeight)
{
    return fitted(kWidestLevel, stripWidth * kTickShare - 1.0, largestFor(plotHeight));
}

}  // namespace kw
