#pragma once
#include <QString>

// The module title shown in the caption bar of its dialogs.
QString veloraModuleTitle();
