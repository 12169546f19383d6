#include "platform/paintersurface.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdint>

namespace kw {

PainterSurface::PainterSurface()
{
    font_.setPixelSize(11);
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
    if (painter_) {
        if (painter_->isActive())
            painter_->end();
        painter_.reset();
    }
}

void PainterSurface::clear()
{
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
    applyPen(colour);
    const QPoint a = devicePoint(x1, y1);
    const QPoint b = devicePoint(x2, y2);
    if (a == b)
        painter_->drawPoint(a);
    else
        painter_->drawLine(a, b);
}

void PainterSurface::print(const QString &text)
{
    QPainter &p = painter();
    if (penColour_ != foreColour || penMode_ != kModeCopyPen) {
        const int mode = drawMode;
        drawMode = kModeCopyPen;
        applyPen(foreColour);
        drawMode = mode;
    }
    const QFontMetricsF metrics(font_);
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
