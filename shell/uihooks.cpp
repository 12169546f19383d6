#include "shell/uihooks.h"

namespace kw {

UiHooks &uiHooks()
{
    static UiHooks hooks;
    return hooks;
}

void notifyCaption()
{
    if (uiHooks().captionChanged)
        uiHooks().captionChanged();
}

void notifyToolbar()
{
    if (uiHooks().toolbarChanged)
        uiHooks().toolbarChanged();
}

}  // namespace kw
