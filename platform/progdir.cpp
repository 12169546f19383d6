#include "platform/progdir.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace kw {

namespace {
QString overridden;

QString findProgramDirectory()
{
    const QString exeDir = QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QDir::currentPath();
    if (QFileInfo(exeDir).isWritable())
        return exeDir;
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    QDir().mkpath(data);
    // The delivered database stays beside the program; the operator works on a copy of his own,
    // made once, and writable whatever the installed file's rights were.
    const QString delivered = QDir(exeDir).filePath(QStringLiteral("default.mdb"));
    const QString own = QDir(data).filePath(QStringLiteral("default.mdb"));
    if (!QFileInfo::exists(own) && QFileInfo::exists(delivered) && QFile::copy(delivered, own))
        QFile::setPermissions(own, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    return data;
}
}  // namespace

QString programDirectory()
{
    if (overridden.isEmpty())
        overridden = findProgramDirectory();
    return overridden;
}

void setProgramDirectory(const QString &dir) { overridden = dir; }

QString programFile(const QString &name) { return QDir(programDirectory()).filePath(name); }

}  // namespace kw
