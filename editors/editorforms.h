#pragma once
// The definition editors as the shell sees them: their forms by name, and their menu entries.

namespace kw {

class Mdi;

// Limitdef, losdef, configdef, newlim, newlos, newconf, dellim, dellos, delconf.
void registerEditorForms();
// "New/Copy", "Edit" and "Delete" of limits, components and configurations.
void wireEditorMenu(Mdi &window);

}  // namespace kw
