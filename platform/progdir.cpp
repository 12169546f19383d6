#include "platform/progdir.h"

#include <QCoreApplication>
#include <QDir>
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
