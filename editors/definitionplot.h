#pragma once
// The small plot of a limit or a component in its editor: a linear frequency axis over the
// definition's own range, nine frequency and four level grid lines with their labels, and the
// points joined straight or, for a logarithmic limit, bent as the limit evaluation bends them.
// It draws through the same frequency labels and segment pieces as the main plot.

#include "platform/surface.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace kw {

using DefinitionPoints = std::vector<std::pair<float, float>>;  // MHz, stored level, in frequency order

// The plot range found while filling the grid. Levels are stored values.
struct DefinitionRange {
    float fmin = 0.0f;
    float fmax = 0.0f;
    float lmin = 0.0f;
    float lmax = 0.0f;
};

// What lies between a stored level and a shown one: a limit adds its unit's whole-number offset,
// a component multiplies by its sign (-1 for a gain, stored as a negative loss).
struct LevelView {
    bool component = false;
    int16_t offset = 0;
    int16_t sign = 1;
    bool logarithmic = false;  // a limit's "Logarithmic def."

    double shown(double stored) const { return component ? stored * sign : stored + offset; }
};

// The range as the grid fill finds it: from 0 when the first point lies below 1 MHz, else from
// it; to the highest frequency met in order; levels from the lowest to the highest. Nothing for no
// points.
bool definitionRange(const DefinitionPoints &points, DefinitionRange &range);

// The three areas: the plot, the level labels left of it, the frequency labels under it.
struct DefinitionPictures {
    Surface &plot;
    Surface &levels;
    Surface &frequencies;
};

// DrawLimit / DrawComponent. A range without height is opened one dB either way first.
void drawDefinition(DefinitionPictures pictures, const DefinitionPoints &points, DefinitionRange &range,
                    const LevelView &view);

}  // namespace kw
