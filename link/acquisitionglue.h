#pragma once
// What the reads need of the command set beyond its header.

#include "link/commands.h"

namespace kw {

void queryreflevelplain();

}  // namespace kw
