#include "driver/settings/settings_folder.h"

#include "driver/base/format.h"
#include "driver/base/handles.h"
#include "driver/base/text.h"
#include "driver/entry/resource_module.h"

namespace velmora {
namespace {

constexpr const WCHAR* kSection = TEXT("Velmora");
constexpr const WCHAR* kProfileKey = TEXT("Profile");
constexpr const WCHAR* kScreenKey = TEXT("Screen");

constexpr UINT kExtensionString = 2420;  // the settings file's extension

// How many names beyond the system's tick count are tried for a new settings file.
constexpr DWORD kNamesTried = 16;

WCHAR g_currentSettingsFile[MAX_PATH];

void AppendComponent(WCHAR* path, size_t capacity, const WCHAR* name) {
    AppendText(path, capacity, TEXT("\\"));
    AppendText<WCHAR>(path, capacity, name);
}

bool FileExists(const WCHAR* path) {
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

// Makes every folder of a path, from the left where the last can't be made at once. Folders that can't be made show
// when something is stored in them.
void CreateFolders(const WCHAR* folder) {
    if (CreateDirectoryW(folder, nullptr) || GetLastError() == ERROR_ALREADY_EXISTS) {
        return;
    }
    WCHAR path[MAX_PATH];
    CopyText(path, ARRAYSIZE(path), folder);
    for (WCHAR* place = path; *place != 0; ++place) {
        if (*place == TEXT('\\')) {
            *place = 0;
            CreateDirectoryW(path, nullptr);
            *place = TEXT('\\');
        }
    }
    CreateDirectoryW(path, nullptr);
}

// The folder for a driver; false, and the empty string, where `name` is empty.
bool FormFolder(const WCHAR* name, WCHAR* folder, size_t capacity) {
    folder[0] = 0;
    WCHAR driverName[MAX_PATH];
    if (CopyText<WCHAR>(driverName, ARRAYSIZE(driverName), name) == 0) {
        return false;
    }
    CleanFileName(driverName, ARRAYSIZE(driverName));
    if (!ReadVariable(TEXT("APPDATA"), folder, capacity) && ReadVariable(TEXT("USERPROFILE"), folder, capacity)) {
        AppendComponent(folder, capacity, kApplicationDataFolder);
    }
    AppendComponent(folder, capacity, kMakerFolder);
    AppendComponent(folder, capacity, driverName);
    CreateFolders(folder);
    return true;
}

// The folder for an open printer; false, and the empty string, where its driver's name can't be had.
bool FormFolder(HANDLE printer, WCHAR* folder, size_t capacity) {
    WCHAR driverName[MAX_PATH];
    GetPrinterDriverName(printer, driverName);
    return FormFolder(driverName, folder, capacity);
}

// Appends the stored name of an open printer's settings file to its folder; false, and the empty string, where either
// is empty or they have no room: a name that is cut may be another printer's.
bool AppendFileName(HANDLE printer, WCHAR* path, size_t capacity) {
    WCHAR name[MAX_PATH];
    if (path[0] == 0 || !ReadSettingsFileName(printer, name, ARRAYSIZE(name)) ||
        TextLength(path) + 1 + TextLength(name) >= capacity) {
        path[0] = 0;
        return false;
    }
    AppendComponent(path, capacity, name);
    return true;
}

// Folder and stored name of an open printer's settings file; false, and the empty string, where it has none.
bool FormFilePath(HANDLE printer, WCHAR* path, size_t capacity) {
    FormFolder(printer, path, capacity);
    return AppendFileName(printer, path, capacity);
}

// Gives an open printer that has no settings file name one that no file has; `path` is empty where it gets none.
void NameSettingsFile(HANDLE printer, WCHAR (&path)[MAX_PATH]) {
    path[0] = 0;
    WCHAR folder[MAX_PATH];
    if (!LacksSettingsString(printer) || !FormFolder(printer, folder, ARRAYSIZE(folder))) {
        return;
    }
    WCHAR extension[MAX_PATH] = {};
    if (const OwnedModule module = LoadResourceModule(printer, nullptr)) {
        LoadStringW(module.Get(), kExtensionString, extension, ARRAYSIZE(extension));
    }
    DWORD number = GetTickCount();
    while (FormNumberedPath(folder, number, extension, path) && FileExists(path) &&
           number < GetTickCount() + kNamesTried) {
        ++number;
    }
    if (path[0] != 0) {
        SetSettingsString(printer, FileNamePart(path));
    }
}

void ReadKey(const WCHAR* printerName, const WCHAR* key, WCHAR* value, size_t capacity) {
    value[0] = 0;
    WCHAR path[MAX_PATH];
    if (GetSettingsFilePath(printerName, path, ARRAYSIZE(path))) {
        GetPrivateProfileStringW(kSection, key, TEXT(""), value, static_cast<DWORD>(capacity), path);
    }
}

void WriteKey(const WCHAR* printerName, const WCHAR* key, const WCHAR* value) {
    WCHAR path[MAX_PATH];
    if (GetSettingsFilePath(printerName, path, ARRAYSIZE(path))) {
        WritePrivateProfileStringW(kSection, key, value, path);
    }
}

}  // namespace

void GetSettingsFolder(const WCHAR* printerName, WCHAR* folder, size_t capacity) {
    const OwnedPrinter printer = OpenPrinterLocal(printerName);
    FormFolder(printer.Get(), folder, capacity);
}

bool GetSettingsFilePath(const WCHAR* printerName, WCHAR* path, size_t capacity) {
    const OwnedPrinter printer = OpenPrinterLocal(printerName);
    return FormFilePath(printer.Get(), path, capacity);
}

bool ReadSettingsFileName(HANDLE printer, WCHAR* name, DWORD capacity) {
    if (!GetSettingsString(printer, name, capacity)) {
        return false;
    }
    for (const WCHAR* place = name; *place != 0; ++place) {
        if (*place == TEXT('\\') || *place == TEXT('/') || *place == TEXT(':')) {
            name[0] = 0;
            return false;
        }
    }
    return name[0] != 0;
}

int PrepareSettingsFile(const WCHAR* printerName) {
    const OwnedPrinter printer = OpenPrinterLocal(printerName);
    WCHAR path[MAX_PATH];
    if (!FormFilePath(printer.Get(), path, ARRAYSIZE(path))) {
        NameSettingsFile(printer.Get(), path);
    }
    CopyText<WCHAR>(g_currentSettingsFile, ARRAYSIZE(g_currentSettingsFile), path);
    return 0;
}

const WCHAR* CurrentSettingsFile() {
    return g_currentSettingsFile;
}

void ReadProfileName(const WCHAR* printerName, WCHAR* profile, size_t capacity) {
    ReadKey(printerName, kProfileKey, profile, capacity);
}

void ReadScreenProfileName(const WCHAR* printerName, WCHAR* profile, size_t capacity) {
    ReadKey(printerName, kScreenKey, profile, capacity);
}

void WriteProfileName(const WCHAR* printerName, const WCHAR* profile) {
    WriteKey(printerName, kProfileKey, profile);
}

void WriteScreenProfileName(const WCHAR* printerName, const WCHAR* profile) {
    WriteKey(printerName, kScreenKey, profile);
}

bool ReadVariable(const WCHAR* name, WCHAR* value, size_t capacity) {
    const DWORD length = GetEnvironmentVariableW(name, value, static_cast<DWORD>(capacity));
    if (length == 0 || length >= capacity) {
        value[0] = 0;
        return false;
    }
    return true;
}

bool FormNumberedPath(const WCHAR* folder, DWORD number, const WCHAR* extension, WCHAR (&path)[MAX_PATH]) {
    constexpr size_t kAround = 1 + 8 + 1;  // backslash, digits, dot
    const bool hasRoom = TextLength(folder) + kAround + TextLength(extension) < ARRAYSIZE(path);
    path[0] = 0;
    if (hasRoom) {
        FormatWide(path, ARRAYSIZE(path), TEXT("%s\\%08lX.%s"), folder, number, extension);
    }
    return hasRoom;
}

void CleanFileName(WCHAR* text, size_t capacity) {
    struct Replacement {
        WCHAR found;
        WCHAR written;
    };
    constexpr Replacement kReplacements[] = {
        {TEXT('"'), TEXT('\'')}, {TEXT('*'), TEXT(' ')}, {TEXT(':'), TEXT(' ')},
        {TEXT('?'), TEXT(' ')},  {TEXT('|'), TEXT(' ')}, {TEXT('/'), TEXT('-')},
        {TEXT('\\'), TEXT('-')}, {TEXT('<'), TEXT('(')}, {TEXT('>'), TEXT(')')},
    };
    for (size_t i = 0; i < capacity && text[i] != 0; ++i) {
        for (const Replacement& replacement : kReplacements) {
            if (text[i] == replacement.found) {
                text[i] = replacement.written;
                break;
            }
        }
    }
}

void GetShortPath(WCHAR* path, size_t capacity) {
    WCHAR longPath[MAX_PATH];
    WCHAR shortPath[MAX_PATH] = {};
    CopyText<WCHAR>(longPath, ARRAYSIZE(longPath), path);
    WCHAR* component = longPath;
    // The drive, up to the first backslash, then each component by what the path up to it is called in the file system.
    for (bool isDrive = true; *component != 0; isDrive = false) {
        WCHAR* end = component;
        while (*end != 0 && *end != TEXT('\\')) {
            ++end;
        }
        const WCHAR separator = *end;
        *end = 0;
        const WCHAR* name = component;
        WIN32_FIND_DATAW found;
        if (!isDrive) {
            const OwnedSearch search(FindFirstFileW(longPath, &found));
            if (search) {
                name = found.cAlternateFileName[0] != 0 ? found.cAlternateFileName : found.cFileName;
            }
            AppendText(shortPath, ARRAYSIZE(shortPath), TEXT("\\"));
        }
        AppendText(shortPath, ARRAYSIZE(shortPath), name);
        *end = separator;
        component = separator != 0 ? end + 1 : end;
    }
    CopyText<WCHAR>(path, capacity, shortPath);
}

bool FindDriverIniFile(const DriverFiles& files, WCHAR* path) {
    return files.Find(nullptr, TEXT(".INI"), path);
}

bool FindDriverIniFile(HANDLE printer, WCHAR* path) {
    return FindDriverIniFile(DriverFiles(printer), path);
}

bool FindStoreToRead(const WCHAR* printerName, WCHAR* path) {
    const OwnedPrinter printer = OpenPrinterLocal(printerName);
    return (FormFilePath(printer.Get(), path, MAX_PATH) && FileExists(path)) || FindDriverIniFile(printer.Get(), path);
}

void FindStores(const PRINTER_INFO_2W& printer, const DriverFiles& files, WCHAR* folder, WCHAR* storeToRead) {
    folder[0] = 0;
    storeToRead[0] = 0;
    const OwnedPrinter opened = OpenPrinterLocal(printer.pPrinterName);
    if (!opened) {
        return;
    }
    FormFolder(printer.pDriverName, folder, MAX_PATH);
    CopyText<WCHAR>(storeToRead, MAX_PATH, folder);
    if (!AppendFileName(opened.Get(), storeToRead, MAX_PATH) || !FileExists(storeToRead)) {
        FindDriverIniFile(files, storeToRead);
    }
}

}  // namespace velmora
