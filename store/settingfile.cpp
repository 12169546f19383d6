#include "store/settingfile.h"

#include "platform/dialogs.h"
#include "platform/progdir.h"
#include "shell/state.h"
#include "shell/uihooks.h"

#include <QFile>
#include <QtEndian>
#include <array>

namespace kw {

namespace {

const QByteArray kHeader = QByteArrayLiteral("def01");
constexpr int kPathOffset = 47;
constexpr int kPathSize = 150;

// The 17 placement values in file order: grafik, measur, detec, then track before emc, the
// reverse of their order in formpos.
constexpr std::array<int, 17> kFileOrder = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 15, 16, 17, 12, 13, 14};

QString settingPath() { return programFile(QStringLiteral("setting.def")); }

void settingsBox()
{
    dialogs().message(QStringLiteral("Load default settings"), QStringLiteral("Generate new default settings"));
}

void placementDefaults()
{
    // grafik's window state, left and top have no default: they keep what they have.
    static const std::array<std::pair<int, int16_t>, 14> defaults = {{
        {4, 7200}, {5, 7200}, {6, 7300}, {7, 0}, {8, 0}, {9, 7300}, {10, 4500}, {11, 0},
        {12, 7000}, {13, 0}, {14, 0}, {15, 5300}, {16, 6800}, {17, 0},
    }};
    for (const auto &[slot, value] : defaults)
        st.formpos[size_t(slot)] = value;
    st.baudrate = 19200;
    st.comport = 2;
    st.databasefile = programFile(QStringLiteral("default.mdb"));
}

// The path in its 150 bytes: cut at a character that fits whole, padded with blanks.
QByteArray fixedPath(const QString &path)
{
    QByteArray bytes;
    for (const QChar c : path.left(kPathSize)) {
        const QByteArray one = QString(c).toUtf8();
        if (bytes.size() + one.size() > kPathSize)
            break;
        bytes += one;
    }
    return bytes.leftJustified(kPathSize, ' ');
}

QString pathOf(QByteArray bytes)
{
    const qsizetype nul = bytes.indexOf('\0');
    if (nul >= 0)
        bytes.truncate(nul);
    while (bytes.endsWith(' '))
        bytes.chop(1);
    return QString::fromUtf8(bytes);
}

}  // namespace

QByteArray encodeSettingRecord()
{
    QByteArray r(kSettingFileSize, '\0');
    char *p = r.data();
    std::copy(kHeader.begin(), kHeader.end(), p);
    p[5] = char(st.carriedbyte);
    for (size_t i = 0; i < kFileOrder.size(); ++i)
        qToLittleEndian<int16_t>(st.formpos[size_t(kFileOrder[i])], p + 6 + 2 * i);
    p[40] = char(st.mode);
    qToLittleEndian<int16_t>(st.comport, p + 41);
    qToLittleEndian<int32_t>(st.baudrate, p + 43);
    const QByteArray path = fixedPath(st.databasefile);
    std::copy(path.begin(), path.end(), p + kPathOffset);
    return r;
}

void decodeSettingFields(const QByteArray &record)
{
    QByteArray r = record.left(kSettingFileSize);
    r.append(QByteArray(kSettingFileSize - r.size(), '\0'));
    const char *p = r.constData();
    st.carriedbyte = uint8_t(p[5]);
    for (size_t i = 0; i < kFileOrder.size(); ++i)
        st.formpos[size_t(kFileOrder[i])] = qFromLittleEndian<int16_t>(p + 6 + 2 * i);
    st.mode = uint8_t(p[40]);
    st.comport = qFromLittleEndian<int16_t>(p + 41);
    st.baudrate = qFromLittleEndian<int32_t>(p + 43);
    st.databasefile = pathOf(r.mid(kPathOffset, kPathSize));
}

void readSettingFile()
{
    // Opening for reading and writing makes an absent file, empty, as the system always did; a
    // new record is written only at the orderly exit.
    QFile file(settingPath());
    bool failed = false;
    if (!file.open(QIODevice::ReadWrite)) {
        settingsBox();
        failed = true;
    } else {
        const QByteArray record = file.read(kSettingFileSize);
        if (!record.startsWith(kHeader)) {
            settingsBox();
            failed = true;
        } else {
            decodeSettingFields(record);
        }
        file.close();
    }
    if (failed)
        placementDefaults();
}

void writeSettingFile()
{
    if (uiHooks().storeFormPositions)
        uiHooks().storeFormPositions();

    const auto failedBox = [] { dialogs().message(QString(), QString()); };
    // Written in place, so the file keeps its owner and mode, and one that may not be written
    // stays as it is. Only the record is touched: a longer tail stays behind it unread. The
    // record goes out in one write at the start of the file, which a kill of the program
    // cannot cut in half.
    QFile file(settingPath());
    if (!file.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
        failedBox();
        return;
    }
    const QByteArray record = encodeSettingRecord();
    if (!file.seek(0) || file.write(record) != record.size())
        failedBox();
    file.close();
}

}  // namespace kw
