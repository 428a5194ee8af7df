// KV62WM.EXE: no window, no console.
#include <windows.h>

#include "tools/wm/watermark_program.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    // WinExec comes back once a program with windows looks for input; the driver's time for the file runs from then on.
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
    velmora::RunWatermarkProgram(GetCommandLineA());
    return 0;
}
