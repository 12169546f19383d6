#include "shell/forms.h"

#include "emc/emcstub.h"

namespace kw {

// Each subsystem adds its forms here as they are written.
void registerAllForms()
{
    registerEmcStub();
}

}  // namespace kw
