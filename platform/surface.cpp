#include "platform/surface.h"

#include <cmath>

namespace kw {

QColor paletteColour(int index)
{
    static const QRgb colours[16] = {
        qRgb(0, 0, 0),     qRgb(0, 0, 128),   qRgb(0, 128, 0),   qRgb(0, 128, 128),
        qRgb(128, 0, 0),   qRgb(128, 0, 128), qRgb(128, 128, 0), qRgb(192, 192, 192),
        qRgb(128, 128, 128), qRgb(0, 0, 255), qRgb(0, 255, 0),   qRgb(0, 255, 255),
        qRgb(255, 0, 0),   qRgb(255, 0, 255), qRgb(255, 255, 0), qRgb(255, 255, 255),
    };
    return QColor(colours[index & 15]);
}

void Surface::setScale(double left, double top, double width, double height)
{
    if (width == 0.0 || height == 0.0)
        return;
    left_ = left;
    top_ = top;
    width_ = width;
    height_ = height;
}

namespace {
// Keeps device coordinates in a range the painter handles; the area cuts off the rest anyway.
double tame(double v)
{
    if (!std::isfinite(v))
        return v > 0 ? 1e7 : -1e7;
    return std::clamp(v, -1e7, 1e7);
}
}  // namespace

double Surface::toDeviceX(double x) const
{
    return width_ == 0 ? 0 : tame((x - left_) / width_ * deviceWidth());
}

double Surface::toDeviceY(double y) const
{
    return height_ == 0 ? 0 : tame((y - top_) / height_ * deviceHeight());
}

double Surface::fromDeviceDx(double dx) const
{
    const double w = deviceWidth();
    return w == 0 ? 0 : dx / w * width_;
}

void Surface::setFont(const QString &, double, bool, bool) {}

double Surface::textWidth(const QString &) const { return 0; }

void Surface::printInline(const QString &text)
{
    const double x = currentX;
    const double y = currentY;
    print(text);
    currentX = x + textWidth(text);
    currentY = y;
}

double Surface::fromDeviceDy(double dy) const
{
    const double h = deviceHeight();
    return h == 0 ? 0 : dy / h * height_;
}

}  // namespace kw
