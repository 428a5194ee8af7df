#include "tools/velmora/devmode_assignment.h"

#include <windows.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <optional>

#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/devmode_values.h"
#include "tools/velmora/escapes.h"
#include "tools/velmora/field_report.h"
#include "tools/xpic/diagnostic.h"

namespace velmora {
namespace {

// An assignment as it is carried out; its texts are for messages.
struct Target {
    std::string name;  // as it was given
    std::string_view value;
    VelmoraDevMode* devMode;
    std::vector<std::string>* notes;

    [[noreturn]] void Refuse(const std::string& expected) const {
        throw UsageError(name + ": found \"" + std::string(value) + "\", expected " + expected);
    }
    void Note(const std::string& note) const { notes->push_back(name + ": " + note); }
};

// Decimal, or hexadecimal behind "0x"; a minus before either.
std::optional<int64_t> ParseNumber(std::string_view text) {
    const bool isNegative = text.starts_with('-');
    text.remove_prefix(isNegative ? 1 : 0);
    const bool isHex = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(isHex ? 2 : 0);
    uint32_t number = 0;  // no field has more bits
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, isHex ? 16 : 10);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return isNegative ? -static_cast<int64_t>(number) : static_cast<int64_t>(number);
}

// A name's index in brackets: "colorAdjust[2]" gives 2 and leaves "colorAdjust".
std::optional<size_t> TakeIndex(std::string_view* name) {
    const size_t bracket = name->rfind('[');
    if (bracket == name->npos || !name->ends_with(']')) {
        return std::nullopt;
    }
    const auto index = ParseNumber(name->substr(bracket + 1, name->size() - bracket - 2));
    if (!index || *index < 0) {
        return std::nullopt;
    }
    *name = name->substr(0, bracket);
    return static_cast<size_t>(*index);
}

std::vector<BYTE> ParseBytes(const Target& target, size_t most) {
    std::string digits;
    for (const char c : target.value.starts_with("0x") ? target.value.substr(2) : target.value) {
        digits += c == ' ' ? "" : std::string(1, c);
    }
    std::vector<BYTE> bytes;
    for (size_t i = 0; i + 1 < digits.size(); i += 2) {
        BYTE byte = 0;
        const auto [end, error] = std::from_chars(&digits[i], &digits[i] + 2, byte, 16);
        if (error != std::errc() || end != &digits[i] + 2) {
            break;
        }
        bytes.push_back(byte);
    }
    if (bytes.empty() || bytes.size() * 2 != digits.size() || bytes.size() > most) {
        target.Refuse((most == 1 ? "1 byte" : "1 to " + std::to_string(most) + " bytes") +
                      " in hexadecimal, two digits each, such as 0x41");
    }
    return bytes;
}

void AssignBytes(const Target& target, const DevModePart& part, size_t offset) {
    if (offset >= part.size) {
        throw UsageError(target.name + ": the " + part.name + " part has bytes 0 to " + std::to_string(part.size - 1));
    }
    const std::vector<BYTE> bytes = ParseBytes(target, part.size - offset);
    std::ranges::copy(bytes, part.In(*target.devMode) + offset);
}

std::string NamesOf(const FieldDescriptor& field) {
    std::string names;
    for (const ValueName& known : field.names) {
        names += std::string(names.empty() ? ", or one of \"" : ", \"") + known.name + "\"";
    }
    return names;
}

void AssignNumber(const Target& target, const DevModeElement& element) {
    const FieldDescriptor& field = *element.field;
    const bool isSigned = field.kind == FieldKind::kSigned;
    const unsigned bits = 8u * field.width;
    const int64_t low = isSigned ? -(int64_t{1} << (bits - 1)) : 0;
    const int64_t high = (int64_t{1} << (isSigned ? bits - 1 : bits)) - 1;
    const auto named = std::ranges::find(field.names, target.value, &ValueName::name);
    const std::optional<int64_t> number =
        named != field.names.end() ? std::optional(named->value) : ParseNumber(target.value);
    if (!number || *number < low || *number > high) {
        target.Refuse("a number from " + std::to_string(low) + " to " + std::to_string(high) + NamesOf(field));
    }
    WriteFieldNumber(field, element.part->In(*target.devMode), element.index, *number);
    if (!field.Accepts(*number)) {
        target.Note("the driver doesn't accept " + std::to_string(*number) + ", only " + ValidValues(field));
    }
}

std::string EncodeAnsi(const Target& target, const std::u16string& text) {
    std::string bytes;
    // A pair of surrogates is in no ANSI code page.
    for (const char16_t c : text) {
        char encoded[2];
        BOOL isMissing = FALSE;
        const int size =
            WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, &c, 1, encoded, sizeof(encoded), nullptr, &isMissing);
        if (size == 0 || isMissing) {
            target.Refuse("characters of the machine's code page " + std::to_string(GetACP()) + ", which has no " +
                          Quoted({&c, 1}) + " (another --language has another code page)");
        }
        bytes.append(encoded, static_cast<size_t>(size));
    }
    return bytes;
}

void AssignText(const Target& target, const DevModeElement& element) {
    const FieldDescriptor& field = *element.field;
    bool isUtf8 = true;
    const std::u16string text = host::ToWide(target.value, &isUtf8);
    if (!isUtf8) {
        target.Refuse("a text in UTF-8");
    }
    const bool isWide = field.kind == FieldKind::kWideText;
    const std::string ansi = isWide ? std::string() : EncodeAnsi(target, text);
    const void* const bytes = isWide ? static_cast<const void*>(text.data()) : ansi.data();
    const size_t size = isWide ? text.size() * sizeof(char16_t) : ansi.size();
    if (size > field.width) {
        const size_t unit = isWide ? sizeof(char16_t) : 1;
        throw UsageError(target.name + ": found a text of " + std::to_string(size / unit) +
                         (isWide ? " UTF-16 characters" : " bytes in the machine's code page") + ", at most " +
                         std::to_string(field.width / unit) + " fit, and the NUL behind them only with " +
                         std::to_string(field.width / unit - 1));
    }
    BYTE* const place = element.part->In(*target.devMode) + element.Offset();
    memset(place, 0, field.width);
    memcpy(place, bytes, size);
    if (size == field.width) {
        target.Note("the text fills the field, no NUL ends it");
    }
}

void AssignArea(const Target& target, const DevModeElement& element) {
    const std::vector<BYTE> bytes = ParseBytes(target, element.field->width);
    BYTE* const place = element.part->In(*target.devMode) + element.Offset();
    memset(place, 0, element.field->width);
    std::ranges::copy(bytes, place);
}

std::optional<DevModeElement> FindField(std::string_view name) {
    for (const DevModePart& part : DevModeParts()) {
        const auto field = std::ranges::find(part.fields, name, &FieldDescriptor::name);
        if (field != part.fields.end()) {
            return DevModeElement{&part, &*field, 0};
        }
    }
    return std::nullopt;
}

[[noreturn]] void RefuseName(const std::string& name, std::string_view withoutIndex) {
    std::vector<std::string_view> names;
    for (const DevModePart& part : DevModeParts()) {
        for (const FieldDescriptor& field : part.fields) {
            names.emplace_back(field.name);
        }
    }
    const std::string_view nearest = NearestName(withoutIndex, names);
    throw UsageError("the device mode has no field \"" + name + "\"; " +
                     (nearest.empty() ? "velmora fields lists them, and bytes without a field are public[OFFSET] and "
                                        "private[OFFSET]"
                                      : "nearest \"" + std::string(nearest) + "\""));
}

// The element that a name means.
DevModeElement FindElement(const std::string& name) {
    // Some names of fields end with an index themselves.
    std::string_view withoutIndex = name;
    std::optional<size_t> index;
    std::optional<DevModeElement> element = FindField(name);
    if (!element) {
        index = TakeIndex(&withoutIndex);
        element = FindField(withoutIndex);
    }
    if (!element) {
        RefuseName(name, withoutIndex);
    }
    const size_t count = element->field->count;
    if (count > 1 && !index) {
        throw UsageError(name + " has " + std::to_string(count) + " elements; expected one of " + name + "[0] to " +
                         name + "[" + std::to_string(count - 1) + "]");
    }
    if (index && *index >= count) {
        throw UsageError(name + ": " + std::string(withoutIndex) +
                         (count > 1 ? " has elements 0 to " + std::to_string(count - 1) : " is a single value"));
    }
    element->index = index.value_or(0);
    return *element;
}

}  // namespace

void Assign(std::string_view assignment, VelmoraDevMode* devMode, std::vector<std::string>* notes) {
    const size_t equals = assignment.find('=');
    if (equals == assignment.npos) {
        throw UsageError("\"" + std::string(assignment) + "\": expected FIELD=VALUE, such as dmScale=50");
    }
    const Target target = {std::string(assignment.substr(0, equals)), assignment.substr(equals + 1), devMode, notes};
    std::string_view name = target.name;
    if (const std::optional<size_t> offset = TakeIndex(&name)) {
        for (const DevModePart& part : DevModeParts()) {
            if (name == part.name) {
                AssignBytes(target, part, *offset);
                return;
            }
        }
    }
    const DevModeElement element = FindElement(target.name);
    if (IsNumber(*element.field)) {
        AssignNumber(target, element);
    } else if (IsText(*element.field)) {
        AssignText(target, element);
    } else {
        AssignArea(target, element);
    }
}

}  // namespace velmora
