#pragma once
// A number typed into a box: comma and point both stand for the decimal mark of the locale.

#include <QString>

namespace kw {

// Throws VbError(13) when the text is no number, VbError(6) beyond the range.
double typedNumber(const QString &text);

}  // namespace kw
