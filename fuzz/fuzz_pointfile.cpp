// An import file for the editors as any bytes. The table is refused whole, every refusal naming a
// line of the file, or taken whole with finite, non-negative frequencies. A taken table exported
// again, with the level offsets and signs the editors show, imports to the same stored points.

#include "editors/definitionplot.h"
#include "editors/pointedit.h"
#include "editors/pointfile.h"
#include "support/fuzzsupport.h"

#include <QRegularExpression>
#include <cmath>
#include <cstdlib>

namespace {

void check(bool good)
{
    if (!good)
        std::abort();
}

void refusalsNameLines(const kw::PointTable &table, const QByteArray &input)
{
    static const QRegularExpression numbered(QStringLiteral("^line (\\d+): \\S"));
    const qsizetype lineCount = input.count('\n') + 1;
    for (const QString &error : table.errors) {
        if (error == QLatin1String("no points")) {
            check(table.points.empty() && table.errors.size() == 1);
            continue;
        }
        const QRegularExpressionMatch m = numbered.match(error);
        check(m.hasMatch());
        const qsizetype line = m.captured(1).toLongLong();
        check(line >= 1 && line <= lineCount);
    }
}

void exportedReadsBack(const kw::PointTable &table, const kw::LevelView &view)
{
    std::vector<std::pair<float, float>> stored;
    for (const auto &[mhz, level] : table.points)
        stored.emplace_back(float(mhz), kw::storedLevel(view, level));
    const QByteArray text = kw::writePointTable(
        QStringLiteral("Level (dBµV)"), stored, [view](float s) { return view.shown(s); },
        [view](double shown) { return kw::storedLevel(view, shown); });
    const kw::PointTable back = kw::readPointTable(text);
    check(back.errors.isEmpty());
    check(back.points.size() == stored.size());
    for (size_t i = 0; i < stored.size(); ++i) {
        check(float(back.points[i].first) == stored[i].first);
        check(kw::storedLevel(view, back.points[i].second) == stored[i].second);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input = kw::fuzz::bytes(data, size);
    const kw::PointTable table = kw::readPointTable(input);
    refusalsNameLines(table, input);
    if (!table.errors.isEmpty())
        return 0;
    check(!table.points.empty());
    for (const auto &[mhz, level] : table.points)
        check(std::isfinite(mhz) && mhz >= 0 && std::isfinite(level));

    kw::LevelView limit;  // a limit in dBµV
    limit.offset = 107;
    kw::LevelView gain;   // a component's gain, stored as a negative loss
    gain.component = true;
    gain.sign = -1;
    for (const kw::LevelView &view : {kw::LevelView{}, limit, gain})
        exportedReadsBack(table, view);
    return 0;
}
