#pragma once
// Trace acquisition: every shown trace read from the analyser, then the settings, then a drawing.

namespace kw {

void readtraces();

}  // namespace kw
