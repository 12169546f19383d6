#include "plot/filescan.h"

#include "platform/vbformat.h"
#include "plot/page.h"
#include "platform/surface.h"
#include "plot/plotline.h"
#include "shell/state.h"

#include <cmath>
#include <limits>

namespace kw {

namespace {

constexpr uint8_t kSampleColour = 2;
constexpr uint8_t kAverageColour = 9;
constexpr uint8_t kMaxholdColour = 12;
constexpr uint8_t kMemoryColour = 3;
constexpr uint8_t kQPeakColour = 5;
constexpr uint8_t kAmbientHColour = 7;
constexpr uint8_t kAmbientVColour = 6;
constexpr int kThinningFrom = 5;  // thinning applies above this step

// A level field in dB to plot units; nothing when the cell is empty or the value does not fit.
std::optional<int16_t> levelOf(const MeasurementRows &rows, int column)
{
    const auto v = rows.value(column);
    if (!v)
        return std::nullopt;
    try {
        return vbCInt(*v * 2.5);
    } catch (const VbError &) {
        return std::nullopt;
    }
}

void line(const MeasPoint &a, const MeasPoint &b, int column, uint8_t colour)
{
    PlotLine(a.frequency, a.level[column], b.frequency, b.level[column], colour);
}

bool memoryShown() { return st.viewb || st.viewab; }

void zeroSpanScan(MeasurementRows &rows)
{
    Surface *area = plotSurface();
    if (!area)
        return;
    Surface &p1 = *area;
    // A page also draws the quasi-peak of a zero span measurement; the screen does not.
    const bool qpeak = currentPage() && st.viewqpeak;
    const int32_t n = rows.recordCount();
    MeasPoint left, right;
    for (int32_t i = 2; i <= n; ++i) {
        readPoint(rows, left);
        rows.moveNext();
        readPoint(rows, right);
        const double x1 = double(i - 2) * 1000000.0 / n;
        const double x2 = double(i - 1) * 1000000.0 / n;
        auto draw = [&](int column, uint8_t colour) {
            p1.line(x1, left.level[column], x2, right.level[column], ink(colour));
        };
        if (st.viewsample)
            draw(kSample, kSampleColour);
        if (st.viewaverage)
            draw(kAverage, kAverageColour);
        if (st.viewmaxhold)
            draw(kMaxhold, kMaxholdColour);
        if (memoryShown())
            draw(kMemory, kMemoryColour);
        if (qpeak)
            draw(kQPeak, kQPeakColour);
    }
}

void lineScan(MeasurementRows &rows, bool thin, int step)
{
    MeasPoint left;
    readPoint(rows, left);
    MeasPoint right = left;
    while (!rows.eof()) {
        readNextPoint(rows, right, thin, step);
        if (st.viewsample)
            line(left, right, kSample, kSampleColour);
        if (st.viewaverage)
            line(left, right, kAverage, kAverageColour);
        if (st.viewmaxhold)
            line(left, right, kMaxhold, kMaxholdColour);
        if (st.viewqpeak)
            line(left, right, kQPeak, kQPeakColour);
        if (memoryShown())
            line(left, right, kMemory, kMemoryColour);
        left = right;
    }
}

// A stepped result: each measured frequency a stem from the bottom of the plot, shown only above
// the ambient plus the margin when the evaluation is on.
void stemScan(MeasurementRows &rows, bool thin, int step)
{
    MeasPoint left;
    readPoint(rows, left);
    MeasPoint right = left;
    while (!rows.eof()) {
        readNextPoint(rows, right, thin, step);
        if (memoryShown())
            line(left, right, kMemory, kMemoryColour);  // the sweep
        int threshold = -10000;
        if (st.viewhorizontal) {
            if (st.viewambient)
                line(left, right, kAmbientH, kAmbientHColour);
            if (st.calcon)
                threshold = left.level[kAmbientH];
        }
        if (st.viewvertical) {
            if (st.viewambient)
                line(left, right, kAmbientV, kAmbientVColour);
            if (st.calcon && left.level[kAmbientV] > threshold)
                threshold = left.level[kAmbientV];
        }
        if (st.calcon) {
            try {
                threshold += vbCInt(2.5 * st.calcoffset);
            } catch (const VbError &) {
                // a margin past sixteen bits is passed over, and the rest of the file still drawn
            }
        }
        if (left.level[kSample] > 0) {
            auto stem = [&](bool shown, int column, uint8_t colour) {
                if (shown && left.level[column] > threshold)
                    PlotStem(left.frequency, st.grafikmin, left.level[column], colour);
            };
            stem(st.viewmaxhold, kMaxhold, kMaxholdColour);
            stem(st.viewqpeak, kQPeak, kQPeakColour);
            stem(st.viewaverage, kAverage, kAverageColour);
        }
        left = right;
    }
}

}  // namespace

std::optional<float> asFloat(double value)
{
    if (!std::isfinite(value) || std::abs(value) > double(std::numeric_limits<float>::max()))
        return std::nullopt;
    return float(value);
}

namespace {
void readFrequency(const MeasurementRows &rows, MeasPoint &point)
{
    if (const auto v = rows.value(kFrequency))
        if (const auto f = asFloat(*v))
            point.frequency = *f;
}
}  // namespace

void readPoint(const MeasurementRows &rows, MeasPoint &point)
{
    readFrequency(rows, point);
    for (int c = kSample; c < kMeasColumns; ++c)
        if (const auto y = levelOf(rows, c))
            point.level[c] = *y;
}

void readNextPoint(MeasurementRows &rows, MeasPoint &point, bool thin, int step)
{
    rows.moveNext();
    readPoint(rows, point);
    if (!thin)
        return;
    for (int j = 0; j < step && !rows.eof(); ++j) {
        rows.moveNext();
        readFrequency(rows, point);
        for (int c = kSample; c < kMeasColumns; ++c) {
            const auto y = levelOf(rows, c);
            if (y && *y > point.level[c])
                point.level[c] = *y;
        }
    }
}

void scanFile(MeasurementRows &rows)
{
    const bool lines = st.mode == 1 || (st.mode == 0 && st.span >= 1);
    if (!lines && st.mode != 2) {
        zeroSpanScan(rows);  // a zero span trace is never thinned
        return;
    }
    try {
        st.economicstep = vbCByte(double(rows.recordCount()) / 500.0);
    } catch (const VbError &) {
        // a count past 127,749 rows does not fit: the step stays as it was
    }
    const bool thin = st.economic == 1 && st.economicstep > kThinningFrom;
    if (lines)
        lineScan(rows, thin, st.economicstep);
    else
        stemScan(rows, thin, st.economicstep);
}

}  // namespace kw
