#include "driver/devmode/devmode_fields.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace velmora {
namespace {

// Bytes of a part that no field holds.
size_t CheckPart(std::span<const FieldDescriptor> fields, size_t size) {
    std::vector<bool> taken(size);
    std::set<std::string> names;
    size_t previous = 0;
    for (const FieldDescriptor& field : fields) {
        SCOPED_TRACE(field.name);
        EXPECT_TRUE(names.insert(field.name).second);
        EXPECT_GE(field.count, 1);
        EXPECT_GE(field.width, 1);
        EXPECT_GE(field.stride, field.width);
        const bool isNumber = field.kind == FieldKind::kUnsigned || field.kind == FieldKind::kSigned;
        EXPECT_TRUE(!isNumber || field.width == 1 || field.width == 2 || field.width == 4) << field.width;
        EXPECT_LE(field.offset + (field.count - 1) * field.stride + field.width, static_cast<int>(size));
        EXPECT_NE(field.meaning[0], 0);
        if (isNumber) {
            // The number fits, and the value in the table is the one that is stored.
            std::vector<char> part(size);
            WriteFieldNumber(field, part.data(), field.count - 1u, field.defaultValue);
            const int64_t stored = ReadFieldNumber(field, part.data(), field.count - 1u);
            EXPECT_EQ(stored, field.defaultValue);
            // What the model or another field may change need not be accepted as it stands.
            EXPECT_TRUE(field.Accepts(stored) || field.defaultNote || field.validNote) << stored;
        }
        EXPECT_GE(field.offset, previous);
        previous = field.offset;
        if (field.name == std::string("watermarkFile")) {
            // The file path of an image watermark takes the place of a text watermark's text and font.
            EXPECT_EQ(field.offset + field.width, offsetof(PrivateDevMode, watermarkFontSize));
            continue;
        }
        for (size_t i = 0; i < field.count; ++i) {
            for (size_t byte = 0; byte < field.width; ++byte) {
                const size_t place = field.offset + i * field.stride + byte;
                EXPECT_FALSE(taken[place]) << place;
                taken[place] = true;
            }
        }
    }
    size_t gaps = 0;
    for (const bool isTaken : taken) {
        gaps += isTaken ? 0 : 1;
    }
    return gaps;
}

TEST(DevModeFields, LieInsideTheirPartsInOrderAndApart) {
    EXPECT_EQ(CheckPart(PublicFields(), sizeof(DEVMODEW)), 0u);
    CheckPart(PrivateFields(), sizeof(PrivateDevMode));
}

}  // namespace
}  // namespace velmora
