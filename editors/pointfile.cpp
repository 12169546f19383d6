#include "editors/pointfile.h"

#include <QRegularExpression>
#include <cmath>
#include <limits>

namespace kw {

namespace {

constexpr double kFloatMax = double(std::numeric_limits<float>::max());

bool readNumber(QString text, bool commaAllowed, double &value)
{
    static const QRegularExpression number(QStringLiteral("^[+-]?(\\d+([.,]\\d*)?|[.,]\\d+)([eE][+-]?\\d+)?$"));
    text = text.trimmed();
    if (!number.match(text).hasMatch())
        return false;
    if (text.contains(QLatin1Char(','))) {
        if (!commaAllowed)
            return false;
        text.replace(QLatin1Char(','), QLatin1Char('.'));
    }
    bool ok = false;
    value = text.toDouble(&ok);
    return ok && std::isfinite(value) && std::abs(value) <= kFloatMax;
}

// MHz per unit of the frequency column, from the header's first field.
double unitScale(const QString &header)
{
    static const QRegularExpression unit(QStringLiteral("\\b(ghz|mhz|khz|hz)\\b"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = unit.match(header);
    if (!m.hasMatch())
        return 1.0;
    const QString u = m.captured(1).toLower();
    return u == QLatin1String("ghz") ? 1000.0 : u == QLatin1String("khz") ? 0.001 : u == QLatin1String("hz") ? 1e-6 : 1.0;
}

QChar separatorOf(const QString &line)
{
    if (line.contains(QLatin1Char('\t')))
        return QLatin1Char('\t');
    if (line.contains(QLatin1Char(';')))
        return QLatin1Char(';');
    return QLatin1Char(',');
}

}  // namespace

PointTable readPointTable(const QByteArray &bytes)
{
    PointTable table;
    QString text = QString::fromUtf8(bytes);
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    const QStringList lines = text.split(QLatin1Char('\n'));
    QChar separator;
    double scale = 1.0;
    bool first = true;
    auto fail = [&table](int line, const QString &why) {
        table.errors << QStringLiteral("line %1: %2").arg(line).arg(why);
    };
    for (int i = 0; i < lines.size(); ++i) {
        QString line = lines[i];
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.trimmed().isEmpty())
            continue;
        const int number = i + 1;
        if (first)
            separator = separatorOf(line);
        QStringList fields = line.split(separator);
        while (fields.size() > 2 && fields.last().trimmed().isEmpty())
            fields.removeLast();
        const bool commaAllowed = separator != QLatin1Char(',');
        double f = 0, level = 0;
        const bool numeric = fields.size() == 2 && readNumber(fields[0], commaAllowed, f);
        if (first && !numeric && fields.size() >= 1 && !readNumber(fields[0], commaAllowed, f)) {
            // A header: names the columns, and perhaps the frequency's unit.
            scale = unitScale(fields[0]);
            first = false;
            continue;
        }
        first = false;
        if (fields.size() != 2) {
            fail(number, QStringLiteral("two columns expected"));
            continue;
        }
        if (!numeric) {
            fail(number, QStringLiteral("the frequency is not a number"));
            continue;
        }
        if (!readNumber(fields[1], commaAllowed, level)) {
            fail(number, QStringLiteral("the level is not a number"));
            continue;
        }
        const double mhz = f * scale;
        if (mhz < 0 || mhz > kFloatMax) {
            fail(number, QStringLiteral("the frequency is out of range"));
            continue;
        }
        table.points.emplace_back(mhz, level);
    }
    if (table.points.empty() && table.errors.isEmpty())
        table.errors << QStringLiteral("no points");
    return table;
}

namespace {

// The shortest fixed-point text of value that still gives back the same stored value.
QString shortestText(double value, const StoredOf &storedOf, float stored)
{
    for (int decimals = 0; decimals <= 12; ++decimals) {
        const QString text = QString::number(value, 'f', decimals);
        if (storedOf(text.toDouble()) == stored)
            return text;
    }
    return QString::number(value, 'g', 17);
}

}  // namespace

QByteArray writePointTable(const QString &levelHeader, const std::vector<std::pair<float, float>> &stored,
                           const std::function<double(float)> &shownOf, const StoredOf &storedOf)
{
    QString out = QStringLiteral("Frequency (MHz),") + levelHeader + QLatin1Char('\n');
    const StoredOf asFloat = [](double v) { return float(v); };
    for (const auto &[f, level] : stored) {
        out += shortestText(double(f), asFloat, f) + QLatin1Char(',') +
               shortestText(shownOf(level), storedOf, level) + QLatin1Char('\n');
    }
    return out.toUtf8();
}

}  // namespace kw
