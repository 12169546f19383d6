#include "platform/twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>
#include <limits>

namespace kw {

namespace {

double screenDpi(bool horizontal)
{
    const QScreen *screen = qobject_cast<QGuiApplication *>(QCoreApplication::instance()) ? QGuiApplication::primaryScreen() : nullptr;
    if (!screen)
        return 96.0;
    const double dpi = horizontal ? screen->logicalDotsPerInchX() : screen->logicalDotsPerInchY();
    return dpi > 0 ? dpi : 96.0;
}

int rounded(double v)
{
    const double r = std::nearbyint(v);
    if (!(r > double(std::numeric_limits<int>::min())) || !(r < double(std::numeric_limits<int>::max())))
        return v < 0 ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
    return int(r);
}

}  // namespace

int twipsToPixels(int twips, double dpi) { return rounded(double(twips) * dpi / kTwipsPerInch); }
int pixelsToTwips(int pixels, double dpi) { return dpi > 0 ? rounded(double(pixels) * kTwipsPerInch / dpi) : 0; }

int twipsToPixelsX(int twips) { return twipsToPixels(twips, screenDpi(true)); }
int twipsToPixelsY(int twips) { return twipsToPixels(twips, screenDpi(false)); }
int pixelsToTwipsX(int pixels) { return pixelsToTwips(pixels, screenDpi(true)); }
int pixelsToTwipsY(int pixels) { return pixelsToTwips(pixels, screenDpi(false)); }

}  // namespace kw
