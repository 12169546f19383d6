#pragma once
// Logarithms and powers of the level maths. An empty detector gives -200 dB rather than a domain
// error, because the argument is floored at 1E-10 before the logarithm is taken.

namespace kw {

double log10floor(double x);
double db20(double x);
double pow10(double x);
double undb20(double db);

}  // namespace kw
