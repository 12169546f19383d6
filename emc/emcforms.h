#pragma once
// The EMC subsystem's forms by name, and its menu entries.

namespace kw {

class Mdi;

// "test", "newtest", "deltest", "emc" into the table of forms.
void registerEmcForms();
// "&EMC-Test" under New/Copy, Edit and Delete; and the stepped pass on Timer2.
void emcMenu(Mdi &window);

}  // namespace kw
