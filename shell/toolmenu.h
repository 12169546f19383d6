#pragma once

namespace kw {

class Mdi;

// The menu entries of AutoStore, the named settings and About.
void connectToolEntries(Mdi &window);

// "&Autostore": back to normal mode with Sample alone shown, then the AutoStore form.
void mnuautostore(Mdi &window);

}  // namespace kw
