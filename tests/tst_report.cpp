// The report as a person holds it: PDFs read back with pdftotext and pdftoppm, the preview, the headline box.
#include "platform/dialogs.h"
#include "platform/paintersurface.h"
#include "plot/drawplot.h"
#include "plot/grafik.h"
#include "plot/plotsources.h"
#include "plot/printforms.h"
#include "plot/report.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/state.h"
#include "support/measfile.h"
#include "support/testfiles.h"
#include "support/recordingplot.h"
#include "support/toolrun.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QAction>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace kw;
using kwtest::toolOutput;
using kwtest::RecordingSurface;

namespace {

// Blanks and line ends made one blank: where labels overlap the reader breaks lines elsewhere.
QString pdfText(const QString &pdf) { return toolOutput(QStringLiteral("pdftotext"), {pdf, QStringLiteral("-")}); }
QString pdfWords(const QString &pdf) { return pdfText(pdf).simplified(); }

// Width and height in points of each page.
QList<QSizeF> pdfPages(const QString &pdf)
{
    QList<QSizeF> pages;
    static const QRegularExpression size(QStringLiteral("Page\\s+\\d+ size:\\s+([\\d.]+) x ([\\d.]+)"));
    for (const auto &m : size.globalMatch(toolOutput(QStringLiteral("pdfinfo"), QStringLiteral("-f 1 -l 9999 ").split(' ', Qt::SkipEmptyParts) << pdf)))
        pages << QSizeF(m.captured(1).toDouble(), m.captured(2).toDouble());
    return pages;
}

// The first page as a picture.
QImage pdfPicture(const QString &pdf)
{
    toolOutput(QStringLiteral("pdftoppm"), QString(QStringLiteral("-r 100 -l 1 -png -singlefile ")).split(' ', Qt::SkipEmptyParts) << pdf << pdf);
    return QImage(pdf + QStringLiteral(".png"));
}

enum class Hue { Any, Red, Green, Blue, Magenta };

// Pixels of a clear hue; black, white and the greys of smoothed edges count for none.
int colouredPixels(const QImage &image, Hue hue = Hue::Any)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            const int r = c.red(), g = c.green(), b = c.blue();
            const int lead[] = {std::max({r, g, b}) - std::min({r, g, b}) - 60, r - std::max(g, b) - 60,
                                g - std::max(r, b) - 40, b - std::max(r, g) - 60, std::min(r, b) - g - 40};
            n += lead[int(hue)] >= 0 ? 1 : 0;
        }
    return n;
}

// A live read of 0..1000 MHz: Sample at -80 dB, Max hold at -60 dB, a max hold limit at -40 dB in three pieces.
void liveRead()
{
    kwtest::plotFrame(0.0f, 1000.0f);
    st.viewsample = st.viewmaxhold = st.viewb = st.viewlimitmax = 1;
    st.maxholdname = QStringLiteral("Class B peak");
    st.sampledate = st.maxholddate = st.memorydate = 46000.5;
    for (int i = 1; i <= 2001; ++i) {
        st.sampledata[size_t(i)] = -200;
        st.maxholddata[size_t(i)] = -150;
        st.memorydata[size_t(i)] = -220;
    }
    plotSources().limitRows = [](bool maxHold) {
        return maxHold ? std::vector<LimitRow>{{0, -40}, {300, -40}, {600, -40}, {1000, -40}} : std::vector<LimitRow>{};
    };
}

// A finished run: stems at 100..900 MHz over a sweep, both ambients, and the file's limits.
void emcFile(const QString &dir)
{
    const QString path = dir + QStringLiteral("/run.emc");
    Database file = kwtest::measurementFile(path);
    QString rows;
    for (int i = 0; i <= 200; ++i) {
        const double f = 30.0 + i * 4.5;
        const bool stem = i % 40 == 20;
        rows += QStringLiteral("%1(%2, %3, -70, -95, -93)").arg(rows.isEmpty() ? QString() : QStringLiteral(",")).arg(f)
                    .arg(stem ? QStringLiteral("10, -45, -35, -40") : QStringLiteral("-1000, -1000, -1000, -1000"));
    }
    file.Execute(QStringLiteral("insert into Measurement (Frequency, Sample_dBmW, Average_dBmW, Maxhold_dBmW, "
                                "QPeak_dBmW, memory_dBmW, Ambient_H_dBmW, Ambient_V_dBmW) values ") + rows);
    file.Execute(QStringLiteral("insert into Limitlines (avefreq, Average_dBmW, maxfreq, Maxhold_dBmW) values "
                                "(30, -50, 30, -40), (230, -50, 230, -40), (230, -43, 230, -33), (1000, -43, 1000, -33)"));
    file.Close();
    kwtest::plotFrame(30.0f, 1000.0f);
    std::tie(st.filemode, st.mode, st.measurefile, st.testname) = std::tuple(1, 2, path, QStringLiteral("EN 55011 radiated   "));
    st.viewmaxhold = st.viewqpeak = st.viewaverage = st.viewb = st.viewhorizontal = st.viewvertical = st.viewambient = 1;
    st.viewlimitmax = st.viewlimitave = 1;
    std::tie(st.maxholdname, st.averagename) = std::pair(QStringLiteral("QP line"), QStringLiteral("AV line"));
}

}  // namespace

class TestReport : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        resetState();
        resetPlotSources();
        setDialogs(&boxes);
        boxes = ScriptedDialogs{};
    }
    void cleanup()
    {
        setDialogs(nullptr);
        resetPlotSources();
        previewArea() = PreviewArea{};
    }

    void liveReportCarriesHeaderLimitNameAndCursorReadouts()
    {
        Grafik form;
        liveRead();
        std::tie(st.headline, st.unit, st.unitoffset, st.configdist) =
            std::tuple(QStringLiteral("Bench 4 conducted"), QStringLiteral("dBuV                "), 107.0f, 3.0f);
        st.correctionon = st.ucflag = st.printcursor = 1;
        form.findChild<QLabel *>(QStringLiteral("freqa"))->setText(QStringLiteral("---"));
        form.findChild<QLabel *>(QStringLiteral("leva"))->setText(QStringLiteral("-12.5"));
        const QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("live.pdf"));
        printReportToPdf(pdf);
        QCOMPARE(st.printbusy, uint8_t(0));

        const QString text = pdfWords(pdf);
        // A level label in the unit: -40 dB + 107.
        for (const char *expected : {"Bench 4 conducted", "Sam: ", "Max.HLD: ", "Mem: ", "RBW: 400kHz", "Print date: ",
                                     "Unit: ", "dBuV", "Distance from DUT: 3m", "UNCAL", "C2: Freq.: ", "C1-C2: Freq.: ",
                                     "C1: Freq.: --- Lev.:-12.5dBuV", "67.0"})
            QVERIFY2(text.contains(QLatin1String(expected)), expected);
        // Three pieces of the limit, one name.
        QVERIFY(text.count(QStringLiteral("Class B peak")) == 1 && !text.contains(QStringLiteral("Notes:")));
        const QList<QSizeF> pages = pdfPages(pdf);
        QVERIFY(pages.size() == 1 && pages[0].width() > pages[0].height());  // landscape

        // Without dates the tags keep their blanks and the print date goes.
        st.printdate = 0;
        st.printcursor = 0;
        printReportToPdf(pdf);
        const QString undated = pdfWords(pdf);
        QVERIFY(!undated.contains(QStringLiteral("Print date")) && !undated.contains(QStringLiteral("Sam:")) &&
                undated.contains(QStringLiteral("Sam")) && !undated.contains(QStringLiteral("C1: Freq.")) && boxes.shown.empty());
    }

    void landscapeNotesComeOnAPortraitSheetAfterOneMessage()
    {
        kwtest::plotFrame(123.45f, 123.45f);
        std::tie(st.span, st.centerfreq) = std::pair(0, 123.45f);
        st.viewsample = st.printnotes = 1;
        st.note = QStringLiteral("Cable 2 replaced\r\nEUT in mode B   ");
        const QTemporaryDir dir;
        const QString pdf = dir.filePath(QStringLiteral("n.pdf"));
        printReportToPdf(pdf);
        QCOMPARE(kwtest::boxesOf(boxes), QStringList{QStringLiteral("Print|Ready to print notes? (Turn the paper)")});
        const QList<QSizeF> pages = pdfPages(pdf);
        QVERIFY(pages.size() == 2 && pages[0].width() > pages[0].height() && pages[1].width() < pages[1].height());
        const QString text = pdfText(pdf);
        const QString first = text.section(QLatin1Char('\f'), 0, 0), second = text.section(QLatin1Char('\f'), 1);
        QVERIFY(first.contains(QStringLiteral("Zerospan / Freq: 123.45M")) && !first.contains(QStringLiteral("Notes:")));
        for (const char *expected : {"CF: 123.45MHz", "SPAN: 0.0MHz", "RBW: 400.00kHz", "ATTN.: 10.0dB",
                                     "Videofilter: Off", "TG: OFF", "10dB/div", "Notes:", "Cable 2 replaced",
                                     "EUT in mode B"})
            QVERIFY2(second.contains(QLatin1String(expected)), expected);

        // Portrait: the notes under the plot on the one sheet, and no message.
        boxes.shown.clear();
        st.printvertical = 1;
        printReportToPdf(pdf);
        const QList<QSizeF> portrait = pdfPages(pdf);
        QVERIFY(boxes.shown.empty() && portrait.size() == 1 && portrait[0].width() < portrait[0].height());
        QVERIFY(pdfText(pdf).contains(QStringLiteral("EUT in mode B")) && !pdfText(pdf).contains(QStringLiteral("CF: ")));
    }

    void finishedRunPrintsItsStemsLimitsAndTest()
    {
        const QTemporaryDir dir;
        emcFile(dir.path());
        const QString pdf = dir.filePath(QStringLiteral("e.pdf"));
        printReportToPdf(pdf);
        const QString text = pdfWords(pdf);
        for (const char *expected : {"QPeak", "Sweep", "EN 55011 radiated", "Unit: "})
            QVERIFY2(text.contains(QLatin1String(expected)), expected);
        // A file's traces carry no times.
        QVERIFY(text.count(QStringLiteral("Peak")) > text.count(QStringLiteral("QPeak")) && !text.contains(QStringLiteral("Peak: ")) &&
                text.count(QStringLiteral("QP line")) == 1 && text.count(QStringLiteral("AV line")) == 1);
        const QImage coloured = pdfPicture(pdf);  // quasi-peak stems magenta, average limit blue
        QVERIFY(colouredPixels(coloured, Hue::Magenta) > 0 && colouredPixels(coloured, Hue::Blue) > 0);

        // Black under printcolor 0, ambients and cursors included.
        std::tie(st.printcolor, st.printcursor) = std::pair(0, 1);
        printReportToPdf(pdf);
        QCOMPARE(colouredPixels(pdfPicture(pdf)), 0);
    }

    void previewDrawsTheReportWithItsOwnTagsAndNoSheet()
    {
        liveRead();
        RecordingSurface picture(400, 560);
        previewArea().picture = &picture;
        st.printcursor = st.printnotes = 1;
        st.note = QStringLiteral("a\nb");
        DrawPreview();
        const QStringList texts = picture.textList();
        // Landscape: the notes sheet is the paper's.
        QVERIFY(texts.contains(QStringLiteral("CA")) && texts.contains(QStringLiteral("CB")) &&
                texts.filter(QStringLiteral("Cursor 1-2: Freq.: ")).size() == 1 && texts.count(QStringLiteral("Class B peak")) == 1 &&
                !texts.contains(QStringLiteral("Notes:")) && boxes.shown.empty());
        st.printvertical = 1;
        DrawPreview();
        QVERIFY(picture.textList().contains(QStringLiteral("Notes:")) && picture.textList().contains(QStringLiteral("a")));

        // A pass while one runs is refused; DrawPlot refreshes an open preview.
        const int clears = picture.clears;
        st.printbusy = 1;
        DrawPreview();
        QCOMPARE(picture.clears, clears);
        st.printbusy = 0;
        kwtest::RecordingPlot screen;
        st.previewopen = 1;
        previewDrawing() = &DrawPreview;
        DrawPlot();
        previewDrawing() = nullptr;
        QCOMPARE(picture.clears, clears + 1);
    }

    void previewOfAZeroSpanFileShowsTheQuasiPeakTheScreenLeavesOut()
    {
        const QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("z.mes"));
        Database file = kwtest::measurementFile(path);
        file.Execute(QStringLiteral("insert into Measurement (Frequency, Sample_dBmW, QPeak_dBmW) values "
                                    "(100, -60, -50), (100, -61, -50), (100, -62, -50)"));
        file.Close();
        kwtest::plotFrame(100.0f, 100.0f);
        std::tie(st.span, st.filemode, st.measurefile) = std::tuple(0, 1, path);
        st.viewsample = st.viewqpeak = 1;
        kwtest::RecordingPlot screen;
        DrawPlot();
        QVERIFY(screen.p1.linesOf(5).empty());
        RecordingSurface picture(400, 560);
        previewArea().picture = &picture;
        DrawPreview();
        QCOMPARE(std::pair(picture.linesOf(5).size(), picture.linesOf(2).size()), std::pair(size_t(2), size_t(2)));
    }

    void joinedLinesLeaveTheSamePixels()
    {
        // Two noisy traces far denser than the pixels, interleaved as a scan draws them: joined into
        // polylines each column still shows each trace from its lowest to its highest point.
        ImageSurface single(300, 200), joined(300, 200);
        joined.setJoinedLines(true);
        for (ImageSurface *s : {&single, &joined}) {
            s->setScale(0, 0, 20000, 200);
            s->clear();
            for (int i = 0; i < 20000; ++i) {
                s->drawWidth = 1;
                s->line(i, 50 + (i * 7919) % 40, i + 1, 50 + ((i + 1) * 7919) % 40, 12);
                s->drawWidth = 3;
                s->line(i, 120 + (i * 104729) % 60, i + 1, 120 + ((i + 1) * 104729) % 60, 2);
            }
        }
        const QImage a = single.image(), b = joined.image();
        for (const QRgb colour : {paletteColour(12).rgb(), paletteColour(2).rgb()})
            for (int x = 2; x < a.width() - 2; ++x) {
                int top[2] = {-1, -1}, bottom[2] = {-1, -1};
                for (int i : {0, 1})
                    for (int y = 0; y < a.height(); ++y)
                        if ((i ? b : a).pixel(x, y) == colour)
                            std::tie(top[i], bottom[i]) = std::pair(top[i] < 0 ? y : top[i], y);
                QVERIFY2(std::abs(top[0] - top[1]) <= 2 && std::abs(bottom[0] - bottom[1]) <= 2, qPrintable(QString::number(x)));
            }
    }

    void printOpensSettingsAndPreviewThatFollowTheOptions()
    {
        Mdi window;
        window.resize(1000, 800);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        liveRead();
        window.menuEntry(QStringLiteral("mnuprint"))->trigger();
        QVERIFY(formLoaded(QStringLiteral("setprn")) && st.previewopen == 1);
        auto *r = loadedForm(QStringLiteral("printe"))->findChild<PictureBox *>(QStringLiteral("r"));
        QVERIFY(r);
        QCoreApplication::processEvents();
        const QImage landscape = r->surface().image().copy();
        QVERIFY(colouredPixels(landscape, Hue::Red) > 0);

        QWidget *setprn = loadedForm(QStringLiteral("setprn"));
        QTest::mouseClick(setprn->findChild<QCheckBox *>(QStringLiteral("Check2")), Qt::LeftButton);
        QVERIFY(r->surface().image() != landscape);
        QTest::mouseClick(setprn->findChild<QPushButton *>(QStringLiteral("Command2")), Qt::LeftButton);
        QTRY_VERIFY(!formLoaded(QStringLiteral("printe")) && !formLoaded(QStringLiteral("setprn")) && st.previewopen == 0 &&
                    !previewDrawing());
    }

    void headlineBoxTakesSixtyOneCharactersAndNoMore()
    {
        Setprn form;
        form.show();
        auto *text1 = form.findChild<QLineEdit *>(QStringLiteral("Text1"));
        QCOMPARE(text1->text(), st.headline);
        text1->clear();
        QTest::keyClicks(text1, QString(61, QLatin1Char('x')));
        QCOMPARE(text1->text().size(), 61);
        QTest::keyClick(text1, Qt::Key_Y);
        QTest::keyClick(text1, Qt::Key_Backspace);
        QCOMPARE(text1->text().size(), 61);
        // Cut shorter by other means, keys are taken again.
        text1->setText(QStringLiteral("Lab 3   "));
        QTest::keyClick(text1, Qt::Key_Backspace);
        QTest::keyClick(text1, Qt::Key_Return);
        QCOMPARE(st.headline, QStringLiteral("Lab 3"));
        // The colour option is bound (the upright one is clicked through the menu case).
        QTest::mouseClick(form.findChild<QCheckBox *>(QStringLiteral("Check7")), Qt::LeftButton);
        QCOMPARE(st.printcolor, uint8_t(0));
    }

private:
    ScriptedDialogs boxes;
};

QTEST_MAIN(TestReport)
#include "tst_report.moc"
