#include "tools/velmora/capability_report.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>
#include <utility>

#include "driver/entry/driver_interface.h"
#include "platform/kernel/text.h"
#include "tools/velmora/capability_formats.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/devmode_names.h"
#include "tools/velmora/driver_library.h"
#include "tools/velmora/escapes.h"
#include "tools/velmora/spooler_client.h"

namespace velmora {
namespace {

// An answer of the driver: a list's entries are numbers, names, or pairs as arrays of two.
struct Answer {
    DWORD number = 0;
    std::vector<Json> entries;
};

// By the order of kCapabilityFormats.
using Answers = std::vector<Answer>;

const Answer& AnswerTo(const Answers& answers, WORD index) {
    return answers.at(index - size_t{1});
}

Json ReadEntry(const CapabilityFormat& format, const BYTE* entry) {
    if (format.kind == CapabilityKind::kNames) {
        std::u16string name(format.nameCapacity, 0);
        memcpy(name.data(), entry, format.nameCapacity * sizeof(WCHAR));
        return host::ToUtf8(UntilNul(name));
    }
    DWORD numbers[2] = {};
    memcpy(numbers, entry, EntrySize(format));
    return format.kind == CapabilityKind::kPairs ? Json::array({numbers[0], numbers[1]}) : Json(numbers[0]);
}

Answers AskDriver(const std::string& printerName) {
    const OwnedPrinter printer = OpenNamedPrinter(printerName);
    const OwnedModule driver = LoadDriverOf(printer.Get(), printerName);
    const auto ask = DriverExport<decltype(&DrvDeviceCapabilities)>(driver, "DrvDeviceCapabilities");
    std::u16string name = host::ToWide(printerName);
    Answers answers;
    for (const CapabilityFormat& format : kCapabilityFormats) {
        Answer answer;
        answer.number = ask(printer.Get(), name.data(), format.index, nullptr, nullptr);
        const size_t entrySize = EntrySize(format);
        if (entrySize > 0 && answer.number > 0) {
            // The answer is an int to applications.
            if (answer.number > INT32_MAX / entrySize) {
                throw CommandError("the driver of \"" + printerName + "\" says that " + format.name + " has " +
                                   std::to_string(answer.number) + " entries");
            }
            std::vector<BYTE> output(answer.number * entrySize);
            const DWORD written = ask(printer.Get(), name.data(), format.index, output.data(), nullptr);
            if (written > answer.number) {
                throw CommandError("the driver of \"" + printerName + "\" says that " + format.name + " has " +
                                   std::to_string(answer.number) + " entries and gives " + std::to_string(written));
            }
            answer.number = written;
            for (DWORD i = 0; i < written; ++i) {
                answer.entries.push_back(ReadEntry(format, output.data() + i * entrySize));
            }
        }
        answers.push_back(std::move(answer));
    }
    return answers;
}

// What a number stands for; empty: nothing but itself.
using NameOf = std::string (*)(int64_t number);

std::string NameFlag(int64_t number) {
    return number == 0 ? "no" : "yes";
}

std::string Millimetres(DWORD tenths) {
    return DecimalCell(static_cast<double>(tenths) / 10, 1).text;
}

std::string NameExtent(int64_t number) {
    return Millimetres(LOWORD(number)) + " x " + Millimetres(HIWORD(number)) + " mm";
}

std::string NameTrueType(int64_t number) {
    std::string names = (number & DCTT_BITMAP) != 0 ? "as bitmaps" : "";
    if ((number & DCTT_DOWNLOAD) != 0) {
        names += names.empty() ? "downloaded" : " or downloaded";
    }
    return names;
}

std::string NameRateUnit(int64_t number) {
    return number == PRINTRATEUNIT_PPM ? "pages per minute" : "";
}

struct Explanation {
    WORD index;
    const char* meaning;
    NameOf nameOf = nullptr;
};

// Of each index, in their order. Lists that a table of their own shows name it.
constexpr Explanation kExplanations[] = {
    {DC_FIELDS, "dmFields of the driver's device modes", NameFieldBits},
    {DC_PAPERS, "ids of papers"},
    {DC_PAPERSIZE, "sizes of papers, 0.1 mm"},
    {DC_MINEXTENT, "smallest paper, 0.1 mm: width in the low word, length in the high one", NameExtent},
    {DC_MAXEXTENT, "largest paper, likewise", NameExtent},
    {DC_BINS, "ids of paper sources"},
    {DC_DUPLEX, "prints on both sides", NameFlag},
    {DC_SIZE, "bytes of a device mode's public part"},
    {DC_EXTRA, "bytes of its private part"},
    {DC_VERSION, "specification that the driver keeps to", NameVersion},
    {DC_DRIVER, "version of the rendering core", NameVersion},
    {DC_BINNAMES, "names of paper sources"},
    {DC_ENUMRESOLUTIONS, "resolutions, dots per inch"},
    {DC_FILEDEPENDENCIES, "files to load with the driver"},
    {DC_TRUETYPE, "how TrueType fonts are printed", NameTrueType},
    {DC_PAPERNAMES, "names of papers"},
    {DC_ORIENTATION, "degrees by which landscape pages are turned"},
    {DC_COPIES, "most copies"},
    {DC_BINADJUST, "not answered by this driver"},
    {DC_EMF_COMPLIANT, "not answered by this driver"},
    {DC_DATATYPE_PRODUCED, "not answered by this driver"},
    {DC_COLLATE, "collates copies", NameFlag},
    {DC_MANUFACTURER, "not answered by this driver"},
    {DC_MODEL, "not answered by this driver"},
    {DC_PERSONALITY, "page description languages"},
    {DC_PRINTRATE, "print rate, in the unit below"},
    {DC_PRINTRATEUNIT, "unit of the print rate", NameRateUnit},
    {DC_PRINTERMEM, "printer memory, kilobytes"},
    {DC_MEDIAREADY, "papers ready to be printed on"},
    {DC_STAPLE, "staples", NameFlag},
    {DC_PRINTRATEPPM, "print rate, pages per minute"},
    {DC_COLORDEVICE, "prints in colour", NameFlag},
    {DC_NUP, "pages on a sheet's side"},
    {DC_MEDIATYPENAMES, "names of media"},
    {DC_MEDIATYPES, "dmMediaType values of media"},
};
static_assert(std::size(kExplanations) == std::size(kCapabilityFormats));

// Tables that show lists whose entries belong together, a list a column.
struct JoinedList {
    WORD index;
    Column column;
};

struct JoinedTable {
    const char* title;
    const char* key;
    std::vector<JoinedList> lists;
};

const std::vector<JoinedTable>& JoinedTables() {
    static const std::vector<JoinedTable> tables = {
        {"Papers",
         "papers",
         {{DC_PAPERS, {"Id", "paperId"}}, {DC_PAPERNAMES, {"Name", "name"}}, {DC_PAPERSIZE, {"Size, mm", ""}}}},
        {"Paper sources", "sources", {{DC_BINS, {"Id", "source"}}, {DC_BINNAMES, {"Name", "name"}}}},
        {"Media", "media", {{DC_MEDIATYPES, {"Type", "mediaType"}}, {DC_MEDIATYPENAMES, {"Name", "name"}}}},
    };
    return tables;
}

bool IsJoined(WORD index) {
    return std::ranges::any_of(JoinedTables(), [index](const JoinedTable& table) {
        return std::ranges::any_of(table.lists, [index](const JoinedList& list) { return list.index == index; });
    });
}

std::string EntryText(const Json& entry) {
    if (entry.is_array()) {
        return entry[0].dump() + " x " + entry[1].dump();
    }
    return entry.is_string() ? entry.get<std::string>() : entry.dump();
}

Cell NumberAnswer(DWORD number, NameOf nameOf) {
    const std::string name = nameOf ? nameOf(number) : std::string();
    const Json jsonName = name.empty() ? Json() : Json(name);
    return {std::to_string(number) + (name.empty() ? "" : " (" + name + ")"),
            {{"answer", number}, {"answerName", jsonName}, {"entries", nullptr}}};
}

Cell ListAnswer(const Answer& answer, bool isJoined) {
    std::string text;
    for (const Json& entry : answer.entries) {
        text += (text.empty() ? ": " : ", ") + EntryText(entry);
    }
    return {std::to_string(answer.number) + (isJoined ? "" : text),
            {{"answer", answer.number}, {"answerName", nullptr}, {"entries", answer.entries}}};
}

Cell JoinedCell(WORD index, const Json& entry) {
    if (index == DC_PAPERSIZE) {
        const DWORD width = entry[0].get<DWORD>();
        const DWORD length = entry[1].get<DWORD>();
        return {Millimetres(width) + " x " + Millimetres(length),
                {{"widthMm", width / 10.0}, {"lengthMm", length / 10.0}}};
    }
    return entry.is_string() ? TextCell(entry.get<std::string>()) : NumberCell(entry.get<int64_t>());
}

Table Join(const JoinedTable& joined, const Answers& answers) {
    Table table = {joined.title, joined.key, {}};
    size_t count = SIZE_MAX;
    for (const JoinedList& list : joined.lists) {
        table.columns.push_back(list.column);
        count = std::min(count, AnswerTo(answers, list.index).entries.size());
    }
    for (size_t i = 0; i < count; ++i) {
        std::vector<Cell> row;
        for (const JoinedList& list : joined.lists) {
            row.push_back(JoinedCell(list.index, AnswerTo(answers, list.index).entries[i]));
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

}  // namespace

std::vector<Table> ReportCapabilities(const std::string& printerName) {
    const Answers answers = AskDriver(printerName);
    Table table = {
        "Capabilities", "capabilities", {{"Capability", "capability"}, {"Answer", ""}, {"Meaning", "meaning"}}};
    table.isKeyed = true;
    for (const CapabilityFormat& format : kCapabilityFormats) {
        const Explanation& explanation = kExplanations[format.index - 1];
        const Answer& answer = AnswerTo(answers, format.index);
        table.rows.push_back({TextCell(format.name),
                              format.kind == CapabilityKind::kNumber ? NumberAnswer(answer.number, explanation.nameOf)
                                                                     : ListAnswer(answer, IsJoined(format.index)),
                              TextCell(explanation.meaning)});
    }
    std::vector<Table> tables = {std::move(table)};
    for (const JoinedTable& joined : JoinedTables()) {
        tables.push_back(Join(joined, answers));
    }
    return tables;
}

}  // namespace velmora
