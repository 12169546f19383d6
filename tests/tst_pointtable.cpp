// Text tables of points: what import reads, what it refuses, and that export reads back to the
// very stored values.

#include "editors/pointfile.h"

#include <QtTest>

using namespace kw;

namespace {
using Points = std::vector<std::pair<double, double>>;
}

class TestPointTable : public QObject {
    Q_OBJECT
private slots:
    // Comma and point without a header; semicolon and decimal comma; tab with a kHz header; a Hz
    // header with exponents; a GHz header after a byte-order mark, blank lines, a trailing separator.
    void readsSeparatorsMarksAndUnits()
    {
        for (const QByteArray &file : {QByteArray("0.15,66\n0.5,56.5\n"), QByteArray("0,15;66\r\n0,5;56,5\r\n"),
                                       QByteArray("Frequency (kHz)\tLevel (dBµV)\n150\t66\n500\t56,5\n"), QByteArray("f/Hz;dB\n1.5e5;66\n5E5;56.5\n")}) {
            const PointTable t = readPointTable(file);
            QVERIFY2(t.errors.isEmpty() && t.points == (Points{{0.15, 66}, {0.5, 56.5}}), file.constData());
        }
        const PointTable gigahertz = readPointTable(QByteArray("\xEF\xBB\xBF" "Freq [GHz],Loss\n\n1,3.2,\n2.5 , -1.25\n\n"));
        QCOMPARE(std::pair(gigahertz.errors, gigahertz.points), std::pair(QStringList(), Points{{1000, 3.2}, {2500, -1.25}}));
    }

    // Any line that can't be read refuses the whole file, and every such line is named.
    void badLinesAreNamed()
    {
        const PointTable t = readPointTable(QByteArray("Frequency,Level\n"
                                                       "0.15,66\n"
                                                       "0,5,56\n"        // a decimal comma beside comma separators
                                                       "1.0;2\n"         // one column
                                                       "abc,3\n"
                                                       "2,x\n"
                                                       "-1,4\n"
                                                       "1.000.5,3\n"
                                                       "nan,1\n"));
        QStringList lines;
        for (const QString &e : t.errors)
            lines << e.section(QLatin1Char(':'), 0, 0);
        QCOMPARE(lines, QStringList({"line 3", "line 4", "line 5", "line 6", "line 7", "line 8", "line 9"}));
        QCOMPARE(readPointTable(QByteArray("Frequency;Level\n\n")).errors, QStringList{QStringLiteral("no points")});
        // A step: the same frequency twice, both kept in order.
        QCOMPARE(readPointTable(QByteArray("5;-51\n5;-47\n")).points, (Points{{5, -51}, {5, -47}}));
        // A header is only the first line.
        QCOMPARE(readPointTable(QByteArray("1,2\nFrequency,Level\n")).errors.size(), 1);
    }

    // Stored values through export and import are the same floats, with an offset or a sign
    // between stored and shown, and the text is the short one a person would write.
    void exportReadsBackExactly()
    {
        const std::vector<std::pair<float, float>> stored{
            {0.15f, -41.0f}, {0.5f, -51.0f}, {0.50001f, -60.1f}, {30.0f, 0.1f}, {999.99f, 47.3f}, {3e4f, -123.456f}};
        for (int offset : {0, 107, -30}) {
            const QByteArray bytes = writePointTable(
                QStringLiteral("Level (dBµV)"), stored, [offset](float s) { return double(s) + offset; },
                [offset](double shown) { return float(shown - offset); });
            const PointTable back = readPointTable(bytes);
            QCOMPARE(std::pair(back.errors, back.points.size()), std::pair(QStringList(), stored.size()));
            for (size_t i = 0; i < stored.size(); ++i)
                QCOMPARE(std::pair(float(back.points[i].first), float(back.points[i].second - offset)), stored[i]);
        }
        const QByteArray text = writePointTable(
            QStringLiteral("Level (dBµV)"), {{0.15f, -41.0f}, {30.0f, -60.1f}}, [](float s) { return double(s) + 107; },
            [](double shown) { return float(shown - 107); });
        QCOMPARE(text, QByteArray("Frequency (MHz),Level (dB\xC2\xB5V)\n0.15,66\n30,46.9\n"));
    }
};

QTEST_MAIN(TestPointTable)
#include "tst_pointtable.moc"
