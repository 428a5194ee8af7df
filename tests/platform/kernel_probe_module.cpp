// A module for the tests: counts what its entry routine is told, in a variable of the environment.
#include <windows.h>

namespace {

bool attached = false;

}  // namespace

extern "C" {

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        attached = true;
        // A module can refuse to be loaded.
        return GetEnvironmentVariableW(TEXT("PROBE_REFUSES"), nullptr, 0) == 0;
    }
    return SetEnvironmentVariableW(TEXT("PROBE_DETACHED"), TEXT("yes"));
}

INT_PTR ProbeAnswer() {
    return attached ? 42 : 0;
}

INT_PTR Ordinal15() {
    return 15;
}

}  // extern "C"
