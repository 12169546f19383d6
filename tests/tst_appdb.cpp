#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "platform/recordset.h"
#include "shell/mdi.h"
#include "shell/menu.h"
#include "shell/startup.h"
#include "shell/state.h"
#include "store/appdb.h"
#include "support/programdir.h"

#include <QAction>
#include <QtTest>

using namespace kw;

namespace {

QByteArray readAll(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Boxes as "kind|title|text", in the order shown.
QStringList boxesOf(const ScriptedDialogs &d)
{
    QStringList list;
    for (const ShownBox &b : d.shown)
        list << b.kind + QLatin1Char('|') + b.title + (b.kind == QLatin1String("message") ? QLatin1Char('|') + b.text : QString());
    return list;
}

}  // namespace

class TestAppDb : public QObject {
    Q_OBJECT
    ScriptedDialogs boxes_;

    // A copy of the delivered database with its version rows replaced.
    QString databaseWithVersions(const test::TempProgramDir &dir, const QString &name, const QList<double> &versions)
    {
        if (!dir.copyDefaultDatabase(name))
            return QString();
        Database db = OpenDatabase(dir.file(name));
        db.Execute(QStringLiteral("delete from version"));
        for (double v : versions)
            db.Execute(QStringLiteral("insert into version values (%1)").arg(v));
        db.Close();
        return dir.file(name);
    }

private slots:
    void initTestCase()
    {
        if (qEnvironmentVariable("KW_DEFAULT_MDB").isEmpty())
            QFAIL("KW_DEFAULT_MDB names no delivered database");
    }
    void init()
    {
        resetState();
        boxes_ = ScriptedDialogs();
        setDialogs(&boxes_);
    }
    void cleanup()
    {
        closeApplicationDatabase();
        resetState();
        setDialogs(nullptr);
    }

    void deliveredDatabaseOpensInSilence()
    {
        test::TempProgramDir dir;
        st.databasefile = dir.file("default.mdb");
        openApplicationDatabase();
        QCOMPARE(boxesOf(boxes_), QStringList());
        QCOMPARE(st.dbversion, 1.1f);
        QCOMPARE(st.tauf30, int16_t(2));
        QCOMPARE(st.tauf1000, int16_t(2));
        QCOMPARE(st.tent30, int16_t(320));
        QCOMPARE(st.tent1000, int16_t(1100));
        QVERIFY(st.db.isSet());
        QVERIFY(!st.rs.isOpen());
    }

    // The numbers the delivered rows refer to exist, and the counters issue fresh ones.
    void deliveredDatabaseHangsTogether()
    {
        Database db = OpenDatabase(qEnvironmentVariable("KW_DEFAULT_MDB"));
        Recordset units = db.OpenRecordset(QStringLiteral("unit"), dbOpenSnapshot);
        units.FindFirst(QStringLiteral("unitname = 'DBMW'"));
        QVERIFY(!units.NoMatch());
        QCOMPARE(units.FieldNumber(QStringLiteral("unitoffset")), 0.0);
        units.FindFirst(QStringLiteral("unitname like 'dBµV/m'"));
        QCOMPARE(units.FieldNumber(QStringLiteral("unitoffset")), 107.0);

        Recordset count = db.OpenRecordset(QStringLiteral("MeasureCount"), dbOpenSnapshot);
        QCOMPARE(count.RecordCount(), 1);
        Recordset heads = db.OpenRecordset(QStringLiteral("select * from limithead order by limitnr"), dbOpenSnapshot);
        heads.MoveLast();
        QCOMPARE(count.FieldNumber(QStringLiteral("limitnr")), heads.FieldNumber(QStringLiteral("limitnr")));
        for (heads.MoveFirst(); !heads.Eof(); heads.MoveNext()) {
            const QString nr = heads.FieldText(QStringLiteral("limitnr"));
            Recordset points = db.OpenRecordset(QStringLiteral("select * from limitdef where limitnr = ") + nr + QStringLiteral(" order by frequency"), dbOpenSnapshot);
            QVERIFY2(points.RecordCount() >= 2, qPrintable(nr));
            // Levels are dBmW: no limit of these standards lies above -20 dBmW or below -80.
            for (; !points.Eof(); points.MoveNext())
                QVERIFY(points.FieldNumber(QStringLiteral("level_dbmw")) < -20 && points.FieldNumber(QStringLiteral("level_dbmw")) > -80);
        }
        Recordset parts = db.OpenRecordset(QStringLiteral("select * from loshead order by losnr"), dbOpenSnapshot);
        parts.MoveLast();
        QCOMPARE(count.FieldNumber(QStringLiteral("losnr")), parts.FieldNumber(QStringLiteral("losnr")));

        Recordset configs = db.OpenRecordset(QStringLiteral("config"), dbOpenSnapshot);
        Recordset tests = db.OpenRecordset(QStringLiteral("test"), dbOpenSnapshot);
        QCOMPARE(tests.RecordCount(), 2);
        for (; !tests.Eof(); tests.MoveNext()) {
            configs.FindFirst(QStringLiteral("configname = '") + tests.FieldText(QStringLiteral("config")) + QLatin1Char('\''));
            QVERIFY(!configs.NoMatch());
            heads.FindFirst(QStringLiteral("limitnr = ") + tests.FieldText(QStringLiteral("peak")));
            QVERIFY(!heads.NoMatch());
        }
        for (configs.MoveFirst(); !configs.Eof(); configs.MoveNext()) {
            parts.FindFirst(QStringLiteral("losnr = ") + configs.FieldText(QStringLiteral("devicea")));
            QVERIFY(!parts.NoMatch());
        }
        db.Close();
    }

    // A database chosen from the menu, the port, the speed and the mode come back after E&xit.
    void workplaceSurvivesARestart()
    {
        test::TempProgramDir dir;
        QVERIFY(dir.copyDefaultDatabase("copy.mdb"));
        {
            Mdi window;
            loadMain(window);
            boxes_.shown.clear();
            boxes_.files.push_back(dir.file("copy.mdb"));
            window.menuEntry("mnuseldata")->trigger();
            QCOMPARE(boxesOf(boxes_), QStringList{"open|Select Database"});
            QCOMPARE(st.db.Name(), dir.file("copy.mdb"));
            st.comport = 4;
            st.baudrate = 9600;
            st.mode = 1;
            mnuBeenden(window);
            QVERIFY(!st.db.isSet());
        }
        boxes_.shown.clear();
        Mdi window;
        loadMain(window);
        QCOMPARE(boxesOf(boxes_), QStringList());
        QCOMPARE(st.comport, int16_t(4));
        QCOMPARE(st.baudrate, int32_t(9600));
        QCOMPARE(st.mode, uint8_t(1));
        QCOMPARE(st.databasefile, dir.file("copy.mdb"));
        QCOMPARE(st.db.Name(), dir.file("copy.mdb"));
        QVERIFY(window.menuEntry("mnuemc")->isChecked());
        window.close();
    }

    void versions_data()
    {
        QTest::addColumn<QList<double>>("versions");
        QTest::addColumn<QStringList>("boxes");
        QTest::addColumn<float>("dbversion");
        QTest::addColumn<bool>("quasiPeakRead");
        const QString init = QStringLiteral("message|Init Database|");
        const QStringList selection = {QStringLiteral("open|Select Database")};
        QTest::newRow("0.9 and 1.1") << QList<double>{0.9, 1.1} << QStringList() << 1.1f << true;
        QTest::newRow("1.2") << QList<double>{1.2} << QStringList() << 1.2f << true;
        QTest::newRow("1.05") << QList<double>{1.05}
                              << QStringList{init + "Please use the actual Database-Version: 1.10 your Version: 1.05\r\rYou can not use all functions"}
                              << 1.05f << true;
        QTest::newRow("1.09") << QList<double>{1.09}
                              << QStringList{init + "Please use the actual Database-Version: 1.10 your Version: 1.09\r\rYou can not use all functions"}
                              << 1.09f << true;
        QTest::newRow("0.99") << QList<double>{0.99}
                              << QStringList{init + "Wrong Database-Version: 0.99\r\rAktuel: 1.10"} + selection << 0.99f << false;
        QTest::newRow("no row") << QList<double>{} << QStringList{init + "Database defekt or not found \r\r%1"} + selection << 1.0f << false;
    }
    void versions()
    {
        QFETCH(QList<double>, versions);
        QFETCH(QStringList, boxes);
        QFETCH(float, dbversion);
        QFETCH(bool, quasiPeakRead);
        test::TempProgramDir dir;
        st.databasefile = databaseWithVersions(dir, "work.mdb", versions);
        QVERIFY(!st.databasefile.isEmpty());
        {
            Database db = OpenDatabase(st.databasefile);
            db.Execute(QStringLiteral("update qpeak set \"tent-30\" = -160.7, \"tauf-30\" = -3.7, \"tent-1000\" = 100000"));
            db.Close();
        }
        openApplicationDatabase();
        // A cancelled selection ends with its own box.
        if (!boxes.isEmpty() && boxes.last().startsWith(QLatin1String("open")))
            boxes << QStringLiteral("message|Select Database|Use default Database ( %1 )");
        for (QString &b : boxes)
            b.replace(QStringLiteral("%1"), st.databasefile);
        QCOMPARE(boxesOf(boxes_), boxes);
        QCOMPARE(st.dbversion, dbversion);
        QCOMPARE(st.tent30, int16_t(320));  // -160.7 read, or the preset
        QCOMPARE(st.tauf30, int16_t(quasiPeakRead ? 6 : 2));
        // A constant that does not fit keeps its value.
        QCOMPARE(st.tent1000, int16_t(1100));
    }

    void noDatabaseAtStartLeadsToTheSelection()
    {
        test::TempProgramDir dir;
        const QString text = dir.file("notes.mdb");
        QFile f(text);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("no database\n");
        f.close();
        st.databasefile = text;
        boxes_.files.push_back(dir.file("default.mdb"));
        openApplicationDatabase();
        QCOMPARE(boxesOf(boxes_), (QStringList{"message|Init Database|Database defekt or not found \r\r" + text, "open|Select Database"}));
        QCOMPARE(st.databasefile, dir.file("default.mdb"));
        QCOMPARE(st.db.Name(), dir.file("default.mdb"));
        QCOMPARE(st.dbversion, 1.1f);
        QCOMPARE(readAll(text), QByteArray("no database\n"));
    }

    // A chosen file that fails leaves db on the open file: no word, though the name is taken.
    void failedChoiceKeepsTheOpenDatabase()
    {
        test::TempProgramDir dir;
        st.databasefile = dir.file("default.mdb");
        openApplicationDatabase();
        const QByteArray before = readAll(dir.file("default.mdb"));
        const QString text = dir.file("notes.mdb");
        QFile f(text);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("no database\n");
        f.close();
        boxes_.files.push_back(text);
        selectDatabase();
        QCOMPARE(boxesOf(boxes_), QStringList{"open|Select Database"});
        QCOMPARE(st.databasefile, text);
        QCOMPARE(st.db.Name(), dir.file("default.mdb"));
        QCOMPARE(st.db.OpenRecordset(QStringLiteral("version"), dbOpenSnapshot).RecordCount(), 2);
        QCOMPARE(readAll(text), QByteArray("no database\n"));
        QCOMPARE(readAll(dir.file("default.mdb")), before);
    }

    void tooOldChoiceAsksAgain()
    {
        test::TempProgramDir dir;
        const QString old = databaseWithVersions(dir, "old.mdb", {0.5});
        boxes_.files.push_back(old);
        boxes_.files.push_back(dir.file("default.mdb"));
        selectDatabase();
        QCOMPARE(boxesOf(boxes_), (QStringList{"open|Select Database", "message|Init Database|Wrong Database-Version: 0.50\r\rAktuel: 1.10",
                                                "open|Select Database"}));
        QCOMPARE(st.databasefile, dir.file("default.mdb"));
        QCOMPARE(st.db.Name(), dir.file("default.mdb"));
        QCOMPARE(st.dbversion, 1.1f);
    }

    void choiceWithoutAnOpenDatabase()
    {
        test::TempProgramDir dir;
        const QString empty = databaseWithVersions(dir, "empty.mdb", {});
        boxes_.files.push_back(dir.file("absent.mdb"));
        selectDatabase();
        QCOMPARE(boxesOf(boxes_), (QStringList{"open|Select Database",
                                                "message|Init Database|Database defekt or a wrong format\r\r" + dir.file("absent.mdb")}));
        boxes_.shown.clear();
        boxes_.files.push_back(empty);
        selectDatabase();
        QCOMPARE(boxesOf(boxes_), (QStringList{"open|Select Database", "message|Init Database|Database defekt or a wrong format\r\r" + empty}));
        QCOMPARE(st.db.Name(), empty);
    }
};

QTEST_MAIN(TestAppDb)
#include "tst_appdb.moc"
