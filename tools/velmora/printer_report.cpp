#include "tools/velmora/printer_report.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <span>
#include <utility>

#include "driver/devdesc/model_tables.h"
#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/escapes.h"
#include "tools/velmora/model_cells.h"
#include "tools/velmora/model_records.h"
#include "tools/velmora/printer_model.h"
#include "tools/velmora/spooler_client.h"
#include "tools/xpic/model_limits.h"

namespace velmora {
namespace {

std::u16string TextIn(const std::vector<BYTE>& bytes) {
    std::u16string text(bytes.size() / sizeof(WCHAR), 0);
    memcpy(text.data(), bytes.data(), text.size() * sizeof(WCHAR));
    return text;
}

Cell BinaryCell(const std::vector<BYTE>& bytes) {
    return TextCell(HexBytes(bytes));
}

Cell StringCell(const std::vector<BYTE>& bytes) {
    const std::u16string text = TextIn(bytes);
    const std::u16string_view shown = UntilNul(text);
    return {Quoted(shown), host::ToUtf8(shown)};
}

Cell MultiStringCell(const std::vector<BYTE>& bytes) {
    const std::u16string text = TextIn(bytes);
    Cell cell = {"", Json::array()};
    for (std::u16string_view rest = text; !rest.empty() && rest.front() != 0;) {
        const std::u16string_view part = UntilNul(rest);
        cell.text += (cell.text.empty() ? "" : ", ") + Quoted(part);
        cell.json.push_back(host::ToUtf8(part));
        rest.remove_prefix(std::min(part.size() + 1, rest.size()));
    }
    return cell;
}

Cell DwordCell(const std::vector<BYTE>& bytes) {
    DWORD value = 0;
    if (bytes.size() != sizeof(value)) {
        return BinaryCell(bytes);
    }
    memcpy(&value, bytes.data(), sizeof(value));
    return {std::to_string(value) + " (" + HexNumber(value) + ")", value};
}

struct ValueType {
    DWORD type;
    const char* name;
    Cell (*cell)(const std::vector<BYTE>& bytes);
};

constexpr ValueType kValueTypes[] = {
    {REG_SZ, "string", StringCell},
    {REG_BINARY, "binary", BinaryCell},
    {REG_DWORD, "dword", DwordCell},
    {REG_MULTI_SZ, "multi-string", MultiStringCell},
};

// Reads a value from its beginning to its end. What lies behind the end reads as nothing and makes the reading fail.
class ValueReader {
  public:
    explicit ValueReader(std::span<const BYTE> bytes) : rest_(bytes) {}

    bool IsAtEnd() const { return rest_.empty(); }
    bool HasFailed() const { return failed_; }
    template <class Number>
    Number Take() {
        Number number = 0;
        if (rest_.size() < sizeof(number)) {
            Fail();
            return 0;
        }
        memcpy(&number, rest_.data(), sizeof(number));
        rest_ = rest_.subspan(sizeof(number));
        return number;
    }
    // Up to and with its NUL.
    std::string TakeAnsi() {
        const auto nul = std::ranges::find(rest_, BYTE{0});
        if (nul == rest_.end()) {
            Fail();
            return {};
        }
        const std::string text(rest_.begin(), nul);
        rest_ = rest_.subspan(text.size() + 1);
        return Quoted(FromAnsi(text));
    }
    void Fail() {
        failed_ = true;
        rest_ = {};
    }

  private:
    std::span<const BYTE> rest_;
    bool failed_ = false;
};

using Rows = std::vector<std::vector<Cell>>;

Cell PaperCell(const PrinterModel& model, int paperId) {
    std::string name = model.PaperOrCustomSizeName(paperId);
    return name.empty() ? EmptyCell() : TextCell(std::move(name));
}

void ReadDeviceInfo(ValueReader& reader, const PrinterModel& model, Rows& rows) {
    const auto add = [&](const char* field, std::string shown, uint32_t value, std::string name, const char* meaning) {
        rows.push_back({TextCell(field),
                        {std::move(shown), value},
                        name.empty() ? EmptyCell() : TextCell(std::move(name)),
                        TextCell(meaning)});
    };
    constexpr uint32_t kNotApplicable = 0xFFFFFFFF;
    const auto trays = reader.Take<uint32_t>();
    add("installedOptions", HexNumber(trays), trays, ListCell(TrayOptionNames(trays & ~kAlwaysInstalled)).text,
        "tray options installed; a tray is offered where its mask shares a bit");
    const auto secondTray = reader.Take<uint32_t>();
    add("secondTray", secondTray == kNotApplicable ? HexNumber(secondTray) : std::to_string(secondTray), secondTray,
        secondTray == kNotApplicable ? "not applicable"
        : secondTray == 1            ? "installed"
        : secondTray == 0            ? "not installed"
                                     : "",
        "second paper tray");
    const auto options = reader.Take<uint32_t>();
    add("optionFlags", HexNumber(options), options,
        options == kNotApplicable ? "no duplex unit applicable" : ListCell(DeviceOptionNames(options)).text,
        "options installed");
    const auto key = reader.Take<uint32_t>();
    add("memoryKey", std::to_string(key), key,
        model->memoryTable ? std::to_string(LookupMemorySize(*model, static_cast<int32_t>(key))) + " MB" : "",
        "key of the installed memory");
}

void ReadPaperSizes(ValueReader& reader, const PrinterModel& model, Rows& rows) {
    while (!reader.IsAtEnd()) {
        const auto paperId = reader.Take<uint16_t>();
        const auto width = reader.Take<uint16_t>();
        const auto length = reader.Take<uint16_t>();
        rows.push_back({NumberCell(paperId), PaperCell(model, paperId), DecimalCell(width / 10.0, 1),
                        DecimalCell(length / 10.0, 1)});
    }
}

void ReadStandardPapers(ValueReader& reader, const PrinterModel& model, Rows& rows) {
    while (!reader.IsAtEnd()) {
        const auto paperId = reader.Take<uint16_t>();
        rows.push_back({NumberCell(paperId), PaperCell(model, paperId), NumberCell(reader.Take<uint16_t>())});
    }
}

void ReadPaperNames(ValueReader& reader, const PrinterModel& model, Rows& rows) {
    while (!reader.IsAtEnd()) {
        const auto paperId = reader.Take<uint16_t>();
        rows.push_back({NumberCell(paperId), PaperCell(model, paperId), TextCell(reader.TakeAnsi())});
    }
}

// A name a medium, and an empty one behind the last; media without a name for the renderer have an empty one too.
void ReadMediaTypes(ValueReader& reader, const PrinterModel& model, Rows& rows) {
    std::vector<std::string> names;
    while (!reader.IsAtEnd()) {
        names.push_back(reader.TakeAnsi());
    }
    if (names.empty() || names.back() != Quoted(u"")) {
        reader.Fail();
        return;
    }
    names.pop_back();
    for (const std::string& name : names) {
        const auto index = static_cast<int64_t>(rows.size());
        const std::string medium = model.MediumName(index);
        rows.push_back({NumberCell(index + 1), medium.empty() ? EmptyCell() : TextCell(medium), TextCell(name)});
    }
}

void ReadFontSubstitutions(ValueReader& reader, const PrinterModel&, Rows& rows) {
    const auto take = [&] {
        std::u16string text;
        for (auto c = reader.Take<uint16_t>(); c != 0; c = reader.Take<uint16_t>()) {
            text.push_back(static_cast<char16_t>(c));
        }
        return text;
    };
    for (std::u16string face = take(); !face.empty(); face = take()) {
        const std::u16string font = take();
        rows.push_back({TextCell(host::ToUtf8(face)), TextCell(host::ToUtf8(font))});
    }
    // The value may have been made larger than its table.
    while (!reader.IsAtEnd()) {
        if (reader.Take<uint16_t>() != 0) {
            reader.Fail();
        }
    }
}

// A value whose content has a structure: it makes a table of its own, titled by its name.
struct StructuredValue {
    const char* name;
    DWORD type;
    const char* key;
    std::vector<Column> columns;
    void (*read)(ValueReader& reader, const PrinterModel& model, Rows& rows);
};

const std::vector<StructuredValue>& StructuredValues() {
    static const std::vector<StructuredValue> values = {
        {"DeviceInfo",
         REG_BINARY,
         "deviceInfo",
         {{"Field", "field"}, {"Value", "value"}, {"Stands for", "valueName"}, {"Meaning", "meaning"}},
         ReadDeviceInfo},
        {"PaperSizes",
         REG_BINARY,
         "paperSizes",
         {{"ID", "paperId"}, {"Paper", "paper"}, {"Width mm", "widthMm"}, {"Length mm", "lengthMm"}},
         ReadPaperSizes},
        {"StdPapers",
         REG_BINARY,
         "standardPapers",
         {{"ID", "paperId"}, {"Paper", "paper"}, {"PCL code", "pclSizeCode"}},
         ReadStandardPapers},
        {"PaperNames",
         REG_BINARY,
         "paperNames",
         {{"ID", "paperId"}, {"Paper", "paper"}, {"Renderer", "rendererName"}},
         ReadPaperNames},
        {"MediaTypes",
         REG_BINARY,
         "mediaTypes",
         {{"No.", "number"}, {"Medium", "medium"}, {"Renderer", "rendererName"}},
         ReadMediaTypes},
        {"FontSubs",
         REG_MULTI_SZ,
         "fontSubstitutions",
         {{"System font", "systemFont"}, {"Printer font", "printerFont"}},
         ReadFontSubstitutions},
    };
    return values;
}

// No rows where the value's content isn't what its name says.
Table ReadStructure(const StructuredValue& structured, const PrinterValue& value, const PrinterModel& model) {
    Table table = {structured.name, structured.key, structured.columns};
    ValueReader reader(value.bytes);
    Rows rows;
    structured.read(reader, model, rows);
    if (reader.IsAtEnd() && !reader.HasFailed()) {
        table.rows = std::move(rows);
    }
    return table;
}

// The margins of a value, up to the record that ends them; none where there is no such record or they aren't whole.
Table ReadMargins(const PrinterValue& value, const PrinterModel& model) {
    std::vector<MarginRecord> records(value.bytes.size() / sizeof(MarginRecord));
    memcpy(records.data(), value.bytes.data(), records.size() * sizeof(MarginRecord));
    const bool isWhole =
        !records.empty() && records.size() * sizeof(MarginRecord) == value.bytes.size() &&
        std::ranges::find_if(records, [](const MarginRecord& record) { return EndsList(record); }) == records.end() - 1;
    return ReportMarginRecords("Margin, mm", "margins", model, isWhole ? records.data() : nullptr);
}

// The beginning of bytes that mean nothing to the workbench.
Cell BlobCell(const std::vector<BYTE>& bytes) {
    constexpr size_t kShown = 16;
    const std::span all(bytes);
    const Cell whole = BinaryCell(bytes);
    return bytes.size() <= kShown ? whole : Cell{HexBytes(all.first(kShown)) + " ...", whole.json};
}

// The tables of the values with a structure, in the order of the values; in `cell` what stands for one in the list.
void AddStructure(const PrinterValue& value, const PrinterModel& model, std::vector<Table>& tables, Cell& cell) {
    const auto isThis = [&](const StructuredValue& structured) {
        return structured.type == value.type && structured.name == value.name;
    };
    const auto structured = std::ranges::find_if(StructuredValues(), isThis);
    Table table;
    if (structured != StructuredValues().end()) {
        table = ReadStructure(*structured, value, model);
    } else if (value.type == REG_BINARY && value.name == "Margin") {
        table = ReadMargins(value, model);
    }
    if (!table.rows.empty()) {
        const size_t rows = table.rows.size();
        cell.text = std::to_string(rows) + (rows == 1 ? " row, below" : " rows, below");
        tables.push_back(std::move(table));
    }
}

const ValueType* FindValueType(DWORD type) {
    const auto* const known = std::ranges::find(kValueTypes, type, &ValueType::type);
    return known != std::end(kValueTypes) ? known : nullptr;
}

// A value by its type alone; empty for none.
Cell ValueCell(const PrinterValue* value) {
    if (!value) {
        return EmptyCell();
    }
    const ValueType* const known = FindValueType(value->type);
    return known ? known->cell(value->bytes) : BinaryCell(value->bytes);
}

}  // namespace

Table ReportPrinters() {
    Table table = {"", "", {{"Printer", "printer"}, {"Driver", "driver"}, {"Port", "port"}, {"Model", "modelFile"}}};
    const std::vector<DriverEntry> drivers = ListDrivers();
    for (const PrinterEntry& printer : ListPrinters()) {
        const auto driver = std::ranges::find_if(
            drivers, [&](const DriverEntry& entry) { return SameName(entry.name, printer.driver); });
        table.rows.push_back({TextCell(printer.name), TextCell(printer.driver), TextCell(printer.port),
                              driver != drivers.end() ? TextCell(driver->modelFile) : EmptyCell()});
    }
    return table;
}

std::vector<Table> ReportPrinterData(const std::string& printerName) {
    const OwnedPrinter printer = OpenNamedPrinter(printerName);
    const std::optional<PrinterModel> model = ModelOf(printerName);
    std::vector<Table> tables = {
        {"", "values", {{"Name", "name"}, {"Type", "type"}, {"Bytes", "bytes"}, {"Value", "value"}}}};
    for (const PrinterValue& value : ListPrinterData(printer.Get())) {
        const ValueType* const known = FindValueType(value.type);
        Cell cell = ValueCell(&value);
        if (value.type == REG_BINARY && value.name == "ColorData") {
            cell = BlobCell(value.bytes);
        } else if (model) {
            AddStructure(value, *model, tables, cell);
        }
        tables.front().rows.push_back({TextCell(value.name),
                                       TextCell(known ? known->name : "type " + std::to_string(value.type)),
                                       NumberCell(static_cast<int64_t>(value.bytes.size())), std::move(cell)});
    }
    return tables;
}

Table ReportDataDifferences(const std::string& printerName, const std::vector<PrinterValue>& before,
                            const std::vector<PrinterValue>& after) {
    Table differences = {"Printer data", "printerData", {{"Value", "name"}, {"Before", "before"}, {"After", "after"}}};
    const std::optional<PrinterModel> model = ModelOf(printerName);
    const auto find = [](const std::vector<PrinterValue>& values, const std::string& name) {
        const auto found = std::ranges::find(values, name, &PrinterValue::name);
        return found != values.end() ? &*found : nullptr;
    };
    std::vector<PrinterValue> either = after;
    std::ranges::copy_if(before, std::back_inserter(either),
                         [&](const PrinterValue& value) { return !find(after, value.name); });
    for (const PrinterValue& value : either) {
        const PrinterValue* const sides[] = {find(before, value.name), find(after, value.name)};
        if (sides[0] && sides[1] && sides[0]->type == sides[1]->type && sides[0]->bytes == sides[1]->bytes) {
            continue;
        }
        // By field, where the value is the installed options before and after.
        std::vector<Rows> fields;
        for (const PrinterValue* side : sides) {
            if (side && model && side->name == "DeviceInfo" && side->bytes.size() == sizeof(DeviceInfo)) {
                ValueReader reader(side->bytes);
                ReadDeviceInfo(reader, *model, fields.emplace_back());
            }
        }
        if (fields.size() != std::size(sides)) {
            differences.rows.push_back({TextCell(value.name), ValueCell(sides[0]), ValueCell(sides[1])});
            continue;
        }
        for (size_t i = 0; i < fields[0].size(); ++i) {
            const std::vector<Cell>& old = fields[0][i];
            const std::vector<Cell>& now = fields[1][i];
            if (old[1].json != now[1].json) {
                differences.rows.push_back({TextCell(value.name + "." + old[0].text), old[1], now[1]});
            }
        }
    }
    return differences;
}

}  // namespace velmora
