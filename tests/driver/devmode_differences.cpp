#include "tests/driver/devmode_differences.h"

#include <cstring>

#include "driver/devmode/devmode_fields.h"

namespace driver_test {
namespace {

using velmora::FieldDescriptor;
using velmora::FieldKind;

std::string ValueText(const FieldDescriptor& field, const char* part, size_t element) {
    if (field.kind == FieldKind::kUnsigned || field.kind == FieldKind::kSigned) {
        return std::to_string(ReadFieldNumber(field, part, element));
    }
    std::string text;  // of texts, the characters that are printable
    for (const char c : std::string(part + field.offset + element * field.stride, field.width)) {
        text += c >= ' ' && c <= '~' ? std::string(1, c) : "";
    }
    return "\"" + text + "\"";
}

template <class Part>
void Compare(std::span<const FieldDescriptor> fields, const Part& expected, const Part& actual,
             std::vector<std::string>* lines) {
    const auto* const a = reinterpret_cast<const char*>(&expected);
    const auto* const b = reinterpret_cast<const char*>(&actual);
    std::vector<bool> told(sizeof(Part));
    for (const FieldDescriptor& field : fields) {
        for (size_t element = 0; element < field.count; ++element) {
            const size_t start = field.offset + element * field.stride;
            if (memcmp(a + start, b + start, field.width) != 0) {
                lines->push_back(std::string(field.name) + "[" + std::to_string(element) + "] is " +
                                 ValueText(field, b, element) + ", not " + ValueText(field, a, element));
            }
            std::fill_n(told.begin() + static_cast<ptrdiff_t>(start), field.width, true);
        }
    }
    for (size_t i = 0; i < sizeof(Part); ++i) {
        if (!told[i] && a[i] != b[i]) {
            lines->push_back("byte " + std::to_string(i));
        }
    }
}

}  // namespace

std::vector<std::string> Differences(const velmora::VelmoraDevMode& expected, const velmora::VelmoraDevMode& actual) {
    std::vector<std::string> lines;
    Compare(velmora::PublicFields(), expected.publicPart, actual.publicPart, &lines);
    Compare(velmora::PrivateFields(), expected.privatePart, actual.privatePart, &lines);
    return lines;
}

}  // namespace driver_test
