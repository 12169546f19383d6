#pragma once
// The application database: opened at start, its version checked, the quasi-peak constants read.

namespace kw {

// Steps 6 to 11 of the load.
void openApplicationDatabase();
// The unload of the main window.
void closeApplicationDatabase();

}  // namespace kw
