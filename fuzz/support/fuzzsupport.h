#pragma once
// What every fuzz target needs once: an application object, no real boxes, a program directory of
// its own and the record at its start values.

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <cstdint>

namespace kw::fuzz {

// Called at the start of every input: the first call sets the process up.
void prepare();
// The program directory the target may write its files into.
QString workDirectory();

inline QByteArray bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), qsizetype(size));
}

}  // namespace kw::fuzz
