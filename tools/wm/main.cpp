// KV62WM.EXE: no window, no console.
#include <windows.h>

#include "tools/wm/watermark_program.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    velmora::RunWatermarkProgram(GetCommandLineA());
    return 0;
}
