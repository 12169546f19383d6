#pragma once
// The dialogs of the named settings: saveset ("Save settings") and loadset ("Load settings").

namespace kw {

void registerNamedSettingsForms();

}  // namespace kw
