#include "driver/devmode/devmode_fields.h"

#include <cstring>

#include "driver/base/text.h"
#include "driver/devmode/devmode_field_table.h"

namespace velmora {
namespace {

void WritePartDefaults(std::span<const FieldDescriptor> fields, void* part) {
    for (const FieldDescriptor& field : fields) {
        char* place = static_cast<char*>(part) + field.offset;
        switch (field.kind) {
            case FieldKind::kUnsigned:
            case FieldKind::kSigned:
                for (size_t i = 0; i < field.count; ++i) {
                    WriteFieldNumber(field, part, i, field.defaultValue);
                }
                break;
            case FieldKind::kAnsiText:
                if (field.defaultText) {
                    CopyText(place, field.width, field.defaultText);
                }
                break;
            case FieldKind::kWideText:
                // Default texts are ASCII, the same in every code page.
                for (size_t i = 0; field.defaultText && field.defaultText[i] != 0; ++i) {
                    const WCHAR character = static_cast<WCHAR>(field.defaultText[i]);
                    memcpy(place + i * sizeof(character), &character, sizeof(character));
                }
                break;
            case FieldKind::kBytes:
                break;
        }
    }
}

template <class Number>
int64_t ReadNumber(const char* place) {
    Number number;
    memcpy(&number, place, sizeof(number));
    return number;
}

}  // namespace

std::span<const FieldDescriptor> PublicFields() {
    return field_table::kPublicFields;
}

std::span<const FieldDescriptor> PrivateFields() {
    return field_table::kPrivateFields;
}

int64_t ReadFieldNumber(const FieldDescriptor& field, const void* part, size_t index) {
    const char* const place = static_cast<const char*>(part) + field.offset + index * field.stride;
    const bool isSigned = field.kind == FieldKind::kSigned;
    switch (field.width) {
        case sizeof(uint8_t):
            return isSigned ? ReadNumber<int8_t>(place) : ReadNumber<uint8_t>(place);
        case sizeof(uint16_t):
            return isSigned ? ReadNumber<int16_t>(place) : ReadNumber<uint16_t>(place);
        default:
            return isSigned ? ReadNumber<int32_t>(place) : ReadNumber<uint32_t>(place);
    }
}

void WriteFieldNumber(const FieldDescriptor& field, void* part, size_t index, int64_t value) {
    memcpy(static_cast<char*>(part) + field.offset + index * field.stride, &value, field.width);
}

void WriteDevModeTemplate(VelmoraDevMode* devMode) {
    memset(devMode, 0, sizeof(*devMode));
    WritePartDefaults(field_table::kPublicFields, &devMode->publicPart);
    WritePartDefaults(field_table::kPrivateFields, &devMode->privatePart);
}

}  // namespace velmora
