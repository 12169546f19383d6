#include "store/appdb.h"

namespace kw {

void openApplicationDatabase() {}
void closeApplicationDatabase() {}

}  // namespace kw
