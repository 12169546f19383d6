#include "emc/resultsform.h"

#include "platform/vbformat.h"
#include "plot/axes.h"
#include "plot/cursors.h"
#include "shell/forms.h"
#include "shell/state.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace kw {

namespace {

const QString kResults = QStringLiteral("results");
const QColor kFailInk(176, 0, 0);
const QColor kAmbientShade(255, 236, 179);

enum Column { Freq, Pol, Peak, QPeak, Average, PeakLimit, AverageLimit, PeakMargin, AverageMargin, Judged, Ambient, Columns };

QString level(std::optional<double> v) { return v ? vbFormat(*v, QStringLiteral("0.0")) : QString(); }

QString signedLevel(std::optional<double> v)
{
    if (!v)
        return QString();
    const QString text = vbFormat(*v, QStringLiteral("0.0"));
    return *v > 0 && !text.startsWith(QLatin1Char('-')) ? QLatin1Char('+') + text : text;
}

QTableWidgetItem *item(const QString &text, Qt::Alignment align = Qt::AlignRight | Qt::AlignVCenter)
{
    auto *it = new QTableWidgetItem(text);
    it->setTextAlignment(align);
    it->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    return it;
}

QString limitShape(bool log) { return log ? QStringLiteral("straight in log frequency") : QStringLiteral("straight in frequency"); }

}  // namespace

QString shownMeasurementFile()
{
    const QString file = vbRTrim(st.measurefile);
    if (st.filemode != 1 || file.isEmpty() || !QFileInfo(file).isFile())
        return QString();
    return file;
}

void putCursorOn(const ResultLine &line, double unitOffset)
{
    // A pass under way draws the cursors itself at its end.
    if (st.drawbusy == 1)
        return;
    const std::optional<double> judged = line.qpeak ? line.qpeak : line.peak;
    st.cursor1x = int32_t(std::lround(FreqToX(float(line.frequency))));
    if (judged)
        st.cursor1y = int32_t(std::lround((*judged - unitOffset) * 2.5));
    DrawCursors();
}

ResultsForm::ResultsForm(QWidget *parent) : QWidget(parent)
{
    setObjectName(kResults);
    setWindowTitle(QStringLiteral("Results"));
    header_ = new QLabel(this);
    header_->setObjectName(QStringLiteral("Label1"));
    header_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    verdict_ = new QLabel(this);
    verdict_->setObjectName(QStringLiteral("Label2"));
    QFont bold = verdict_->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    verdict_->setFont(bold);
    note_ = new QLabel(this);
    note_->setObjectName(QStringLiteral("Label3"));

    grid_ = new QTableWidget(0, Columns, this);
    grid_->setObjectName(QStringLiteral("Grid1"));
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->verticalHeader()->hide();
    grid_->verticalHeader()->setDefaultSectionSize(grid_->fontMetrics().height() + 6);
    grid_->setAlternatingRowColors(true);
    connect(grid_, &QTableWidget::cellClicked, this, [this](int row, int) { lineChosen(row); });

    auto *refreshButton = new QPushButton(QStringLiteral("&Refresh"), this);
    refreshButton->setObjectName(QStringLiteral("Command1"));
    auto *exportButton = new QPushButton(QStringLiteral("&Export (CSV)..."), this);
    exportButton->setObjectName(QStringLiteral("Command2"));
    connect(refreshButton, &QPushButton::clicked, this, [this] { refresh(); });
    connect(exportButton, &QPushButton::clicked, this, [] { exportResultsCsv(); });

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(verdict_, 1);
    buttons->addWidget(refreshButton);
    buttons->addWidget(exportButton);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(header_);
    layout->addLayout(buttons);
    layout->addWidget(grid_, 1);
    layout->addWidget(note_);
    resize(980, 480);
}

void ResultsForm::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!placed_) {
        placed_ = true;
        // Wide enough for every column without scrolling sideways.
        if (QWidget *sub = parentWidget())
            sub->resize(std::max(sub->width(), 980), std::max(sub->height(), 480));
    }
    refresh();
}

void ResultsForm::refresh()
{
    const QString file = shownMeasurementFile();
    table_ = file.isEmpty() ? ResultTable{} : readResults(file);
    if (file.isEmpty())
        table_.error = QStringLiteral("No EMC test file is shown: run a test, or load one with Data > Load > Measurements.");

    if (!table_.error.isEmpty()) {
        header_->setText(table_.error);
        verdict_->clear();
        note_->clear();
        grid_->setRowCount(0);
        return;
    }
    const QString distance = table_.distance > 0 ? QString::number(table_.distance) + QStringLiteral(" m") : QStringLiteral("unknown");
    header_->setText(QStringLiteral("Test: ") + table_.test + QStringLiteral("    Date: ") + vbGeneralDate(table_.date) +
                     QStringLiteral("    Configuration: ") +
                     (table_.configuration.isEmpty() ? QStringLiteral("unknown") : table_.configuration) +
                     QStringLiteral("    Distance: ") + distance + QStringLiteral("    Unit: ") + table_.unit);

    const Verdict overall = table_.overall();
    QString verdict = QStringLiteral("Verdict: ") + verdictText(overall);
    if (table_.lines.empty()) {
        verdict = QStringLiteral("No frequency has step results yet.");
    } else if (overall == Verdict::Fail) {
        verdict += QStringLiteral(" - %1 of %2 frequencies over the limit").arg(table_.failed()).arg(table_.lines.size());
    } else {
        verdict += QStringLiteral(" - %1 frequencies measured").arg(table_.lines.size());
    }
    if (!table_.lines.empty() && table_.lines.front().worstMargin())
        verdict += QStringLiteral(", worst ") + signedLevel(table_.lines.front().worstMargin()) + QStringLiteral(" dB at ") +
                   vbFormat(table_.lines.front().frequency, QStringLiteral("0.000")) + QStringLiteral(" MHz");
    verdict_->setText(verdict);
    QPalette palette = verdict_->palette();
    palette.setColor(QPalette::WindowText, overall == Verdict::Fail ? kFailInk : QColor(0, 110, 0));
    verdict_->setPalette(palette);

    note_->setText(QStringLiteral("Limits at each frequency follow the limit lines as the plot draws them (peak limit ") +
                   limitShape(table_.peakLimitLog) + QStringLiteral(", average limit ") + limitShape(table_.averageLimitLog) +
                   QStringLiteral("),\nnot the marking formula of the run. Margin = result - limit; above 0 exceeds the limit. "
                                  "QPeak (Peak, marked Pk, where no quasi-peak\nwas measured) against the peak limit, Average "
                                  "against the average limit. A shaded ambient (!) lies within 6 dB of the peak: the result may "
                                  "be the ambient."));
    fillGrid();
}

void ResultsForm::fillGrid()
{
    const QString u = QStringLiteral("\n") + table_.unit;
    grid_->setHorizontalHeaderLabels({QStringLiteral("Frequency\nMHz"), QStringLiteral("Pol."), QStringLiteral("Peak") + u,
                                      QStringLiteral("QPeak") + u, QStringLiteral("Average") + u,
                                      QStringLiteral("Peak limit") + u, QStringLiteral("Av. limit") + u,
                                      QStringLiteral("Margin\nQP/Pk dB"), QStringLiteral("Margin\nAv. dB"),
                                      QStringLiteral("Verdict"), QStringLiteral("Ambient") + u});
    grid_->setRowCount(int(table_.lines.size()));
    for (int r = 0; r < int(table_.lines.size()); ++r) {
        const ResultLine &line = table_.lines[size_t(r)];
        grid_->setItem(r, Freq, item(vbFormat(line.frequency, QStringLiteral("0.000"))));
        grid_->setItem(r, Pol, item(line.polarisation.isNull() ? QString() : QString(line.polarisation), Qt::AlignCenter));
        grid_->setItem(r, Peak, item(level(line.peak)));
        grid_->setItem(r, QPeak, item(level(line.qpeak)));
        grid_->setItem(r, Average, item(level(line.average)));
        grid_->setItem(r, PeakLimit, item(level(line.peakLimit)));
        grid_->setItem(r, AverageLimit, item(level(line.averageLimit)));
        QTableWidgetItem *peakMargin = item(signedLevel(line.peakMargin) +
                                            (line.peakMargin && !line.marginFromQPeak ? QStringLiteral(" Pk") : QString()));
        if (line.peakMargin && !line.marginFromQPeak)
            peakMargin->setToolTip(QStringLiteral("No quasi-peak was measured: the peak is judged."));
        grid_->setItem(r, PeakMargin, peakMargin);
        grid_->setItem(r, AverageMargin, item(signedLevel(line.averageMargin)));
        grid_->setItem(r, Judged, item(verdictText(line.verdict), Qt::AlignCenter));
        QTableWidgetItem *ambient = item(level(line.ambient));
        if (line.ambientNear) {
            ambient->setBackground(kAmbientShade);
            ambient->setText(ambient->text() + QStringLiteral(" !"));
            ambient->setToolTip(QStringLiteral("The ambient lies within 6 dB of the peak: this result may be the ambient."));
        }
        grid_->setItem(r, Ambient, ambient);
        for (int c : {PeakMargin, AverageMargin, Judged}) {
            const std::optional<double> m = c == PeakMargin ? line.peakMargin : c == AverageMargin ? line.averageMargin : line.worstMargin();
            if (m && *m > 0)
                grid_->item(r, c)->setForeground(kFailInk);
        }
        if (line.verdict == Verdict::Fail) {
            QFont f = grid_->item(r, Judged)->font();
            f.setBold(true);
            grid_->item(r, Judged)->setFont(f);
        }
    }
    grid_->resizeColumnsToContents();
}

void ResultsForm::lineChosen(int row)
{
    if (row >= 0 && row < int(table_.lines.size()))
        putCursorOn(table_.lines[size_t(row)], table_.unitOffset);
}

void showResults()
{
    // A form already shown reads the file again; a new one reads it as it is shown.
    if (auto *form = qobject_cast<ResultsForm *>(loadedForm(kResults)))
        form->refresh();
    showForm(kResults);
}

void registerResultsForms()
{
    registerForm(kResults, [] { return new ResultsForm; });
}

QPushButton *resultsButton(QWidget *parent)
{
    auto *button = new QPushButton(QStringLiteral("Results"), parent);
    button->setObjectName(QStringLiteral("cmdResults"));
    QObject::connect(button, &QPushButton::clicked, button, &showResults);
    return button;
}

}  // namespace kw
