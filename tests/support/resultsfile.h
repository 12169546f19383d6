#pragma once
// An ".emc" file of a finished run with known rows, for the results table and its exports.

#include "platform/recordset.h"
#include "store/measurementfile.h"

#include <QStringList>

namespace kwtest {

constexpr double kUv = 107.0;  // dBµV/m over dBmW

// An ".emc" file in the program's own format: a peak limit falling 40 -> 30 dBµV/m over 30-100 MHz
// and stepping 30 -> 37 at 230 MHz; an average limit 10 dB lower over 30-230 MHz.
inline QString emcFile(const QString &dir, bool peakLog, int version = kw::kEmcVersion)
{
    const QString path = dir + QStringLiteral("/run.emc");
    kw::Database f = kw::CreateDatabase(path);
    for (const kw::TableDef *t : {&kw::measurementTableDef(), &kw::limitlinesTableDef(), &kw::settingsTableDef()})
        f.AppendTable(*t);
    const double peak[][2] = {{30, 40}, {100, 30}, {230, 30}, {230, 37}, {1000, 37}};
    const double average[][2] = {{30, 30}, {100, 20}, {230, 20}};
    for (int k = 0; k < 5; ++k) {
        const QString ave = k < 3 ? QStringLiteral("%1, %2").arg(average[k][0]).arg(average[k][1] - kUv) : QStringLiteral("null, null");
        f.Execute(QStringLiteral("insert into limitlines values (%1, %2, %3)").arg(ave).arg(peak[k][0]).arg(peak[k][1] - kUv));
    }
    f.Execute(QStringLiteral("insert into settings (vernr, dat, unit, configname, lmaxlog, lavelog, configdist, maxholdname, "
                             "averagename, note) values (%1, 46000.5, 'dBµV/m              ', 'CISPR 32 B radiated 3 m', %2, 0, 3, "
                             "'B peak', 'B average', 'line one\nline two')")
                  .arg(version)
                  .arg(peakLog ? -1 : 0));
    // Frequency, Sample, Average, Maxhold, QPeak, memory, Ambient H, Ambient V, h max, v max (dBµV/m; -1000 empty).
    const QString rows[] = {
        "50, 1, 20, 36, 33, 36, 28, -1000, 35, 36",            // V larger; ambient 8 dB under the peak
        "150, 0, -1000, -1000, -1000, 20, 10, 10, -1000, -1000",  // swept, not stepped
        "230, 1, 25, 31, null, 31, 20, 27, 31, -1000",         // no quasi-peak: the peak is judged; step: 30 holds
        "400, 1, null, 37, 37, 30, -1000, -1000, null, 37",    // exactly on the limit
        "1500, 1, null, 50, 40, 50, null, null, 50, null",     // beyond both limits
    };
    for (const QString &row : rows) {
        QStringList v = row.split(QStringLiteral(", "));
        for (int c = 2; c < v.size(); ++c)
            if (v[c] != QLatin1String("null") && v[c] != QLatin1String("-1000"))
                v[c] = QString::number(v[c].toDouble() - kUv);
        f.Execute(QStringLiteral("insert into measurement (Frequency, Sample_dBmW, Average_dBmW, Maxhold_dBmW, QPeak_dBmW, "
                                 "memory_dBmW, Ambient_H_dBmW, Ambient_V_dBmW, H_Maxhold_dBmW, V_Maxhold_dBmW) values (") +
                  v.join(QStringLiteral(", ")) + QLatin1Char(')'));
    }
    f.Close();
    return path;
}

}  // namespace kwtest
