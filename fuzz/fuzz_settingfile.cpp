// setting.def as any bytes: the start reads it, the exit writes the record back. The record must
// come out whole and a longer file's tail must stay as it was.

#include "platform/progdir.h"
#include "store/settingfile.h"
#include "support/fuzzsupport.h"

#include <QFile>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    kw::fuzz::prepare();
    const QByteArray input = kw::fuzz::bytes(data, size);
    const QString path = kw::programFile(QStringLiteral("setting.def"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        std::abort();
    file.write(input);
    file.close();

    kw::readSettingFile();
    kw::writeSettingFile();

    if (!file.open(QIODevice::ReadOnly))
        std::abort();
    const QByteArray written = file.readAll();
    file.close();
    if (written.size() < kw::kSettingFileSize || !written.startsWith("def01"))
        std::abort();
    if (input.size() > kw::kSettingFileSize && written.mid(kw::kSettingFileSize) != input.mid(kw::kSettingFileSize))
        std::abort();
    // What was written reads back to the same record.
    const QByteArray record = written.left(kw::kSettingFileSize);
    kw::decodeSettingFields(record);
    if (kw::encodeSettingRecord() != record)
        std::abort();
    return 0;
}
