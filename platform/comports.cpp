#include "platform/comports.h"

#include "platform/progdir.h"

#include <QFile>
#include <QMap>

namespace kw {

namespace {

bool loaded = false;
QMap<int, QString> overrides;

// A port map is a handful of short lines: what lies beyond this is not read at all, so a damaged
// or enormous file costs nothing.
constexpr qint64 kPortMapLimit = 64 * 1024;

void load()
{
    loaded = true;
    overrides.clear();
    QFile file(programFile(QStringLiteral("ports.def")));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    const QList<QByteArray> lines = file.read(kPortMapLimit).split('\n');
    for (const QByteArray &bytes : lines) {
        const QString line = QString::fromLocal8Bit(bytes).trimmed();
        if (line.startsWith(QLatin1Char('#')))
            continue;
        const int eq = line.indexOf(QLatin1Char('='));
        if (eq < 4 || !line.startsWith(QLatin1String("com"), Qt::CaseInsensitive))
            continue;
        bool ok = false;
        const int port = line.mid(3, eq - 3).trimmed().toInt(&ok);
        const QString device = line.mid(eq + 1).trimmed();
        if (ok && port >= 1 && port <= 4 && !device.isEmpty())
            overrides[port] = device;
    }
}

}  // namespace

QString comPortDevice(int port)
{
    if (!loaded)
        load();
    if (overrides.contains(port))
        return overrides.value(port);
#ifdef Q_OS_WIN
    return QStringLiteral("COM%1").arg(port);
#else
    return QStringLiteral("/dev/ttyS%1").arg(port - 1);
#endif
}

void reloadComPorts() { loaded = false; }

}  // namespace kw
