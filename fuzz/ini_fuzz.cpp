// Any bytes as an INI file, the user's settings file or the driver's data file: what the stores read of it is within
// bounds, what they write of it is read again as it was, nothing but files of the machine's drive is deleted, and
// nothing is left open.
//
// Seeds are INI files as the stores write them. An input's length chooses the code page, the language that the built-in
// watermarks are changed to, and whether colour presets are read.
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "driver/settings/color_presets.h"
#include "driver/settings/custom_sizes.h"
#include "driver/settings/device_info.h"
#include "driver/settings/font_substitutions.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"
#include "fuzz/stop.h"
#include "platform/host.h"
#include "tests/driver/package.h"
#include "tests/driver/resource_file.h"

namespace {

using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test
using driver_test::DrivePath;
using driver_test::WideText;
using fuzz::Stop;

constexpr LANGID kEnglish = 0x0409;
constexpr LANGID kJapanese = 0x0411;

// A language module with built-in watermarks.
std::string ModuleOf(const WideText& code, unsigned builtIns, const WideText& charSet) {
    std::map<unsigned, WideText> strings = {{2420, u"ini"}, {2498, u"Face"}, {2499, charSet}, {2500, code}};
    for (unsigned i = 0; i < builtIns; ++i) {
        strings[2490 + i] = code + static_cast<WCHAR>(u'0' + i);
    }
    return driver_test::StringModule(strings);
}

// A printer whose language modules have built-in watermarks; few in English, since writing them takes most of a run's
// time.
struct Target {
    host::Machine machine;
    WideText ini;                                        // the settings file, which inputs become
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
        PrepareSettingsFile(driver_test::kPrinterName);
        ini = CurrentSettingsFile();
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
    GetPrivateProfileStringW(nullptr, nullptr, u"", names, std::size(names), CurrentSettingsFile());
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

// The table ends within the size that is told.
void CheckFontSubstitutions() {
    HeapOwner<WCHAR> table;
    const int size = ReadFontSubstitutionIni(CurrentSettingsFile(), &table);
    if ((size >= 0) != static_cast<bool>(table)) {
        Stop("a font substitution table without a size, or a size without a table");
    }
    // A pair is two texts; the empty system face ends the table.
    const WCHAR* const end = table.Get() + (size > 0 ? size : 0);
    const WCHAR* face = table.Get();
    while (face < end && *face != 0) {
        for (int text = 0; text < 2 && face < end; ++text) {
            face = std::find(face, end, 0) + 1;
        }
    }
    if (size > 0 && face >= end) {
        Stop("a font substitution table without an end");
    }
}

void CheckColorPresets() {
    const std::span<ColorPreset> table(ColorPresetTable(), kColorPresets);
    std::ranges::fill(table, ColorPreset{});
    LoadColorPresets();
    const std::vector<ColorPreset> loaded(table.begin(), table.end());
    for (const ColorPreset& preset : loaded) {
        if (!IsTerminated(preset.name) || (preset.name[0] != 0 && !SaveColorPreset(preset.name))) {
            Stop("a colour preset can't be saved");
        }
    }
    std::ranges::fill(table, ColorPreset{});
    LoadColorPresets();
    std::set<WideText> names;  // of two of a name, the first is saved
    for (const ColorPreset& preset : loaded) {
        if (preset.name[0] != 0 && names.insert(preset.name).second &&
            std::ranges::none_of(
                table, [&](const ColorPreset& saved) { return memcmp(&saved, &preset, sizeof(saved)) == 0; })) {
            Stop("a colour preset isn't read as it was saved");
        }
    }
}

void CheckCustomSizes() {
    const CustomSizeList list = ReadCustomSizes(CurrentSettingsFile());
    for (unsigned i = 0; i < list.count; ++i) {
        if (list.records.Get()[i].name[0] == 0 || !IsTerminated(list.records.Get()[i].name)) {
            Stop("a custom size without a name");
        }
    }
    const bool isTwice = IsTwice(u"CUSTOMSIZES");
    WriteCustomSizes(CurrentSettingsFile(), list.records.Get(), list.count);
    if (!isTwice && !IsSame(ReadCustomSizes(CurrentSettingsFile()), list)) {
        Stop("custom sizes aren't read as they were written");
    }
}

void CheckWatermarks() {
    const WatermarkList list = ReadWatermarkList(CurrentSettingsFile());
    for (unsigned i = 0; i < list.count; ++i) {
        const WatermarkRecord& record = list.records.Get()[i];
        if (record.text[0] == 0 || !IsTerminated(record.text) || !IsTerminated(record.fileName) ||
            !IsTerminated(record.colorFileName)) {
            Stop("a watermark without a text");
        }
    }
    const bool isTwice = IsTwice(u"WATERMARKS");
    WriteWatermarkList(driver_test::kPrinterName, CurrentSettingsFile(), list.records.Get(), list.count);
    if (!isTwice && !IsSame(ReadWatermarkList(CurrentSettingsFile()), list)) {
        Stop("watermarks aren't read as they were written");
    }
}

// Rewrites the built-in watermarks in a language, after which doing so again changes nothing.
void ChangeLanguage(LANGID language) {
    TheTarget().machine.SetLanguage(language);
    UpdateWatermarkDefaults(driver_test::kPrinterName, CurrentSettingsFile());
    const std::string once = driver_test::ReadDriveFile(TheTarget().ini);
    TheTarget().Restore();
    UpdateWatermarkDefaults(driver_test::kPrinterName, CurrentSettingsFile());
    if (driver_test::ReadDriveFile(TheTarget().ini) != once) {
        Stop("the built-in watermarks are written twice");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Target& target = TheTarget();
    const std::string input(reinterpret_cast<const char*>(data), size);
    target.machine.SetAnsiCodePage((size & 1) == 0 ? 1252 : 932);
    target.machine.SetLanguage(kEnglish);
    const fuzz::OpenCheck open;

    driver_test::WriteDriveFile(target.ini, input);
    DeviceInfo info = {};
    ReadDeviceInfoDefaults(CurrentSettingsFile(), &info);
    CheckFontSubstitutions();
    CheckCustomSizes();
    CheckWatermarks();
    if ((size & 12) == 0) {
        CheckColorPresets();  // writes all slots where one is missing, which takes long
    }

    driver_test::WriteDriveFile(target.ini, input);
    ChangeLanguage((size & 2) == 0 ? kEnglish : kJapanese);
    DeleteWatermarkFiles(CurrentSettingsFile());
    if (driver_test::DriveFileExists(target.ini)) {
        Stop("the settings file isn't deleted");
    }
    if (!std::filesystem::exists(target.beside)) {
        Stop("a file that isn't on the drive is deleted");
    }
    target.Restore();
    return 0;
}
