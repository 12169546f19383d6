#include "shell/forms.h"

#include "editors/editorforms.h"

namespace kw {

// Each subsystem adds its forms here as they are written.
void registerAllForms()
{
    registerEditorForms();
}

}  // namespace kw
