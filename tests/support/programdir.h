#pragma once
// A program directory of its own for a test: a temporary directory that setting.def and the
// database are read from, holding a copy of the delivered default.mdb when asked.

#include "platform/progdir.h"

#include <QFile>
#include <QTemporaryDir>

namespace kw::test {

class TempProgramDir {
public:
    explicit TempProgramDir(bool withDefaultDatabase = true)
    {
        setProgramDirectory(dir_.path());
        if (withDefaultDatabase)
            copyDefaultDatabase(QStringLiteral("default.mdb"));
    }
    ~TempProgramDir() { setProgramDirectory(QString()); }
    TempProgramDir(const TempProgramDir &) = delete;
    TempProgramDir &operator=(const TempProgramDir &) = delete;

    QString path() const { return dir_.path(); }
    QString file(const QString &name) const { return dir_.filePath(name); }

    // A copy of the delivered database under another name; false when the build made none.
    bool copyDefaultDatabase(const QString &name) const
    {
        const QString source = qEnvironmentVariable("KW_DEFAULT_MDB");
        QFile::remove(file(name));
        return !source.isEmpty() && QFile::copy(source, file(name)) &&
               QFile::setPermissions(file(name), QFile::ReadOwner | QFile::WriteOwner);
    }

private:
    QTemporaryDir dir_;
};

}  // namespace kw::test
