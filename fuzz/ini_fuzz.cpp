// Any bytes as an INI file, the user's settings file or the driver's data file: what the stores read of it is within
// bounds, what they write of it is read again as it was, nothing but files of the machine's drive is deleted, and
// nothing is left open.
//
// Seeds are INI files as the stores write them. An input's length chooses the code page and the language that the
// built-in watermarks are changed to.
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "driver/settings/color_presets.h"
#include "driver/settings/custom_sizes.h"
#include "driver/settings/device_info.h"
#include "driver/settings/font_substitutions.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"
#include "platform/host.h"
#include "tests/driver/package.h"
#include "tests/driver/resource_file.h"

namespace {

using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test
using driver_test::DrivePath;
using driver_test::WideText;

constexpr char16_t kIni[] = u"C:\\fuzzed.ini";
constexpr LANGID kEnglish = 0x0409;
constexpr LANGID kJapanese = 0x0411;

[[noreturn]] void Stop(const char* what) {
    fprintf(stderr, "%s\n", what);
    abort();
}

// A language module with built-in watermarks.
std::string ModuleOf(const WideText& code, unsigned builtIns, const WideText& charSet) {
    std::map<unsigned, WideText> strings = {{2498, u"Face"}, {2499, charSet}, {2500, code}};
    for (unsigned i = 0; i < builtIns; ++i) {
        strings[2490 + i] = code + static_cast<WCHAR>(u'0' + i);
    }
    return driver_test::StringModule(strings);
}

// A printer whose language modules have built-in watermarks; few in English, since writing them takes most of a run's
// time.
struct Target {
    host::Machine machine;
    std::map<std::filesystem::path, std::string> files;  // of its driver
    std::filesystem::path beside;                        // the drive

    Target() {
        driver_test::DriverPackage package = driver_test::PackageOf("");
        package.dependent = {{u"KV62ENUS.DLL", ModuleOf(u"ENUS", 2, u"0")},
                             {u"KV62JAPA.DLL", ModuleOf(u"JAPA", 6, u"128")}};
        driver_test::InstallPrinter(package);
        for (const driver_test::PackageFile& file : package.dependent) {
            files[DrivePath(driver_test::InstalledPath(file.name))] = file.bytes;
        }
        files[DrivePath(driver_test::InstalledPath(package.core.name))] = package.core.bytes;
        beside = machine.Drive().parent_path() / "beside";
        std::ofstream(beside) << "kept";
    }

    // An input may name the driver's files as rendered ones, which are deleted. The next input finds them again.
    void Restore() {
        for (const auto& [path, bytes] : files) {
            if (!std::filesystem::exists(path)) {
                std::filesystem::create_directories(path.parent_path());
                std::ofstream(path, std::ios::binary) << bytes;
            }
        }
    }
};

Target& TheTarget() {
    static Target target;
    return target;
}

// Whether the file has the section more than once: where the first one is deleted, the next one shows.
bool IsTwice(const char16_t* section) {
    static WCHAR names[0x10000];
    GetPrivateProfileStringW(nullptr, nullptr, u"", names, std::size(names), kIni);
    int count = 0;
    for (WCHAR* name = names; *name != 0; name += WideText(name).size() + 1) {
        count += WideText(CharUpperW(name)) == section ? 1 : 0;
    }
    return count > 1;
}

template <class Record>
bool IsSame(const StoredList<Record>& a, const StoredList<Record>& b) {
    return a.count == b.count && memcmp(a.records.Get(), b.records.Get(), (size_t{a.count} + 1) * sizeof(Record)) == 0;
}

template <class Character, size_t capacity>
bool IsTerminated(const Character (&text)[capacity]) {
    return std::char_traits<Character>::find(text, capacity, 0) != nullptr;
}

void CheckCustomSizes() {
    const CustomSizeList list = ReadCustomSizes(kIni);
    for (unsigned i = 0; i < list.count; ++i) {
        if (list.records.Get()[i].name[0] == 0 || !IsTerminated(list.records.Get()[i].name)) {
            Stop("a custom size without a name");
        }
    }
    const bool isTwice = IsTwice(u"CUSTOMSIZES");
    WriteCustomSizes(kIni, list.records.Get(), list.count);
    if (!isTwice && !IsSame(ReadCustomSizes(kIni), list)) {
        Stop("custom sizes aren't read as they were written");
    }
}

void CheckWatermarks() {
    const WatermarkList list = ReadWatermarkList(kIni);
    for (unsigned i = 0; i < list.count; ++i) {
        const WatermarkRecord& record = list.records.Get()[i];
        if (record.text[0] == 0 || !IsTerminated(record.text) || !IsTerminated(record.fileName) ||
            !IsTerminated(record.colorFileName)) {
            Stop("a watermark without a text");
        }
    }
    const bool isTwice = IsTwice(u"WATERMARKS");
    WriteWatermarkList(driver_test::kPrinterName, kIni, list.records.Get(), list.count);
    if (!isTwice && !IsSame(ReadWatermarkList(kIni), list)) {
        Stop("watermarks aren't read as they were written");
    }
}

void CheckFontSubstitutions() {
    HeapOwner<WCHAR> table;
    const int size = ReadFontSubstitutionIni(kIni, &table);
    if (size < 0 ? static_cast<bool>(table) : size >= 65535) {
        Stop("a font substitution table of no size");
    }
    if (size > 0 && table.Get()[size - 1] != 0) {
        Stop("a font substitution table without an end");
    }
}

// Of the printer's own settings file, which is the current one.
void CheckColorPresets(const std::string& input) {
    PrepareSettingsFile(driver_test::kPrinterName);
    driver_test::WriteDriveFile(CurrentSettingsFile(), input);
    LoadColorPresets();
    for (size_t i = 0; i < kColorPresets; ++i) {
        ColorPreset& preset = ColorPresetTable()[i];
        if (std::char_traits<WCHAR>::length(preset.name) > 17) {
            Stop("a colour preset's name is too long");
        }
        if (preset.name[0] != 0 && (!SaveColorPreset(preset.name) || !DeleteColorPreset(preset.name))) {
            Stop("a colour preset that was loaded can't be saved");
        }
        preset = {};
    }
    DeleteFileW(CurrentSettingsFile());
}

// Rewrites the built-in watermarks in a language, after which doing so again changes nothing.
void ChangeLanguage(LANGID language) {
    TheTarget().machine.SetLanguage(language);
    UpdateWatermarkDefaults(driver_test::kPrinterName, kIni);
    const std::string once = driver_test::ReadDriveFile(kIni);
    TheTarget().Restore();
    UpdateWatermarkDefaults(driver_test::kPrinterName, kIni);
    if (driver_test::ReadDriveFile(kIni) != once) {
        Stop("the built-in watermarks are written twice");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Target& target = TheTarget();
    const std::string input(reinterpret_cast<const char*>(data), size);
    target.machine.SetAnsiCodePage((size & 1) == 0 ? 1252 : 932);
    target.machine.SetLanguage(kEnglish);
    const size_t open = host::StillOpen().size();

    driver_test::WriteDriveFile(kIni, input);
    DeviceInfo info = {};
    ReadDeviceInfoDefaults(kIni, &info);
    CheckFontSubstitutions();
    // A file without presets is given ten, which takes long and is always the same.
    if (input.find("UserEnt") != input.npos) {
        CheckColorPresets(input);
    }
    CheckCustomSizes();
    CheckWatermarks();

    driver_test::WriteDriveFile(kIni, input);
    ChangeLanguage((size & 2) == 0 ? kEnglish : kJapanese);
    DeleteWatermarkFiles(kIni);
    if (driver_test::DriveFileExists(kIni)) {
        Stop("the settings file isn't deleted");
    }
    if (!std::filesystem::exists(target.beside)) {
        Stop("a file that isn't on the drive is deleted");
    }
    target.Restore();
    if (host::StillOpen().size() != open) {
        Stop("something is left open");
    }
    return 0;
}
