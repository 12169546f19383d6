#include "shell/forms.h"

#include "emc/emcstub.h"
#include "live/livepanel.h"

namespace kw {

// Each subsystem adds its forms here as they are written.
void registerAllForms()
{
    registerLiveForms();
    registerEmcStub();
}

}  // namespace kw
