#include "tools/velmora/printer_report.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/kernel/text.h"
#include "tools/velmora/escapes.h"
#include "tools/velmora/spooler_client.h"

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

}  // namespace

Table ReportPrinters() {
    Table table = {"", "", {{"Printer", "printer"}, {"Driver", "driver"}, {"Port", "port"}, {"Model", "dataFile"}}};
    const std::vector<DriverEntry> drivers = ListDrivers();
    for (const PrinterEntry& printer : ListPrinters()) {
        const auto driver = std::ranges::find_if(
            drivers, [&](const DriverEntry& entry) { return SameName(entry.name, printer.driver); });
        table.rows.push_back({TextCell(printer.name), TextCell(printer.driver), TextCell(printer.port),
                              driver != drivers.end() ? TextCell(driver->dataFile) : EmptyCell()});
    }
    return table;
}

Table ReportPrinterData(const std::string& printerName) {
    Table table = {"", "", {{"Name", "name"}, {"Type", "type"}, {"Bytes", "bytes"}, {"Value", "value"}}};
    const OwnedPrinter printer = OpenNamedPrinter(printerName);
    for (const PrinterValue& value : ListPrinterData(printer.Get())) {
        const auto* const known = std::ranges::find(kValueTypes, value.type, &ValueType::type);
        const bool isKnown = known != std::end(kValueTypes);
        table.rows.push_back({TextCell(value.name),
                              TextCell(isKnown ? known->name : "type " + std::to_string(value.type)),
                              NumberCell(static_cast<int64_t>(value.bytes.size())),
                              isKnown ? known->cell(value.bytes) : BinaryCell(value.bytes)});
    }
    return table;
}

}  // namespace velmora
