#include "sim/benchcontrol.h"

#include <QStringList>

namespace kt {

QStringList applyBenchText(const QString &text, SimScene &scene)
{
    QStringList unknown;
    for (QString line : text.split(QLatin1Char('\n'))) {
        line = line.section(QLatin1Char('#'), 0, 0).simplified().toLower();
        if (line.isEmpty())
            continue;
        if (line == QLatin1String("dut on"))
            scene.dutOn = true;
        else if (line == QLatin1String("dut off"))
            scene.dutOn = false;
        else if (line == QLatin1String("antenna horizontal"))
            scene.vertical = false;
        else if (line == QLatin1String("antenna vertical"))
            scene.vertical = true;
        else
            unknown << line;
    }
    return unknown;
}

}  // namespace kt
