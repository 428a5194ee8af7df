#include "driver/entry/printer_access.h"

#include "driver/base/format.h"
#include "driver/base/text.h"

namespace velmora {
namespace {

constexpr size_t kPrinterNameCapacity = 128;
constexpr const WCHAR* kSettingsValue = TEXT("Settings");

void CutAt(WCHAR* text, const WCHAR* part) {
    if (WCHAR* place = FindText(text, part)) {
        *place = 0;
    }
}

// The text "FileVersion" of a version resource for one language and code page; null where there is none.
const WCHAR* FileVersionText(const void* versionBlock, WORD language, WORD codePage) {
    WCHAR query[64];
    FormatWide(query, ARRAYSIZE(query), TEXT("\\StringFileInfo\\%04X%04X\\FileVersion"), language, codePage);
    void* text = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(versionBlock, query, &text, &length) || length == 0 || !text ||
        *static_cast<const WCHAR*>(text) == 0) {
        return nullptr;
    }
    return static_cast<const WCHAR*>(text);
}

// What GetPrinterDataW says of a value's bytes.
DWORD MeasurePrinterValue(HANDLE printer, const WCHAR* valueName, DWORD* needed) {
    DWORD type = REG_NONE;
    return GetPrinterDataW(printer, const_cast<WCHAR*>(valueName), &type, nullptr, 0, needed);
}

// Leaves the printer's security descriptor as it is: writing it back would need more rights than the rest does.
bool WritePrinterInfo(HANDLE printer, PRINTER_INFO_2W* info) {
    info->pSecurityDescriptor = nullptr;
    return SetPrinterW(printer, 2, reinterpret_cast<BYTE*>(info), 0) != 0;
}

}  // namespace

bool NamesServer(const WCHAR* printerName) {
    return TextBeginsWith(printerName, TEXT("\\\\"));
}

size_t OwnServerLength(const WCHAR* printerName) {
    WCHAR computer[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD size = ARRAYSIZE(computer);
    if (!NamesServer(printerName) || !GetComputerNameW(computer, &size)) {
        return 0;
    }
    WCHAR own[MAX_COMPUTERNAME_LENGTH + 4];
    const size_t length = FormatWide(own, ARRAYSIZE(own), TEXT("\\\\%s\\"), computer);
    return TextBeginsWith<WCHAR>(printerName, own) ? length : 0;
}

OwnedPrinter OpenPrinterLocal(const WCHAR* name) {
    WCHAR full[kPrinterNameCapacity];
    CopyText(full, ARRAYSIZE(full), name);
    WCHAR* const local = full + OwnServerLength(full);
    CutAt(local, TEXT(",Local"));
    CutAt(local, TEXT(",DrvConvert"));
    CutAt(local, TEXT(",DEVMODE"));

    constexpr ACCESS_MASK kWanted[] = {PRINTER_ALL_ACCESS, PRINTER_ACCESS_ADMINISTER, PRINTER_ACCESS_USE};
    for (const ACCESS_MASK access : kWanted) {
        PRINTER_DEFAULTSW defaults = {nullptr, nullptr, access};
        HANDLE printer = nullptr;
        if (OpenPrinterW(local, &printer, &defaults)) {
            return OwnedPrinter(printer);
        }
    }
    return {};
}

HeapOwner<PRINTER_INFO_2W> GetPrinterInfo2(HANDLE printer) {
    DWORD needed = 0;
    if (GetPrinterW(printer, 2, nullptr, 0, &needed) || GetLastError() != ERROR_INSUFFICIENT_BUFFER ||
        needed < sizeof(PRINTER_INFO_2W)) {
        return {};
    }
    auto info = HeapOwner<PRINTER_INFO_2W>::AllocateSize(needed);
    if (!info || !GetPrinterW(printer, 2, reinterpret_cast<BYTE*>(info.Get()), needed, &needed)) {
        return {};
    }
    return info;
}

HeapOwner<DRIVER_INFO_3W> GetDriverInfo3(HANDLE printer) {
    DWORD needed = 0;
    if (GetPrinterDriverW(printer, nullptr, 3, nullptr, 0, &needed) || GetLastError() != ERROR_INSUFFICIENT_BUFFER ||
        needed < sizeof(DRIVER_INFO_3W)) {
        return {};
    }
    auto info = HeapOwner<DRIVER_INFO_3W>::AllocateSize(needed);
    if (info && !GetPrinterDriverW(printer, nullptr, 3, reinterpret_cast<BYTE*>(info.Get()), needed, &needed)) {
        *info = {};
    }
    return info;
}

bool GetPrinterDriverName(HANDLE printer, WCHAR* name) {
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(printer);
    return CopyText<WCHAR>(name, MAX_PATH, info ? info->pDriverName : nullptr) > 0;
}

bool SetPrinterDevMode(HANDLE printer, DEVMODEW* devMode) {
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(printer);
    if (!info) {
        return false;
    }
    info->pDevMode = devMode;
    return WritePrinterInfo(printer, info.Get());
}

bool SetPrinterPrintProcessor(HANDLE printer, const WCHAR* name) {
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(printer);
    if (!info) {
        return false;
    }
    info->pPrintProcessor = const_cast<WCHAR*>(name);
    return WritePrinterInfo(printer, info.Get());
}

HeapOwner<BYTE> ReadPrinterValue(HANDLE printer, const WCHAR* valueName, DWORD type, DWORD* size) {
    DWORD needed = 0;
    *size = 0;
    const DWORD result = MeasurePrinterValue(printer, valueName, &needed);
    if ((result != ERROR_MORE_DATA && result != ERROR_SUCCESS) || needed == 0) {
        return {};
    }
    // An odd byte at the end is half a character.
    DWORD storedType = REG_NONE;
    auto value = HeapOwner<BYTE>::AllocateSize(needed + needed % sizeof(WCHAR) + size_t{2} * sizeof(WCHAR));
    if (!value ||
        GetPrinterDataW(printer, const_cast<WCHAR*>(valueName), &storedType, value.Get(), needed, &needed) !=
            ERROR_SUCCESS ||
        storedType != type) {
        return {};
    }
    *size = needed;
    return value;
}

bool LacksPrinterValue(HANDLE printer, const WCHAR* valueName) {
    DWORD needed = 0;
    return MeasurePrinterValue(printer, valueName, &needed) == ERROR_FILE_NOT_FOUND;
}

bool IsPrinterValueEmpty(HANDLE printer, const WCHAR* valueName) {
    DWORD needed = 0;
    const DWORD result = MeasurePrinterValue(printer, valueName, &needed);
    return result == ERROR_FILE_NOT_FOUND || (result == ERROR_SUCCESS && needed == 0);
}

bool WritePrinterValue(HANDLE printer, const WCHAR* valueName, DWORD type, const void* value, size_t size) {
    return SetPrinterDataW(printer, const_cast<WCHAR*>(valueName), type, static_cast<BYTE*>(const_cast<void*>(value)),
                           static_cast<DWORD>(size)) == ERROR_SUCCESS;
}

// Strings and records of a known size go straight into the caller's buffer: a stored one must not look missing, and be
// replaced by a default, because memory ran out.
bool ReadPrinterString(HANDLE printer, const WCHAR* valueName, WCHAR* text, DWORD capacity) {
    DWORD type = REG_NONE;
    DWORD size = 0;
    const DWORD result = GetPrinterDataW(printer, const_cast<WCHAR*>(valueName), &type, reinterpret_cast<BYTE*>(text),
                                         static_cast<DWORD>(capacity * sizeof(WCHAR)), &size);
    const size_t characters = result == ERROR_SUCCESS && type == REG_SZ ? size / sizeof(WCHAR) : 0;
    const size_t length = TextLength(text, characters);
    const bool isRead = characters > 0 && length < capacity;
    text[isRead ? length : 0] = 0;
    return isRead;
}

bool WritePrinterString(HANDLE printer, const WCHAR* valueName, const WCHAR* text) {
    return WritePrinterValue(printer, valueName, REG_SZ, text, (TextLength(text) + 1) * sizeof(WCHAR));
}

bool ReadPrinterRecord(HANDLE printer, const WCHAR* valueName, DWORD type, void* record, DWORD size) {
    DWORD storedType = REG_NONE;
    DWORD storedSize = 0;
    return GetPrinterDataW(printer, const_cast<WCHAR*>(valueName), &storedType, static_cast<BYTE*>(record), size,
                           &storedSize) == ERROR_SUCCESS &&
           storedType == type && storedSize == size;
}

bool ReadPrinterDword(HANDLE printer, const WCHAR* valueName, DWORD* value) {
    DWORD stored = 0;
    if (!ReadPrinterRecord(printer, valueName, REG_DWORD, &stored, sizeof(stored))) {
        return false;
    }
    *value = stored;
    return true;
}

DriverFiles::DriverFiles(HANDLE printer) : printer_(printer), info_(GetDriverInfo3(printer)) {
    if (!info_) {
        return;
    }
    for (WCHAR* file = info_->pDependentFiles; file && *file != 0; file += TextLength(file) + 1) {
        CharUpperW(file);
    }
    for (WCHAR* const file : {info_->pDataFile, info_->pHelpFile, info_->pConfigFile}) {
        if (file) {
            CharUpperW(file);
        }
    }
}

bool DriverFiles::Find(const WCHAR* valueName, const WCHAR* fragment, WCHAR* path) const {
    path[0] = 0;
    WCHAR wanted[MAX_PATH];
    const bool isNamed = valueName && *valueName != 0 &&
                         ReadPrinterString(printer_, valueName, wanted, ARRAYSIZE(wanted)) && wanted[0] != 0;
    if (!isNamed) {
        CopyText(wanted, ARRAYSIZE(wanted), fragment);
    }
    if (wanted[0] == 0 || !info_) {
        return false;
    }
    CharUpperW(wanted);
    const auto matches = [&](const WCHAR* candidate) {
        if (!candidate || *candidate == 0 || !FindText(candidate, wanted)) {
            return false;
        }
        CopyText<WCHAR>(path, MAX_PATH, candidate);
        return true;
    };
    for (const WCHAR* file = info_->pDependentFiles; file && *file != 0; file += TextLength(file) + 1) {
        if (matches(file)) {
            return true;
        }
    }
    return matches(info_->pDataFile) || matches(info_->pHelpFile) || matches(info_->pConfigFile);
}

bool HasPipelineConfig(const DriverFiles& files) {
    WCHAR path[MAX_PATH];
    return files.Find(nullptr, TEXT("PipelineConfig.xml"), path);
}

bool HasPipelineConfig(HANDLE printer) {
    return HasPipelineConfig(DriverFiles(printer));
}

bool GetRenderCorePath(HANDLE printer, WCHAR* path) {
    if (FindDriverFile(printer, TEXT("NTCoreName"), nullptr, path) ||
        FindDriverFile(printer, TEXT("XPSCoreName"), TEXT("XPS.DLL"), path)) {
        return true;
    }
    const HeapOwner<DRIVER_INFO_3W> info = GetDriverInfo3(printer);
    return CopyText<WCHAR>(path, MAX_PATH, info ? info->pDriverPath : nullptr) > 0;
}

bool GetDriverDataFile(HANDLE printer, WCHAR* path) {
    const HeapOwner<DRIVER_INFO_3W> info = GetDriverInfo3(printer);
    if (CopyText<WCHAR>(path, MAX_PATH, info ? info->pDataFile : nullptr) == 0) {
        return false;
    }
    CharUpperW(path);
    return true;
}

WORD GetDriverVersion(const WCHAR* path) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(path, &ignored);
    if (size == 0) {
        return 0;
    }
    // Two zero bytes behind the resource end a text that the resource doesn't.
    const auto block = HeapOwner<BYTE>::AllocateSize(size + sizeof(WCHAR));
    if (!block || !GetFileVersionInfoW(path, 0, size, block.Get())) {
        return 0;
    }
    struct Translation {
        WORD language;
        WORD codePage;
    };
    void* translation = nullptr;
    UINT length = 0;
    const WCHAR* version = nullptr;
    if (VerQueryValueW(block.Get(), TEXT("\\VarFileInfo\\Translation"), &translation, &length) &&
        length >= sizeof(Translation)) {
        const auto* first = static_cast<const Translation*>(translation);
        version = FileVersionText(block.Get(), first->language, first->codePage);
    }
    if (!version) {
        version = FileVersionText(block.Get(), MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), 1252);
    }
    if (!version) {
        return 0;
    }
    const uint32_t major = ParseNumber(version, 10);
    const WCHAR* dot = FindText(version, TEXT("."));
    return static_cast<WORD>(dot ? (major << 8) + ParseNumber(dot + 1, 10) : major);
}

int TestPrinterDataAccess(HANDLE printer) {
    static constexpr const WCHAR* kName = TEXT("Test");
    static constexpr const WCHAR* kText = TEXT("Application");
    if (!WritePrinterString(printer, kName, kText)) {
        return 1;
    }
    WCHAR stored[128];
    if (!ReadPrinterString(printer, kName, stored, ARRAYSIZE(stored)) || !TextsEqual<WCHAR>(stored, kText)) {
        return 1;
    }
    DeletePrinterDataW(printer, const_cast<WCHAR*>(kName));
    return 0;
}

DWORD GetMemorySetting(HANDLE printer) {
    DWORD megabytes = 0;
    ReadPrinterDword(printer, kMemoryValue, &megabytes);
    return megabytes;
}

bool SetMemorySetting(HANDLE printer, DWORD megabytes) {
    return WritePrinterValue(printer, kMemoryValue, REG_DWORD, &megabytes, sizeof(megabytes));
}

DWORD GetFontSubs(HANDLE printer, HeapOwner<WCHAR>* table) {
    DWORD size = 0;
    HeapOwner<BYTE> value = ReadPrinterValue(printer, kFontSubsValue, REG_MULTI_SZ, &size);
    *table = HeapOwner<WCHAR>(reinterpret_cast<WCHAR*>(value.Release()));
    return size / static_cast<DWORD>(sizeof(WCHAR));
}

bool SetFontSubs(HANDLE printer, const WCHAR* table, DWORD length) {
    return WritePrinterValue(printer, kFontSubsValue, REG_MULTI_SZ, table, length * sizeof(WCHAR));
}

bool GetSettingsString(HANDLE printer, WCHAR* name, DWORD capacity) {
    return ReadPrinterString(printer, kSettingsValue, name, capacity);
}

bool LacksSettingsString(HANDLE printer) {
    return LacksPrinterValue(printer, kSettingsValue);
}

bool SetSettingsString(HANDLE printer, const WCHAR* name) {
    return WritePrinterString(printer, kSettingsValue, name);
}

bool IsMetricLocale() {
    return GetProfileIntW(TEXT("intl"), TEXT("iMeasure"), 1) != 1;
}

SHORT DefaultPaperForLocale() {
    return IsMetricLocale() ? DMPAPER_A4 : DMPAPER_LETTER;
}

void DeviceNameFromPrinterName(WCHAR* destination, const WCHAR* printerName, size_t limit) {
    const WCHAR* name = FileNamePart(printerName);
    size_t length = 0;
    while (name[length] != 0 && !TextBeginsWith(name + length, TEXT(",Local"))) {
        ++length;
    }
    CopyText(destination, length + 1 < limit ? length + 1 : limit, name);
}

}  // namespace velmora
