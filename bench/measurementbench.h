#pragma once
// The large measurement file the drawing benchmarks read: 97,001 rows of a spectrum with noise
// and a few carriers.

#include "platform/recordset.h"

#include <QStringList>
#include <cmath>
#include <cstdio>

namespace kwbench {

using namespace kw;

// A spectrum with noise and a few carriers, in plot units.
inline int16_t level(int i, int trace)
{
    const double noise = std::sin(i * 12.9898 + trace * 78.233) * 43758.5453;
    const double frac = noise - std::floor(noise);
    double y = -220 + 20 * frac;
    if (i % 250 == 0)
        y = -90 - trace * 5;
    return int16_t(y);
}

inline bool makeMeasurementFile(const QString &path, int rows)
{
    try {
        Database file = CreateDatabase(path);
        TableDef table{QStringLiteral("Measurement"), {}};
        for (const char *name : {"Frequency", "Sample_dBmW", "Average_dBmW", "Maxhold_dBmW", "QPeak_dBmW",
                                 "memory_dBmW", "Ambient_H_dBmW", "Ambient_V_dBmW", "H_Average_dBmW",
                                 "H_Maxhold_dBmW", "H_QPeak_dBmW", "V_Average_dBmW", "V_Maxhold_dBmW",
                                 "V_QPeak_dBmW"})
            table.fields.push_back({QString::fromLatin1(name), FieldType::Single, 0});
        file.AppendTable(table);
        file.Execute(QStringLiteral("begin"));
        constexpr int kChunk = 400;
        for (int start = 0; start < rows; start += kChunk) {
            QStringList values;
            for (int i = start; i < std::min(rows, start + kChunk); ++i) {
                const double f = 30.0 + 970.0 * i / (rows - 1);
                values << QStringLiteral("(%1,%2,%3,%4,%5,%6)")
                              .arg(f, 0, 'f', 3)
                              .arg(level(i, 0) / 2.5)
                              .arg(level(i, 1) / 2.5)
                              .arg(level(i, 2) / 2.5)
                              .arg(0)
                              .arg(level(i, 3) / 2.5);
            }
            file.Execute(QStringLiteral("insert into Measurement (Frequency, Sample_dBmW, Average_dBmW, "
                                        "Maxhold_dBmW, QPeak_dBmW, memory_dBmW) values ") +
                         values.join(QLatin1Char(',')));
        }
        file.Execute(QStringLiteral("commit"));
        file.Close();
        return true;
    } catch (const std::exception &e) {
        std::printf("could not build the measurement file: %s\n", e.what());
        return false;
    }
}

}  // namespace kwbench
