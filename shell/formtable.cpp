#include "shell/forms.h"

#include "editors/editorforms.h"
#include "emc/emcforms.h"
#include "emc/resultsform.h"
#include "live/livepanel.h"
#include "plot/printforms.h"

namespace kw {

// Each subsystem adds its forms here as they are written.
void registerAllForms()
{
    registerLiveForms();
    registerReportForms();
    registerEditorForms();
    registerEmcForms();
    registerResultsForms();
}

}  // namespace kw
