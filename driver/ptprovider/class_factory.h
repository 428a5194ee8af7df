// The COM server of the driver: its class of print-ticket providers.
#pragma once

#include <unknwn.h>
#include <windows.h>

namespace velmora {

// {46AC151B-8490-4531-96CC-55BF2BF19E11}
inline constexpr CLSID kProviderClass = {0x46ac151b, 0x8490, 0x4531, {0x96, 0xcc, 0x55, 0xbf, 0x2b, 0xf1, 0x9e, 0x11}};

// As DllGetClassObject and DllCanUnloadNow are published. CLASS_E_CLASSNOTAVAILABLE for other classes, E_OUTOFMEMORY,
// E_POINTER where `object` is null; *object is null on failure.
HRESULT GetClassObject(REFCLSID classId, REFIID interfaceId, void** object);
bool CanUnloadNow();

// Counts that keep the library loaded. Changed interlocked.
void CountObject();
void UncountObject();

}  // namespace velmora
