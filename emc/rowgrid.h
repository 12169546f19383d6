#pragma once
// Frequencies of the rows of table measurement: every one passes through the text "0.000".

#include <QString>

namespace kw {

// f rounded to 1 kHz through its text in the locale, read back as a number.
double gridfrequency(double f);
// "frequency = 30.01": the criterion that finds the row of f.
QString rowcriterion(double f);
// The rows of the measurement file in frequency order from about f on: the rows a merge or a step
// of the second pass edits by position, without reading the whole table at every slice or step.
QString rowsfrom(double f, double upto);

}  // namespace kw
