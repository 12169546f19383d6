#include "link/debugboxes.h"

namespace kw {

void countDebugClick() {}

}  // namespace kw
