#include "driver/devmode/field_check.h"

#include <cstring>

namespace velmora {

WCHAR LastCharacter(const FieldDescriptor& text, const void* part) {
    const char* const end = static_cast<const char*>(part) + text.offset + text.width;
    if (text.kind == FieldKind::kAnsiText) {
        return static_cast<unsigned char>(end[-1]);
    }
    WCHAR last;
    memcpy(&last, end - sizeof(last), sizeof(last));
    return last;
}

void ClearText(const FieldDescriptor& text, void* part) {
    memset(static_cast<char*>(part) + text.offset, 0, text.width);
}

bool CheckField(const FieldDescriptor& field, void* part, int64_t repair, ValidationReport* report) {
    if (field.kind == FieldKind::kWideText || field.kind == FieldKind::kAnsiText) {
        if (LastCharacter(field, part) == 0) {
            return true;
        }
        ClearText(field, part);
        return report->CountRepair(field.name);
    }
    for (size_t i = 0; i < field.count; ++i) {
        if (!field.Accepts(ReadFieldNumber(field, part, i))) {
            WriteFieldNumber(field, part, i, repair);
            if (!report->CountRepair(field.name)) {
                return false;
            }
        }
    }
    return true;
}

bool IsAccepted(const FieldDescriptor& field, const void* part) {
    return field.Accepts(ReadFieldNumber(field, part, 0));
}

}  // namespace velmora
