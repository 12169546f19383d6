#include "shell/forms.h"

namespace kw {

// Each subsystem adds its forms here as they are written.
void registerAllForms() {}

}  // namespace kw
