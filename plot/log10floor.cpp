// The level processing uses the same routine; one definition serves both.
#include "plot/axes.h"

#include <cmath>

namespace kw {

double log10floor(double value)
{
    if (!(value >= 1e-10))  // also takes NaN to the floor
        value = 1e-10;
    return std::log(value) / std::log(10.0);
}

}  // namespace kw
