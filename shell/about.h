#pragma once
// The form about ("About/Support"): the program, its version and where to get help.

namespace kw {

void registerAboutForm();

}  // namespace kw
