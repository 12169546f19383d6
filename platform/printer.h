#pragma once
// The program's printer: chosen in the printer set-up, printed on by the report.

class QPrinter;

namespace kw {

// Made on first use; lives until the application object goes.
QPrinter &printer();

}  // namespace kw
