#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "platform/recordset.h"
#include "shell/mdi.h"
#include "shell/menu.h"
#include "shell/startup.h"
#include "shell/state.h"
#include "store/appdb.h"
#include "support/programdir.h"
#include "support/testfiles.h"

#include <QAction>
#include <QDir>
#include <QtTest>
#include <cmath>

using namespace kw;

using kwtest::boxesOf;
using kwtest::readFile;

struct VersionsCase { QList<double> versions; QStringList boxes; float dbversion; bool quasiPeakRead; };

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

    // The numbers the delivered rows refer to exist, and the counters issue fresh ones.
    void deliveredDatabaseHangsTogether()
    {
        Database db = OpenDatabase(qEnvironmentVariable("KW_DEFAULT_MDB"));
        auto open = [&db](const char *sql) { return db.OpenRecordset(QString::fromUtf8(sql), dbOpenSnapshot); };
        Recordset units = open("unit");
        units.FindFirst("unitname like 'dBµV/m'");
        QCOMPARE(units.FieldNumber("unitoffset"), 107.0);
        Recordset count = open("MeasureCount");
        Recordset heads = open("select * from limithead order by limitnr");
        Recordset parts = open("select * from loshead order by losnr");
        heads.MoveLast();
        parts.MoveLast();
        QCOMPARE(std::pair(count.FieldNumber("limitnr"), count.FieldNumber("losnr")),
                 std::pair(heads.FieldNumber("limitnr"), parts.FieldNumber("losnr")));
        // Every limit has a line; levels are dBmW, and no limit of these standards leaves -80..-20.
        // Reference levels are kept without the attenuator, inside what the settings panel allows.
        for (const char *none : {"select * from limithead h where (select count(*) from limitdef d where d.limitnr = h.limitnr) < 2",
                                 "select * from limitdef where level_dbmw >= -20 or level_dbmw <= -80",
                                 "select * from test where ref > -27 or ref < -99.8",
                                 "select * from settings where reflevel > -27 or reflevel < -99.8"})
            QVERIFY2(open(none).RecordCount() == 0, none);
        Recordset configs = open("config");
        Recordset tests = open("test");
        QCOMPARE(tests.RecordCount(), 2);
        for (; !tests.Eof(); tests.MoveNext()) {
            configs.FindFirst("configname = '" + tests.FieldText("config") + '\'');
            heads.FindFirst("limitnr = " + tests.FieldText("peak"));
            QVERIFY(!configs.NoMatch() && !heads.NoMatch());
        }
        for (configs.MoveFirst(); !configs.Eof(); configs.MoveNext()) {
            parts.FindFirst("losnr = " + configs.FieldText("devicea"));
            QVERIFY(!parts.NoMatch());
        }
        // A cable loses at least with the root of the frequency (skin effect), at most in proportion (dielectric).
        Recordset loss = open("select * from losdef where losnr in (select losnr from loshead where lostyp = 1) "
                              "order by losnr, frequency");
        for (double nr = -1, f = 0, l = 0; !loss.Eof(); loss.MoveNext()) {
            const double f2 = loss.FieldNumber("frequency"), l2 = loss.FieldNumber("level_dbmw");
            if (nr == loss.FieldNumber("losnr") && l > 0)
                QVERIFY2(l2 / l >= std::sqrt(f2 / f) * 0.99 && l2 / l <= f2 / f, qPrintable(QString::number(f2)));
            nr = loss.FieldNumber("losnr"), f = f2, l = l2;
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
            std::tie(st.comport, st.baudrate, st.mode) = std::tuple(4, 9600, 1);
            mnuBeenden(window);
            QVERIFY(!st.db.isSet());
        }
        boxes_.shown.clear();
        Mdi window;
        loadMain(window);
        QCOMPARE(boxesOf(boxes_), QStringList());
        QCOMPARE(std::tuple(st.comport, st.baudrate, st.mode, st.databasefile, st.db.Name()),
                 std::tuple(int16_t(4), int32_t(9600), uint8_t(1), dir.file("copy.mdb"), dir.file("copy.mdb")));
        window.close();
    }

    void versions_data()
    {
        QTest::addColumn<VersionsCase>("c");
        const QString init = QStringLiteral("Init Database|");
        const QStringList selection = {QStringLiteral("open|Select Database")};
        QTest::newRow("0.9 and 1.1") << VersionsCase{{0.9, 1.1}, {}, 1.1f, true};
        QTest::newRow("1.2") << VersionsCase{{1.2}, {}, 1.2f, true};
        QTest::newRow("1.05") << VersionsCase{
            {1.05}, {init + "Please use the actual Database-Version: 1.10 your Version: 1.05\r\rYou can not use all functions"}, 1.05f, true};
        QTest::newRow("0.99") << VersionsCase{{0.99}, QStringList{init + "Wrong Database-Version: 0.99\r\rAktuel: 1.10"} + selection, 0.99f, false};
        QTest::newRow("no row") << VersionsCase{{}, QStringList{init + "Database defekt or not found \r\r%1"} + selection, 1.0f, false};
    }
    void versions()
    {
        QFETCH(VersionsCase, c);
        auto [versions, boxes, dbversion, quasiPeakRead] = c;
        test::TempProgramDir dir;
        st.databasefile = databaseWithVersions(dir, "work.mdb", versions);
        QVERIFY(!st.databasefile.isEmpty());
        {
            Database db = OpenDatabase(st.databasefile);
            db.Execute(QStringLiteral("update qpeak set \"tent-30\" = -160.7, \"tauf-30\" = -3.7, \"tent-1000\" = 100000"));
            db.Close();
        }
        const QByteArray before = readFile(st.databasefile);
        openApplicationDatabase();
        // A cancelled selection ends with its own box.
        if (!boxes.isEmpty() && boxes.last().startsWith(QLatin1String("open")))
            boxes << QStringLiteral("Select Database|Use default Database ( %1 )");
        for (QString &b : boxes)
            b.replace(QStringLiteral("%1"), st.databasefile);
        QCOMPARE(boxesOf(boxes_), boxes);
        // -160.7 read or the preset gives 320; a constant that does not fit keeps its value.
        QCOMPARE(std::tuple(st.dbversion, st.tent30, st.tauf30, st.tent1000, st.rs.isOpen()),
                 std::tuple(dbversion, int16_t(320), int16_t(quasiPeakRead ? 6 : 2), int16_t(1100), false));
        closeApplicationDatabase();
        QCOMPARE(readFile(st.databasefile), before);  // the check reads only, whatever the version
    }

    void tooOldChoiceAsksAgain()
    {
        test::TempProgramDir dir;
        const QString old = databaseWithVersions(dir, "old.mdb", {0.5});
        boxes_.files.push_back(old);
        boxes_.files.push_back(dir.file("default.mdb"));
        selectDatabase();
        QCOMPARE(boxesOf(boxes_), (QStringList{"open|Select Database", "Init Database|Wrong Database-Version: 0.50\r\rAktuel: 1.10",
                                                "open|Select Database"}));
        QCOMPARE(std::tuple(st.databasefile, st.db.Name(), st.dbversion), std::tuple(dir.file("default.mdb"), dir.file("default.mdb"), 1.1f));
    }

    // A file made elsewhere (on the rollback journal) is on the write-ahead log while written, so a crash
    // loses nothing, and is one plain file again once closed. Reading it changes nothing (tst_badfiles).
    void writtenFileIsOnTheLogOnlyWhileOpen()
    {
        test::TempProgramDir dir;
        const QString old = databaseWithVersions(dir, "old.mdb", {0.9});
        QFile file(old);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(18) && file.write("\1\1", 2) == 2);
        file.close();
        Database db = OpenDatabase(old);
        db.Execute(QStringLiteral("insert into version values (1.1)"));
        QVERIFY(QFileInfo::exists(old + "-wal"));
        db.Close();
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), (QStringList{"default.mdb", "old.mdb"}));
        QCOMPARE(int(readFile(old).at(18)), 1);  // the rollback journal's mark in the header
    }

    void choiceWithoutAnOpenDatabase()
    {
        test::TempProgramDir dir;
        const QString empty = databaseWithVersions(dir, "empty.mdb", {});
        boxes_.files.push_back(empty);
        selectDatabase();
        QCOMPARE(boxesOf(boxes_), (QStringList{"open|Select Database", "Init Database|Database defekt or a wrong format\r\r" + empty}));
        QCOMPARE(st.db.Name(), empty);

        // A table the correction chain left open in rs does not stand in for a missing version table.
        const QString noVersion = databaseWithVersions(dir, "noversion.mdb", {});
        Database other = OpenDatabase(noVersion);
        other.Execute(QStringLiteral("drop table version"));
        other.Close();
        st.rs = st.db.OpenRecordset(QStringLiteral("unit"), dbOpenSnapshot);
        boxes_.shown.clear();
        boxes_.files.push_back(noVersion);
        selectDatabase();
        QCOMPARE(boxesOf(boxes_), (QStringList{"open|Select Database", "Init Database|Database defekt or a wrong format\r\r" + noVersion}));
    }
};

QTEST_MAIN(TestAppDb)
#include "tst_appdb.moc"
