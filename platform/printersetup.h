#pragma once
// The platform's printer set-up: choose the printer of the reports (or a PDF file) and its paper.

namespace kw {

// Shows the dialog over the active window. A cancel changes nothing; nothing is printed.
void showPrinterSetup();

}  // namespace kw
