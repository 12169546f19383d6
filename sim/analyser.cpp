#include "sim/analyser.h"
