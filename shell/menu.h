#pragma once
#include <QString>

class QAction;

namespace kw {

class Mdi;

// Builds the menu bar with every entry, named and captioned as the menu table has them.
void buildMainMenu(Mdi &window);

// Connects a menu entry to its command; entries without a command yet stay inert.
void onMenu(Mdi &window, const QString &name, void (*command)(Mdi &));

// "E&xit": disconnect, write setting.def, unload.
void mnuBeenden(Mdi &window);

}  // namespace kw
