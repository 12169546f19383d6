#pragma once
// Measurement files and EMC results as CSV text for a spreadsheet: comment lines ("# ...") with
// the settings row above a header row that names every column with its unit. Separator and
// decimal mark follow the locale, so the file opens as numbers where it is read: semicolon and
// decimal comma where the decimal mark is a comma, comma and point otherwise. UTF-8 with a byte
// order mark (the units carry a µ), lines ended by CR LF.

#include <QByteArray>
#include <QLocale>
#include <QString>

namespace kw {

struct ResultTable;

struct CsvStyle {
    QChar separator;
    QChar decimal;
};
CsvStyle csvStyle(const QLocale &locale = QLocale::system());

// Every column of table measurement of the file at path: frequencies in MHz, levels in the
// display unit of the file, an empty cell for an empty or -1000 one. Empty with error set
// when the file can't be read.
QByteArray measurementCsv(const QString &path, const CsvStyle &style, QString *error);

QByteArray resultsCsv(const ResultTable &table, const CsvStyle &style);

// Writes bytes to path whole or not at all; false with error set when it could not.
bool writeTextFile(const QString &path, const QByteArray &bytes, QString *error);

}  // namespace kw
