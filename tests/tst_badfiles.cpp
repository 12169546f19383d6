// Every file the program opens, walked through a table of bad versions: nothing crashes, the
// operator sees the program's own box, and no other file changes.

#include "platform/comports.h"
#include "platform/dialogs.h"
#include "platform/recordset.h"
#include "shell/state.h"
#include "store/appdb.h"
#include "store/settingfile.h"
#include "support/programdir.h"
#include "support/testfiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QRandomGenerator>
#include <QtTest>
#include <unistd.h>

using namespace kw;
using kwtest::boxesOf;
using kwtest::readFile;
using kwtest::writeFile;

namespace {

enum class Bad { Empty, OneByte, Truncated, Random, Text, Directory, NoPermission, SqliteNoTables, ColumnMissing,
                 TextForNumbers, Huge };

const char *badName(Bad b)
{
    static const char *names[] = {"empty", "one byte", "truncated", "random bytes", "text file", "directory",
                                  "no permission", "sqlite without tables", "column missing", "text for numbers",
                                  "huge"};
    return names[int(b)];
}

// A snapshot of every file in the directory (name, size and content hash), so a test can tell
// that nothing but what the user asked for was written. -wal and -shm files count as changes.
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

bool runningAsRoot() { return geteuid() == 0; }

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
        case Bad::OneByte: return writeFile(path, good.left(1));
        case Bad::Truncated: return writeFile(path, good.left(good.size() / 2));
        case Bad::Random: {
            QByteArray noise(4096, '\0');
            QRandomGenerator gen(42);
            for (char &c : noise)
                c = char(gen.bounded(256));
            return writeFile(path, noise);
        }
        case Bad::Text: return writeFile(path, "Frequency;Level\n30;40\nthis is not the file you are looking for\n");
        case Bad::Directory: return QDir().mkpath(path);
        case Bad::NoPermission:
            if (runningAsRoot())
                return false;  // root reads every file whatever its mode
            return writeFile(path, good) && QFile::setPermissions(path, QFileDevice::Permissions());
        case Bad::SqliteNoTables: {
            Database db = CreateDatabase(path);
            db.AppendTable(TableDef{QStringLiteral("other"), {{QStringLiteral("x"), FieldType::Long}}});
            db.Close();
            return true;
        }
        case Bad::ColumnMissing: {
            Database db = CreateDatabase(path);
            db.AppendTable(TableDef{QStringLiteral("version"), {{QStringLiteral("nr"), FieldType::Single}}});
            db.Execute(QStringLiteral("insert into version values (1.1)"));
            db.Close();
            return true;
        }
        case Bad::TextForNumbers: {
            Database db = CreateDatabase(path);
            db.AppendTable(TableDef{QStringLiteral("version"), {{QStringLiteral("versionnr"), FieldType::Text, 20}}});
            db.Execute(QStringLiteral("insert into version values ('one point one')"));
            db.Close();
            return true;
        }
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
        for (Bad b : {Bad::Empty, Bad::OneByte, Bad::Truncated, Bad::Random, Bad::Text, Bad::Directory,
                      Bad::NoPermission, Bad::SqliteNoTables, Bad::ColumnMissing, Bad::TextForNumbers, Bad::Huge})
            QTest::newRow(badName(b)) << int(b);
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

    void settingFileAtStartAndExit_data() { addRows(); }
    void settingFileAtStartAndExit()
    {
        QFETCH(int, bad);
        test::TempProgramDir dir(false);
        const QString path = dir.file(QStringLiteral("setting.def"));
        resetState();
        writeSettingFile();
        const QByteArray good = readFile(path);
        if (!makeBad(Bad(bad), path, good))
            QSKIP("this machine cannot make that file");
        const auto before = snapshot(dir.path());

        resetState();
        readSettingFile();
        const QStringList shown = boxesOf(boxes_);
        if (Bad(bad) == Bad::Huge || Bad(bad) == Bad::Truncated) {
            // A right header is a good record: a long tail is not read, fields past a short
            // end are not checked.
            QVERIFY(shown.isEmpty());
        } else {
            QCOMPARE(shown.size(), 1);
            QCOMPARE(shown.first(), QStringLiteral("Load default settings|Generate new default settings"));
            QCOMPARE(st.comport, int16_t(2));
            QCOMPARE(st.baudrate, 19200);
        }
        QCOMPARE(snapshot(dir.path()), before);  // reading writes nothing

        // The exit writes a whole record where it can, and keeps a longer file's tail.
        writeSettingFile();
        const QFileInfo info(path);
        if (info.isFile() && info.isWritable()) {
            QFile f(path);
            QVERIFY(f.open(QIODevice::ReadOnly));
            QCOMPARE(f.read(kSettingFileSize), encodeSettingRecord());
            if (Bad(bad) == Bad::Huge)
                QCOMPARE(info.size(), qint64(30) << 30);
        }
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
        // A file that does not open leaves the earlier one in use without a word; one that opens
        // without usable version rows is told.
        const QStringList shown = boxesOf(boxes_);
        QVERIFY(shown.size() <= 2);
        QCOMPARE(shown.value(0), QStringLiteral("open|Select Database"));
        if (shown.size() == 2)
            QVERIFY2(shown.at(1).startsWith(QStringLiteral("Init Database|")), qPrintable(shown.at(1)));
        closeApplicationDatabase();
        QCOMPARE(snapshot(dir.path()), before);
    }
};

QTEST_MAIN(TestBadFiles)
#include "tst_badfiles.moc"
