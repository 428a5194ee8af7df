#include "tools/velmora/field_report.h"

#include <span>
#include <string_view>

#include "driver/devmode/devmode_fields.h"
#include "tools/velmora/escapes.h"

namespace velmora {
namespace {

std::string NumberType(const FieldDescriptor& field) {
    return (field.kind == FieldKind::kSigned ? "i" : "u") + std::to_string(field.width * 8);
}

// "u16", "wchar[32]", "i16[4]", "i16[6], every 4 bytes".
std::string TypeOf(const FieldDescriptor& field) {
    std::string type;
    switch (field.kind) {
        case FieldKind::kUnsigned:
        case FieldKind::kSigned:
            type = NumberType(field);
            break;
        case FieldKind::kWideText:
            type = "wchar[" + std::to_string(field.width / sizeof(WCHAR)) + "]";
            break;
        case FieldKind::kAnsiText:
            type = "char[" + std::to_string(field.width) + "]";
            break;
        case FieldKind::kBytes:
            return "byte[" + std::to_string(field.width) + "]";
    }
    if (field.count > 1) {
        type += "[" + std::to_string(field.count) + "]";
    }
    if (field.stride != field.width) {
        type += ", every " + std::to_string(field.stride) + " bytes";
    }
    return type;
}

// In hexadecimal too where that tells more.
std::string NumberText(int64_t number) {
    constexpr int64_t kMostPlain = 32767;
    const std::string text = std::to_string(number);
    return number > kMostPlain ? text + " (" + HexNumber(static_cast<uint64_t>(number)) + ")" : text;
}

std::string DefaultOf(const FieldDescriptor& field) {
    std::string value;
    switch (field.kind) {
        case FieldKind::kUnsigned:
        case FieldKind::kSigned:
            value = NumberText(field.defaultValue);
            break;
        case FieldKind::kWideText:
        case FieldKind::kAnsiText: {
            const std::string_view text = field.defaultText ? field.defaultText : "";
            value = text.empty() ? "empty" : Quoted(std::u16string(text.begin(), text.end()));
            break;
        }
        case FieldKind::kBytes:
            value = "all 0";
            break;
    }
    return field.defaultNote ? value + "; " + field.defaultNote : value;
}

int64_t GreatestNumber(const FieldDescriptor& field) {
    const unsigned bits = 8u * field.width - (field.kind == FieldKind::kSigned ? 1 : 0);
    return (int64_t{1} << bits) - 1;
}

std::string RangeText(const FieldDescriptor& field, const ValueRange& range) {
    if (range.low == range.high) {
        return NumberText(range.low);
    }
    const bool isOpen = range.high == GreatestNumber(field);
    return NumberText(range.low) + (isOpen ? " and above" : " to " + NumberText(range.high));
}

// The meaning, and what each value stands for.
std::string MeaningOf(const FieldDescriptor& field) {
    std::string meaning = field.meaning;
    for (size_t i = 0; i < field.names.size(); ++i) {
        meaning += (i == 0 ? ": " : ", ") + std::to_string(field.names[i].value) + " " + field.names[i].name;
    }
    return meaning;
}

Table ReportPart(std::string title, std::string key, std::span<const FieldDescriptor> fields) {
    Table table = {std::move(title),
                   std::move(key),
                   {{"Offset", "offset"},
                    {"Field", "field"},
                    {"Type", "type"},
                    {"Meaning", "meaning"},
                    {"Default", "default"},
                    {"Valid", "valid"}}};
    for (const FieldDescriptor& field : fields) {
        table.rows.push_back({NumberCell(field.offset), TextCell(field.name), TextCell(TypeOf(field)),
                              TextCell(MeaningOf(field)), TextCell(DefaultOf(field)), TextCell(ValidValues(field))});
    }
    return table;
}

constexpr const char* kIntroduction =
    "# The device mode\n"
    "\n"
    "All settings of a document travel in one block of 4088 bytes: the published `DEVMODEW` of 220 bytes and this\n"
    "driver's private part of 3868 bytes behind it. Numbers are little-endian and unaligned, texts end with NUL. "
    "Offsets\n"
    "are counted from the start of the part; bytes that no field names are 0 in a new device mode.\n"
    "\n"
    "*Default* is the value in a new device mode before the model is looked at and, behind the semicolon, how the "
    "model\n"
    "changes it. *Valid* is what the driver accepts in a device mode that it is given.\n"
    "\n"
    "This page is generated from the driver's table of fields (`./dev docs`).\n";

}  // namespace

std::string ValidValues(const FieldDescriptor& field) {
    std::string valid;
    for (const ValueRange& range : field.accepted) {
        valid += (valid.empty() ? "" : ", ") + RangeText(field, range);
    }
    if (!field.validNote) {
        return valid.empty() ? "any" : valid;
    }
    return valid + (valid.empty() ? "" : "; ") + field.validNote;
}

std::vector<Table> ReportFields() {
    return {ReportPart("Public part (DEVMODEW)", "public", PublicFields()),
            ReportPart("Private part", "private", PrivateFields())};
}

std::string MakeFieldPage() {
    std::string page = kIntroduction;
    for (const Table& table : ReportFields()) {
        page += "\n" + FormatMarkdown(table);
    }
    return page;
}

}  // namespace velmora
