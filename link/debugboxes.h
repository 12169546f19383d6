#pragma once

namespace kw {

// A click on the tool bar panel; the fifth opens the three transmission debug boxes.
void countDebugClick();

}  // namespace kw
