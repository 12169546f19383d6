#pragma once
// The analyser's settings as a whole: read them all into the record, or send them all.

namespace kw {

void readallsettings();
void setallsettings();

}  // namespace kw
