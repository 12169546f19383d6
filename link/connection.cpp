#include "link/connection.h"

namespace kw {

void opencomport() {}
void findunit() {}
void connectunit() {}
void disconnectunit() {}
void autosearch() {}
void warmupwait() {}
void readwarmup() {}
void busypointer() {}
void normalpointer() {}
float firmwareNumber() { return 0.0f; }

}  // namespace kw
