#pragma once
// The host dialog library in one include.
#include "cloudservercombox.h"
#include "xmgktime.h"
