#include "shell/forms.h"

#include "plot/printforms.h"

namespace kw {

// Each subsystem adds its forms here as they are written.
void registerAllForms()
{
    registerReportForms();
}

}  // namespace kw
