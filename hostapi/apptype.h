#pragma once
#include "datalibrary.h"

// The host application type: DataLibrary::Instance()->AppType().
inline int AppType()
{
    return DataLibrary::Instance()->AppType();
}
