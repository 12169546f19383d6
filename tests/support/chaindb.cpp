#include "support/chaindb.h"

#include "platform/recordset.h"
#include "shell/state.h"

namespace kw {

void makeChainDatabase(const QString &path, const QString &configname, const std::vector<ChainComponent> &components)
{
    Database db = CreateDatabase(path);
    db.AppendTable({QStringLiteral("loshead"),
                    {{QStringLiteral("losnr"), FieldType::Long},
                     {QStringLiteral("losname"), FieldType::Text, 80},
                     {QStringLiteral("lostyp"), FieldType::Integer},
                     {QStringLiteral("Distance"), FieldType::Single}}});
    db.AppendTable({QStringLiteral("losdef"),
                    {{QStringLiteral("losnr"), FieldType::Long},
                     {QStringLiteral("frequency"), FieldType::Single},
                     {QStringLiteral("level_dbmw"), FieldType::Single}}});
    db.AppendTable({QStringLiteral("config"),
                    {{QStringLiteral("configname"), FieldType::Text, 80},
                     {QStringLiteral("devicea"), FieldType::Long},
                     {QStringLiteral("deviceb"), FieldType::Long},
                     {QStringLiteral("devicec"), FieldType::Long},
                     {QStringLiteral("deviced"), FieldType::Long},
                     {QStringLiteral("devicee"), FieldType::Long}}});
    QStringList devices;
    for (size_t k = 0; k < 5; ++k)
        devices << QString::number(k < components.size() ? components[k].losnr : 0);
    for (const ChainComponent &c : components) {
        db.Execute(QStringLiteral("insert into loshead values (%1, 'part %1', %2, %3)").arg(c.losnr).arg(c.lostyp).arg(double(c.distance)));
        QStringList values;
        for (auto [f, level] : c.rows)
            values << QStringLiteral("(%1, %2, %3)").arg(c.losnr).arg(double(f), 0, 'g', 9).arg(double(level), 0, 'g', 9);
        if (!values.isEmpty())
            db.Execute(QStringLiteral("insert into losdef values ") + values.join(QStringLiteral(", ")));
    }
    db.Execute(QStringLiteral("insert into config values ('%1', %2)").arg(configname, devices.join(QStringLiteral(", "))));
    st.db = db;
}

std::vector<std::pair<float, float>> evenRows(int n, float lo, float hi, float start, float step)
{
    std::vector<std::pair<float, float>> rows;
    for (int k = 0; k < n; ++k)
        rows.emplace_back(lo + (hi - lo) * float(k) / float(n - 1), start + step * float(k));
    return rows;
}

}  // namespace kw
