// The results table of a finished run and the CSV files, read from ".emc" files of known rows.
#include "emc/results.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "store/csvexport.h"
#include "store/measurementfile.h"
#include "support/programdir.h"
#include "support/resultsfile.h"

#include <QtTest>
#include <memory>

using namespace kw;

using kwtest::emcFile;
using kwtest::kUv;

namespace {

struct Csv {
    QStringList comments;
    QStringList header;
    QList<QStringList> rows;
};

Csv parse(const QByteArray &bytes, const CsvStyle &style)
{
    Csv csv;
    QString text = QString::fromUtf8(bytes);
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    for (const QString &line : text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts)) {
        if (line.startsWith(QLatin1Char('#')))
            csv.comments << line;
        else if (csv.header.isEmpty())
            csv.header = line.split(style.separator);  // no cell of these files needs quotes
        else
            csv.rows << line.split(style.separator);
    }
    return csv;
}

double number(QString cell, const CsvStyle &style)
{
    if (style.decimal != QLatin1Char('.') && cell.contains(QLatin1Char('.')))
        return qQNaN();  // a point where a comma belongs
    bool ok = false;
    const double v = cell.replace(style.decimal, QLatin1Char('.')).toDouble(&ok);
    return ok ? v : qQNaN();
}

}  // namespace

class TestResults : public QObject {
    Q_OBJECT
    std::unique_ptr<test::TempProgramDir> program_;

private slots:
    void init()
    {
        program_ = std::make_unique<test::TempProgramDir>();
        st.db = OpenDatabase(program_->file(QStringLiteral("default.mdb")));
    }
    void cleanup()
    {
        st.db.Close();
        program_.reset();
    }

    void limitAtAFrequency()
    {
        std::vector<LimitRow> rows = {{30.0f, 40.0f}, {100.0f, 30.0f}, {230.0f, 30.0f}, {230.0f, 37.0f}, {1000.0f, 37.0f}};
        rows.insert(rows.begin() + 2, LimitRow{});  // an empty cell of a shorter column is passed over
        const auto at = [&rows](double f, bool log) { return limitAt(rows, f, log).value_or(qQNaN()); };
        // The first point; on a step the lower level, past it the upper one.
        QCOMPARE(std::tuple(at(30.0, false), at(230.0, true), at(230.5, false)), std::tuple(40.0, 30.0, 37.0));
        QVERIFY(qAbs(at(50.0, true) - (40.0 - 10.0 * std::log10(50.0 / 30.0) / std::log10(100.0 / 30.0))) < 1e-4);  // straight in log frequency
        QVERIFY(!limitAt(rows, 29.99, false) && !limitAt(rows, 1000.01, false));  // no limit outside it
    }

    void tableOfARun_data()
    {
        QTest::addColumn<bool>("peakLog");
        QTest::newRow("linear peak limit") << false;
        QTest::newRow("logarithmic peak limit") << true;
    }
    void tableOfARun()
    {
        QFETCH(bool, peakLog);
        const ResultTable t = readResults(emcFile(program_->path(), peakLog));
        QVERIFY2(t.error.isEmpty(), qPrintable(t.error));
        QCOMPARE(std::tuple(t.test, t.unit, t.distance, t.peakLimitLog), std::tuple(QStringLiteral("CISPR 32 B radiated 3 m"), QStringLiteral("dBµV/m"), 3, peakLog));
        // The row swept but not stepped has no line; worst margin first, no limit last.
        std::vector<double> order;
        for (const ResultLine &line : t.lines)
            order.push_back(line.frequency);
        QCOMPARE(order, (std::vector<double>{230.0, 400.0, 50.0, 1500.0}));  // 230: peak 31 over the 30 that holds at the step
        const double limit50 = peakLog ? 40.0 - 10.0 * std::log10(50.0 / 30.0) / std::log10(100.0 / 30.0) : 40.0 - 10.0 * 20.0 / 70.0;

        const auto near = [](std::optional<double> v, double expected) { return v && std::abs(*v - expected) < 1e-3; };
        const ResultLine &step = t.lines[0];
        QCOMPARE(std::tuple(step.polarisation, step.verdict, step.marginFromQPeak, bool(step.qpeak), step.ambientNear),
                 std::tuple(QLatin1Char('H'), Verdict::Fail, false, false, true));
        QVERIFY(near(step.peakMargin, 1.0) && near(step.averageMargin, 5.0) && near(step.ambient, 27.0));  // the larger of H and V

        const ResultLine &onLimit = t.lines[1];
        QCOMPARE(std::tuple(onLimit.polarisation, onLimit.verdict, bool(onLimit.average || onLimit.averageLimit || onLimit.averageMargin),
                            bool(onLimit.ambient), onLimit.ambientNear),
                 std::tuple(QLatin1Char('V'), Verdict::Pass, false, false, false));
        QVERIFY(near(onLimit.peakMargin, 0.0));

        const ResultLine &low = t.lines[2];
        QCOMPARE(std::tuple(low.polarisation, low.verdict, low.marginFromQPeak), std::tuple(QLatin1Char('V'), Verdict::Pass, true));
        // The quasi-peak is judged; the average limit stays straight.
        QVERIFY(near(low.peakLimit, limit50) && near(low.peakMargin, 33.0 - limit50) && near(low.averageLimit, 30.0 - 200.0 / 70.0));
        QVERIFY(!low.ambientNear && near(low.ambient, 28.0));
        QCOMPARE(std::tuple(t.lines[3].verdict, t.overall(), t.failed()), std::tuple(Verdict::NoLimit, Verdict::Fail, 1));
    }

    void notAnEmcFile()
    {
        const ResultTable mes = readResults(emcFile(program_->path(), false, kMesVersion));
        QVERIFY(mes.lines.empty() && !mes.error.isEmpty());
        const ResultTable none = readResults(program_->file(QStringLiteral("missing.emc")));
        QVERIFY(none.lines.empty() && !none.error.isEmpty());
        QVERIFY(!QFile::exists(program_->file(QStringLiteral("missing.emc"))));
    }

    void csvInBothLocales_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::newRow("point") << "en_US";
        QTest::newRow("comma") << "de_DE";
    }
    void csvInBothLocales()
    {
        QFETCH(QString, locale);
        const CsvStyle style = csvStyle(QLocale(locale));
        QCOMPARE(style.separator, locale == QLatin1String("de_DE") ? QLatin1Char(';') : QLatin1Char(','));
        const QString path = emcFile(program_->path(), true);

        QString error;
        const Csv m = parse(measurementCsv(path, style, &error), style);
        QCOMPARE(std::tuple(error, m.header.size()), std::tuple(QString(), 14));
        QCOMPARE(m.header.mid(0, 2) << m.header[3], (QStringList{"Frequency (MHz)", "Step mark", "Maxhold (dBµV/m)"}));
        QVERIFY(m.comments.contains(QStringLiteral("# dat: ") + fromOleDate(46000.5).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))));
        QVERIFY(m.comments.contains(QStringLiteral("# note: line one / line two")));
        QCOMPARE(m.rows.size(), 5);
        for (const QStringList &row : m.rows)
            QCOMPARE(row.size(), 14);
        // Maxhold back in the display unit; -1000 and an empty cell both empty.
        QCOMPARE((std::array{number(m.rows[0][0], style), number(m.rows[0][1], style), number(m.rows[0][3], style), number(m.rows[0][6], style)}),
                 (std::array{50.0, 1.0, 36.0, 28.0}));
        QCOMPARE(std::tuple(m.rows[0][7], m.rows[2][4]), std::tuple(QString(), QString()));

        const ResultTable t = readResults(path);
        const Csv r = parse(resultsCsv(t, style), style);
        QVERIFY(r.comments.contains(QStringLiteral("# Verdict: FAIL")));
        QCOMPARE(std::tuple(r.header.size(), r.rows.size()), std::tuple(13, 4));
        for (int i = 0; i < 4; ++i) {
            const QStringList &row = r.rows[i];
            const ResultLine &line = t.lines[size_t(i)];
            QCOMPARE(std::tuple(row.size(), number(row[0], style), row[10]), std::tuple(13, line.frequency, verdictText(line.verdict)));
            QVERIFY(line.peakMargin ? std::abs(number(row[7], style) - *line.peakMargin) <= 0.005 : row[7].isEmpty());
        }
        QCOMPARE((QStringList{r.rows[0][8], r.rows[0][12], r.rows[2][8]}), (QStringList{"Peak", "yes", "QPeak"}));
    }
};

QTEST_MAIN(TestResults)
#include "tst_results.moc"
