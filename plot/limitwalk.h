#pragma once
// A limit line on the plot: its points walked segment by segment, cut to the plot's frequency
// range, drawn straight or as 50 short pieces where the limit's interpolation and the axis
// disagree; and the limit's extent gathered for the widening of the level scale.

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace kw {

// One row of a limit as read: an empty cell (a shorter limit in a file's limitlines) reads as
// nothing and leaves the reader's variable as it was.
struct LimitRow {
    std::optional<float> frequency;
    std::optional<float> level;  // dBmW
};

struct LimitLine {
    std::vector<LimitRow> rows;  // in frequency order
    // The rows carry the columns frequency and level_dbmw; a file's limitlines does not, and
    // the searches of a zero span plot find nothing there.
    bool searchable = true;
    uint8_t colour = 12;
    int16_t logflag = 0;  // -1: the limit is interpolated logarithmically in frequency
    QString name;         // put beside the line on a page
};

// Draws the line as the present axis asks and widens st.limitlow / st.limithigh (in dB). On a page
// the name of the limit stands once at the left end of the first piece drawn.
void drawLimit(const LimitLine &limit);

}  // namespace kw
