#pragma once
// The host control, base-control and table-view libraries in one include.
#include "interfaceadaptation.h"
#include "messagebox.h"
#include "textpathdlg.h"
#include "textpathwidget.h"
#include "zbasecombox.h"
#include "zbaseform.h"
#include "zbaselabel.h"
#include "ztabcontent.h"
#include "ztitlemodal.h"
