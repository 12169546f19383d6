#include "platform/onerror.h"
#include "platform/recordset.h"
#include "platform/vbformat.h"

#include "support/testfiles.h"

#include <QFile>
#include <sys/wait.h>
#include <unistd.h>
#include <QTemporaryDir>
#include <QtTest>

using namespace kw;

namespace {

// Throws away the value, keeps the error number: 0 when the statement ran.
template <class F>
int errorOf(F &&statement)
{
    ResumeNext on;
    on(std::forward<F>(statement));
    return on.number;
}

}  // namespace

struct FindsCase { QString source; bool last; QString criterion; int row; };

class TestRecordset : public QObject {
    Q_OBJECT

    QTemporaryDir dir_;
    QString path_;
    Database db_;

    QString template_;
    int copies_ = 0;

    // Rows of a limit table with a step at 100 MHz and names that differ in case only.
    void makeTemplate()
    {
        template_ = dir_.filePath(QStringLiteral("template.mdb"));
        Database db = CreateDatabase(template_, QStringLiteral(";LANGID=0x0409;CP=1252;COUNTRY=0"));
        db.AppendTable({QStringLiteral("LimitHead"),
                        {{QStringLiteral("limitnr"), FieldType::Long},
                         {QStringLiteral("limitname"), FieldType::Text, 20},
                         {QStringLiteral("loga"), FieldType::Boolean},
                         {QStringLiteral("tauf-30"), FieldType::Single},
                         {QStringLiteral("code"), FieldType::Byte}}});
        db.AppendTable({QStringLiteral("LimitDef"),
                        {{QStringLiteral("limitnr"), FieldType::Long},
                         {QStringLiteral("frequency"), FieldType::Single},
                         {QStringLiteral("level_dbmw"), FieldType::Single}}});
        db.Execute(QStringLiteral("insert into limithead values (1, 'abc', 1, -160.7, 0), (2, 'ABC', 0, 1, 0), "
                                  "(3, 'CISPR 32 Class B', 1, 1, 0), (4, 'Fcc 15 B', 0, 1, NULL)"));
        db.Execute(QStringLiteral("insert into limitdef values (1, 30, 5), (1, 100, 10), (1, 100, 20), "
                                  "(1, 100.1, 25), (1, 230, 30)"));
        db.Close();
    }

private slots:
    void initTestCase() { makeTemplate(); }
    void init()
    {
        path_ = dir_.filePath(QStringLiteral("t%1.mdb").arg(++copies_));
        QVERIFY(QFile::copy(template_, path_));
        db_ = OpenDatabase(path_);
    }
    void cleanup()
    {
        if (db_.isSet())
            db_.Close();
    }

    void finds_data()
    {
        QTest::addColumn<FindsCase>("c");
        const QString head = QStringLiteral("select * from limithead order by limitnr");
        const QString def = QStringLiteral("select * from limitdef where limitnr = 1 order by frequency");
        QTest::newRow("case: like takes the first") << FindsCase{head, false, "limitname like 'ABC'", 1};
        QTest::newRow("case: = from the end") << FindsCase{head, true, "LimitName = 'abc'", 2};
        QTest::newRow("like question mark") << FindsCase{head, false, "limitname like 'fcc 1? b'", 4};
        QTest::newRow("null is no match") << FindsCase{head, false, "not code = 0", 0};
        QTest::newRow("null within or") << FindsCase{head, true, "code = 0 or limitnr = 4", 4};
        QTest::newRow("null within not like") << FindsCase{head, true, "not (code like 1)", 3};
        QTest::newRow("true flag") << FindsCase{head, true, "loga = True", 3};
        QTest::newRow("equal frequencies, last") << FindsCase{def, true, "frequency = 100", 3};
        QTest::newRow("decimal point, float column") << FindsCase{def, false, "frequency = 100.1", 4};
        QTest::newRow("=> operator") << FindsCase{def, false, "frequency => 100.1", 4};
        QTest::newRow("number like") << FindsCase{def, false, "limitnr like 1", 1};
        QTest::newRow("doubled quote") << FindsCase{head, false, "limitname = 'O''Brien'", 0};
        QTest::newRow("bracketed minus") << FindsCase{head, false, "[tauf-30] < 0", 1};
        QTest::newRow("exponent") << FindsCase{head, false, "limitnr > 1E-05", 1};
        QTest::newRow("joined") << FindsCase{head, true, "(limitnr > 1 and loga = True) or not limitname like 'x'", 4};
        QTest::newRow("quote in the name") << FindsCase{head, false, "limitname like 'O'Brien'", 3077};
        QTest::newRow("comma decimal") << FindsCase{head, false, "limitnr = 100,5", 3077};
        QTest::newRow("unknown column") << FindsCase{head, false, "frequency = 1", 3070};
        QTest::newRow("text against number") << FindsCase{head, false, "limitnr = 'abc'", 3464};
        // Deep brackets or a long chain are refused before they can exhaust the stack.
        const QString deep = QStringLiteral("(").repeated(100000) + QStringLiteral("limitnr = 1") + QStringLiteral(")").repeated(100000);
        QTest::newRow("deep brackets") << FindsCase{head, false, deep, 3360};
        QTest::newRow("deep not") << FindsCase{head, false, QStringLiteral("not ").repeated(100000) + QStringLiteral("limitnr = 1"), 3360};
        QStringList terms(100000, QStringLiteral("limitnr = 1"));
        QTest::newRow("long chain") << FindsCase{head, false, terms.join(QStringLiteral(" or ")), 3360};
        QTest::newRow("joined, within bounds") << FindsCase{head, false, QStringLiteral("(").repeated(200) + QStringLiteral("limitnr = 2") + QStringLiteral(")").repeated(200) + QStringLiteral(" or limitnr = 1").repeated(290), 1};
    }
    void finds()
    {
        QFETCH(FindsCase, c);
        const auto &[source, last, criterion, row] = c;
        Recordset rs = db_.OpenRecordset(source, dbOpenSnapshot);
        const int error = errorOf([&] { last ? rs.FindLast(criterion) : rs.FindFirst(criterion); });
        QCOMPARE(std::pair(error, rs.NoMatch()), std::pair(row > 1000 ? row : 0, row == 0 && error == 0));
        if (row == 0 || row > 1000)
            return;
        // Every row has a key of its own; walking to the expected row tells which was found.
        const QString key = source.contains(QLatin1String("limitdef")) ? QStringLiteral("level_dbmw") : QStringLiteral("limitnr");
        const QVariant found = rs.Field(key);
        rs.MoveFirst();
        for (int i = 1; i < row; ++i)
            rs.MoveNext();
        QCOMPARE(found, rs.Field(key));
    }

    // A criterion that fails is an error of that statement only: NoMatch and the position stay.
    void failingCriterionChangesNothing()
    {
        Recordset rs = db_.OpenRecordset(QStringLiteral("select * from limithead order by limitnr"));
        rs.FindFirst(QStringLiteral("limitnr = 3"));
        QCOMPARE(errorOf([&] { rs.FindFirst(QStringLiteral("limitname like 'O'Brien'")); }), 3077);
        QCOMPARE(std::pair(rs.NoMatch(), rs.FieldNumber(QStringLiteral("limitnr"))), std::pair(false, 3.0));
        rs.FindFirst(QStringLiteral("limitnr = 99"));
        QCOMPARE(errorOf([&] { rs.FindLast(QStringLiteral("limitname = 5")); }), 3464);
        QCOMPARE(rs.NoMatch(), true);
    }

    void positions()
    {
        Recordset empty = db_.OpenRecordset(QStringLiteral("select * from limitdef where limitnr = 7"), dbOpenSnapshot);
        QVERIFY(empty.Bof() && empty.Eof() && empty.RecordCount() == 0);
        QCOMPARE(errorOf([&] { empty.MoveFirst(); }), 3021);
        empty.FindFirst(QStringLiteral("frequency = 1"));
        QVERIFY(empty.NoMatch());

        Recordset rs = db_.OpenRecordset(QStringLiteral("select * from limitdef order by frequency"), dbOpenSnapshot);
        QCOMPARE(std::pair(rs.RecordCount(), rs.FieldNumber(QStringLiteral("FREQUENCY"))), std::pair(5, 30.0));
        rs.MoveLast();
        rs.MoveNext();
        QVERIFY(rs.Eof() && !rs.Bof());
        QCOMPARE(errorOf([&] { rs.MoveNext(); }), 3021);
        QCOMPARE(errorOf([&] { rs.Field(QStringLiteral("frequency")); }), 3021);
        rs.MovePrevious();
        QCOMPARE(rs.FieldNumber(QStringLiteral("frequency")), 230.0);
        QCOMPARE(errorOf([&] { rs.Field(QStringLiteral("nothing")); }), 3265);
        QCOMPARE((QList<int>{errorOf([&] { rs.AddNew(); }), errorOf([&] { rs.Edit(); })}), (QList<int>{3027, 3027}));  // in order
        // A dynaset over a query without one table of its own reads but can't write.
        Recordset counted = db_.OpenRecordset(QStringLiteral("select count(*) as n from limitdef"));
        QCOMPARE(counted.FieldNumber(QStringLiteral("N")), 5.0);
        QCOMPARE(errorOf([&] { counted.AddNew(); }), 3027);
        // The float column hands out the float's own value.
        rs.FindFirst(QStringLiteral("frequency > 100"));
        QCOMPARE(std::pair(rs.FieldNumber(QStringLiteral("frequency")), rs.FieldText(QStringLiteral("frequency"))),
                 std::pair(double(100.1f), QStringLiteral("100.1")));
    }

    void writing()
    {
        Recordset rs = db_.OpenRecordset(QStringLiteral("select * from limithead where limitnr > 10"));
        QVERIFY(rs.Bof() && rs.Eof());
        rs.AddNew();
        rs.SetField(QStringLiteral("LIMITNR"), 11);
        rs.SetField(QStringLiteral("limitname"), QStringLiteral("new"));
        rs.SetField(QStringLiteral("Tauf-30"), 1.1);
        QCOMPARE(errorOf([&] { rs.SetField(QStringLiteral("code"), 300); }), 3421);
        QCOMPARE(errorOf([&] { rs.SetField(QStringLiteral("limitname"), QString(21, QLatin1Char('x'))); }), 3163);
        rs.Update();
        QVERIFY(!rs.Bof() && rs.Eof() && rs.RecordCount() == 1);

        // Pending changes are dropped by a move and by Close; Update without AddNew or Edit fails.
        rs.MoveFirst();
        rs.Edit();
        rs.SetField(QStringLiteral("limitname"), QStringLiteral("changed"));
        rs.MoveFirst();
        QCOMPARE(errorOf([&] { rs.Update(); }), 3020);
        rs.AddNew();
        rs.SetField(QStringLiteral("limitnr"), 12);
        rs.Close();
        QCOMPARE(errorOf([&] { rs.MoveFirst(); }), 3420);

        // What was written is in the file, seen through a second connection.
        Database other = OpenDatabase(path_);
        Recordset check = other.OpenRecordset(QStringLiteral("select * from LIMITHEAD where limitnr > 10"), dbOpenSnapshot);
        QCOMPARE(std::tuple(check.RecordCount(), check.FieldText(QStringLiteral("limitname")),
                            check.FieldNumber(QStringLiteral("tauf-30")), check.Field(QStringLiteral("code")).isNull()),
                 std::tuple(1, QStringLiteral("new"), double(1.1f), true));
        QCOMPARE(errorOf([&] { check.FieldNumber(QStringLiteral("code")); }), 94);
        other.Close();
    }

    void deleting()
    {
        Recordset rs = db_.OpenRecordset(QStringLiteral("select * from limitdef order by frequency"));
        rs.FindFirst(QStringLiteral("frequency = 100"));
        rs.Edit();
        rs.SetField(QStringLiteral("level_dbmw"), 15);
        rs.Update();
        rs.Delete();
        QCOMPARE(std::pair(errorOf([&] { rs.Field(QStringLiteral("frequency")); }), rs.RecordCount()), std::pair(3167, 4));
        rs.MoveNext();
        QCOMPARE(rs.FieldNumber(QStringLiteral("level_dbmw")), 20.0);
        rs.MovePrevious();
        QCOMPARE(rs.FieldNumber(QStringLiteral("frequency")), 30.0);
        rs.Close();
        QVERIFY(db_.OpenRecordset(QStringLiteral("select * from limitdef where level_dbmw = 15"), dbOpenSnapshot).Eof());
    }

    // A dynaset shows others' writes to its rows once it moves or searches, drops rows they delete,
    // never takes rows they add; a snapshot keeps what it read.
    void dynasetsSeeEachOthersWrites()
    {
        const QString source = QStringLiteral("select * from limithead order by limitnr");
        Recordset viewer = db_.OpenRecordset(source);
        Recordset copy = db_.OpenRecordset(source, dbOpenSnapshot);
        Database second = OpenDatabase(path_);
        Recordset editor = second.OpenRecordset(source);
        editor.FindFirst(QStringLiteral("limitnr = 2"));
        editor.Edit();
        editor.SetField(QStringLiteral("limitname"), QStringLiteral("edited"));
        editor.Update();
        QCOMPARE(viewer.FieldText(QStringLiteral("limitname")), QStringLiteral("abc"));  // no move yet
        viewer.MoveNext();
        QCOMPARE(viewer.FieldText(QStringLiteral("limitname")), QStringLiteral("edited"));
        copy.MoveNext();
        QCOMPARE(copy.FieldText(QStringLiteral("limitname")), QStringLiteral("ABC"));

        db_.Execute(QStringLiteral("update limithead set code = 7 where limitnr = 4"));
        db_.Execute(QStringLiteral("delete from limithead where limitnr = 3"));
        db_.Execute(QStringLiteral("insert into limithead (limitnr, limitname) values (5, 'added')"));
        viewer.FindFirst(QStringLiteral("code = 7"));
        QCOMPARE(std::pair(viewer.NoMatch(), viewer.FieldNumber(QStringLiteral("limitnr"))), std::pair(false, 4.0));
        viewer.MovePrevious();  // over the deleted row
        QCOMPARE(std::pair(viewer.FieldNumber(QStringLiteral("limitnr")), viewer.RecordCount()), std::pair(2.0, 3));
        viewer.MoveLast();
        QCOMPARE(viewer.FieldNumber(QStringLiteral("limitnr")), 4.0);

        // An edit starts from the row as it is now, and a row deleted under it can't be edited.
        editor.MoveFirst();
        viewer.MoveFirst();
        editor.Edit();
        editor.SetField(QStringLiteral("code"), 9);
        editor.Update();
        viewer.Edit();
        QCOMPARE(viewer.FieldNumber(QStringLiteral("code")), 9.0);
        viewer.CancelUpdate();
        editor.Delete();
        QCOMPARE(errorOf([&] { viewer.Edit(); }), 3167);
        second.Close();
    }

    // A program that dies after an Update has still written the row.
    void updatesSurviveACrash()
    {
        db_.Close();
        const pid_t child = fork();
        if (child == 0) {
            Database db = OpenDatabase(path_);
            Recordset rs = db.OpenRecordset(QStringLiteral("limitdef"));
            for (int i = 0; i < 10; ++i) {
                rs.AddNew();
                rs.SetField(QStringLiteral("limitnr"), 9);
                rs.Update();
            }
            rs.AddNew();
            rs.SetField(QStringLiteral("limitnr"), 9);
            std::_Exit(0);  // no close, no clean-up of any kind
        }
        QVERIFY(child > 0);
        int status = 0;
        QCOMPARE(waitpid(child, &status, 0), child);
        db_ = OpenDatabase(path_);
        QCOMPARE(db_.OpenRecordset(QStringLiteral("select * from limitdef where limitnr = 9"), dbOpenSnapshot).RecordCount(), 10);
    }

    // A text or empty file is no database and stays as it was; an absent one is not made.
    void filesThatAreNoDatabase()
    {
        const QString text = dir_.filePath(QStringLiteral("notes.mdb")), empty = dir_.filePath(QStringLiteral("empty.mdb"));
        const QString absent = dir_.filePath(QStringLiteral("absent.mdb"));
        const QByteArray before("This is a text file and no database at all.\n");
        QVERIFY(kwtest::writeFile(text, before) && kwtest::writeFile(empty, QByteArray()));
        QCOMPARE((QList<int>{errorOf([&] { OpenDatabase(text); }), errorOf([&] { OpenDatabase(empty); }),
                             errorOf([&] { OpenDatabase(absent); }), errorOf([&] { CreateDatabase(text); })}),
                 (QList<int>{3343, 3343, 3024, 3204}));
        QCOMPARE(std::tuple(kwtest::readFile(text), QFileInfo(empty).size(), QFileInfo::exists(absent)),
                 std::tuple(before, qint64(0), false));
    }

    void unsetAndClosedObjects()
    {
        Database none;
        Recordset unset;
        QCOMPARE(std::pair(errorOf([&] { none.OpenRecordset(QStringLiteral("limitdef")); }), errorOf([&] { unset.MoveFirst(); })),
                 std::pair(91, 91));
        Recordset rs = db_.OpenRecordset(QStringLiteral("limitdef"));
        QCOMPARE(errorOf([&] { db_.OpenRecordset(QStringLiteral("nosuchtable")); }), 3078);
        db_.Close();
        QCOMPARE((QList<int>{errorOf([&] { rs.MoveFirst(); }), errorOf([&] { db_.Close(); })}), (QList<int>{3420, 3420}));
    }

    void failedBranchTestEntersTheBranch()
    {
        ResumeNext on;
        Recordset unset;
        QVERIFY(on.test([&] { return unset.Eof() && unset.Bof(); }) && on.number == 91);
        on.clear();
        QVERIFY(!on.test([] { return false; }) && on.number == 0);
    }
};

QTEST_MAIN(TestRecordset)
#include "tst_recordset.moc"
