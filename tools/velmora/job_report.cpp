#include "tools/velmora/job_report.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>

#include "driver/devmode/devmode_fields.h"
#include "driver/job/image_job_record.h"
#include "platform/kernel/text.h"
#include "tools/velmora/devmode_names.h"
#include "tools/velmora/devmode_report.h"
#include "tools/velmora/devmode_values.h"
#include "tools/velmora/escapes.h"

namespace velmora {
namespace {

// A field of the record, and the field of the device mode that explains its numbers.
struct RecordField {
    FieldDescriptor place;  // without a meaning: the explaining field's
    const char* explainedBy = nullptr;
};

#define MEMBER(member, meaning) \
    DescribeField<decltype(ImageJobRecord::member)>(#member, offsetof(ImageJobRecord, member), meaning, 0)
#define OWN(member, meaning) \
    { MEMBER(member, meaning), nullptr }
#define SAME(member) \
    { MEMBER(member, nullptr), #member }
#define FROM(member, field, meaning) \
    { MEMBER(member, meaning), #field }
#define OBJECT_MEMBER(index, member, meaning, field)                                                               \
    {                                                                                                              \
        DescribeField<decltype(ObjectColor::member)>(                                                              \
            "objectColor[" #index "]." #member,                                                                    \
            offsetof(ImageJobRecord, objectColor) + (index) * sizeof(ObjectColor) + offsetof(ObjectColor, member), \
            meaning, 0),                                                                                           \
            field                                                                                                  \
    }
#define OBJECT(index)                                                                                             \
    OBJECT_MEMBER(index, mode, nullptr, "objectColor.mode"), OBJECT_MEMBER(index, reserved2, kReserved, nullptr), \
        OBJECT_MEMBER(index, flag, nullptr, "objectColor.flag"),                                                  \
        OBJECT_MEMBER(index, values, nullptr, "objectColor[0].values"),                                           \
        OBJECT_MEMBER(index, reserved22, kReserved, nullptr)

constexpr const char* kReserved = "reserved, expected to be 0";

// Every byte of the record, in its order.
constexpr RecordField kRecordFields[] = {
    OWN(driverName, "name of the printer's driver"),
    OWN(descriptionPath, "path of the description file"),
    SAME(imageMode),
    OWN(reserved236, kReserved),
    FROM(paper, dmPaperSize, nullptr),
    FROM(paperWidth, dmPaperWidth, nullptr),
    FROM(paperLength, dmPaperLength, nullptr),
    FROM(targetPaper, dmPaperSize, "paper that the pages are scaled to; 65535: none"),
    OWN(targetWidth, "its width where no paper id tells it, 0.1 mm"),
    OWN(targetLength, "its length likewise"),
    SAME(scaleValue),
    OWN(reserved952, kReserved),
    SAME(uiMediaValue),
    SAME(uiFlagA),
    SAME(uiCode),
    FROM(collate, dmCollate, nullptr),
    SAME(scaleMode),
    FROM(orientation, dmOrientation, nullptr),
    SAME(rotate180),
    SAME(uiDuplex),
    SAME(uiFlagB),
    SAME(uiLabel),
    SAME(uiFlagC),
    SAME(uiPageLayout),
    OWN(paperMatches, "1: the paper is the one that is fed"),
    SAME(uiBinding),
    SAME(uiShiftX),
    SAME(uiShiftY),
    SAME(uiPageOrder),
    SAME(uiFlagE),
    SAME(uiChoice),
    SAME(colorPreset),
    SAME(colorRendering),
    OWN(reserved1002, kReserved),
    SAME(colorAuto),
    SAME(colorAdjust),
    SAME(colorChoiceA),
    SAME(colorChoiceB),
    SAME(colorBalance),
    SAME(colorFlagA),
    SAME(colorLevels),
    SAME(colorFlagB),
    OWN(reserved1038, kReserved),
    OBJECT(0),
    OBJECT(1),
    OBJECT(2),
    SAME(resolutionIndex),
    SAME(resolutionFlag),
    OWN(reserved1190, kReserved),
    FROM(icmIntent, dmICMIntent, "rendering intent, with colour preset 6 only"),
    SAME(outputFlag),
    OWN(zero1196, "always 0"),
    OWN(finishing, "0: none, else 1 + the device mode's finishChoice"),
    SAME(finishSide),
    SAME(finishFlagB),
    SAME(outputText),
    SAME(finishFlags),
    SAME(finishFlagC),
};
#undef OBJECT
#undef OBJECT_MEMBER
#undef FROM
#undef SAME
#undef OWN
#undef MEMBER

consteval bool CoversTheRecord() {
    size_t end = 0;
    for (const RecordField& field : kRecordFields) {
        if (field.place.offset != end) {
            return false;
        }
        end += size_t{field.place.width} * field.place.count;
    }
    return end == sizeof(ImageJobRecord);
}
static_assert(CoversTheRecord());

// A row of the device mode's table of fields; null for none.
struct DevModeField {
    const DevModePart* part = nullptr;
    const FieldDescriptor* field = nullptr;
};

DevModeField FindDevModeField(std::string_view name) {
    for (const DevModePart& part : DevModeParts()) {
        for (const FieldDescriptor& field : part.fields) {
            if (field.name == name) {
                return {&part, &field};
            }
        }
    }
    return {};
}

Cell RecordValue(const RecordField& row, std::span<const BYTE> record, const DevModeField& explaining,
                 const NumberNames& names) {
    // What a scale's value means depends on its mode.
    VelmoraDevMode devMode = {};
    memcpy(&devMode.privatePart.scaleMode, record.data() + offsetof(ImageJobRecord, scaleMode),
           sizeof(devMode.privatePart.scaleMode));
    FieldDescriptor place = row.place;
    if (explaining.field) {
        place.names = explaining.field->names;
    }
    std::vector<ElementValue> elements;
    for (size_t i = 0; i < place.count; ++i) {
        elements.push_back(ReadRecordElement(place, record.data(), i, [&](int64_t number) {
            return explaining.field ? names({explaining.part, explaining.field, i}, devMode, number) : std::string();
        }));
    }
    return ElementsCell(elements);
}

// Reserved bytes only where they aren't 0.
Table ReportRecord(std::span<const BYTE> record, const PrinterModel& model) {
    const NumberNames names = NamesOfNumbers(&model);
    Table table = {"", "record", {{"Field", "field"}, {"Offset", "offset"}, {"Value", ""}, {"Meaning", "meaning"}}};
    table.isKeyed = true;
    for (const RecordField& row : kRecordFields) {
        const auto bytes = record.subspan(row.place.offset, size_t{row.place.width} * row.place.count);
        if (row.place.meaning == kReserved && std::ranges::all_of(bytes, [](BYTE byte) { return byte == 0; })) {
            continue;
        }
        const DevModeField explaining = row.explainedBy ? FindDevModeField(row.explainedBy) : DevModeField();
        const char* const meaning = row.place.meaning  ? row.place.meaning
                                    : explaining.field ? explaining.field->meaning
                                                       : "";
        table.rows.push_back({TextCell(row.place.name), NumberCell(row.place.offset),
                              RecordValue(row, record, explaining, names), TextCell(meaning)});
    }
    return table;
}

std::string_view TextOf(std::span<const BYTE> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// An image printer's description as text: entries up to an empty one.
Table ReportEntries(std::span<const BYTE> bytes) {
    Table table = {"", "entries", {{"Key", "key"}, {"Value", "value"}}};
    for (std::string_view rest = TextOf(bytes); !rest.empty() && rest.front() != 0;) {
        const std::string_view entry = rest.substr(0, rest.find('\0'));
        const size_t equals = std::min(entry.find('='), entry.size());
        const std::u16string value = FromAnsi(entry.substr(std::min(equals + 1, entry.size())));
        table.rows.push_back(
            {TextCell(Escaped(FromAnsi(entry.substr(0, equals)))), {Quoted(value), host::ToUtf8(value)}});
        rest.remove_prefix(std::min(entry.size() + 1, rest.size()));
    }
    return table;
}

// Lines of printer language, indented. A line's CR LF is its end; whatever else controls the printer is escaped.
std::string FormatLines(std::span<const BYTE> bytes) {
    const std::u16string text = FromAnsi(TextOf(bytes));
    std::string lines;
    for (std::u16string_view rest = text; !rest.empty();) {
        const size_t end = rest.find(u"\r\n");
        lines += "  " + Escaped(rest.substr(0, end)) + (end == rest.npos ? " (no end of line)\n" : "\n");
        rest.remove_prefix(end == rest.npos ? rest.size() : end + 2);
    }
    return lines;
}

enum class Content { kNothing, kLines, kEntries, kRecord };

Content ContentOf(const JobBlock& block, const PrinterModel& model) {
    if (block.bytes.empty()) {
        return Content::kNothing;
    }
    if (model->pdlType != kPdlImage) {
        return Content::kLines;
    }
    // Descriptions of no other form have this size.
    return block.bytes.size() == sizeof(ImageJobRecord) ? Content::kRecord : Content::kEntries;
}

std::string FormatContent(const JobBlock& block, const PrinterModel& model) {
    switch (ContentOf(block, model)) {
        case Content::kLines:
            return FormatLines(block.bytes);
        case Content::kEntries: {
            const Table entries = ReportEntries(block.bytes);
            return FormatText(std::span(&entries, 1));
        }
        case Content::kRecord: {
            const Table record = ReportRecord(block.bytes, model);
            return FormatText(std::span(&record, 1));
        }
        case Content::kNothing:
            break;
    }
    return {};
}

std::string DescribeSize(const JobBlock& block) {
    if (block.bytes.empty()) {
        return "no block";
    }
    const std::string bytes = std::to_string(block.bytes.size()) + " bytes";
    return block.toldBytes == block.bytes.size() ? bytes
                                                 : bytes + " (asked for " + std::to_string(block.toldBytes) + ")";
}

std::string DescribeSheets(unsigned first, unsigned last) {
    if (first == 0) {
        return "";
    }
    return first == last ? ", sheet " + std::to_string(first)
                         : ", sheets " + std::to_string(first) + " to " + std::to_string(last);
}

}  // namespace

std::string FormatJob(const PrintedJob& job, const PrinterModel& model) {
    std::string output;
    const JobBlock* printed = nullptr;  // the last one whose content was
    for (auto block = job.blocks.begin(); block != job.blocks.end();) {
        const auto next = std::find_if(block + 1, job.blocks.end(), [&](const JobBlock& other) {
            return block->sheet == 0 || other.sheet == 0 || other.bytes != block->bytes;
        });
        const bool isRepeated = printed && !block->bytes.empty() && printed->bytes == block->bytes;
        output += output.empty() ? "" : "\n";
        output += std::string(block->hook) + DescribeSheets(block->sheet, std::prev(next)->sheet) + ": " +
                  DescribeSize(*block) + (isRepeated ? ", the same block as " + std::string(printed->hook) : "") + "\n";
        if (!isRepeated && !block->bytes.empty()) {
            output += "\n" + FormatContent(*block, model);
            printed = &*block;
        }
        block = next;
    }
    return output;
}

Json ToJson(const PrintedJob& job, const PrinterModel& model) {
    Json blocks = Json::array();
    for (const JobBlock& block : job.blocks) {
        Json members = {{"hook", block.hook},
                        {"sheet", block.sheet == 0 ? Json() : Json(block.sheet)},
                        {"toldBytes", block.toldBytes},
                        {"bytes", block.bytes.size()}};
        switch (ContentOf(block, model)) {
            case Content::kLines:
                members["text"] = host::ToUtf8(FromAnsi(TextOf(block.bytes)));
                break;
            case Content::kEntries: {
                const Table entries = ReportEntries(block.bytes);
                members.update(ToJson(std::span(&entries, 1)));
                break;
            }
            case Content::kRecord: {
                const Table record = ReportRecord(block.bytes, model);
                members.update(ToJson(std::span(&record, 1)));
                break;
            }
            case Content::kNothing:
                break;
        }
        blocks.push_back(std::move(members));
    }
    return blocks;
}

}  // namespace velmora
