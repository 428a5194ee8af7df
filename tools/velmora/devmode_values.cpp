#include "tools/velmora/devmode_values.h"

#include <algorithm>
#include <cstring>

#include "tools/velmora/escapes.h"

namespace velmora {
namespace {

std::string NameNumber(const FieldDescriptor& field, int64_t number,
                       const std::function<std::string(int64_t number)>& nameOf) {
    const auto known = std::ranges::find(field.names, number, &ValueName::value);
    if (known != field.names.end()) {
        return known->name;
    }
    return nameOf ? nameOf(number) : std::string();
}

std::basic_string<WCHAR> ReadText(const FieldDescriptor& field, const BYTE* place) {
    if (field.kind == FieldKind::kAnsiText) {
        return FromAnsi({reinterpret_cast<const char*>(place), field.width});
    }
    std::basic_string<WCHAR> text(field.width / sizeof(WCHAR), 0);
    memcpy(text.data(), place, field.width);
    return std::basic_string<WCHAR>(UntilNul(text));
}

}  // namespace

std::span<const DevModePart> DevModeParts() {
    static const DevModePart kParts[] = {
        {"public", offsetof(VelmoraDevMode, publicPart), kPublicDevModeSize, PublicFields()},
        {"private", offsetof(VelmoraDevMode, privatePart), kPrivateDevModeSize, PrivateFields()},
    };
    return kParts;
}

std::string DevModeElement::Name() const {
    return field->count == 1 ? field->name : std::string(field->name) + "[" + std::to_string(index) + "]";
}

bool IsNumber(const FieldDescriptor& field) {
    return field.kind == FieldKind::kUnsigned || field.kind == FieldKind::kSigned;
}

bool IsText(const FieldDescriptor& field) {
    return field.kind == FieldKind::kWideText || field.kind == FieldKind::kAnsiText;
}

std::string ByteRangeName(const DevModePart& part, size_t offset, size_t size) {
    const std::string first = std::string(part.name) + "[" + std::to_string(offset);
    return size == 1 ? first + "]" : first + ".." + std::to_string(offset + size - 1) + "]";
}

ElementValue ReadRecordElement(const FieldDescriptor& field, const BYTE* record, size_t index,
                               const std::function<std::string(int64_t number)>& nameOf) {
    if (IsNumber(field)) {
        const int64_t number = ReadFieldNumber(field, record, index);
        const std::string name = NameNumber(field, number, nameOf);
        return name.empty() ? ElementValue{std::to_string(number), number, nullptr}
                            : ElementValue{std::to_string(number) + " (" + name + ")", number, name};
    }
    const BYTE* const place = record + field.offset + index * field.stride;
    if (IsText(field)) {
        const std::basic_string<WCHAR> text = ReadText(field, place);
        return {Quoted(text), ToUtf8(text), nullptr};
    }
    const std::span bytes(place, field.width);
    const bool isZero = std::ranges::all_of(bytes, [](BYTE byte) { return byte == 0; });
    const std::string hex = isZero ? std::string() : HexBytes(bytes);
    return {isZero ? std::to_string(field.width) + " bytes, all 0" : hex, hex, nullptr};
}

ElementValue ReadElement(const DevModeElement& element, const VelmoraDevMode& devMode, const NumberNames& names) {
    return ReadRecordElement(*element.field, element.part->In(devMode), element.index,
                             [&](int64_t number) { return names ? names(element, devMode, number) : std::string(); });
}

}  // namespace velmora
