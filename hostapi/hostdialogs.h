#pragma once
// The host dialog library in one include.
#include "accumulatedprojectquery.h"
#include "cloudprocheck.h"
#include "cloudservercombox.h"
#include "fymodel.h"
#include "xmgktime.h"
