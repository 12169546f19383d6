#pragma once
// The application database: opened at start, its version checked, the quasi-peak constants read,
// another one chosen from the menu.

namespace kw {

class Mdi;

// The version the program is made for; older files work with a warning, files below 1.0 not.
constexpr float kDatabaseVersion = 1.1f;

// Steps 6 to 11 of the load.
void openApplicationDatabase();
// The unload of the main window.
void closeApplicationDatabase();
// The selection of a database by the file dialog, after a failed start and from the menu.
void selectDatabase();
// "D&atabase selection".
void mnuseldata(Mdi &window);

}  // namespace kw
