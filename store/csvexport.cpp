#include "store/csvexport.h"

#include "emc/results.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "store/measurementfile.h"

#include <QDateTime>
#include <QSaveFile>
#include <charconv>
#include <cmath>

namespace kw {

namespace {

class CsvText {
public:
    explicit CsvText(const CsvStyle &style) : style_(style) { text_ = QString(QChar(0xFEFF)); }

    void comment(const QString &name, const QString &value)
    {
        QString flat = value;
        flat.replace(QStringLiteral("\r\n"), QStringLiteral(" / ")).replace(QLatin1Char('\n'), QStringLiteral(" / "));
        flat.replace(QLatin1Char('\r'), QStringLiteral(" / "));
        text_ += QStringLiteral("# ") + name + QStringLiteral(": ") + flat + QStringLiteral("\r\n");
    }
    void cell(const QString &value)
    {
        if (!first_)
            text_ += style_.separator;
        first_ = false;
        const bool quote = value.contains(style_.separator) || value.contains(QLatin1Char('"')) ||
                           value.contains(QLatin1Char('\n')) || value.contains(QLatin1Char('\r')) ||
                           value.startsWith(QLatin1Char('#'));
        if (!quote) {
            text_ += value;
            return;
        }
        QString doubled = value;
        doubled.replace(QLatin1Char('"'), QStringLiteral("\"\""));
        text_ += QLatin1Char('"') + doubled + QLatin1Char('"');
    }
    void number(std::optional<double> value, int decimals)
    {
        cell(value ? decimalMark(QString::number(*value, 'f', decimals)) : QString());
    }
    // A frequency as the file's single holds it: the shortest text that reads back to it.
    void frequency(double mhz)
    {
        char buffer[32];
        const auto end = std::to_chars(buffer, buffer + sizeof buffer, float(mhz)).ptr;
        cell(decimalMark(QString::fromLatin1(buffer, int(end - buffer))));
    }
    void endLine()
    {
        text_ += QStringLiteral("\r\n");
        first_ = true;
    }
    QByteArray bytes() const { return text_.toUtf8(); }

private:
    QString decimalMark(QString text) const
    {
        if (style_.decimal != QLatin1Char('.'))
            text.replace(QLatin1Char('.'), style_.decimal);
        return text;
    }

    CsvStyle style_;
    QString text_;
    bool first_ = true;
};

QString isoDate(double oleDate)
{
    const QDateTime when = fromOleDate(oleDate);
    return when.isValid() ? when.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) : QString::number(oleDate);
}

std::optional<double> present(const QVariant &v)
{
    bool ok = false;
    const double d = v.toDouble(&ok);
    if (v.isNull() || !ok || !std::isfinite(d))
        return std::nullopt;
    return d;
}

}  // namespace

CsvStyle csvStyle(const QLocale &locale)
{
    if (locale.decimalPoint() == QStringLiteral(","))
        return {QLatin1Char(';'), QLatin1Char(',')};
    return {QLatin1Char(','), QLatin1Char('.')};
}

QByteArray measurementCsv(const QString &path, const CsvStyle &style, QString *error)
{
    CsvText csv(style);
    Database file;
    try {
        file = OpenDatabase(vbRTrim(path));
        Recordset settings = file.OpenRecordset(QStringLiteral("select * from settings"), dbOpenSnapshot);
        if (settings.Eof())
            throw VbError(3021);
        const bool emc = int(settings.FieldNumber(QStringLiteral("vernr"))) == kEmcVersion;
        const std::optional<double> known = unitOffset(vbTrim(settings.FieldText(QStringLiteral("unit"))));
        const QString unit = known ? vbTrim(settings.FieldText(QStringLiteral("unit"))) : QStringLiteral("dBmW");
        const double offset = known.value_or(0.0);
        csv.comment(QStringLiteral("KW3400R measurement"), vbRTrim(path));
        for (const QString &column : settings.FieldNames()) {
            const QVariant v = settings.Field(column);
            csv.comment(column, column.compare(QLatin1String("dat"), Qt::CaseInsensitive) == 0 && present(v)
                                    ? isoDate(*present(v))
                                    : vbTrim(v.toString()));
        }
        settings.Close();

        Recordset rs = file.OpenRecordset(QStringLiteral("select * from measurement order by frequency"), dbOpenSnapshot);
        const QStringList columns = rs.FieldNames();
        enum class Kind { Frequency, Level, Mark, Other };
        std::vector<Kind> kinds;
        for (const QString &column : columns) {
            QString name = column;
            Kind kind = Kind::Other;
            if (column.compare(QLatin1String("frequency"), Qt::CaseInsensitive) == 0) {
                kind = Kind::Frequency;
                name = column + QStringLiteral(" (MHz)");
            } else if (emc && column.compare(QLatin1String("sample_dbmw"), Qt::CaseInsensitive) == 0) {
                // In an EMC file this column marks the rows to be stepped: 1 or 0, no level.
                kind = Kind::Mark;
                name = QStringLiteral("Step mark");
            } else if (column.endsWith(QLatin1String("_dbmw"), Qt::CaseInsensitive)) {
                kind = Kind::Level;
                name = column.chopped(5) + QStringLiteral(" (") + unit + QLatin1Char(')');
            }
            kinds.push_back(kind);
            csv.cell(name);
        }
        csv.endLine();
        for (; !rs.Eof(); rs.MoveNext()) {
            for (int c = 0; c < columns.size(); ++c) {
                auto v = present(rs.Field(columns[c]));
                if (v && *v <= kNoLevel + 0.5 && kinds[size_t(c)] != Kind::Other)
                    v.reset();
                switch (kinds[size_t(c)]) {
                case Kind::Frequency:
                    if (v)
                        csv.frequency(*v);
                    else
                        csv.cell(QString());
                    break;
                case Kind::Level: csv.number(v ? std::optional<double>(*v + offset) : v, 2); break;
                case Kind::Mark: csv.number(v, 0); break;
                case Kind::Other: csv.cell(vbTrim(rs.Field(columns[c]).toString())); break;
                }
            }
            csv.endLine();
        }
        rs.Close();
        file.Close();
    } catch (const VbError &) {
        try {
            file.Close();
        } catch (const VbError &) {
        }
        if (error)
            *error = QStringLiteral("The measurement file ") + vbRTrim(path) + QStringLiteral(" could not be read.");
        return QByteArray();
    }
    return csv.bytes();
}

QByteArray resultsCsv(const ResultTable &table, const CsvStyle &style)
{
    CsvText csv(style);
    csv.comment(QStringLiteral("KW3400R results"), table.test);
    csv.comment(QStringLiteral("Date"), isoDate(table.date));
    csv.comment(QStringLiteral("Configuration"), table.configuration);
    csv.comment(QStringLiteral("Distance"), table.distance > 0 ? QString::number(table.distance) + QStringLiteral(" m") : QString());
    csv.comment(QStringLiteral("Unit"), table.unit);
    csv.comment(QStringLiteral("Peak limit"), table.peakLimitName + (table.peakLimitLog ? QStringLiteral(" (log frequency)") : QString()));
    csv.comment(QStringLiteral("Average limit"),
                table.averageLimitName + (table.averageLimitLog ? QStringLiteral(" (log frequency)") : QString()));
    csv.comment(QStringLiteral("Margin"), QStringLiteral("result - limit in dB; above 0 exceeds the limit"));
    csv.comment(QStringLiteral("Verdict"), verdictText(table.overall()));

    const QString u = QStringLiteral(" (") + table.unit + QLatin1Char(')');
    for (const QString &name : {QStringLiteral("Frequency (MHz)"), QStringLiteral("Polarisation"), QStringLiteral("Peak") + u,
                                QStringLiteral("QPeak") + u, QStringLiteral("Average") + u, QStringLiteral("Peak limit") + u,
                                QStringLiteral("Average limit") + u, QStringLiteral("Margin QPeak/Peak (dB)"),
                                QStringLiteral("Judged"), QStringLiteral("Margin Average (dB)"), QStringLiteral("Verdict"),
                                QStringLiteral("Ambient") + u, QStringLiteral("Ambient within 6 dB")})
        csv.cell(name);
    csv.endLine();
    for (const ResultLine &line : table.lines) {
        csv.frequency(line.frequency);
        csv.cell(line.polarisation.isNull() ? QString() : QString(line.polarisation));
        csv.number(line.peak, 2);
        csv.number(line.qpeak, 2);
        csv.number(line.average, 2);
        csv.number(line.peakLimit, 2);
        csv.number(line.averageLimit, 2);
        csv.number(line.peakMargin, 2);
        csv.cell(line.peakMargin ? (line.marginFromQPeak ? QStringLiteral("QPeak") : QStringLiteral("Peak")) : QString());
        csv.number(line.averageMargin, 2);
        csv.cell(verdictText(line.verdict));
        csv.number(line.ambient, 2);
        csv.cell(line.ambientNear ? QStringLiteral("yes") : QString());
        csv.endLine();
    }
    return csv.bytes();
}

bool writeTextFile(const QString &path, const QByteArray &bytes, QString *error)
{
    QSaveFile out(path);
    if (out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size() && out.commit())
        return true;
    if (error)
        *error = QStringLiteral("The file ") + path + QStringLiteral(" could not be written: ") + out.errorString();
    return false;
}

}  // namespace kw
