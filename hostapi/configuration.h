#pragma once
// Host configuration library.
#include "cpfmain.h"
#include "hostconfig.h"
