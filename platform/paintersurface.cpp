#include "platform/paintersurface.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdint>

namespace kw {

namespace {
// The report names the fonts of the desktop it was first written for; their metric-compatible
// free twins keep the page the same on every machine.
void substituteFonts()
{
    static const bool done = [] {
        QFont::insertSubstitution(QStringLiteral("arial"), QStringLiteral("Liberation Sans"));
        QFont::insertSubstitution(QStringLiteral("Courier New"), QStringLiteral("Liberation Mono"));
        return true;
    }();
    (void)done;
}
}  // namespace

PainterSurface::PainterSurface()
{
    substituteFonts();
    font_.setPixelSize(11);
}

void PainterSurface::setFont(const QFont &font)
{
    font_ = font;
    if (painter_)
        painter_->setFont(font_);
}

void PainterSurface::setFont(const QString &name, double points, bool bold, bool underline)
{
    QFont font(name);
    if (points > 0)
        font.setPointSizeF(points);
    font.setBold(bold);
    font.setUnderline(underline);
    setFont(font);
}

double PainterSurface::textWidth(const QString &text) const
{
    return fromDeviceDx(QFontMetricsF(font_, device_).horizontalAdvance(text));
}

void PainterSurface::moveTarget(const QRectF &target)
{
    endLayers();
    target_ = target;
    if (painter_ && painter_->isActive()) {
        painter_->resetTransform();
        painter_->setClipRect(target_);
        painter_->translate(target_.topLeft());
    }
}

PainterSurface::~PainterSurface() { flush(); }

void PainterSurface::setTarget(QPaintDevice *device, const QRectF &target)
{
    flush();
    device_ = device;
    target_ = target;
}

QPainter &PainterSurface::painter()
{
    if (!painter_) {
        painter_ = std::make_unique<QPainter>();
        if (device_)
            painter_->begin(device_);
        painter_->setRenderHint(QPainter::Antialiasing, false);
        painter_->setClipRect(target_);
        painter_->translate(target_.topLeft());
        painter_->setFont(font_);
        penColour_ = penWidth_ = penStyle_ = penMode_ = -1;
    }
    return *painter_;
}

void PainterSurface::flush()
{
    endLayers();
    if (painter_) {
        if (painter_->isActive())
            painter_->end();
        painter_.reset();
    }
}

void PainterSurface::clear()
{
    pending_.clear();
    layers_.clear();
    QPainter &p = painter();
    p.setCompositionMode(QPainter::CompositionMode_SourceOver);
    penMode_ = -1;
    p.fillRect(QRectF(0, 0, target_.width(), target_.height()), background_);
    currentX = scaleLeft();
    currentY = scaleTop();
}

void PainterSurface::applyPen(int colour)
{
    QPainter &p = painter();
    const int width = std::max(1, drawWidth);
    if (colour != penColour_ || width != penWidth_ || drawStyle != penStyle_) {
        QPen pen(paletteColour(colour));
        pen.setWidth(width);
        pen.setCosmetic(true);
        pen.setCapStyle(Qt::SquareCap);
        pen.setStyle(drawStyle == kStyleDash ? Qt::DashLine : drawStyle == kStyleDot ? Qt::DotLine : Qt::SolidLine);
        p.setPen(pen);
        penColour_ = colour;
        penWidth_ = width;
        penStyle_ = drawStyle;
    }
    if (drawMode != penMode_) {
        p.setCompositionMode(drawMode == kModeNotXorPen ? QPainter::RasterOp_NotSourceXorDestination
                                                        : QPainter::CompositionMode_SourceOver);
        penMode_ = drawMode;
    }
}

QPoint PainterSurface::devicePoint(double x, double y) const
{
    // Whole pixels: the plot is not antialiased, and the integer path of the painter is the fast
    // one for the hundred thousand short lines of a large file.
    return QPoint(int(std::lround(toDeviceX(x))), int(std::lround(toDeviceY(y))));
}

void PainterSurface::line(double x1, double y1, double x2, double y2, int colour)
{
    const QPoint a = devicePoint(x1, y1);
    const QPoint b = devicePoint(x2, y2);
    if (joinLines_ && drawMode == kModeCopyPen) {
        drawJoined(a, b, colour);
        return;
    }
    drawPending();
    applyPen(colour);
    if (a == b)
        painter_->drawPoint(a);
    else
        painter_->drawLine(a, b);
}

namespace {
// Adds a point to a polyline. Points that fall into one device column are drawn as one vertical
// stroke from their lowest to their highest, so a column keeps only where the line enters, its two
// extremes and where it leaves: the same pixels with far fewer points when many rows share a
// column.
void append(auto &line, const QPoint &b)
{
    QPolygon &p = line.points;
    if (b.x() != p.last().x()) {
        line.column = int(p.size());
        p.append(b);
        return;
    }
    p.append(b);
    const int first = line.column;
    if (p.size() - first <= 4)
        return;
    int low = p[first].y(), high = low;
    for (int i = first + 1; i < p.size(); ++i) {
        low = std::min(low, p[i].y());
        high = std::max(high, p[i].y());
    }
    const QPoint last = p.last();
    p.resize(first + 1);
    p.append(QPoint(b.x(), low));
    p.append(QPoint(b.x(), high));
    p.append(last);
}
}  // namespace

void PainterSurface::drawJoined(const QPoint &a, const QPoint &b, int colour)
{
    constexpr size_t kMostPending = 16;
    const int width = std::max(1, drawWidth);
    for (Pending &line : pending_) {
        if (line.colour == colour && line.width == width && line.style == drawStyle && line.points.last() == a) {
            if (b != a)
                append(line, b);
            return;
        }
    }
    // A pen not seen since the last text starts a new layer: what was drawn before lies under it.
    const std::array<int, 3> pen{colour, width, drawStyle};
    if (std::find(layers_.begin(), layers_.end(), pen) == layers_.end()) {
        drawPending();
        layers_.push_back(pen);
    } else if (pending_.size() >= kMostPending) {
        drawPending();
    }
    Pending line{colour, width, drawStyle, QPolygon(), 0};
    line.points.append(a);
    if (b != a)
        append(line, b);
    pending_.push_back(std::move(line));
}

void PainterSurface::endLayers()
{
    drawPending();
    layers_.clear();
}

void PainterSurface::drawPending()
{
    if (pending_.empty())
        return;
    std::vector<Pending> lines;
    lines.swap(pending_);
    painter();
    const int width = drawWidth;
    const int style = drawStyle;
    const int mode = drawMode;
    drawMode = kModeCopyPen;
    for (const Pending &line : lines) {
        drawWidth = line.width;
        drawStyle = line.style;
        applyPen(line.colour);
        if (line.points.size() == 1)
            painter_->drawPoint(line.points.first());
        else
            painter_->drawPolyline(line.points);
    }
    drawWidth = width;
    drawStyle = style;
    drawMode = mode;
}

void PainterSurface::print(const QString &text)
{
    endLayers();
    QPainter &p = painter();
    if (penColour_ != foreColour || penMode_ != kModeCopyPen) {
        const int mode = drawMode;
        drawMode = kModeCopyPen;
        applyPen(foreColour);
        drawMode = mode;
    }
    const QFontMetricsF metrics(font_, device_);
    const double x = toDeviceX(currentX);
    const double y = toDeviceY(currentY);
    p.drawText(QPointF(x, y + metrics.ascent()), text);
    currentX = scaleLeft();
    currentY += fromDeviceDy(metrics.height());
}

ImageSurface::ImageSurface(int width, int height)
    : image_(std::max(1, width), std::max(1, height), QImage::Format_RGB32)
{
    image_.fill(Qt::white);
    setTarget(&image_, QRectF(0, 0, image_.width(), image_.height()));
}

void ImageSurface::resize(int width, int height)
{
    width = std::max(1, width);
    height = std::max(1, height);
    if (width == image_.width() && height == image_.height())
        return;
    flush();
    QImage next(width, height, QImage::Format_RGB32);
    next.fill(Qt::white);
    {
        QPainter p(&next);
        p.drawImage(0, 0, image_);
    }
    image_ = std::move(next);
    setTarget(&image_, QRectF(0, 0, width, height));
}

const QImage &ImageSurface::image()
{
    flush();
    return image_;
}

void ImageSurface::line(double x1, double y1, double x2, double y2, int colour)
{
    if (drawMode == kModeNotXorPen && drawWidth <= 1 && invertStraightLine(x1, y1, x2, y2, colour))
        return;
    PainterSurface::line(x1, y1, x2, y2, colour);
}

// The inverting mode on a line straight across or down, pixel by pixel in the image. The
// painter's raster operations go through its general blending path, some hundred times slower;
// a cursor move is eight such lines and must stay far below a millisecond. Dashes are 4 pixels
// on and 2 off, dots 1 on and 2 off, counted from the first point, so that the same line drawn
// again meets exactly the same pixels.
bool ImageSurface::invertStraightLine(double x1, double y1, double x2, double y2, int colour)
{
    const QPoint a = devicePoint(x1, y1);
    const QPoint b = devicePoint(x2, y2);
    if (a.x() != b.x() && a.y() != b.y())
        return false;
    flush();
    const int on = drawStyle == kStyleDash ? 4 : 1;
    const int period = drawStyle == kStyleDash ? 6 : drawStyle == kStyleDot ? 3 : 1;
    const QRgb pen = paletteColour(colour).rgb();
    const bool down = a.x() == b.x() && a.y() != b.y();
    const int from = down ? a.y() : a.x();
    const int to = down ? b.y() : b.x();
    const int step = to >= from ? 1 : -1;
    const int across = down ? a.x() : a.y();
    const int acrossLimit = down ? image_.width() : image_.height();
    const int alongLimit = down ? image_.height() : image_.width();
    if (across < 0 || across >= acrossLimit)
        return true;
    // Only the part on the picture is walked; the pattern still counts from the first point.
    const int64_t first = step > 0 ? std::max<int64_t>(from, 0) : std::min<int64_t>(from, alongLimit - 1);
    const int64_t last = step > 0 ? std::min<int64_t>(to, alongLimit - 1) : std::max<int64_t>(to, 0);
    for (int64_t at = first; step > 0 ? at <= last : at >= last; at += step) {
        if ((at - from) * step % period >= on)
            continue;
        auto *pixel = reinterpret_cast<QRgb *>(image_.scanLine(int(down ? at : across))) + (down ? across : at);
        *pixel = ~(pen ^ *pixel) | 0xff000000u;
    }
    return true;
}

}  // namespace kw
