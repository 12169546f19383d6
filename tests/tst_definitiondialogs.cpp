// Making, copying and deleting definitions: the counter, the merging copy, the unguarded delete,
// and names that break their own criterion.

#include "editors/definitiondialogs.h"
#include "editors/newcopydelete.h"
#include "editors/editorwidgets.h"
#include "platform/dialogs.h"
#include "platform/vbformat.h"
#include "shell/state.h"
#include "support/programdir.h"
#include "support/testfiles.h"

#include <QComboBox>
#include <QtTest>

using namespace kw;

namespace {

Database openDb() { return OpenDatabase(st.databasefile); }

int count(const QString &sql) { return openDb().OpenRecordset(sql, dbOpenSnapshot).RecordCount(); }

int numberOf(const QString &table, const QString &nameColumn, const QString &numberColumn, const QString &name)
{
    // -1 when no row has the name.
    Recordset rs = openDb().OpenRecordset(table, dbOpenSnapshot);
    rs.FindFirst(nameColumn + QStringLiteral(" = '") + name + QLatin1Char('\''));
    return rs.NoMatch() ? -1 : int(rs.FieldNumber(numberColumn));
}

// frequency -> level of a limit's points.
QMap<float, float> limitPoints(int limitnr)
{
    QMap<float, float> out;
    Recordset rs = openDb().OpenRecordset(QStringLiteral("select * from limitdef where limitnr = %1").arg(limitnr),
                                          dbOpenSnapshot);
    while (!rs.Eof()) {
        out.insert(float(rs.FieldNumber("frequency")), float(rs.FieldNumber("level_dbmw")));
        rs.MoveNext();
    }
    return out;
}

void addLimitPoints(int limitnr, const QList<QPair<float, float>> &points)
{
    Database db = openDb();
    for (const auto &[f, l] : points)
        db.Execute(QStringLiteral("insert into limitdef values (%1, %2, %3)").arg(limitnr).arg(f).arg(l));
}

}  // namespace

class TestDefinitionDialogs : public QObject {
    Q_OBJECT
    std::unique_ptr<test::TempProgramDir> dir_;
    ScriptedDialogs boxes_;

    QString add(NewCopyData &d, const QString &name)
    {
        QString target;
        addNewDefinition(d, name, target);
        return target;
    }

private slots:
    void init()
    {
        resetState();
        dir_ = std::make_unique<test::TempProgramDir>();
        st.databasefile = dir_->file(QStringLiteral("default.mdb"));
        boxes_ = ScriptedDialogs();
        setDialogs(&boxes_);
    }
    void cleanup()
    {
        setDialogs(nullptr);
        dir_.reset();
    }

    // The counter's numbers are never given back; a name in another case is refused; an empty one does nothing.
    void newNumbersComeFromTheCounterAndAreNeverReused()
    {
        NewCopyData d;
        d.open(st.databasefile);
        QCOMPARE(add(d, QStringLiteral("  My limit  ")), QStringLiteral("My limit"));
        QCOMPARE(std::pair(st.currentlimit, numberOf("LimitHead", "limitname", "limitnr", "My limit")), std::pair(QStringLiteral("My limit"), 22));

        DeleteData del;
        del.open(st.databasefile);
        QString combo = QStringLiteral("My limit");
        QVERIFY(deleteDefinition(del, combo));

        d.open(st.databasefile);
        add(d, QStringLiteral("Second"));
        QCOMPARE(numberOf("LimitHead", "limitname", "limitnr", "Second"), 23);

        QString target;
        QCOMPARE(addNewDefinition(d, QStringLiteral("SECOND"), target), AddResult::Exists);
        QCOMPARE(kwtest::boxesOf(boxes_), QStringList{QStringLiteral("Add new|Limitdefinition exist ( SECOND )")});
        QCOMPARE(addNewDefinition(d, QStringLiteral("   "), target), AddResult::Nothing);
        QCOMPARE(std::pair(boxes_.shown.size(), count("select * from MeasureCount where limitnr = 23")), std::pair(size_t(1), 1));

        // Components count on their own column; configurations have no number.
        NewCopyData los;
        los.family = Family::Component;
        los.open(st.databasefile);
        add(los, QStringLiteral("Cable 5 m"));
        QCOMPARE(numberOf("loshead", "losname", "losnr", "Cable 5 m"), 7);
        NewCopyData conf;
        conf.family = Family::Configuration;
        conf.open(st.databasefile);
        const QString made = add(conf, QStringLiteral("Bench 2"));
        QCOMPARE(std::pair(made, st.currentconfig), std::pair(QStringLiteral("Bench 2"), QStringLiteral("Bench 2")));
        QCOMPARE(addNewDefinition(conf, QStringLiteral("bench 2"), target), AddResult::Exists);
        QCOMPARE(boxes_.shown.back().text, QStringLiteral("Configuration exist ( bench 2 )"));

        // Without the counter row nothing is made, and nothing is said.
        openDb().Execute(QStringLiteral("delete from MeasureCount"));
        d.open(st.databasefile);
        QCOMPARE(addNewDefinition(d, QStringLiteral("Third"), target), AddResult::Nothing);
        QCOMPARE(std::pair(numberOf("LimitHead", "limitname", "limitnr", "Third"), boxes_.shown.size()), std::pair(-1, size_t(2)));
    }

    // A quote breaks the name's own criterion: the outcome depends on what the last search left.
    void aQuoteInANameLeavesTheLastSearchStanding()
    {
        NewCopyData d;
        d.open(st.databasefile);
        QString target;
        QCOMPARE(addNewDefinition(d, QStringLiteral("O'Brien"), target), AddResult::Exists);
        QCOMPARE(boxes_.shown.back().text, QStringLiteral("Limitdefinition exist ( O'Brien )"));

        d.data2.findFirst(QStringLiteral("limitname like 'nothing of that name'"));
        QCOMPARE(addNewDefinition(d, QStringLiteral("O'Brien"), target), AddResult::Added);
        Recordset rs = openDb().OpenRecordset(QStringLiteral("select * from LimitHead where limitnr = 22"), dbOpenSnapshot);
        QCOMPARE(rs.FieldText("limitname"), QStringLiteral("O'Brien"));
    }

    // Source 1, 2, 3 onto target 2, 4: the target keeps its points, its level at 2 and its head, gets 1 and 3.
    void aCopyMergesIntoTheTarget()
    {
        NewCopyData d;
        d.open(st.databasefile);
        add(d, QStringLiteral("Source"));
        add(d, QStringLiteral("Target"));
        addLimitPoints(22, {{1, 10}, {2, 20}, {3, 30}});
        addLimitPoints(23, {{2, -2}, {4, -4}});
        openDb().Execute(QStringLiteral("update LimitHead set loga = 1, limunit = 'dBµV', Distance = 3 where limitnr = 23"));
        d.open(st.databasefile);
        QVERIFY(d.data3.findFirst(QStringLiteral("limitname like 'source'")) && d.data2.findFirst(QStringLiteral("limitname like 'target'")) &&
                copyDefinition(d));
        const QMap<float, float> expected{{1, 10}, {2, -2}, {3, 30}, {4, -4}};
        QCOMPARE(std::pair(limitPoints(23), limitPoints(22).size()), std::pair(expected, qsizetype(3)));
        Recordset head = openDb().OpenRecordset(QStringLiteral("select * from LimitHead where limitnr = 23"), dbOpenSnapshot);
        QCOMPARE(std::tuple(head.FieldText("limunit"), head.Field("loga").toBool(), head.FieldNumber("Distance")),
                 std::tuple(QStringLiteral("dBµV"), true, 3.0));

        QVERIFY(d.data3.findFirst(QStringLiteral("limitname like 'target'")) && !copyDefinition(d));  // onto itself: nothing
        QCOMPARE(limitPoints(23), expected);

        // A delivered limit's points keep their exact values on the way.
        QVERIFY(d.data3.findFirst(QStringLiteral("limitname like 'CISPR 32 Class B conducted QP'")) &&
                d.data2.findFirst(QStringLiteral("limitname like 'source'")) && copyDefinition(d));
        // The second row of the step at 5 MHz finds the first one copied and stays behind.
        const QMap<float, float> merged{{0.15f, -41}, {0.5f, -51}, {1, 10}, {2, 20}, {3, 30}, {5, -51}, {30, -47}};
        QCOMPARE(std::pair(limitPoints(22), count("select * from limitdef where limitnr = 22")), std::pair(merged, 7));
    }

    // Components copy from the row numbered 0, never onto it; a configuration copy takes the source's positions.
    void componentAndConfigurationCopies()
    {
        NewCopyData los;
        los.family = Family::Component;
        los.open(st.databasefile);
        QVERIFY(!los.data2.findFirst(QStringLiteral("losname like 'none'")) && los.data3.findFirst(QStringLiteral("losname like 'none'")));

        NewCopyData conf;
        conf.family = Family::Configuration;
        conf.open(st.databasefile);
        add(conf, QStringLiteral("Bench copy"));
        QVERIFY(conf.data3.findFirst(QStringLiteral("configname like 'Radiated 3 m bilog, cable, preamplifier'")) &&
                conf.data2.findFirst(QStringLiteral("configname like 'Bench copy'")) && copyDefinition(conf));
        Recordset rs = openDb().OpenRecordset(QStringLiteral("config"), dbOpenSnapshot);
        rs.FindFirst(QStringLiteral("configname = 'Bench copy'"));
        QCOMPARE(std::tuple(rs.FieldNumber("devicea"), rs.FieldNumber("deviceb"), rs.FieldNumber("devicec"),
                            rs.FieldNumber("deviced")), std::tuple(1.0, 4.0, 6.0, 0.0));
    }

    // The delete does not test its search: a name not found deletes the current row with its points.
    void aDeleteTakesTheCurrentRowWhenTheNameIsNotFound()
    {
        DeleteData del;
        del.open(st.databasefile);
        QString combo = QStringLiteral("no such limit");
        QVERIFY(del.data2.findFirst(QStringLiteral("limitname like 'FCC 15 Class B radiated 3 m'")) && deleteDefinition(del, combo));
        QCOMPARE(std::tuple(count("select * from LimitHead where limitnr = 21"), count("select * from limitdef where limitnr = 21"),
                            count("LimitHead"), combo.isEmpty()), std::tuple(0, 0, 20, false));

        for (int left = 20; left > 0; --left) {
            combo = QStringLiteral("x");
            deleteDefinition(del, combo);
        }
        QCOMPARE(std::tuple(count("LimitHead"), count("LimitDef"), combo), std::tuple(0, 0, QString()));
        combo = QStringLiteral("x");
        QVERIFY(!deleteDefinition(del, combo));

        // The components' row 0 can't be chosen; a configuration goes as the current row, unsearched.
        DeleteData los;
        los.family = Family::Component;
        los.open(st.databasefile);
        QVERIFY(!los.data2.findFirst(QStringLiteral("losname like 'none'")));
        DeleteData conf;
        conf.family = Family::Configuration;
        conf.open(st.databasefile);
        combo = QStringLiteral("Radiated 10 m biconical, cable");
        QVERIFY(conf.data2.findFirst(QStringLiteral("configname = 'Conducted LISN cable'")) && deleteDefinition(conf, combo));
        QCOMPARE(std::pair(count("select * from config where configname = 'Conducted LISN cable'"), count("config")), std::pair(0, 2));
    }

    // The name box's 80-character rule (not the components'), the delete combo moving the recordset as typed.
    void theDialogsAsWindows()
    {
        NewCopyDialog newlim(Family::Limit);
        newlim.nameBox()->setText(QString(81, QLatin1Char('n')));
        QTest::keyClick(newlim.nameBox(), Qt::Key_X);
        QCOMPARE(newlim.nameBox()->text().size(), 81);
        QTest::keyClick(newlim.nameBox(), Qt::Key_Backspace);
        QCOMPARE(newlim.nameBox()->text().size(), 80);
        QTest::keyClick(newlim.nameBox(), Qt::Key_X);
        QCOMPARE(newlim.nameBox()->text().size(), 81);
        NewCopyDialog newlos(Family::Component);
        newlos.nameBox()->setText(QString(100, QLatin1Char('n')));
        QTest::keyClick(newlos.nameBox(), Qt::Key_X);
        QCOMPARE(newlos.nameBox()->text().size(), 101);

        newlim.nameBox()->setText(QStringLiteral("Window made"));
        newlim.addNew();
        QCOMPARE(newlim.targetCombo()->currentText(), QStringLiteral("Window made"));

        DeleteDialog dellim(Family::Limit);
        dellim.activate();
        dellim.combo()->setFocus();
        dellim.combo()->setEditText(QString());
        QTest::keyClicks(dellim.combo()->lineEdit(), QStringLiteral("Window made"));
        dellim.deleteNow();
        QCOMPARE(std::tuple(numberOf("LimitHead", "limitname", "limitnr", "Window made"), count("LimitHead"),
                            dellim.combo()->findText(QStringLiteral("Window made"))), std::tuple(-1, 21, -1));
    }
};

QTEST_MAIN(TestDefinitionDialogs)
#include "tst_definitiondialogs.moc"
