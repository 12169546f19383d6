#include "plot/resultspage.h"

#include "emc/results.h"
#include "emc/resultsform.h"
#include "platform/papersurface.h"
#include "platform/vbformat.h"
#include "plot/page.h"
#include "plot/reportparts.h"

#include <QCheckBox>
#include <array>

namespace kw {

namespace {

constexpr uint8_t kFailColour = 12;
constexpr uint8_t kPassColour = 2;
constexpr double kSheetWidth = 1000;
constexpr double kSheetMargin = 60;

struct Area {
    double left, width, top, bottom;
};

struct Column {
    const char *name;
    bool level;    // the unit goes under the name
    double right;  // right edge, share of the width
};

const std::array<Column, 11> kColumns = {{{"Frequency", false, 0.10},
                                          {"Pol.", false, 0.15},
                                          {"Peak", true, 0.24},
                                          {"QPeak", true, 0.33},
                                          {"Average", true, 0.43},
                                          {"Peak limit", true, 0.54},
                                          {"Av. limit", true, 0.64},
                                          {"Margin", false, 0.74},
                                          {"Margin", false, 0.83},
                                          {"Verdict", false, 0.92},
                                          {"Ambient", true, 1.0}}};

QString levelText(std::optional<double> v) { return v ? vbFormat(*v, QStringLiteral("0.0")) : QString(); }

QString marginText(std::optional<double> v)
{
    const QString text = levelText(v);
    return v && *v > 0 && !text.startsWith(QLatin1Char('-')) ? QLatin1Char('+') + text : text;
}

std::array<QString, 11> cellsOf(const ResultLine &line)
{
    return {vbFormat(line.frequency, QStringLiteral("0.000")),
            line.polarisation.isNull() ? QString() : QString(line.polarisation),
            levelText(line.peak),
            levelText(line.qpeak),
            levelText(line.average),
            levelText(line.peakLimit),
            levelText(line.averageLimit),
            marginText(line.peakMargin) + (line.peakMargin && !line.marginFromQPeak ? QStringLiteral(" Pk") : QString()),
            marginText(line.averageMargin),
            verdictText(line.verdict),
            levelText(line.ambient) + (line.ambientNear ? QStringLiteral(" !") : QString())};
}

// y lies beyond the bottom of the area, whichever way the scale runs.
bool below(const Surface &page, double y, double bottom) { return page.scaleHeight() > 0 ? y > bottom : y < bottom; }

void rightAligned(Surface &page, const Area &a, size_t column, const QString &text, double y)
{
    page.currentX = a.left + a.width * kColumns[column].right - page.textWidth(text + QLatin1Char(' '));
    page.currentY = y;
    page.printInline(text);
}

// Each line of the header starts at the left of the area, not of the surface.
struct Lines {
    Surface &page;
    double left;
    void operator()(const QString &text) const
    {
        page.currentX = left;
        page.print(text);
    }
};

void headerBlock(Surface &page, const Area &a, const ResultTable &t, const PageStyle &style)
{
    const Lines print{page, a.left};
    page.setFont(style.font, style.notesHeading, true);
    page.foreColour = 0;
    print(QStringLiteral("Results: ") + t.test);
    page.setFont(style.font, style.labels, false);
    print(QStringLiteral("Date: ") + vbGeneralDate(t.date) + QStringLiteral("    Configuration: ") +
          (t.configuration.isEmpty() ? QStringLiteral("unknown") : t.configuration));
    print(QStringLiteral("Distance: ") + (t.distance > 0 ? QString::number(t.distance) + QStringLiteral(" m") : QStringLiteral("unknown")) +
          QStringLiteral("    Unit: ") + t.unit);
    print(QString());
    page.setFont(style.font, style.labels, true);
    const Verdict overall = t.overall();
    page.foreColour = ink(overall == Verdict::Fail ? kFailColour : overall == Verdict::Pass ? kPassColour : 0);
    QString verdict = QStringLiteral("Verdict: ") + verdictText(overall);
    if (overall == Verdict::Fail)
        verdict += QStringLiteral(" - %1 of %2 frequencies over the limit").arg(t.failed()).arg(t.lines.size());
    print(verdict);
    page.foreColour = 0;
    page.setFont(style.font, style.labels * 0.85, false);
    print(QStringLiteral("Limits at each frequency follow the limit lines as the plot draws them, not the marking "
                              "formula of the run."));
    print(QStringLiteral("Margin = result - limit, above 0 exceeds: QPeak (Peak, marked Pk, where no quasi-peak was "
                              "measured) against the peak limit,"));
    print(QStringLiteral("Average against the average limit. ! marks an ambient within 6 dB of the peak."));
    print(QString());
}

// The table from line first on, as far as the area reaches; the next line to draw.
size_t drawTable(Surface &page, const ResultTable &t, size_t first, const Area &a, const PageStyle &style)
{
    page.currentX = a.left;
    page.currentY = a.top;
    const Lines print{page, a.left};
    if (first == 0) {
        headerBlock(page, a, t, style);
    } else {
        page.setFont(style.font, style.labels, true);
        page.foreColour = 0;
        print(QStringLiteral("Results: ") + t.test + QStringLiteral(" (continued)"));
        print(QString());
    }
    const double tableFont = style.labels * 0.9;
    page.setFont(style.font, tableFont, true);
    const double y0 = page.currentY;
    print(QString());
    const double lineHeight = page.currentY - y0;
    for (size_t c = 0; c < kColumns.size(); ++c) {
        rightAligned(page, a, c, QLatin1String(kColumns[c].name), y0);
        const QString unit = kColumns[c].level ? t.unit
                             : c == 0          ? QStringLiteral("MHz")
                             : c == 7          ? QStringLiteral("QP/Pk dB")
                             : c == 8          ? QStringLiteral("Av. dB")
                                               : QString();
        rightAligned(page, a, c, unit, y0 + lineHeight);
    }
    double y = y0 + 2 * lineHeight;
    page.line(a.left, y, a.left + a.width, y, 0);
    y += lineHeight / 4;

    page.setFont(style.font, tableFont, false);
    size_t i = first;
    for (; i < t.lines.size() && !below(page, y + lineHeight, a.bottom); ++i) {
        const ResultLine &line = t.lines[i];
        const auto cells = cellsOf(line);
        for (size_t c = 0; c < cells.size(); ++c) {
            const bool over = (c == 7 && line.peakMargin && *line.peakMargin > 0) ||
                              (c == 8 && line.averageMargin && *line.averageMargin > 0) || (c == 9 && line.verdict == Verdict::Fail);
            page.foreColour = ink(over ? kFailColour : 0);
            rightAligned(page, a, c, cells[c], y);
        }
        y += lineHeight;
    }
    page.foreColour = 0;
    if (t.lines.empty()) {
        page.currentY = y;
        print(QStringLiteral("No frequency has step results."));
    }
    return i;
}

// The table of the file shown when the option asks for it; nullopt otherwise.
std::optional<ResultTable> wantedTable()
{
    if (!resultsPageOption())
        return std::nullopt;
    const QString file = shownMeasurementFile();
    if (file.isEmpty())
        return std::nullopt;
    ResultTable table = readResults(file);
    if (!table.error.isEmpty())
        return std::nullopt;
    return table;
}

}  // namespace

bool &resultsPageOption()
{
    static bool on = false;
    return on;
}

QCheckBox *resultsOption(QWidget *setprn, const std::function<void()> &changed)
{
    auto *box = new QCheckBox(QStringLiteral("Results"), setprn);
    box->setObjectName(QStringLiteral("CheckResults"));
    box->setToolTip(QStringLiteral("Adds the results table of the EMC test shown as a page of the report"));
    box->setChecked(resultsPageOption());
    QObject::connect(box, &QCheckBox::clicked, box, [changed](bool on) {
        resultsPageOption() = on;
        if (changed)
            changed();
    });
    return box;
}

void printResultsPage(PaperSurface &paper, const PageStyle &style)
{
    const std::optional<ResultTable> table = wantedTable();
    if (!table)
        return;
    size_t next = 0;
    do {
        paper.setOrientation(1);
        paper.newPage();
        const double height = kSheetWidth * paper.deviceHeight() / std::max(1.0, paper.deviceWidth());
        paper.setScale(0, 0, kSheetWidth, height);
        PageScope scope(paper, PageKind::Paper);
        next = drawTable(paper, *table, next, {kSheetMargin, kSheetWidth - 2 * kSheetMargin, kSheetMargin, height - kSheetMargin},
                         style);
    } while (next < table->lines.size());
}

void growPreviewForResults(Surface &picture)
{
    if (wantedTable())
        picture.setScaleHeight(picture.scaleHeight() * 2);
}

void previewResults(Surface &picture, const PageStyle &style)
{
    const std::optional<ResultTable> table = wantedTable();
    if (!table)
        return;
    PageScope scope(picture, PageKind::Preview);
    const double sheet = picture.scaleHeight() / 2;
    const double top = picture.scaleTop() + sheet;
    picture.drawStyle = kStyleDot;
    picture.line(picture.scaleLeft(), top, picture.scaleLeft() + picture.scaleWidth(), top, 8);
    picture.drawStyle = kStyleSolid;
    const double margin = picture.scaleWidth() * 0.03;
    drawTable(picture, *table, 0,
              {picture.scaleLeft() + margin, picture.scaleWidth() - 2 * margin, top + sheet * 0.04, top + sheet * 0.97}, style);
}

}  // namespace kw
