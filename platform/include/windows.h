// The part of the Windows interface that the driver calls, for hosts that have none. Names, types, values and layouts
// are the published ones.
#pragma once

#include <winbase.h>
#include <windef.h>
#include <winerror.h>
#include <wingdi.h>
#include <winnls.h>
#include <winreg.h>
#include <winuser.h>
#include <winver.h>
