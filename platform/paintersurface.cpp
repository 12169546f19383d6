#include "platform/paintersurface.h"

#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

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

void PainterSurface::line(double x1, double y1, double x2, double y2, int colour)
{
    applyPen(colour);
    // Whole pixels: the plot is not antialiased, and the integer path of the painter is the fast
    // one for the hundred thousand short lines of a large file.
    const QPoint a(int(std::lround(toDeviceX(x1))), int(std::lround(toDeviceY(y1))));
    const QPoint b(int(std::lround(toDeviceX(x2))), int(std::lround(toDeviceY(y2))));
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

}  // namespace kw
