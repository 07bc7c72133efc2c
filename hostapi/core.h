#pragma once
// Host core library.
#include "apppaths.h"
#include "hostconstants.h"
#include "ltdinfo.h"
#include "users.h"
