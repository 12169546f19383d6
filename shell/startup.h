#pragma once

namespace kw {

class Mdi;

// The load of the main window: start values, setting.def, the database, the forms of the mode.
void loadMain(Mdi &window);
// The unload of the main window: closes the database.
void unloadMain();

}  // namespace kw
