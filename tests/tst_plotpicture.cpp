// The plot as a person sees it: grafik rendered offscreen with a known trace and limit, saved as
// a PNG, and its colours checked where the trace, the limit and the grid must be.
#include "live/cycle.h"
#include "platform/surface.h"
#include "plot/drawplot.h"
#include "plot/grafik.h"
#include "plot/plotsources.h"
#include "platform/twips.h"
#include "shell/mdi.h"
#include "shell/startup.h"
#include "shell/uihooks.h"
#include "support/recordingplot.h"
#include "support/simfixture.h"
#include "shell/state.h"

#include <QDir>
#include <QImage>
#include <QLabel>
#include <QMdiSubWindow>
#include <QtTest>

using namespace kw;

namespace {

// Plot frame: -20 dB at the top, -100 dB at the bottom, 0..1000 MHz.
constexpr int kTop = -50;
constexpr int kBottom = -250;
constexpr int kTraceLevel = -230;

struct Probe {
    const QImage &image;
    // The pixel of a plot point (x 0..1000000, y in plot units).
    QPoint at(double x, double y) const
    {
        return QPoint(int(x / 1e6 * image.width()), int((y - kTop) / double(kBottom - kTop) * image.height()));
    }
    // Whether the colour is within two pixels of the point (the pens are one and two wide).
    bool near(double x, double y, const QColor &colour) const
    {
        const QPoint c = at(x, y);
        for (int dy = -2; dy <= 2; ++dy)
            for (int dx = -2; dx <= 2; ++dx) {
                const QPoint p = c + QPoint(dx, dy);
                if (image.rect().contains(p) && image.pixelColor(p) == colour)
                    return true;
            }
        return false;
    }
};

// A shown plot form with the frame above and a flat Sample trace at kTraceLevel.
void showWithTrace(Grafik &form)
{
    form.resize(900, 600);
    form.show();
    QVERIFY(QTest::qWaitForWindowExposed(&form));
    kwtest::plotFrame(0.0f, 1000.0f);
    st.viewsample = 1;
    for (int i = 1; i <= 2001; ++i)
        st.sampledata[size_t(i)] = kTraceLevel;
}

}  // namespace

class TestPlotPicture : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        resetState();
        resetPlotSources();
    }
    void cleanup() { resetPlotSources(); }

    void traceLimitAndGridHaveTheirColours()
    {
        Grafik form;
        showWithTrace(form);
        st.viewlimitmax = 1;
        plotSources().limitRows = [](bool maxHold) {
            return maxHold ? std::vector<LimitRow>{{100.0f, -60.0f}, {900.0f, -80.0f}} : std::vector<LimitRow>{};
        };

        DrawPlot();
        QCOMPARE(st.grafikmax, int16_t(kTop));  // the limit lies inside: no widening
        const QImage image = static_cast<ImageSurface &>(form.picture1()).image();
        const Probe probe{image};

        const QColor green = paletteColour(2), lightRed = paletteColour(12), grey = paletteColour(7);
        // Sample points: index i stands at x = (i - 1) / 2001 of the width.
        for (int i : {2, 1000, 2000})
            QVERIFY2(probe.near((i - 1) * 1e6 / 2001, kTraceLevel, green), qPrintable(QString::number(i)));
        // The limit from (100 MHz, -60 dB) to (900 MHz, -80 dB): -150 to -200 plot units, nothing left of its first point.
        QVERIFY(probe.near(150000.0, -153.125, lightRed) && probe.near(850000.0, -196.875, lightRed) &&
                !probe.near(50 * 1000.0, -150, lightRed));
        // Grid: vertical lines at every tenth of the span, level lines every 10 dB from -20 dB.
        QCOMPARE((QList<QColor>{image.pixelColor(probe.at(200000, -60)), image.pixelColor(probe.at(700000, -60)),
                                image.pixelColor(probe.at(50000, -75)), image.pixelColor(probe.at(50000, -87))}),
                 (QList<QColor>{grey, grey, grey, QColor(Qt::white)}));
    }

    void eraseLeavesAnEmptyGridAndACoveredWindowComesBackFromTheImage()
    {
        Grafik form;
        showWithTrace(form);
        DrawPlot();
        eraseall();
        const QImage erased = static_cast<ImageSurface &>(form.picture1()).image();
        // A repaint of the widget draws the kept image and asks for no pass.
        st.redrawflag = 0;
        form.pictureBox(1)->repaint();
        QCOMPARE(std::pair(st.redrawflag, form.pictureBox(1)->grab().toImage().pixelColor(10, 10)),
                 std::pair(uint8_t(0), erased.pixelColor(10, 10)));
    }

    void placementIsKeptInTwips()
    {
        SimBench bench;  // a program directory of its own: no setting.def, so the defaults
        Mdi window;
        loadMain(window);
        QWidget *form = window.child(QStringLiteral("grafik"));
        QWidget *frame = form ? form->parentWidget() : nullptr;
        QVERIFY(frame);
        QCOMPARE(frame->width(), twipsToPixelsX(7200));
        frame->setGeometry(twipsToPixelsX(1500), twipsToPixelsY(300), twipsToPixelsX(9000), twipsToPixelsY(6000));
        uiHooks().storeFormPositions();
        QVERIFY(!frame->close());  // the plot stays while the frame stands
        QCOMPARE(std::pair(window.child(QStringLiteral("grafik")), int(st.formpos[1])), std::pair(form, 0));
        QVERIFY(std::abs(st.formpos[2] - 1500) <= 15 && std::abs(st.formpos[4] - 9000) <= 15 && std::abs(st.formpos[5] - 6000) <= 15);
        QVERIFY(window.close());  // ... and goes with it
    }

    void newConfigurationShowsItsDistance()
    {
        Grafik form;
        auto *label5 = form.findChild<QLabel *>(QStringLiteral("Label5"));
        QVERIFY(label5 && label5->isHidden());
        std::tie(st.correctionon, st.configdist) = std::pair(1, 10.0f);
        uiHooks().configurationChanged();
        QVERIFY(!label5->isHidden() && label5->text().startsWith(QStringLiteral("Distance from DUT: ")));
    }
};

QTEST_MAIN(TestPlotPicture)
#include "tst_plotpicture.moc"
