#include "tests/driver/devmode_differences.h"

#include <cstring>

#include "driver/devmode/devmode_fields.h"

namespace driver_test {
namespace {

using velmora::FieldDescriptor;
using velmora::FieldKind;

std::string ValueText(const FieldDescriptor& field, const void* part, size_t element) {
    const char* const place = static_cast<const char*>(part) + field.offset + element * field.stride;
    if (field.kind == FieldKind::kAnsiText) {
        return "\"" + std::string(place, strnlen(place, field.width)) + "\"";
    }
    if (field.kind == FieldKind::kWideText) {
        std::string text;
        for (size_t i = 0; i + 1 < field.width && (place[i] != 0 || place[i + 1] != 0); i += 2) {
            text += place[i + 1] == 0 ? place[i] : '?';
        }
        return "\"" + text + "\"";
    }
    return field.kind == FieldKind::kBytes ? "bytes" : std::to_string(ReadFieldNumber(field, part, element));
}

void ComparePart(std::span<const FieldDescriptor> fields, const void* expected, const void* actual, size_t size,
                 const char* partName, std::vector<std::string>* lines) {
    const auto* const a = static_cast<const char*>(expected);
    const auto* const b = static_cast<const char*>(actual);
    std::vector<bool> told(size);
    for (const FieldDescriptor& field : fields) {
        for (size_t element = 0; element < field.count; ++element) {
            const size_t start = field.offset + element * field.stride;
            if (memcmp(a + start, b + start, field.width) != 0) {
                lines->push_back(std::string(field.name) + "[" + std::to_string(element) + "] is " +
                                 ValueText(field, actual, element) + ", not " + ValueText(field, expected, element));
            }
            std::fill_n(told.begin() + static_cast<ptrdiff_t>(start), field.width, true);
        }
    }
    for (size_t i = 0; i < size; ++i) {
        if (!told[i] && a[i] != b[i]) {
            lines->push_back(std::string(partName) + " byte " + std::to_string(i));
        }
    }
}

}  // namespace

std::vector<std::string> Differences(const velmora::VelmoraDevMode& expected, const velmora::VelmoraDevMode& actual) {
    std::vector<std::string> lines;
    ComparePart(velmora::PublicFields(), &expected.publicPart, &actual.publicPart, sizeof(expected.publicPart),
                "public", &lines);
    ComparePart(velmora::PrivateFields(), &expected.privatePart, &actual.privatePart, sizeof(expected.privatePart),
                "private", &lines);
    return lines;
}

}  // namespace driver_test
