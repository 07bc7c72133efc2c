#pragma once
// Host undo control.
#include "rurecordcommand.h"
#include "rurecordcontrol.h"
#include "tablebaseobject.h"
#include "tableredouiinfo.h"
