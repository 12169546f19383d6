#pragma once
#include <QString>

namespace kw {

// Appends a whole number with leading zeros up to width digits (dates, exponents).
void appendPadded(QString &out, long long number, int width);

}  // namespace kw
