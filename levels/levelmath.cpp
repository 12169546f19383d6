#include "levels/levelmath.h"

#include <cmath>

namespace kw {

double log10floor(double x)
{
    // Strictly below: 1E-10 itself passes unchanged; NaN goes to the floor as well.
    if (!(x >= 1e-10))
        x = 1e-10;
    return std::log(x) / std::log(10.0);
}

double db20(double x) { return 20.0 * log10floor(x); }

double pow10(double x) { return std::pow(10.0, x); }

double undb20(double db) { return pow10(db / 20.0); }

}  // namespace kw
