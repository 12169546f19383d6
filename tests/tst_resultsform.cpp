// The form "Results", its menu entries and the CSV exports as the operator reaches them.
#include "emc/resultsform.h"
#include "platform/dialogs.h"
#include "plot/grafik.h"
#include "plot/printforms.h"
#include "plot/report.h"
#include "plot/resultspage.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/state.h"
#include "support/programdir.h"
#include "support/resultsfile.h"
#include "support/testfiles.h"
#include "support/toolrun.h"

#include <QAction>
#include <QCheckBox>
#include <QPushButton>
#include <QLabel>
#include <QTableWidget>
#include <QtTest>
#include <memory>

using namespace kw;
using kwtest::toolOutput;

namespace {

int pageCount(const QString &pdf)
{
    static const QRegularExpression pages(QStringLiteral("Pages:\\s+(\\d+)"));
    return pages.match(toolOutput(QStringLiteral("pdfinfo"), {pdf})).captured(1).toInt();
}

}  // namespace

class TestResultsForm : public QObject {
    Q_OBJECT
    std::unique_ptr<test::TempProgramDir> program_;
    ScriptedDialogs boxes_;
    QString file_;

private slots:
    void init()
    {
        program_ = std::make_unique<test::TempProgramDir>();
        st.db = OpenDatabase(program_->file(QStringLiteral("default.mdb")));
        boxes_ = ScriptedDialogs();
        setDialogs(&boxes_);
        file_ = kwtest::emcFile(program_->path(), true);
        st.measurefile = file_;
        st.filemode = 1;
        st.mode = 2;
        st.unitoffset = 107.0f;
        std::tie(st.freqstart, st.freqstop, st.grafikmin, st.grafikmax) = std::tuple(30.0f, 1500.0f, -300, 0);
        st.viewlimitmax = st.viewmaxhold = 1;
        resultsPageOption() = false;
    }
    void cleanup()
    {
        setDialogs(nullptr);
        st.db.Close();
        program_.reset();
    }

    void formShowsTheFileAndAClickMovesCursorOne()
    {
        Mdi window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        showGrafik(window);
        window.menuEntry(QStringLiteral("mnuresults"))->trigger();
        auto *form = qobject_cast<ResultsForm *>(loadedForm(QStringLiteral("results")));
        QVERIFY(form);
        QTableWidget *grid = form->grid();
        QCOMPARE(grid->rowCount(), 4);
        QCOMPARE((QStringList{grid->item(0, 0)->text(), grid->item(0, 9)->text(), grid->item(3, 9)->text()}),
                 (QStringList{"230.000", "FAIL", "no limit"}));
        QVERIFY(grid->item(0, 10)->text().endsWith(QStringLiteral(" !")));  // the ambient 4 dB under the peak
        const QString header = form->findChild<QLabel *>(QStringLiteral("Label1"))->text();
        QVERIFY2(header.contains(QStringLiteral("CISPR 32 B radiated 3 m")) && header.contains(QStringLiteral("dBµV/m")) &&
                     form->findChild<QLabel *>(QStringLiteral("Label2"))->text().startsWith(QStringLiteral("Verdict: FAIL")),
                 qPrintable(header));

        // The third line (50 MHz of 30..1500) is judged by its quasi-peak, 33 dBµV/m.
        const QRect cell = grid->visualItemRect(grid->item(2, 0));
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
        QCOMPARE(std::pair(st.cursor1x, st.cursor1y), std::pair(int32_t(13605), int32_t(-185)));

        // Nothing shown from a file: the form says so rather than showing the last table.
        st.filemode = 0;
        form->refresh();
        QVERIFY(grid->rowCount() == 0 && form->findChild<QLabel *>(QStringLiteral("Label1"))->text().startsWith(QStringLiteral("No EMC test file")));
    }

    void emcHasAResultsButton()
    {
        Mdi window;
        window.menuEntry(QStringLiteral("mnuemc"))->trigger();
        QTest::mouseClick(loadedForm(QStringLiteral("emc"))->findChild<QPushButton *>(QStringLiteral("cmdResults")), Qt::LeftButton);
        QVERIFY(formLoaded(QStringLiteral("results")));
    }

    void exportsWriteWhereTheOperatorSays()
    {
        Mdi window;
        boxes_.files.push_back(program_->file(QStringLiteral("table")));
        boxes_.files.push_back(program_->file(QStringLiteral("res.csv")));
        window.menuEntry(QStringLiteral("mnuexpmeasurement"))->trigger();
        window.menuEntry(QStringLiteral("mnuexpresults"))->trigger();
        QVERIFY(boxes_.fileRequests.size() == 2 && boxes_.fileRequests[1].dir.endsWith(QStringLiteral("run results.csv")));
        // What the files hold is the CSV writers' (tst_results); here they land where the operator said.
        QVERIFY(kwtest::readFile(program_->file(QStringLiteral("table.csv"))).startsWith("\xEF\xBB\xBF# KW3400R measurement: " + file_.toUtf8()));
        QVERIFY(kwtest::readFile(program_->file(QStringLiteral("res.csv"))).contains("# Verdict: FAIL"));

        // No file shown: a box, no dialog, no file. A cancelled dialog writes nothing.
        st.filemode = 0;
        window.menuEntry(QStringLiteral("mnuexpresults"))->trigger();
        window.menuEntry(QStringLiteral("mnuexpmeasurement"))->trigger();
        QCOMPARE(std::pair(boxes_.fileRequests.size(), boxes_.count(QStringLiteral("Export"))), std::pair(size_t(2), 2));
        st.filemode = 1;
        boxes_.files.push_back(std::nullopt);
        window.menuEntry(QStringLiteral("mnuexpmeasurement"))->trigger();
        QCOMPARE(QDir(program_->path()).entryList({QStringLiteral("*.csv")}).size(), 2);
    }

    // The report gains the table's sheet with the option only; the preview a second sheet.
    void reportPageOnlyWithTheOption()
    {
        const QString without = program_->file(QStringLiteral("without.pdf"));
        const QString with = program_->file(QStringLiteral("with.pdf"));
        printReportToPdf(without);
        resultsPageOption() = true;
        printReportToPdf(with);
        const int pages = pageCount(without);
        QCOMPARE(pageCount(with), pages + 1);
        const QString text = toolOutput(QStringLiteral("pdftotext"), {QStringLiteral("-f"), QString::number(pages + 1), with, QStringLiteral("-")}).simplified();
        QVERIFY2(text.contains(QStringLiteral("Results: CISPR 32 B radiated 3 m")) && text.contains(QStringLiteral("Verdict: FAIL")) &&
                     text.contains(QStringLiteral("+1.0 Pk")) &&
                     text.indexOf(QStringLiteral("230.000")) >= 0 && text.indexOf(QStringLiteral("230.000")) < text.indexOf(QStringLiteral("1500.000")),
                 qPrintable(text));

        // A ".mes" file or live traces: no sheet, whatever the option says.
        st.filemode = 0;
        const QString live = program_->file(QStringLiteral("live.pdf"));
        printReportToPdf(live);
        QCOMPARE(pageCount(live), pages);

        st.filemode = 1;
        resultsPageOption() = false;
        Mdi window;
        window.show();
        showPrintSettings();
        auto *r = loadedForm(QStringLiteral("printe"))->findChild<PictureBox *>(QStringLiteral("r"));
        QVERIFY(r);
        const double plotOnly = r->surface().scaleHeight();
        QTest::mouseClick(loadedForm(QStringLiteral("setprn"))->findChild<QCheckBox *>(QStringLiteral("CheckResults")),
                          Qt::LeftButton);
        QVERIFY(resultsPageOption());
        QCOMPARE(r->surface().scaleHeight(), 2 * plotOnly);
        resultsPageOption() = false;
    }
};

QTEST_MAIN(TestResultsForm)
#include "tst_resultsform.moc"
