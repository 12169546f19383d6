// Every file the program opens (setting.def has its own table in tst_settingfile), walked through a
// table of bad versions: no crash, the program's own box (or none), no other file changes, and what
// was shown stays shown.

#include "editors/definitioneditor.h"
#include "platform/comports.h"
#include "platform/dialogs.h"
#include "platform/onerror.h"
#include "platform/recordset.h"
#include "plot/drawplot.h"
#include "shell/forms.h"
#include "shell/mdi.h"
#include "shell/state.h"
#include "store/appdb.h"
#include "support/programdir.h"
#include "support/recordingplot.h"
#include "support/testfiles.h"

#include <QAction>
#include <QCryptographicHash>
#include <QDir>
#include <QRandomGenerator>
#include <QtTest>
#include <unistd.h>

using namespace kw;
using kwtest::boxesOf;
using kwtest::RecordingPlot;
using kwtest::readFile;
using kwtest::writeFile;

namespace {

enum class Bad { Empty, Truncated, Random, Text, Directory, NoPermission, SqliteNoTables, ColumnMissing, TextForNumbers, Huge };
const char *const kBadNames[] = {"empty", "truncated", "random bytes", "text file", "directory", "no permission",
                                 "sqlite without tables", "column missing", "text for numbers", "huge"};

// Name, size and content hash of every file in the directory; -wal and -shm files count as changes.
QMap<QString, QByteArray> snapshot(const QString &dir)
{
    QMap<QString, QByteArray> files;
    for (const QFileInfo &info : QDir(dir).entryInfoList(QDir::Files | QDir::Hidden)) {
        QFile f(info.filePath());
        QByteArray hash = QByteArray::number(info.size());
        if (info.size() < (64 << 20) && f.open(QIODevice::ReadOnly))
            hash += QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha1).toHex();
        files.insert(info.fileName(), hash);
    }
    return files;
}

QByteArray randomBytes(int size)
{
    QByteArray noise(size, '\0');
    QRandomGenerator gen(42);
    for (char &c : noise)
        c = char(gen.bounded(256));
    return noise;
}

// Bad measurement files, each made from a good .mes the program wrote.
enum class BadMeas { Truncated, NoTables, WrongTypes, UnknownVersion, HugeSizeClaim, QuotedName };

// A SQLite file of one table, with one row when given.
bool sqliteWith(const QString &path, const TableDef &table, const QString &row = {})
{
    Database db = CreateDatabase(path);
    db.AppendTable(table);
    if (!row.isEmpty())
        db.Execute(QStringLiteral("insert into %1 values (%2)").arg(table.name, row));
    db.Close();
    return true;
}

void trigger(Mdi &window, const char *entry) { window.menuEntry(QLatin1String(entry))->trigger(); }

void execute(const QString &path, const QString &sql)
{
    Database file = OpenDatabase(path);
    file.Execute(sql);
    file.Close();
}

}  // namespace

class TestBadFiles : public QObject {
    Q_OBJECT
    ScriptedDialogs boxes_;

    // Makes the bad version of a file at path; false when this machine cannot make it.
    bool makeBad(Bad bad, const QString &path, const QByteArray &good)
    {
        QFile::remove(path);
        switch (bad) {
        case Bad::Empty: return writeFile(path, QByteArray());
        case Bad::Truncated: return writeFile(path, good.left(good.size() / 2));
        case Bad::Random: return writeFile(path, randomBytes(4096));
        case Bad::Text: return writeFile(path, "Frequency;Level\n30;40\nthis is not the file you are looking for\n");
        case Bad::Directory: return QDir().mkpath(path);
        case Bad::NoPermission:
            // root reads every file whatever its mode
            return geteuid() != 0 && writeFile(path, good) && QFile::setPermissions(path, QFileDevice::Permissions());
        case Bad::SqliteNoTables: return sqliteWith(path, {QStringLiteral("other"), {{QStringLiteral("x"), FieldType::Long}}});
        case Bad::ColumnMissing:
            return sqliteWith(path, {QStringLiteral("version"), {{QStringLiteral("nr"), FieldType::Single}}}, QStringLiteral("1.1"));
        case Bad::TextForNumbers:
            return sqliteWith(path, {QStringLiteral("version"), {{QStringLiteral("versionnr"), FieldType::Text, 20}}},
                              QStringLiteral("'one point one'"));
        case Bad::Huge: {
            QFile f(path);
            if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(good) != good.size())
                return false;
            return f.resize(qint64(30) << 30);  // sparse: 30 GiB that take no disk
        }
        }
        return false;
    }

    static void addRows()
    {
        QTest::addColumn<int>("bad");
        for (int b = 0; b <= int(Bad::Huge); ++b)
            QTest::newRow(kBadNames[b]) << b;
    }

private slots:
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

    void portMap_data() { addRows(); }
    void portMap()
    {
        QFETCH(int, bad);
        test::TempProgramDir dir(false);
        const QString path = dir.file(QStringLiteral("ports.def"));
        if (!makeBad(Bad(bad), path, "Com2=/dev/ttyUSB0\n"))
            QSKIP("this machine cannot make that file");
        const auto before = snapshot(dir.path());
        reloadComPorts();
        for (int port = 1; port <= 4; ++port) {
            const QString device = comPortDevice(port);
            QVERIFY2(!device.isEmpty(), qPrintable(QStringLiteral("Com%1").arg(port)));
            QVERIFY(device.size() < 4096);
        }
        QCOMPARE(snapshot(dir.path()), before);
        reloadComPorts();
    }

    // The application database named in setting.def is bad: the start says so, offers the
    // selection, and leaves the file as it was.
    void applicationDatabaseAtStart_data() { addRows(); }
    void applicationDatabaseAtStart()
    {
        QFETCH(int, bad);
        test::TempProgramDir dir(true);
        const QString path = dir.file(QStringLiteral("bad.mdb"));
        if (!makeBad(Bad(bad), path, readFile(dir.file(QStringLiteral("default.mdb")))))
            QSKIP("this machine cannot make that file");
        const auto before = snapshot(dir.path());

        st.databasefile = path;
        boxes_.files.push_back(std::nullopt);  // the operator cancels the selection
        openApplicationDatabase();
        const QStringList shown = boxesOf(boxes_);
        const QString all = shown.join(QLatin1Char('\n'));
        // A file with the delivered rows but a long empty tail may open; a version that is text
        // reads as no version and warns. Everything else sends the operator to the selection.
        if (Bad(bad) != Bad::Huge) {
            QVERIFY2(!shown.isEmpty() && shown.first().startsWith(QStringLiteral("Init Database|")), qPrintable(all));
            if (Bad(bad) != Bad::TextForNumbers)
                QVERIFY2(shown.contains(QStringLiteral("open|Select Database")), qPrintable(all));
        }
        closeApplicationDatabase();
        QCOMPARE(snapshot(dir.path()), before);
    }

    // "Database selection" of a bad file while the delivered one is open: neither file changes.
    void databaseSelection_data() { addRows(); }
    void databaseSelection()
    {
        QFETCH(int, bad);
        test::TempProgramDir dir(true);
        const QString path = dir.file(QStringLiteral("chosen.mdb"));
        if (!makeBad(Bad(bad), path, readFile(dir.file(QStringLiteral("default.mdb")))))
            QSKIP("this machine cannot make that file");
        const auto before = snapshot(dir.path());
        st.databasefile = dir.file(QStringLiteral("default.mdb"));
        openApplicationDatabase();
        QVERIFY2(boxes_.shown.empty(), qPrintable(boxesOf(boxes_).join(QLatin1Char('\n'))));

        boxes_.files.push_back(path);
        selectDatabase();
        // A file that does not open leaves the earlier one in use without a word, though its name is
        // taken; one that opens without usable version rows is told.
        const QStringList shown = boxesOf(boxes_);
        QVERIFY(shown.size() <= 2);
        QCOMPARE(std::pair(shown.value(0), st.databasefile), std::pair(QStringLiteral("open|Select Database"), path));
        if (shown.size() == 2)
            QVERIFY2(shown.at(1).startsWith(QStringLiteral("Init Database|")), qPrintable(shown.at(1)));
        if (Bad(bad) < Bad::NoPermission)  // the files that do not open
            QCOMPARE(std::pair(st.db.Name(), st.db.OpenRecordset(QStringLiteral("version"), dbOpenSnapshot).RecordCount()),
                     std::pair(dir.file(QStringLiteral("default.mdb")), 2));
        closeApplicationDatabase();
        QCOMPARE(snapshot(dir.path()), before);
    }

    // "Load > Measurements" of a bad file over a shown one: a failed load says nothing (the caption names
    // the file), asks no redraw and writes no file; a redraw draws what it can; the good file loads again.
    void measurementFileLoad_data()
    {
        QTest::addColumn<int>("bad");
        QTest::addColumn<bool>("loads");
        QTest::newRow("truncated") << int(BadMeas::Truncated) << false;
        QTest::newRow("sqlite without the tables") << int(BadMeas::NoTables) << false;
        QTest::newRow("text for numbers") << int(BadMeas::WrongTypes) << false;
        QTest::newRow("version unknown") << int(BadMeas::UnknownVersion) << true;
        QTest::newRow("huge size claim") << int(BadMeas::HugeSizeClaim) << false;
        QTest::newRow("name with quotes") << int(BadMeas::QuotedName) << true;
    }
    void measurementFileLoad()
    {
        QFETCH(int, bad);
        QFETCH(bool, loads);
        test::TempProgramDir dir(true);
        st.db = OpenDatabase(dir.file(QStringLiteral("default.mdb")));
        Mdi window;
        for (const char *name : {"measur", "track", "detec", "emc"})
            registerForm(QLatin1String(name), [] { return new QWidget; });
        RecordingPlot plot;

        // The shown file: a live trace saved and loaded through the menu, and drawn.
        const QString shown = dir.file(QStringLiteral("shown.mes"));
        std::tie(st.pointcount, st.freqstart, st.freqstop, st.viewsample) = std::tuple(2001, 30.0f, 230.0f, 1);
        boxes_.files = {shown};
        trigger(window, "mnusmeasurement");
        const QByteArray good = readFile(shown);
        QVERIFY(good.size() > 4096);
        boxes_.files = {shown};
        trigger(window, "mnulmeasure");
        DrawPlot();
        const size_t drawnLines = plot.p1.lines.size();
        const int passes = plot.p1.clears;
        QVERIFY(drawnLines > 1000);

        QString path = dir.file(QStringLiteral("bad.mes"));
        switch (BadMeas(bad)) {
        case BadMeas::Truncated: QVERIFY(writeFile(path, good.left(good.size() / 2))); break;
        case BadMeas::NoTables: QVERIFY(makeBad(Bad::SqliteNoTables, path, {})); break;
        case BadMeas::WrongTypes:
            QVERIFY(writeFile(path, good));
            execute(path, QStringLiteral("update settings set centerfreq = 'wide', bandwith = 'x''y', mode = 'emc'"));
            execute(path, QStringLiteral("update measurement set frequency = 'thirty' where rowid = 7"));
            break;
        case BadMeas::UnknownVersion:
            path = dir.file(QStringLiteral("old.emc"));
            QVERIFY(writeFile(path, good));
            execute(path, QStringLiteral("update settings set vernr = 7, mode = 2, centerfreq = 999"));
            break;
        case BadMeas::HugeSizeClaim: {
            // The header's page count claims 2^31 pages; the file holds four.
            QByteArray claim = good;
            claim[28] = char(0x7f);
            claim[29] = claim[30] = claim[31] = char(0xff);
            QVERIFY(writeFile(path, claim));
            break;
        }
        case BadMeas::QuotedName:
            path = dir.file(QStringLiteral("it's \"bench\" [1].mes"));
            QVERIFY(writeFile(path, good));
            execute(path, QStringLiteral("update settings set unit = 'dB''µV', configname = 'it''s', headline = '\"'"));
            break;
        }
        const auto before = snapshot(dir.path());

        const size_t boxes = boxes_.shown.size();
        st.redrawflag = 0;
        const float centre = st.centerfreq;
        boxes_.files = {path};
        trigger(window, "mnulmeasure");
        // The file dialog and no box after it; the file named; nothing left open or busy.
        QCOMPARE(std::tuple(boxes_.shown.size(), st.measurefile, window.windowTitle(), st.busycursor, st.measdb.isSet(), st.redrawflag),
                 std::tuple(boxes + 1, path, QStringLiteral("KW3400R - V1.53   File: ") + path, uint8_t(0), false, uint8_t(loads ? 1 : 0)));
        if (BadMeas(bad) == BadMeas::UnknownVersion)  // of an unknown version only the mode is taken
            QCOMPARE(std::pair(st.centerfreq, st.mode), std::pair(centre, uint8_t(2)));
        if (!loads)  // the picture of the shown file stands
            QCOMPARE(std::pair(plot.p1.clears, plot.p1.lines.size()), std::pair(passes, drawnLines));
        if (BadMeas(bad) == BadMeas::QuotedName)
            QCOMPARE(std::pair(st.pointcount, st.configname), std::pair(2001, QStringLiteral("it's")));
        QCOMPARE(snapshot(dir.path()), before);  // the load writes to no file

        // The redraw that a resize would ask for reads the bad file and stops where it must.
        DrawPlot();
        QCOMPARE(st.drawbusy, uint8_t(0));
        QCOMPARE(snapshot(dir.path()), before);

        boxes_.files = {shown};
        trigger(window, "mnulmeasure");
        QCOMPARE(std::tuple(st.pointcount, st.freqstart, st.filemode, readFile(shown)), std::tuple(2001, 30.0f, uint8_t(1), good));
        ResumeNext on;
        on([] { st.db.Close(); });
    }

    // An editor's "Import..." of a bad file: one box naming the unreadable lines, nothing changed.
    void importFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        QTest::newRow("binary junk") << randomBytes(65536) << QStringLiteral("these lines of import.csv can't be read.\n\nline ");
        QTest::newRow("10 MB line") << QByteArray("Frequency;Level\n30;40\n50;") + QByteArray(10 << 20, '7') + "\n"
                                    << QStringLiteral("line 3: the level is not a number");
        QTest::newRow("directory") << QByteArray("dir") << QStringLiteral("The file can't be read");
    }
    void importFile()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        test::TempProgramDir dir(true);
        st.databasefile = dir.file(QStringLiteral("default.mdb"));
        st.currentlimit = QStringLiteral("CISPR 32 Class B conducted QP");
        DefinitionEditor form(Family::Limit);
        form.activate();
        const QString path = dir.file(QStringLiteral("import.csv"));
        if (expected.startsWith(QStringLiteral("The file")))
            QVERIFY(QDir().mkpath(path));
        else
            QVERIFY(writeFile(path, content));
        const QByteArray database = readFile(st.databasefile);

        boxes_.files.push_back(path);
        form.importFile();
        const QStringList shown = boxesOf(boxes_);
        QCOMPARE(shown.size(), 2);  // the file dialog, then the one box
        QVERIFY2(shown.at(1).startsWith(QStringLiteral("Import|")), qPrintable(shown.at(1)));
        QVERIFY2(shown.at(1).contains(expected), qPrintable(shown.at(1).left(300)));
        QVERIFY(shown.at(1).size() < 2000);
        form.close();
        ResumeNext on;
        on([] { st.db.Close(); });
        QCOMPARE(readFile(st.databasefile), database);
    }
};

QTEST_MAIN(TestBadFiles)
#include "tst_badfiles.moc"
