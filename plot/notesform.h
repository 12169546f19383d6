#pragma once
// The form notesfrm ("Notes"): the free text that goes with a measurement.

namespace kw {

void registerNotesForm();

}  // namespace kw
