#include "shell/forms.h"

#include "emc/emcstub.h"
#include "live/livepanel.h"
#include "plot/printforms.h"
#include "editors/editorforms.h"

namespace kw {

// Each subsystem adds its forms here as they are written.
void registerAllForms()
{
    registerLiveForms();
    registerReportForms();
    registerEditorForms();
    registerEmcStub();
}

}  // namespace kw
