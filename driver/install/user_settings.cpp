#include "driver/install/user_settings.h"

#include "driver/base/format.h"
#include "driver/base/handles.h"
#include "driver/base/text.h"
#include "driver/entry/printer_access.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"

namespace velmora {

void RemoveUserSettings(HANDLE printer) {
    WCHAR root[MAX_PATH];
    WCHAR driverName[MAX_PATH];
    WCHAR settingsName[MAX_PATH];
    if (!ReadVariable(TEXT("USERPROFILE"), root, ARRAYSIZE(root)) || !GetPrinterDriverName(printer, driverName) ||
        !ReadSettingsFileName(printer, settingsName, ARRAYSIZE(settingsName))) {
        return;
    }
    const WCHAR* const profile = FileNamePart(root);
    if (profile == root) {
        return;
    }
    root[profile - root - 1] = 0;
    CleanFileName(driverName, ARRAYSIZE(driverName));
    SetCurrentDirectoryW(root);
    // By the whole path: other threads of the process change the current directory too.
    WCHAR pattern[MAX_PATH + 4];
    FormatWide(pattern, ARRAYSIZE(pattern), TEXT("%s\\*.*"), root);
    WIN32_FIND_DATAW entry;
    const OwnedSearch search(FindFirstFileW(pattern, &entry));
    if (!search) {
        return;
    }
    do {
        // Room for all of it: a path that is cut would be another file's.
        WCHAR path[5 * MAX_PATH];
        FormatWide(path, ARRAYSIZE(path), TEXT("%s\\%s\\%s\\%s\\%s\\%s"), root, entry.cFileName, kApplicationDataFolder,
                   kMakerFolder, driverName, settingsName);
        DeleteWatermarkFiles(path);
    } while (FindNextFileW(search.Get(), &entry));
}

}  // namespace velmora
