#pragma once
// The surface drawn with QPainter on any paint device. ImageSurface keeps its picture in an image,
// so that a window that was covered is put back from it without a new drawing pass; the preview
// and the paper give PainterSurface another device and a target rectangle.

#include "platform/surface.h"

#include <QFont>
#include <QImage>
#include <QRectF>
#include <memory>

class QPainter;
class QPaintDevice;

namespace kw {

class PainterSurface : public Surface {
public:
    PainterSurface();
    ~PainterSurface() override;
    PainterSurface(const PainterSurface &) = delete;
    PainterSurface &operator=(const PainterSurface &) = delete;

    double deviceWidth() const override { return target_.width(); }
    double deviceHeight() const override { return target_.height(); }
    void clear() override;
    void line(double x1, double y1, double x2, double y2, int colour) override;
    void print(const QString &text) override;
    void setFont(const QString &name, double points, bool bold, bool underline = false) override;
    double textWidth(const QString &text) const override;

    void setFont(const QFont &font);
    void setBackground(const QColor &colour) { background_ = colour; }
    // Ends the painter so that the device can be read or shown; the next call opens it again.
    void flush();

protected:
    // The device and the part of it that is this area.
    void setTarget(QPaintDevice *device, const QRectF &target);
    // Another part of the same device while the painter stays open: the next sheet of a print.
    void moveTarget(const QRectF &target);
    QPainter &painter();

private:
    void applyPen(int colour);

    QPaintDevice *device_ = nullptr;
    QRectF target_;
    std::unique_ptr<QPainter> painter_;
    QFont font_;
    QColor background_ = Qt::white;
    // What the painter's pen holds now, to spare setting it on every line.
    int penColour_ = -1;
    int penWidth_ = -1;
    int penStyle_ = -1;
    int penMode_ = -1;
};

// A surface whose picture lives in an image of its own.
class ImageSurface : public PainterSurface {
public:
    ImageSurface(int width = 1, int height = 1);
    // The painter must end before the image it paints on goes.
    ~ImageSurface() override { flush(); }
    ImageSurface(const ImageSurface &) = delete;
    ImageSurface &operator=(const ImageSurface &) = delete;
    // A new size keeps the old picture in the top left corner until the next pass.
    void resize(int width, int height);
    // The picture as it stands (ends the painter first).
    const QImage &image();

private:
    QImage image_;
};

}  // namespace kw
