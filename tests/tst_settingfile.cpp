#include "platform/dialogs.h"
#include "platform/twips.h"
#include "plot/grafik.h"
#include "shell/mdi.h"
#include "shell/state.h"
#include "shell/uihooks.h"
#include "store/settingfile.h"
#include "support/programdir.h"
#include "support/testfiles.h"

#include <QDataStream>
#include <QDir>
#include <QtEndian>
#include <QtTest>
#include <sys/stat.h>
#include <unistd.h>

using namespace kw;
using kwtest::boxesOf;
using kwtest::readFile;

namespace {

// A record as another run left it: every slot holds a value of its own.
QByteArray sampleRecord(const QByteArray &path)
{
    QByteArray r("def01");
    QDataStream out(&r, QIODevice::Append);
    out.setByteOrder(QDataStream::LittleEndian);
    out << quint8(7);
    for (int i = 0; i < 17; ++i)
        out << qint16(100 * (i + 1) + i);
    out << quint8(1) << qint16(3) << qint32(115200);
    return r + path.leftJustified(150, ' ', true);
}

}  // namespace

struct TwipsCase { int twips; double dpi; int pixels; int back; };

class TestSettingFile : public QObject {
    Q_OBJECT
    ScriptedDialogs boxes_;

private slots:
    void init()
    {
        resetState();
        boxes_ = ScriptedDialogs();
        setDialogs(&boxes_);
    }
    void cleanup()
    {
        setDialogs(nullptr);
        uiHooks().storeFormPositions = nullptr;
    }

    void roundTripIsByteForByte()
    {
        test::TempProgramDir dir(false);
        const QByteArray record = sampleRecord("/srv/emc/lab.mdb");
        QCOMPARE(record.size(), kSettingFileSize);
        QVERIFY(kwtest::writeFile(dir.file("setting.def"), record + QByteArray("tail of an older file")));
        readSettingFile();
        QVERIFY(boxes_.shown.empty());
        // Grafik state at offset 6, width at 12; track's left (28) stands before emc's (34) on disk.
        QCOMPARE(std::tuple(st.carriedbyte, st.formpos[1], st.formpos[4], st.formpos[15], st.formpos[12]),
                 std::tuple(uint8_t(7), int16_t(100), int16_t(403), int16_t(1211), int16_t(1514)));
        QCOMPARE(std::tuple(st.mode, st.comport, st.baudrate, st.databasefile),
                 std::tuple(uint8_t(1), int16_t(3), int32_t(115200), QStringLiteral("/srv/emc/lab.mdb")));

        writeSettingFile();
        QVERIFY(boxes_.shown.empty());
        QCOMPARE(readFile(dir.file("setting.def")), record + QByteArray("tail of an older file"));
    }

    void badFilesGiveTheBoxAndTheDefaults_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QByteArray>("contents");
        QTest::newRow("absent") << false << QByteArray();
        QTest::newRow("empty") << true << QByteArray();
        QTest::newRow("short header") << true << QByteArray("def0");
        QTest::newRow("foreign") << true << sampleRecord("x").replace(0, 5, "DEF01");
    }
    void badFilesGiveTheBoxAndTheDefaults()
    {
        QFETCH(bool, exists);
        QFETCH(QByteArray, contents);
        test::TempProgramDir dir(false);
        if (exists)
            QVERIFY(kwtest::writeFile(dir.file("setting.def"), contents));
        std::tie(st.mode, st.carriedbyte, st.formpos[2], st.formpos[4]) = std::tuple(1, 9, 55, 1);
        readSettingFile();
        QCOMPARE(boxesOf(boxes_), QStringList{"Load default settings|Generate new default settings"});
        QCOMPARE(std::tuple(st.formpos[4], st.comport, st.baudrate, st.databasefile),
                 std::tuple(int16_t(7200), int16_t(2), int32_t(19200), QDir(dir.path()).filePath("default.mdb")));
        // What has no default keeps its value.
        QCOMPARE(std::tuple(st.mode, st.carriedbyte, st.formpos[2]), std::tuple(uint8_t(1), uint8_t(9), int16_t(55)));
        // The file is not rewritten by reading; an absent one is left behind empty.
        QCOMPARE(readFile(dir.file("setting.def")), contents);

        writeSettingFile();
        const QByteArray written = readFile(dir.file("setting.def"));
        QVERIFY(written.startsWith("def01") && written.size() == qMax<qsizetype>(kSettingFileSize, contents.size()));
    }

    void shortRecordReadsZeroWithoutABox()
    {
        test::TempProgramDir dir(false);
        QVERIFY(kwtest::writeFile(dir.file("setting.def"), sampleRecord("/x.mdb").left(43)));
        readSettingFile();
        QVERIFY(boxes_.shown.empty());
        QCOMPARE(std::tuple(st.comport, st.baudrate, st.databasefile), std::tuple(int16_t(3), int32_t(0), QString()));
    }

    void longPathIsCutAtItsFixedLength()
    {
        test::TempProgramDir dir(false);
        uiHooks().storeFormPositions = [] { st.formpos[6] = 1234; };  // forms place themselves first
        st.databasefile = QString(160, QLatin1Char('p'));
        writeSettingFile();
        const QByteArray written = readFile(dir.file("setting.def"));
        QCOMPARE(std::tuple(written.size(), qFromLittleEndian<int16_t>(written.constData() + 16), written.mid(47)),
                 std::tuple(qsizetype(kSettingFileSize), int16_t(1234), QByteArray(150, 'p')));
        // A path with a character of more than one byte is not cut inside it.
        st.databasefile = QString(149, QLatin1Char('p')) + QStringLiteral("µ");
        writeSettingFile();
        QCOMPARE(readFile(dir.file("setting.def")).mid(47), QByteArray(149, 'p') + ' ');
    }

    // Maximised at the exit the plot keeps its start place in bytes 8 to 15, else it takes the window's.
    void plotPlacementAtTheExit()
    {
        test::TempProgramDir dir(false);
        Mdi window;
        st.formpos[2] = 1440, st.formpos[3] = 720, st.formpos[4] = 7200, st.formpos[5] = 5760;
        QWidget *sub = showGrafik(window)->parentWidget();
        uiHooks().storeFormPositions = [&window] { storeGrafikPlacement(window); };
        sub->move(sub->pos() + QPoint(48, 0));
        const QByteArray start = encodeSettingRecord().mid(8, 8);
        sub->showMaximized();
        writeSettingFile();
        QByteArray written = readFile(dir.file("setting.def"));
        QCOMPARE(std::pair(qFromLittleEndian<int16_t>(written.constData() + 6), written.mid(8, 8)), std::pair(int16_t(2), start));
        sub->showNormal();
        writeSettingFile();
        written = readFile(dir.file("setting.def"));
        QCOMPARE(std::pair(qFromLittleEndian<int16_t>(written.constData() + 6), qFromLittleEndian<int16_t>(written.constData() + 8)),
                 std::pair(int16_t(0), int16_t(pixelsToTwipsX(sub->x()))));
    }

    // The record goes into the file as it stands: same file, owner and mode; a huge tail is neither read nor lost.
    void writtenInPlaceAndOnlyTheRecord()
    {
        test::TempProgramDir dir(false);
        const QString path = dir.file("setting.def");
        QVERIFY(kwtest::writeFile(path, sampleRecord("/old.mdb") + "tail"));
        constexpr qint64 kHuge = qint64(1) << 40;  // sparse: costs no disk
        QVERIFY(QFile::resize(path, kHuge));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
        const bool root = ::geteuid() == 0;
        if (root)
            QCOMPARE(::chown(QFile::encodeName(path).constData(), 4321, 4322), 0);
        struct stat before {};
        QCOMPARE(::stat(QFile::encodeName(path).constData(), &before), 0);

        readSettingFile();
        if (!root) {
            // Opening for writing is refused: the box of a bad file, and nothing written.
            QCOMPARE(boxesOf(boxes_), QStringList{"Load default settings|Generate new default settings"});
            boxes_.shown.clear();
            writeSettingFile();
            QCOMPARE(boxesOf(boxes_), QStringList{"|"});
            QCOMPARE(readFile(path).left(kSettingFileSize), sampleRecord("/old.mdb"));
            return;
        }
        QVERIFY(boxes_.shown.empty() && st.databasefile == QStringLiteral("/old.mdb"));
        st.databasefile = QStringLiteral("/new.mdb");
        writeSettingFile();
        QVERIFY(boxes_.shown.empty());

        struct stat after {};
        QCOMPARE(::stat(QFile::encodeName(path).constData(), &after), 0);
        QCOMPARE(std::tuple(after.st_ino, after.st_mode, after.st_uid, after.st_gid),
                 std::tuple(before.st_ino, before.st_mode, before.st_uid, before.st_gid));
        QCOMPARE(qint64(after.st_size), kHuge);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.read(kSettingFileSize + 4), sampleRecord("/new.mdb") + "tail");
    }

    // A directory in the file's place: the defaults at the start, the empty box at the exit.
    void directoryInPlaceOfTheFile()
    {
        test::TempProgramDir dir(false);
        QVERIFY(QDir(dir.path()).mkdir("setting.def"));
        readSettingFile();
        writeSettingFile();
        QCOMPARE(boxesOf(boxes_), (QStringList{"Load default settings|Generate new default settings", "|"}));
        QCOMPARE(std::pair(st.comport, st.baudrate), std::pair(int16_t(2), int32_t(19200)));
    }

    // An inch at 96 dpi, a rounding at 120, a negative place at 144: there and back.
    void twips()
    {
        for (const auto &[twips, dpi, pixels, back] : {TwipsCase{1440, 96.0, 96, 1440}, TwipsCase{7300, 120.0, 608, 7296},
                                                        TwipsCase{-4500, 144.0, -450, -4500}})
            QCOMPARE(std::pair(twipsToPixels(twips, dpi), pixelsToTwips(pixels, dpi)), std::pair(pixels, back));
    }
};

QTEST_MAIN(TestSettingFile)
#include "tst_settingfile.moc"
