#pragma once
// A measurement file with the measurement and limitlines tables as the program writes them.

#include "platform/recordset.h"

#include <QList>
#include <QPair>
#include <QStringList>

namespace kwtest {

inline kw::Database measurementFile(const QString &path)
{
    kw::Database file = kw::CreateDatabase(path);
    const QList<QPair<QString, QStringList>> tables = {
        {"Measurement", {"Frequency", "Sample_dBmW", "Average_dBmW", "Maxhold_dBmW", "QPeak_dBmW", "memory_dBmW",
                         "Ambient_H_dBmW", "Ambient_V_dBmW"}},
        {"Limitlines", {"avefreq", "Average_dBmW", "maxfreq", "Maxhold_dBmW"}}};
    for (const auto &[name, columns] : tables) {
        kw::TableDef table{name, {}};
        for (const QString &column : columns)
            table.fields.push_back({column, kw::FieldType::Single, 0});
        file.AppendTable(table);
    }
    return file;
}

}  // namespace kwtest
