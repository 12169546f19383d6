#include "shell/forms.h"

#include "emc/emcforms.h"

namespace kw {

// Each subsystem adds its forms here as they are written.
void registerAllForms()
{
    registerEmcForms();
}

}  // namespace kw
