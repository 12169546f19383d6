#pragma once
// Levels are dBmW inside; another unit is only a constant offset on the screen and on paper.
// The reference level is stored without the attenuator; the operator sees it with both added.

#include <QString>

namespace kw {

float shownlevel(float dbmw);
// A level count as the operator reads it: count / 2.5 + unitoffset.
float shownlevelcount(int count);
float shownreflevel();
// The stored reflevel for what the operator typed in the present unit.
float reflevelfromtyped(float typed);

// Looks the unit up in table unit and takes its name and offset when a row is found: by
// "unitname = '...'" when the operator picks one, by "unitname like '...'" on a repaint. Without a
// row the pair stays, or with fallback (repaint, loading a test) becomes "dBmW" and 0.
bool chooseunit(const QString &name, bool like, bool fallback);

}  // namespace kw
