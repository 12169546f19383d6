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
    // An installed program (<prefix>/bin, its data in <prefix>/share/kw3400r) keeps the operator's
    // files in the per-user directory, even in a prefix the operator could write to.
    const QString installed = QDir(exeDir).filePath(QStringLiteral("../share/kw3400r/default.mdb"));
    const bool isInstalled = QFileInfo::exists(installed);
    if (!isInstalled && QFileInfo(exeDir).isWritable())
        return exeDir;
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    QDir().mkpath(data);
    // The delivered database stays where it was installed; the operator works on a copy of his
    // own, made once, and writable whatever the installed file's rights were.
    const QString delivered = isInstalled ? QDir::cleanPath(installed) : QDir(exeDir).filePath(QStringLiteral("default.mdb"));
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
