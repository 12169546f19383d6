#pragma once
// A small application database with the tables of the correction chain: loshead, losdef and one
// configuration that puts the given components in slots a, b, ... in order.

#include <QString>
#include <utility>
#include <vector>

namespace kw {

struct ChainComponent {
    int losnr = 0;
    int lostyp = 1;         // 0 antenna, 1 loss, 2 gain
    float distance = 0.0f;  // metres, for an antenna
    std::vector<std::pair<float, float>> rows;  // MHz, dB
};

// Creates the file and leaves it open in st.db.
void makeChainDatabase(const QString &path, const QString &configname, const std::vector<ChainComponent> &components);

// n rows from lo to hi MHz, the level rising by step dB a row from start.
std::vector<std::pair<float, float>> evenRows(int n, float lo, float hi, float start, float step);

}  // namespace kw
