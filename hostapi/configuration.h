#pragma once
// Host configuration library.
#include "hostconfig.h"
#if __has_include("cpfmain.h")
#include "cpfmain.h"
#endif
