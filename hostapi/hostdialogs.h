#pragma once
// The host dialog library in one include.
#include "cloudservercombox.h"
#include "fymodel.h"
#include "xmgktime.h"
