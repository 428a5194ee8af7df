// The format of rendered watermarks, read back and damaged.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "tools/wm/watermark_file.h"

namespace velmora {
namespace {

using Bytes = std::vector<uint8_t>;

Bytes FileOf(uint32_t width, uint32_t height, DotBits dotBits, const Bytes& rows) {
    const WatermarkHeader header = {kWatermarkMagic, sizeof(header), kPackBits, width, height, 600, dotBits, 0,
                                    0x563412};
    Bytes file(sizeof(header));
    memcpy(file.data(), &header, sizeof(header));
    for (size_t at = 0; at < rows.size(); at += RowBytes(header)) {
        PackRow(std::span(rows).subspan(at, RowBytes(header)), &file);
    }
    return file;
}

TEST(WatermarkFile, IsReadAsItWasWritten) {
    const char* fault = nullptr;
    std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same bytes each time
    // Runs, their ends and what lies between them, around the longest that one count stands for.
    for (const uint32_t width : {1u, 2u, 3u, 127u, 128u, 129u, 130u, 257u, 1000u}) {
        for (const uint32_t values : {1u, 2u, 256u}) {
            Bytes rows(width * 3 * 2);
            for (uint8_t& byte : rows) {
                byte = static_cast<uint8_t>(random() % values);
            }
            const auto picture = ReadWatermarkFile(FileOf(width, 2, kTrueColor, rows), &fault);
            ASSERT_TRUE(picture) << fault;
            EXPECT_EQ(picture->rows, rows) << width << " " << values;
        }
    }
    EXPECT_EQ(FileOf(1280, 1, kGray, Bytes(1280, 7)).size(), sizeof(WatermarkHeader) + 20);

    const auto inked = ReadWatermarkFile(FileOf(9, 1, kInkOrPaper, {0x40, 0x80}), &fault);
    ASSERT_TRUE(inked) << fault;
    EXPECT_EQ(inked->ColorAt(0, 0), kPaper);
    EXPECT_EQ(inked->ColorAt(1, 0), 0x563412u);
    EXPECT_EQ(inked->ColorAt(8, 0), 0x563412u);
    const auto colored = ReadWatermarkFile(FileOf(2, 1, kTrueColor, {1, 2, 3, 4, 5, 6}), &fault);
    ASSERT_TRUE(colored) << fault;
    EXPECT_EQ(colored->ColorAt(1, 0), RGB(4, 5, 6));
}

TEST(WatermarkFile, ThatIsDamagedIsRefused) {
    const Bytes whole = FileOf(5, 2, kGray, {1, 1, 1, 1, 2, 9, 8, 7, 6, 5});
    const char* fault = nullptr;
    ASSERT_TRUE(ReadWatermarkFile(whole, &fault));
    for (size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(ReadWatermarkFile(std::span(whole).first(length), &fault)) << length;
        EXPECT_NE(fault, nullptr);
    }
    Bytes longer = whole;
    longer.push_back(0);
    EXPECT_FALSE(ReadWatermarkFile(longer, &fault));
    const struct {
        size_t place;
        uint8_t value;
    } damages[] = {{0, 'x'}, {4, 27}, {5, 255},   {6, 2},  {8, 0},     {8, 6},    {11, 1},
                   {12, 0},  {12, 3}, {15, 0x80}, {20, 2}, {28, 0x80}, {28, 251}, {30, 5}};
    for (const auto& damage : damages) {
        Bytes damaged = whole;
        damaged[damage.place] = damage.value;
        EXPECT_FALSE(ReadWatermarkFile(damaged, &fault)) << damage.place;
    }
}

}  // namespace
}  // namespace velmora
