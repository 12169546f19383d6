#pragma once

namespace kw {

// Registers a bare "EMC" form under the name emc, so that EMC mode has its form to show until
// the EMC run form takes the name.
void registerEmcStub();

}  // namespace kw
