#include "sim/settings.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace kt {

namespace {

const char kCr = 13;

QByteArray line(const QString &text) { return text.toLatin1() + kCr; }

template <size_t N>
int nearestOf(const int (&values)[N], double wanted)
{
    return *std::min_element(std::begin(values), std::end(values),
                             [wanted](int a, int b) { return std::abs(a - wanted) < std::abs(b - wanted); });
}

QString fixed(double value, int decimals) { return QString::number(value, 'f', decimals); }

// Levels come back with their sign and one decimal, as the analyser's display shows them.
QString level(double value) { return (value >= 0 ? QStringLiteral("+") : QString()) + fixed(value, 1); }

double round1(double value) { return std::round(value * 10.0) / 10.0; }

}  // namespace

int nearestSpan(double span)
{
    static const int spans[] = {0, 1, 2, 5, 10, 20, 30, 50, 100, 200, 500, 1000};
    return nearestOf(spans, span);
}

int nearestBandwidth(double bandwidth)
{
    static const int widths[] = {9, 120, 400};
    return nearestOf(widths, bandwidth);
}

int nearestAttenuator(double attenuator)
{
    static const int steps[] = {0, 10, 20, 30, 40};
    return nearestOf(steps, attenuator);
}

std::optional<QByteArray> SettingsModel::handle(const QString &command)
{
    if (command.size() < 3 || command[0] != QLatin1Char('#'))
        return std::nullopt;
    const QString tag = command.mid(1, 2);
    const QString value = command.mid(3);
    if ((tag == QLatin1String("tg") || tag == QLatin1String("tl")) && !trackingGenerator_)
        return std::nullopt;
    if (value.isEmpty()) {
        if (tag == QLatin1String("sa")) {
            ++settings_.savedToB;
            return line(QStringLiteral("RD"));
        }
        return query(tag);
    }
    return set(tag, value);
}

// Queries answer with their tag and the value: "cf0500.000".
std::optional<QByteArray> SettingsModel::query(const QString &tag)
{
    const Settings &s = settings_;
    QString value;
    if (tag == QLatin1String("cf")) value = QStringLiteral("%1").arg(s.centerfreq, 8, 'f', 3, QLatin1Char('0'));
    else if (tag == QLatin1String("sp")) value = QString::number(s.span);
    else if (tag == QLatin1String("rl")) value = level(s.reflevel);
    else if (tag == QLatin1String("at")) value = QString::number(s.attenuator);
    else if (tag == QLatin1String("bw")) value = QString::number(s.bandwith);
    else if (tag == QLatin1String("vf")) value = QString::number(s.videofilter);
    else if (tag == QLatin1String("vm")) value = QString::number(s.shown);
    else if (tag == QLatin1String("dm")) value = QString::number(s.calc);
    else if (tag == QLatin1String("db")) value = QString::number(s.dbperdiv);
    else if (tag == QLatin1String("tg")) value = QString::number(s.tgon);
    else if (tag == QLatin1String("tl")) value = level(s.tglevel);
    else if (tag == QLatin1String("uc")) value = QString::number(s.uncalibrated() ? 1 : 0);
    else if (tag == QLatin1String("tr")) value = level(s.triggerlevel);
    else return std::nullopt;
    return line(tag + value);
}

std::optional<QByteArray> SettingsModel::set(const QString &tag, const QString &text)
{
    Settings &s = settings_;
    bool ok = false;
    const double v = text.toDouble(&ok);
    if (!ok)
        return std::nullopt;  // a number with a comma, or no number: the analyser does not take it
    if (tag == QLatin1String("cf")) s.centerfreq = std::clamp(std::round(v * 1000.0) / 1000.0, 0.0, 1050.0);
    else if (tag == QLatin1String("sp")) s.span = nearestSpan(v);
    else if (tag == QLatin1String("rl")) s.reflevel = std::clamp(round1(v), -100.0, 20.0);
    else if (tag == QLatin1String("at")) s.attenuator = nearestAttenuator(v);
    else if (tag == QLatin1String("bw")) s.bandwith = nearestBandwidth(v);
    else if (tag == QLatin1String("vf")) s.videofilter = v != 0;
    else if (tag == QLatin1String("db")) s.dbperdiv = v < 7.5 ? 5 : 10;
    else if (tag == QLatin1String("vm")) s.shown = std::clamp(static_cast<int>(v), 0, 4);
    else if (tag == QLatin1String("dm")) {
        s.calc = v != 0;
        if (s.calc)
            ++s.calcStarts;
    }
    else if (tag == QLatin1String("tg")) s.tgon = v != 0;
    else if (tag == QLatin1String("tl")) s.tglevel = std::clamp(round1(v), -50.0, 1.0);
    else if (tag == QLatin1String("es")) s.es = v != 0;
    else if (tag == QLatin1String("tr")) {
        // "#tr0" disarms; any other level, "#tr00.0" too, arms at that level.
        s.triggeron = text != QLatin1String("0");
        if (s.triggeron)
            s.triggerlevel = std::clamp(round1(v), -80.0, 20.0);
    }
    else if (tag == QLatin1String("sv") || tag == QLatin1String("rc")) {
        const size_t slot = static_cast<size_t>(std::clamp(static_cast<int>(v), 0, 9));
        if (tag == QLatin1String("sv")) {
            memories_[slot] = s;
        } else {
            const Settings kept = s;
            s = memories_[slot];
            s.calcStarts = kept.calcStarts;
            s.savedToB = kept.savedToB;
        }
    }
    else return std::nullopt;
    return line(QStringLiteral("RD"));
}

}  // namespace kt
