#pragma once
// What many tests look at: whole files, and the boxes a scripted dialog has shown.

#include "platform/dialogs.h"

#include <QFile>
#include <QStringList>

namespace kwtest {

inline QByteArray readFile(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

// Message boxes as "title|text", other dialogs as "kind|title", in the order shown.
inline QStringList boxesOf(const kw::ScriptedDialogs &d)
{
    QStringList list;
    for (const kw::ShownBox &b : d.shown)
        list << (b.kind == QLatin1String("message") ? b.title + QLatin1Char('|') + b.text : b.kind + QLatin1Char('|') + b.title);
    return list;
}

}  // namespace kwtest
