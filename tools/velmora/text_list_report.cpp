#include "tools/velmora/text_list_report.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>
#include <string_view>

#include "driver/entry/printer_access.h"
#include "driver/settings/watermark_list.h"
#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/escapes.h"

namespace velmora {
namespace {

// What a kind of exceptions says of its pages.
struct KindOfException {
    ExceptionKind kind;
    const char* name;
    bool hasPaper;
    bool hasMedium;  // and tray
    bool hasOverlay;
    bool hasWatermark;
};

constexpr KindOfException kKindsOfException[] = {
    {kMediaException, "medium", false, true, false, false},
    {kBlankSheetBefore, "blank sheet before", true, true, false, false},
    {kBlankSheetAfter, "blank sheet after", true, true, false, false},
    {kOverlayException, "overlay", false, false, true, false},
    {kWatermarkException, "watermark", false, false, false, true},
};

// Of a kind that tickets don't carry nothing but its number is known.
constexpr KindOfException kUnknownKind = {kNoException, "", false, false, false, false};

struct UsageOfException {
    ExceptionUsage usage;
    const char* name;
};

constexpr UsageOfException kUsagesOfException[] = {
    {kSpecifiedPages, "these pages"},
    {kOddPages, "odd pages"},
    {kEvenPages, "even pages"},
    {kNotSpecifiedPages, "all but these pages"},
};

// A number and what it stands for: members `key` and `key`Name, both null where it doesn't count.
Cell NamedCell(const std::string& key, bool counts, int64_t number, const std::string& name) {
    if (!counts) {
        return {"", {{key, nullptr}, {key + "Name", nullptr}}};
    }
    return {std::to_string(number) + (name.empty() ? "" : " (" + name + ")"),
            {{key, number}, {key + "Name", name.empty() ? Json() : Json(name)}}};
}

std::string NameWatermark(const WatermarkList& marks, size_t index) {
    if (index >= marks.count) {
        return {};
    }
    const auto& text = marks.records.Get()[index].text;
    return host::ToUtf8(UntilNul({text, std::size(text)}));
}

Cell PagesCell(const ExceptionPageList& list) {
    std::vector<std::string> texts;
    Json numbers = Json::array();
    for (const uint16_t page : std::span(list.pages).first(list.count)) {
        texts.push_back(std::to_string(page));
        numbers.push_back(page);
    }
    return {ListCell(texts).text, numbers};
}

Table ReportExceptions(const WorkingDevMode& working, const PrinterModel& model) {
    constexpr uint16_t kPagesOwnPaper = 65535;
    Table table = {"Exceptions",
                   "exceptions",
                   {{"Slot", "slot"},
                    {"Kind", ""},
                    {"For", ""},
                    {"Pages", "pages"},
                    {"Paper", ""},
                    {"Medium", ""},
                    {"Tray", ""},
                    {"Overlay", "overlay"},
                    {"Under the page", "isUnderlay"},
                    {"Watermark", ""}}};
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(working.hPrinter);
    const WatermarkList watermarks =
        info && info->pPrinterName ? LoadWatermarkList(info->pPrinterName) : WatermarkList{};
    for (size_t slot = 0; slot < kExceptionSlots; ++slot) {
        const ExceptionRecord record = working.exceptions[slot];
        if (record.kind == kNoException) {
            continue;
        }
        const auto* const found = std::ranges::find(kKindsOfException, record.kind, &KindOfException::kind);
        const KindOfException& kind = found != std::end(kKindsOfException) ? *found : kUnknownKind;
        const auto* const usage = std::ranges::find(kUsagesOfException, record.usage, &UsageOfException::usage);
        WCHAR overlay[sizeof(record.overlayName) / sizeof(WCHAR)];
        memcpy(overlay, record.overlayName, sizeof(overlay));  // the record's texts may lie at odd addresses
        const std::string overlayName = host::ToUtf8(UntilNul({overlay, std::size(overlay)}));
        table.rows.push_back(
            {NumberCell(static_cast<int64_t>(slot + 1)), NamedCell("kind", true, record.kind, kind.name),
             NamedCell("usage", true, record.usage, usage != std::end(kUsagesOfException) ? usage->name : ""),
             PagesCell(working.exceptionPages[slot]),
             NamedCell("paper", kind.hasPaper, record.paper,
                       record.paper == kPagesOwnPaper ? "the pages' own" : model.PaperOrCustomSizeName(record.paper)),
             NamedCell("medium", kind.hasMedium, record.media, model.MediumName(int64_t{record.media} - 1)),
             NamedCell("tray", kind.hasMedium, record.bin, model.TrayName(record.bin)),
             kind.hasOverlay ? TextCell(overlayName) : EmptyCell(),
             kind.hasOverlay ? FlagCell(record.underlay != 0) : EmptyCell(),
             NamedCell("watermark", kind.hasWatermark, record.watermark, NameWatermark(watermarks, record.watermark))});
    }
    return table;
}

Json TextsOf(const TextList& list) {
    Json texts = Json::array();
    for (const WCHAR* const text : list) {
        texts.push_back(host::ToUtf8(text));
    }
    return texts;
}

struct SourceText {
    const char* name;      // in JSON
    const char* sentence;  // behind "the lists are for"
};

// By DevModeSource.
constexpr SourceText kSourceTexts[] = {
    {"given", "the given device mode"},
    {"printer", "the printer's own device mode"},
    {"built", "the built default device mode: the printer has none of its own that the driver accepts"},
};

const SourceText& TextOf(DevModeSource source) {
    return kSourceTexts[static_cast<size_t>(source)];
}

}  // namespace

TextListReport ReportTextLists(const PrinterModel& model, const std::optional<VelmoraDevMode>& given) {
    const OwnedSnapshot snapshot = LoadPrinterSnapshot(model.Printer());
    WorkingDevMode working;
    working.Bind(model.Printer(), snapshot.Get());
    std::optional<VelmoraDevMode> input = given;  // the driver may repair it in place
    const DevModeSource source = working.Prepare(input ? &input->publicPart : nullptr, input ? sizeof(*input) : 0);
    if (!snapshot || !working.DevMode()) {
        throw CommandError("there is no memory for the printer's lists");
    }
    TextListReport report = {};
    if (given) {
        report.given = CheckDevMode(model, *given);
    }
    report.source = source;
    report.lists = Json::object();
    for (size_t id = 0; id < kTextListCount; ++id) {
        report.lists[host::ToUtf8(kTextListNames[id])] = TextsOf(working.lists[id]);
    }
    report.exceptions = ReportExceptions(working, model);
    return report;
}

std::vector<Table> ToTables(const TextListReport& report) {
    constexpr size_t kShown = 80;  // characters of a text, which leaves the line its other columns
    std::vector<Table> tables = {{"", "counts", {{"List", "list"}, {"Texts", "count"}}}};
    for (const auto& [name, texts] : report.lists.items()) {
        tables.front().rows.push_back({TextCell(name), NumberCell(static_cast<int64_t>(texts.size()))});
        Table table = {name, name, {{"No.", "number"}, {"Characters", "length"}, {"Text", "text"}}};
        for (const Json& entry : texts) {
            const std::u16string text = host::ToWide(entry.get<std::string>());
            const bool isLong = text.size() > kShown;
            table.rows.push_back({NumberCell(static_cast<int64_t>(table.rows.size() + 1)),
                                  NumberCell(static_cast<int64_t>(text.size())),
                                  TextCell(Escaped(text.substr(0, kShown)) + (isLong ? "…" : ""))});
        }
        tables.push_back(std::move(table));
    }
    tables.push_back(report.exceptions);
    return tables;
}

std::string DescribeSource(const TextListReport& report, const std::string& givenName) {
    std::string text;
    if (report.given && report.source != DevModeSource::kGiven) {
        text = DescribeRejection(*report.given, givenName) + "\n";
    }
    return text + "the lists are for " + TextOf(report.source).sentence;
}

Json ToJson(const TextListReport& report) {
    Json devMode = {{"source", TextOf(report.source).name}};
    if (report.given) {
        devMode["public"] = ToJson(report.given->publicPart);
        devMode["private"] = ToJson(report.given->privatePart);
    }
    Json members = {{"devMode", std::move(devMode)}, {"lists", report.lists}};
    members.update(ToJson(std::span(&report.exceptions, 1)));
    return members;
}

}  // namespace velmora
