// The limit, component and configuration editors, and edits the correction chain must see at once.

#include "editors/configeditor.h"
#include "editors/definitioneditor.h"
#include "editors/definitionplot.h"
#include "editors/editorwidgets.h"
#include "levels/correction.h"
#include "levels/correctiontables.h"
#include "link/storetrace.h"
#include "platform/dialogs.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "shell/uihooks.h"
#include "support/programdir.h"
#include "support/recordingplot.h"
#include "support/testfiles.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTableWidget>
#include <QtTest>

using namespace kw;

namespace {

Database openDb() { return OpenDatabase(st.databasefile); }

DefinitionPoints pointsOf(const QString &table, const QString &column, int number)
{
    DefinitionPoints out;
    Recordset rs = openDb().OpenRecordset(
        QStringLiteral("select * from %1 where %2 = %3 order by frequency").arg(table, column).arg(number), dbOpenSnapshot);
    while (!rs.Eof()) {
        out.emplace_back(float(rs.FieldNumber("frequency")), float(rs.FieldNumber("level_dbmw")));
        rs.MoveNext();
    }
    return out;
}

QStringList column(QTableWidget *grid, int c)
{
    QStringList out;
    for (int r = 0; r < grid->rowCount(); ++r)
        out << grid->item(r, c)->text();
    return out;
}

template <class T>
T *child(QWidget &form, const char *name)
{
    return form.findChild<T *>(QString::fromUtf8(name));
}

}  // namespace

class TestDefinitionEditors : public QObject {
    Q_OBJECT
    std::unique_ptr<test::TempProgramDir> dir_;
    ScriptedDialogs boxes_;
    int refreshes_ = 0;

    // The editor of a family opened on a definition, as the menu opens it.
    std::unique_ptr<DefinitionEditor> editor(Family family, const QString &name)
    {
        (family == Family::Limit ? st.currentlimit : st.currentcomponent) = name;
        auto form = std::make_unique<DefinitionEditor>(family);
        form->activate();
        return form;
    }
    std::unique_ptr<DefinitionEditor> limitEditor(const QString &name) { return editor(Family::Limit, name); }
    void type(DefinitionEditor &form, const QString &frequency, const QString &level)
    {
        auto *t2 = child<QLineEdit>(form, "Text2");
        child<QLineEdit>(form, "Text1")->setText(QString());
        QTest::keyClicks(child<QLineEdit>(form, "Text1"), frequency);
        t2->clear();
        QTest::keyClicks(t2, level);
        QTest::keyClick(t2, Qt::Key_Return);
    }
    QString gridCell(DefinitionEditor &form, int c, bool last = false)
    {
        const QStringList col = column(child<QTableWidget>(form, "Grid1"), c);
        return last ? col.last() : col.first();
    }

private slots:
    void init()
    {
        resetState();
        setNumberLocale(NumberLocale::enUS());
        dir_ = std::make_unique<test::TempProgramDir>();
        st.databasefile = dir_->file(QStringLiteral("default.mdb"));
        boxes_ = ScriptedDialogs();
        setDialogs(&boxes_);
        refreshes_ = 0;
        uiHooks().refreshForms = [this] { ++refreshes_; };
    }
    void cleanup()
    {
        uiHooks().refreshForms = nullptr;
        setDialogs(nullptr);
        if (st.db.isSet())
            st.db.Close();
        dir_.reset();
        setNumberLocale(NumberLocale::system());
    }

    // A delivered conducted limit in the grid in its unit; the plot from 0 MHz as it starts below 1 MHz.
    void gridAndRangeOfADeliveredLimit()
    {
        auto form = limitEditor(QStringLiteral("cispr 32 class b conducted qp"));
        QCOMPARE(std::tuple(child<QTableWidget>(*form, "Grid1")->rowCount(), form->view().offset,
                            child<QComboBox>(*form, "DBCombo2")->currentText(), gridCell(*form, 0), gridCell(*form, 1),
                            form->range().fmin, form->range().fmax, st.currentlimit),
                 std::tuple(int(pointsOf("limitdef", "limitnr", 3).size()), int16_t(107), QStringLiteral("dBµV"), QStringLiteral("0.15"),
                            QStringLiteral("66.00"), 0.0f, 30.0f, QStringLiteral("CISPR 32 Class B conducted QP")));
        QVERIFY(child<QCheckBox>(*form, "Check2")->isChecked() && !child<QLineEdit>(*form, "Text3")->isEnabled());
        // A radiated limit enables its distance.
        form->chooseDefinition(QStringLiteral("FCC 15 Class B radiated 3 m"));
        QCOMPARE(std::pair(child<QLineEdit>(*form, "Text3")->isEnabled(), child<QLineEdit>(*form, "Text3")->text()), std::pair(true, QStringLiteral("3")));
    }

    // Comma and point both become the decimal mark; Enter on an existing frequency overwrites its level.
    void pointsTypedInBothLocales()
    {
        auto form = limitEditor(QStringLiteral("FCC 15 Class B radiated 3 m"));
        const size_t before = pointsOf("limitdef", "limitnr", 21).size();
        const auto added = [] {
            const DefinitionPoints after = pointsOf("limitdef", "limitnr", 21);
            const auto at = std::find_if(after.begin(), after.end(), [](const auto &p) { return p.first == 123.5f; });
            return std::pair(after.size(), at == after.end() ? NAN : at->second);
        };
        type(*form, QStringLiteral("123,5"), QStringLiteral("40.25"));
        QCOMPARE(std::pair(added(), child<QLineEdit>(*form, "Text1")->text()), std::pair(std::pair(before + 1, 40.25f - 107.0f), QString()));

        setNumberLocale(NumberLocale::deDE());
        st.decimalchar = ',';
        type(*form, QStringLiteral("123.5"), QStringLiteral("-1,5x"));
        QCOMPARE(added(), std::pair(before + 1, -1.5f - 107.0f));
        auto *grid = child<QTableWidget>(*form, "Grid1");
        const int row = column(grid, 0).indexOf(QStringLiteral("123,5"));
        QCOMPARE(row >= 0 ? grid->item(row, 1)->text() : QString(), QStringLiteral("-1,50"));
        form->gridClicked(row);
        QCOMPARE(std::pair(child<QLineEdit>(*form, "Text1")->text(), child<QLineEdit>(*form, "Text2")->text()),
                 std::pair(QStringLiteral("123,5"), QStringLiteral("-1,5")));
        form->gridKey(row, Qt::Key_Delete);
        QCOMPARE(std::pair(pointsOf("limitdef", "limitnr", 21).size(), grid->rowCount()), std::pair(before, int(before)));
    }

    // The unit's offset is rounded to a whole number (halves to even); the stored levels stay.
    void unitOffsetIsAWholeNumber()
    {
        Database db = openDb();
        db.Execute(QStringLiteral("insert into unit values ('half down', 106.5), ('half up', 107.5), ('fraction', -12.7)"));
        auto form = limitEditor(QStringLiteral("FCC 15 Class B radiated 3 m"));
        const DefinitionPoints stored = pointsOf("limitdef", "limitnr", 21);
        const QList<QPair<QString, int>> cases{{"half down", 106}, {"half up", 108}, {"fraction", -13}, {"dBmW", 0}};
        for (const auto &[unit, offset] : cases) {
            form->chooseUnit(unit);
            QCOMPARE(std::pair(form->view().offset, gridCell(*form, 1)),
                     std::pair(int16_t(offset), vbFormat(stored.front().second + float(offset), QStringLiteral("###0.00"))));
        }
        Recordset head = db.OpenRecordset(QStringLiteral("select * from LimitHead where limitnr = 21"), dbOpenSnapshot);
        QCOMPARE(std::pair(pointsOf("limitdef", "limitnr", 21), head.FieldText("limunit")), std::pair(stored, QStringLiteral("dBmW")));
    }

    // A gain is shown positive, stored negative; the antenna's distance stays in its row under another type.
    void componentSignAndType()
    {
        auto form = editor(Family::Component, QStringLiteral("Preamplifier 25 dB"));
        QVERIFY(child<QRadioButton>(*form, "Option1_2")->isChecked());
        type(*form, QStringLiteral("2000"), QStringLiteral("20"));
        QCOMPARE(std::pair(pointsOf("losdef", "losnr", 6).back(), gridCell(*form, 1, true)),
                 std::pair(std::make_pair(2000.0f, -20.0f), QStringLiteral("20.00")));

        openDb().Execute(QStringLiteral("insert into losdef values (5, 5000, 3)"));
        form->chooseDefinition(QStringLiteral("Cable RG-223 2 m"));
        QCOMPARE(gridCell(*form, 1, true), QStringLiteral("3.00"));
        form->chooseType(2);
        QCOMPARE(std::pair(gridCell(*form, 1, true), pointsOf("losdef", "losnr", 5).back().second), std::pair(QStringLiteral("-3.00"), 3.0f));

        form->chooseDefinition(QStringLiteral("Bilog antenna 30-1000 MHz, 3 m"));
        QCOMPARE(child<QLineEdit>(*form, "Text3")->text(), QStringLiteral("3"));
        refreshes_ = 0;
        form->chooseType(1);
        QVERIFY(child<QLineEdit>(*form, "Text3")->isHidden() && refreshes_ > 0);  // the panels take the distance anew
        Recordset head = openDb().OpenRecordset(QStringLiteral("select * from loshead where losnr = 1"), dbOpenSnapshot);
        QCOMPARE(std::pair(head.FieldNumber("Distance"), head.FieldNumber("lostyp")), std::pair(3.0, 1.0));
    }

    // A point edited in the component editor is in the very next storetrace, the tables not opened again.
    void aComponentEditIsSeenByTheNextTrace()
    {
        st.db = OpenDatabase(st.databasefile);
        QVERIFY(setupconfiguration(QStringLiteral("Conducted LISN cable")));
        st.correctionon = 1;
        std::tie(st.freqstart, st.freqstop) = std::pair(0.0f, 30.0f);
        opencorrectiontables();
        st.rawblock.fill(227);
        storetrace();
        const Trace before = st.sampledata;

        auto form = editor(Family::Component, QStringLiteral("Cable RG-223 2 m"));
        const DefinitionPoints rows = pointsOf("losdef", "losnr", 5);
        QVERIFY(!rows.empty());
        for (const auto &[f, level] : rows)
            type(*form, vbCStr(f), vbCStr(level + 20.0f));
        st.rawblock.fill(227);
        storetrace();
        // Inside the table the chain adds 20 dB more: 50 level counts.
        QVERIFY(std::abs(int(st.sampledata[1000]) - int(before[1000]) - 50) <= 1);

        // A component emptied in the editor adds nothing at once.
        for (size_t i = 0; i < rows.size(); ++i)
            form->gridKey(0, Qt::Key_Delete);
        float f = 15.0f;
        resetcorrectionsegments();
        correctionat(f);
        QCOMPARE(std::pair(pointsOf("losdef", "losnr", 5).size(), st.correction), std::pair(size_t(0), 0.0f));
    }

    // Position A decides the radiated path; antennas never show in B to E; a component may stand twice.
    void configurationPositions()
    {
        st.currentconfig = QStringLiteral("radiated 10 m biconical, cable");
        ConfigEditor form;
        form.activate();
        QCOMPARE(std::tuple(form.radiatedPathShown(), form.positionCombo(0)->currentText(), child<QLabel>(form, "Label4")->text()),
                 std::tuple(true, QStringLiteral("Biconical antenna 30-300 MHz, 10 m"), QStringLiteral("10")));
        for (int p = 1; p < 5; ++p)
            QVERIFY(form.positionCombo(p)->findText(QStringLiteral("Bilog antenna 30-1000 MHz, 3 m")) < 0 &&
                    form.positionCombo(p)->findText(QStringLiteral("Cable RG-58 10 m")) >= 0);
        QVERIFY(form.positionCombo(0)->findText(QStringLiteral("Bilog antenna 30-1000 MHz, 3 m")) >= 0);

        form.choosePosition(0, QStringLiteral("Cable RG-223 2 m"));
        QVERIFY(!form.radiatedPathShown());
        form.choosePosition(2, QStringLiteral("Cable RG-58 10 m"));
        Recordset rs = openDb().OpenRecordset(QStringLiteral("config"), dbOpenSnapshot);
        rs.FindFirst(QStringLiteral("configname = 'Radiated 10 m biconical, cable'"));
        QCOMPARE(std::tuple(rs.FieldNumber("devicea"), rs.FieldNumber("deviceb"), rs.FieldNumber("devicec"), refreshes_ >= 2),
                 std::tuple(5.0, 4.0, 4.0, true));
        st.db = OpenDatabase(st.databasefile);
        setupconfiguration(QStringLiteral("Radiated 10 m biconical, cable"));
        QCOMPARE(st.configdist, 0.0f);
        // An antenna named for a later position is refused.
        form.choosePosition(3, QStringLiteral("Bilog antenna 30-1000 MHz, 3 m"));
        rs = openDb().OpenRecordset(QStringLiteral("config"), dbOpenSnapshot);
        rs.FindFirst(QStringLiteral("configname = 'Radiated 10 m biconical, cable'"));
        QCOMPARE(rs.FieldNumber("deviced"), 0.0);
    }

    // Import merges or replaces (bad files are tst_badfiles'); a delivered limit survives export and import.
    void importAndExportThroughTheEditor()
    {
        const QString csv = dir_->file(QStringLiteral("points.csv"));
        auto form = limitEditor(QStringLiteral("FCC 15 Class B radiated 3 m"));
        const DefinitionPoints delivered = pointsOf("limitdef", "limitnr", 21);

        // Merge: equal frequency takes the file's level, the rest is added.
        QVERIFY(kwtest::writeFile(csv, "Frequency (GHz);Level (dBµV/m)\n0,03;0\n2,0005;54\n"));
        boxes_.files.push_back(csv);
        boxes_.answers.push_back(Answer::No);
        form->importFile();
        const DefinitionPoints merged = pointsOf("limitdef", "limitnr", 21);
        QCOMPARE(std::tuple(boxes_.shown.back().buttons, merged.size(), merged.front(), merged.back()),
                 std::tuple(Buttons::YesNoCancel, delivered.size() + (delivered.front().first == 30.0f ? 1 : 2),
                            std::make_pair(30.0f, -107.0f), std::make_pair(2000.5f, 54.0f - 107.0f)));

        // Cancel changes nothing; Yes replaces all.
        boxes_.files.push_back(csv);
        boxes_.answers.push_back(Answer::Cancel);
        form->importFile();
        QCOMPARE(pointsOf("limitdef", "limitnr", 21), merged);
        boxes_.files.push_back(csv);
        boxes_.answers.push_back(Answer::Yes);
        form->importFile();
        QCOMPARE(pointsOf("limitdef", "limitnr", 21).size(), size_t(2));

        // Round trip of a delivered limit through a file into a new one.
        auto cispr = limitEditor(QStringLiteral("CISPR 32 Class B conducted QP"));
        boxes_.files.push_back(csv);
        cispr->exportFile();
        QVERIFY(kwtest::readFile(csv).startsWith("Frequency (MHz),Level (dB\xC2\xB5V)\n0.15,66\n0.5,56\n5,56\n5,60\n"));
        Database db = openDb();
        db.Execute(QStringLiteral("insert into LimitHead (limitnr, limitname, limunit) values (99, 'Copy of B', 'dBµV')"));
        auto copy = limitEditor(QStringLiteral("Copy of B"));
        boxes_.files.push_back(csv);
        boxes_.answers.push_back(Answer::Ok);
        copy->importFile();
        QVERIFY(boxes_.shown.back().buttons == Buttons::OkCancel && pointsOf("limitdef", "limitnr", 99) == pointsOf("limitdef", "limitnr", 3));
    }

    // The small plot: one point draws no line, equal levels open a dB either way, a log limit from 0 MHz bends.
    void theSmallPlot()
    {
        kwtest::RecordingSurface p1(400, 200), p2(40, 200), p3(400, 18);
        DefinitionPictures pictures{p1, p2, p3};
        DefinitionRange r;
        const auto draw = [&](const DefinitionPoints &points, const LevelView &view) {
            const bool ranged = definitionRange(points, r);
            drawDefinition(pictures, points, r, view);
            return ranged;
        };
        QVERIFY(draw({{50.0f, -40.0f}}, LevelView{}));
        QCOMPARE(std::tuple(p1.linesOf(12).size(), r.lmin, r.lmax), std::tuple(size_t(0), -41.0f, -39.0f));

        QVERIFY(draw({{0.15f, -40.0f}, {999.99f, -40.0f}, {2000.0f, -40.0f}}, LevelView{}));
        QCOMPARE(std::tuple(r.fmin, p1.linesOf(12).size(), p3.textList().first()), std::tuple(0.0f, size_t(2), QStringLiteral("0.0K")));
        QCOMPARE(p2.textList(), QStringList({"-41.0", "-40.6", "-40.2", "-39.8", "-39.4", "-39.0"}));

        const LevelView logLimit{.offset = 107, .logarithmic = true};
        QVERIFY(draw({{0.0f, -41.0f}, {0.5f, -51.0f}, {30.0f, -60.0f}}, logLimit));
        QVERIFY(p1.linesOf(12).size() > 90 && p2.textList().last() == QStringLiteral("66.0"));  // bent: fifty pieces a segment

        // A gain's scale is turned over: the bigger gain, the lower stored number, stands higher.
        QVERIFY(draw({{10.0f, -20.0f}, {1000.0f, -30.0f}}, LevelView{.component = true, .sign = -1}));
        QVERIFY(p1.scaleHeight() > 0 && p2.textList().first() == QStringLiteral("30.0"));
    }
};

QTEST_MAIN(TestDefinitionEditors)
#include "tst_definitioneditors.moc"
