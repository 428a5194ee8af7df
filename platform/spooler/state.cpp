#include "platform/spooler/state.h"

#include <cstring>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "platform/kernel/text.h"
#include "platform/spooler/forms.h"

namespace host {
namespace {

using nlohmann::json;

constexpr char kHexDigits[] = "0123456789abcdef";

json BytesToJson(const std::vector<BYTE>& bytes) {
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const BYTE byte : bytes) {
        text += kHexDigits[byte >> 4];
        text += kHexDigits[byte & 15];
    }
    return text;
}

std::vector<BYTE> BytesFromJson(const json& saved) {
    const std::string& text = saved.get_ref<const std::string&>();
    if (text.size() % 2 != 0) {
        throw std::invalid_argument("an odd number of hexadecimal digits");
    }
    const auto digit = [](char c) {
        const char* const place = c ? strchr(kHexDigits, c) : nullptr;
        if (!place) {
            throw std::invalid_argument("bytes that aren't hexadecimal digits");
        }
        return static_cast<BYTE>(place - kHexDigits);
    };
    std::vector<BYTE> bytes;
    bytes.reserve(text.size() / 2);
    for (size_t i = 0; i < text.size(); i += 2) {
        bytes.push_back(static_cast<BYTE>(digit(text[i]) << 4 | digit(text[i + 1])));
    }
    return bytes;
}

json TextToJson(const std::u16string& text) {
    return ToUtf8(text);
}

std::u16string TextFromJson(const json& saved) {
    return ToWide(saved.get_ref<const std::string&>());
}

template <class Number>
Number NumberFromJson(const json& saved) {
    if (!saved.is_number_integer()) {
        throw std::invalid_argument("not a number");
    }
    const auto number = saved.get<int64_t>();
    if (number < std::numeric_limits<Number>::min() || number > std::numeric_limits<Number>::max()) {
        throw std::invalid_argument("a number beyond 32 bits");
    }
    return static_cast<Number>(number);
}

template <class Record, class Table>
void TextsToJson(json& saved, const Record& record, const Table& table) {
    for (const auto& field : table) {
        saved[field.key] = TextToJson(record.*field.text);
    }
}

template <class Record, class Table>
void TextsFromJson(const json& saved, Record& record, const Table& table) {
    for (const auto& field : table) {
        record.*field.text = TextFromJson(saved.at(field.key));
    }
}

bool IsWholeDeviceMode(const std::vector<BYTE>& bytes) {
    DEVMODEW head = {};
    if (bytes.size() < kLeastDeviceModeSize) {
        return false;
    }
    memcpy(&head, bytes.data(), kLeastDeviceModeSize);
    return head.dmSize >= kLeastDeviceModeSize && bytes.size() == size_t{head.dmSize} + head.dmDriverExtra;
}

json Save(const std::shared_ptr<Printer>& printer) {
    json saved = json::object();
    TextsToJson(saved, *printer, kPrinterTexts);
    for (const auto& field : kPrinterNumbers) {
        saved[field.key] = (*printer).*field.number;
    }
    saved["deviceMode"] = BytesToJson(printer->deviceMode);
    json& data = saved["data"] = json::array();
    for (const DataValue& value : printer->data) {
        data.push_back({{"name", TextToJson(value.name)}, {"type", value.type}, {"bytes", BytesToJson(value.bytes)}});
    }
    return saved;
}

void Load(const json& saved, std::shared_ptr<Printer>& printer) {
    printer = std::make_shared<Printer>();
    TextsFromJson(saved, *printer, kPrinterTexts);
    for (const auto& field : kPrinterNumbers) {
        (*printer).*field.number = NumberFromJson<DWORD>(saved.at(field.key));
    }
    printer->deviceMode = BytesFromJson(saved.at("deviceMode"));
    if (!printer->deviceMode.empty() && !IsWholeDeviceMode(printer->deviceMode)) {
        throw std::invalid_argument("a device mode whose size isn't what it says");
    }
    for (const json& value : saved.at("data")) {
        printer->data.push_back({TextFromJson(value.at("name")), NumberFromJson<DWORD>(value.at("type")),
                                 BytesFromJson(value.at("bytes"))});
    }
}

json Save(const Driver& driver) {
    json saved = {{"version", driver.version}};
    TextsToJson(saved, driver, kDriverTexts);
    json& files = saved["dependentFiles"] = json::array();
    for (const std::u16string& file : driver.dependentFiles) {
        files.push_back(TextToJson(file));
    }
    return saved;
}

void Load(const json& saved, Driver& driver) {
    driver.version = NumberFromJson<DWORD>(saved.at("version"));
    TextsFromJson(saved, driver, kDriverTexts);
    for (const json& file : saved.at("dependentFiles")) {
        driver.dependentFiles.push_back(TextFromJson(file));
    }
}

json Save(const Form& form) {
    const RECTL& area = form.imageableArea;
    return {{"name", TextToJson(form.name)},
            {"flags", form.flags},
            {"size", {form.size.cx, form.size.cy}},
            {"imageableArea", {area.left, area.top, area.right, area.bottom}}};
}

void Load(const json& saved, Form& form) {
    const auto number = [&](const char* key, size_t index) { return NumberFromJson<LONG>(saved.at(key).at(index)); };
    form.name = TextFromJson(saved.at("name"));
    form.flags = NumberFromJson<DWORD>(saved.at("flags"));
    form.size = {number("size", 0), number("size", 1)};
    form.imageableArea = {number("imageableArea", 0), number("imageableArea", 1), number("imageableArea", 2),
                          number("imageableArea", 3)};
}

json Save(const PrintProcessor& processor) {
    return {{"name", TextToJson(processor.name)}, {"file", TextToJson(processor.file)}};
}

void Load(const json& saved, PrintProcessor& processor) {
    processor = {TextFromJson(saved.at("name")), TextFromJson(saved.at("file"))};
}

// The processor that every machine has; its file is part of the system.
std::vector<PrintProcessor> BuiltInPrintProcessors() {
    return {{u"winprint", u"winprint.dll"}};
}

// One list of the state as a section of the store: an array with one element a record.
template <class Record>
StoreSection ListSection(const char* name, std::vector<Record> SpoolerState::*list, std::vector<Record> (*fresh)()) {
    return {name, [=] { Spooler().*list = fresh ? fresh() : std::vector<Record>(); },
            [=] {
                json saved = json::array();
                for (const Record& record : Spooler().*list) {
                    saved.push_back(Save(record));
                }
                return saved;
            },
            [=](const json& saved) {
                if (!saved.is_array()) {
                    throw std::invalid_argument(std::string(name) + ": not an array");
                }
                std::vector<Record> loaded;
                for (const json& element : saved) {
                    try {
                        Load(element, loaded.emplace_back());
                    } catch (const std::exception& error) {
                        throw std::invalid_argument(std::string(name) + " " + std::to_string(loaded.size()) + ": " +
                                                    error.what());
                    }
                }
                Spooler().*list = std::move(loaded);
            }};
}

[[maybe_unused]] const bool kRegistered = [] {
    RegisterSection(ListSection<std::shared_ptr<Printer>>("printers", &SpoolerState::printers, nullptr));
    RegisterSection(ListSection<Driver>("drivers", &SpoolerState::drivers, nullptr));
    RegisterSection(ListSection<Form>("forms", &SpoolerState::forms, BuiltInForms));
    RegisterSection(ListSection<PrintProcessor>("printProcessors", &SpoolerState::processors, BuiltInPrintProcessors));
    return true;
}();

// The record of this name in a list, or null.
template <class Record>
Record* FindByName(std::vector<Record>& list, std::u16string_view name) {
    for (Record& record : list) {
        if (EqualsIgnoringCase(record.name, name)) {
            return &record;
        }
    }
    return nullptr;
}

}  // namespace

SpoolerState& Spooler() {
    // Never destroyed: programs may call while the process ends.
    static SpoolerState& state = *new SpoolerState;
    return state;
}

std::shared_ptr<Printer> FindPrinter(std::u16string_view name) {
    for (const auto& printer : Spooler().printers) {
        if (EqualsIgnoringCase(printer->name, name)) {
            return printer;
        }
    }
    return nullptr;
}

Driver* FindDriver(std::u16string_view name) {
    return FindByName(Spooler().drivers, name);
}

Form* FindForm(std::u16string_view name) {
    return FindByName(Spooler().forms, name);
}

PrintProcessor* FindPrintProcessor(std::u16string_view name) {
    return FindByName(Spooler().processors, name);
}

}  // namespace host
