#pragma once
// How the command routines turn record values into wire text and replies back into values.

#include <QString>
#include <optional>

namespace kw {

// "Trim": the general text form of a number with the blank of a positive number removed.
QString trimmedNumber(double value);
// The same for a Single field, which prints with its own seven digits.
QString trimmedSingle(float value);
// A signed level: "+05.5" for 0 and above, "-30.0" below (the format brings its own minus).
QString signedLevel(float value);

// Sends a setting when the analyser is connected.
void sendSetting(const QString &text);
// Asks a query when connected; the value from the third character of the reply on, or nothing
// when the query failed.
std::optional<double> askValue(const QString &text);

// Replies converted as the record's fields hold them; out of range keeps the field.
void storeInt16(std::optional<double> value, int16_t &field);
void storeByte(std::optional<double> value, uint8_t &field);
void storeFloat(std::optional<double> value, float &field);

}  // namespace kw
