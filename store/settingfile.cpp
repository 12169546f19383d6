#include "store/settingfile.h"

namespace kw {

void readSettingFile() {}
void writeSettingFile() {}

}  // namespace kw
