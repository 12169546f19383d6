#include "shell/forms.h"

#include "editors/editorforms.h"
#include "emc/emcforms.h"
#include "live/livepanel.h"
#include "live/toolforms.h"
#include "plot/notesform.h"
#include "plot/printforms.h"
#include "shell/about.h"
#include "store/settingsforms.h"

namespace kw {

// Each subsystem adds its forms here as they are written.
void registerAllForms()
{
    registerLiveForms();
    registerToolForms();
    registerNamedSettingsForms();
    registerNotesForm();
    registerAboutForm();
    registerReportForms();
    registerEditorForms();
    registerEmcForms();
}

}  // namespace kw
