// Find criteria as any text: parsed, bound to a table's columns and evaluated against rows. A
// criterion that does not parse or names an unknown column throws the engine's error, nothing else.

#include "platform/criteria.h"
#include "platform/vbformat.h"
#include "support/fuzzsupport.h"

#include <QStringList>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    kw::fuzz::prepare();
    static const QStringList columns = {QStringLiteral("limitname"), QStringLiteral("frequency"),
                                        QStringLiteral("level_dBmW"), QStringLiteral("log"), QStringLiteral("nr")};
    static const std::vector<std::vector<QVariant>> rows = {
        {QStringLiteral("CISPR 22 B QP"), 30.0, 30.0, true, 1},
        {QStringLiteral("it's"), 100.5, -1000.0, false, 2},
        {QVariant(), QVariant(), QVariant(), QVariant(), QVariant()},
    };
    try {
        kw::Criterion criterion = kw::parseCriterion(QString::fromUtf8(kw::fuzz::bytes(data, size)));
        kw::bindCriterion(
            criterion,
            [](const QString &name) {
                for (qsizetype i = 0; i < columns.size(); ++i)
                    if (columns[i].compare(name, Qt::CaseInsensitive) == 0)
                        return int(i);
                return -1;
            },
            [](int index) { return index == 1 || index == 2; });
        for (const auto &row : rows)
            (void)kw::matchesCriterion(criterion, row);
    } catch (const kw::VbError &) {
    }
    return 0;
}
