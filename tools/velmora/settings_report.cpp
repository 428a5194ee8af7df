#include "tools/velmora/settings_report.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <utility>

#include "driver/base/handles.h"
#include "driver/settings/custom_sizes.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"
#include "platform/kernel/text.h"
#include "tools/velmora/escapes.h"
#include "tools/velmora/spooler_client.h"

namespace velmora {
namespace {

constexpr const char16_t* kPresetSection = u"UserEnt";
constexpr const char16_t* kPresetName = u"UserEntName";
constexpr unsigned kPresetSlots = 10;

struct IniEntry {
    std::u16string key;
    std::u16string value;
};

// The entries of a section in the file's order; none where there is no such section.
std::vector<IniEntry> ReadSection(const std::u16string& section, const std::u16string& file) {
    constexpr size_t kMostCharacters = 32767 * 4;
    std::u16string text(kMostCharacters, 0);
    text.resize(GetPrivateProfileSectionW(section.c_str(), text.data(), kMostCharacters, file.c_str()));
    std::vector<IniEntry> entries;
    for (std::u16string_view rest = text; !rest.empty() && rest.front() != 0;) {
        const std::u16string_view entry = UntilNul(rest);
        const size_t equals = std::min(entry.find(u'='), entry.size());
        entries.push_back({std::u16string(entry.substr(0, equals)),
                           std::u16string(entry.substr(std::min(equals + 1, entry.size())))});
        rest.remove_prefix(std::min(entry.size() + 1, rest.size()));
    }
    return entries;
}

// A key of a list's entry: a number ends it.
bool IsNumbered(const IniEntry& entry) {
    return !entry.key.empty() && entry.key.back() >= u'0' && entry.key.back() <= u'9';
}

// A section that holds a list, which the driver read.
struct ListSection {
    const char16_t* name;
    const char16_t* countKey;
    size_t count;  // as the driver read it
};

Table ReportValues(const std::u16string& file, std::span<const ListSection> lists) {
    Table table = {"Values",
                   "values",
                   {{"Section", "section"}, {"Key", "key"}, {"Value", "value"}, {"As the driver reads it", "note"}}};
    const auto add = [&](const char16_t* section, const IniEntry& entry, std::string note) {
        table.rows.push_back({TextCell(host::ToUtf8(section)),
                              TextCell(Escaped(entry.key)),
                              {Quoted(entry.value), host::ToUtf8(entry.value)},
                              note.empty() ? EmptyCell() : TextCell(std::move(note))});
    };
    for (const IniEntry& entry : ReadSection(u"Velmora", file)) {
        add(u"Velmora", entry, "");
    }
    for (const ListSection& list : lists) {
        const std::vector<IniEntry> entries = ReadSection(list.name, file);
        const bool isRejected = list.count == 0 && std::ranges::any_of(entries, IsNumbered);
        for (const IniEntry& entry : entries) {
            if (!IsNumbered(entry) || isRejected) {
                add(list.name, entry, isRejected && entry.key == list.countKey ? "none: an entry is incomplete" : "");
            }
        }
    }
    return table;
}

Table ReportCustomSizes(const CustomSizeList& sizes) {
    constexpr double kPerMillimetre = 100;
    constexpr double kUsPerMillimetre = 100 * 25.4;
    Table table = {"Custom sizes",
                   "customSizes",
                   {{"No.", "index"},
                    {"Name", "name"},
                    {"Width", "width"},
                    {"Length", "length"},
                    {"System", "system"},
                    {"Width mm", "widthMm"},
                    {"Length mm", "lengthMm"}}};
    for (unsigned i = 0; i < sizes.count; ++i) {
        const CustomSizeRecord& size = sizes.records.Get()[i];
        const double perMillimetre = size.metric != 0 ? kPerMillimetre : kUsPerMillimetre;
        table.rows.push_back({NumberCell(i), TextCell(host::ToUtf8(size.name)), NumberCell(size.width),
                              NumberCell(size.length), TextCell(size.metric != 0 ? "metric" : "US"),
                              DecimalCell(size.width / perMillimetre, 1), DecimalCell(size.length / perMillimetre, 1)});
    }
    return table;
}

// How a watermark is drawn: "Arial, 72 points, bold" or "logo.bmp, 100 x 50 %".
std::string DescribeDrawing(const WatermarkRecord& mark) {
    if (mark.type != kTextWatermark) {
        return host::ToUtf8(mark.imageName) + ", " + std::to_string(mark.scaleX) + " x " + std::to_string(mark.scaleY) +
               " %";
    }
    const WatermarkStyle& style = mark.style;
    return host::ToUtf8(style.face) + ", " + std::to_string(style.size) + " points" +
           (style.bold != 0 ? ", bold" : "") + (style.italic != 0 ? ", italic" : "") +
           (style.outline != 0 ? ", outlined" : "") + (style.rightToLeft != 0 ? ", right to left" : "") +
           (style.charSet != 0 ? ", character set " + std::to_string(style.charSet) : "");
}

Table ReportWatermarks(const WatermarkList& marks) {
    Table table = {"Watermarks",
                   "watermarks",
                   {{"No.", "index"},
                    {"Text", "text"},
                    {"Kind", "kind"},
                    {"Drawn", "drawing"},
                    {"Colour", "color"},
                    {"Degrees", "angleDegrees"},
                    {"Placement", "placement"},
                    {"X", "positionX"},
                    {"Y", "positionY"},
                    {"Rendered files", "renderedFiles"}}};
    for (unsigned i = 0; i < marks.count; ++i) {
        const WatermarkRecord& mark = marks.records.Get()[i];
        const bool isText = mark.type == kTextWatermark;
        std::vector<std::string> files;
        for (const WCHAR* const file : {mark.fileName, mark.colorFileName}) {
            if (*file != 0) {
                files.push_back(host::ToUtf8(file));
            }
        }
        table.rows.push_back({NumberCell(i), TextCell(host::ToUtf8(mark.text)), TextCell(isText ? "text" : "image"),
                              TextCell(DescribeDrawing(mark)),
                              isText ? TextCell(HexNumber(mark.style.color, 6)) : EmptyCell(),
                              isText ? DecimalCell(mark.angle / 10.0, 1) : EmptyCell(), NumberCell(mark.placement),
                              NumberCell(mark.positionX), NumberCell(mark.positionY), ListCell(files)});
    }
    return table;
}

Table ReportPresets(const std::u16string& file) {
    Table table = {
        "Colour presets", "colorPresets", {{"Slot", "slot"}, {"Name", "name"}, {"Adjustments", "adjustments"}}};
    for (unsigned slot = 0; slot < kPresetSlots; ++slot) {
        const std::vector<IniEntry> entries = ReadSection(kPresetSection + host::ToWide(std::to_string(slot)), file);
        const auto name = std::ranges::find(entries, kPresetName, &IniEntry::key);
        if (name == entries.end() || name->value.empty()) {
            continue;  // a free slot
        }
        Cell adjustments = {"", Json::object()};
        for (const IniEntry& entry : entries) {
            if (entry.key != kPresetName) {
                const std::string key = host::ToUtf8(entry.key);
                const std::string value = host::ToUtf8(entry.value);
                adjustments.text += (adjustments.text.empty() ? "" : ", ") + key + " " + value;
                adjustments.json[key] = value;
            }
        }
        table.rows.push_back({NumberCell(slot), TextCell(host::ToUtf8(name->value)), std::move(adjustments)});
    }
    return table;
}

}  // namespace

SettingsFile FindSettingsFile(const std::string& printerName) {
    OpenNamedPrinter(printerName);
    WCHAR path[MAX_PATH];
    if (!GetSettingsFilePath(host::ToWide(printerName).c_str(), path, MAX_PATH)) {
        return {"", false};
    }
    return {host::ToUtf8(path), GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES};
}

std::vector<Table> ReportSettings(const SettingsFile& file) {
    const std::u16string path = host::ToWide(file.path);
    const CustomSizeList sizes = ReadCustomSizes(path.c_str());
    const WatermarkList marks = ReadWatermarkList(path.c_str());
    const std::array lists = {ListSection{u"CustomSizes", u"NumCustomSizes", sizes.count},
                              ListSection{u"Watermarks", u"NumWatermarks", marks.count}};
    return {ReportValues(path, lists), ReportCustomSizes(sizes), ReportWatermarks(marks), ReportPresets(path)};
}

std::string ReadSettingsText(const SettingsFile& file) {
    constexpr char16_t kByteOrderMark = 0xFEFF;
    const OwnedFile opened(CreateFileW(host::ToWide(file.path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size = {};
    if (!opened || !GetFileSizeEx(opened.Get(), &size)) {
        ThrowRefused("CreateFileW of " + file.path);
    }
    std::string bytes(static_cast<size_t>(size.QuadPart), 0);
    DWORD arrived = 0;
    if (!ReadFile(opened.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &arrived, nullptr)) {
        ThrowRefused("ReadFile of " + file.path);
    }
    bytes.resize(arrived);
    std::u16string text(bytes.size() / sizeof(char16_t), 0);
    memcpy(text.data(), bytes.data(), text.size() * sizeof(char16_t));
    text = !text.empty() && text.front() == kByteOrderMark ? text.substr(1) : FromAnsi(bytes);
    std::erase(text, u'\r');
    return host::ToUtf8(text);
}

}  // namespace velmora
