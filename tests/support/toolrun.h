#pragma once
// What a command-line tool (pdfinfo, pdftotext, pdftoppm) prints, for tests that look into
// the PDFs the program writes.

#include <QProcess>
#include <QString>
#include <QStringList>

namespace kwtest {

inline QString toolOutput(const QString &program, const QStringList &args)
{
    QProcess p;
    p.start(program, args);
    p.waitForFinished(30000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

}  // namespace kwtest
