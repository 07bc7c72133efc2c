#pragma once
// Host SQL access.
#include "clsdac.h"
#include "clsdacresult.h"
#include "exdbm.h"
