#pragma once
// Host business library.
#include "cloudbusiness.h"
#include "jsmsbusiness.h"
