#pragma once
// The notes that go with a measurement: kept in the record, printed with the report, and written
// at once into the file the plot shows.

#include <QString>

namespace kw {

// The longest note, counted without trailing blanks, that still takes a key.
constexpr int kNoteKeyLimit = 799;

// False when the key must be swallowed: the text (before the key) is already past the limit.
bool noteTakesKey(const QString &text);
// "&Clear": the note becomes a single blank, which is also what the box shows.
QString notesClear();
// "E&xit": the note stays as it was, never empty.
void notesExit();
// "&OK": the note from the text; into the shown file when the plot shows one. False when the
// file could not take it (the note stays in memory).
bool notesOk(const QString &text);

}  // namespace kw
