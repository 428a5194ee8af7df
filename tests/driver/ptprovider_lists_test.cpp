// The lists of texts that print tickets carry: Base64, lines, slices of the command blob.
#include <numeric>

#include "driver/ptprovider/base64.h"
#include "driver/ptprovider/command_lists.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

std::string Encode(const std::string& bytes, size_t capacity) {
    std::string output(capacity + 1, '#');
    if (!Base64Encode(reinterpret_cast<const BYTE*>(bytes.data()), bytes.size(), output.data(), &capacity)) {
        return "fails " + std::to_string(capacity);
    }
    EXPECT_EQ(output[capacity], '#');
    return output.substr(0, capacity);
}

TEST(Base64, TestVectorsAndCapacities) {
    const struct {
        std::string bytes;
        size_t capacity;
        const char* expected;
    } cases[] = {
        {"f", 4, "Zg=="},         {"fo", 4, "Zm8="},           {"foo", 4, "Zm9v"},          {"foob", 8, "Zm9vYg=="},
        {"fooba", 9, "Zm9vYmE="}, {"foobar", 100, "Zm9vYmFy"}, {"\xFB\xEF\xFF", 4, "++//"}, {"foob", 7, "fails 0"},
        {"", 4, "fails 0"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Encode(c.bytes, c.capacity), c.expected) << c.bytes;
    }
    std::string all(256, '\0');
    std::iota(all.begin(), all.end(), '\0');
    const std::string encoded = Encode(all, Base64Size(all.size()));
    EXPECT_EQ(encoded.substr(0, 8) + encoded.substr(336), "AAECAwQF/P3+/w==");

    size_t capacity = 4;
    char output[4];
    const BYTE byte = 0;
    EXPECT_FALSE(Base64Encode(&byte, 1, output, nullptr));
    EXPECT_FALSE(Base64Encode(&byte, 1, nullptr, &capacity));
    EXPECT_EQ(capacity, 0u);
    capacity = 4;
    EXPECT_FALSE(Base64Encode(nullptr, 1, output, &capacity));
    EXPECT_EQ(capacity, 0u);
}

Texts TextsOf(const TextList& list) {
    Texts texts;
    for (const WCHAR* text : list) {
        texts.push_back(ToText(text));
    }
    return texts;
}

class CommandLists : public MachineTest {
  protected:
    void SetUp() override { Install(SmallModel(kPdlPcl6).Build()); }

    OwnedSnapshot Bind(uint16_t pdlType, const std::string& blob, uint32_t optionFlags = 0) {
        DescriptionBuilder builder = SmallModel(pdlType);
        builder.blob = blob;
        builder.fields.defaultOptionFlags = optionFlags;
        Describe(builder);
        return LoadPrinterSnapshot(Printer());
    }
};

TEST_F(CommandLists, TextsAndLines) {
    const struct {
        std::string buffer;
        Texts texts;
        Texts lines;
    } cases[] = {
        {"", {}, {}},
        {std::string("\0\0", 2), {}, {}},
        {std::string("one\0\0two", 8), {"one", "two"}, {"one", "two"}},
        {"a\r\nb\r\n", {"a\r\nb\r\n"}, {"a", "b"}},
        {"a\n\rb\n\r", {"a\n\rb\n\r"}, {"a", "b"}},
        {"a\nb", {"a\nb"}, {"a", "b"}},
        {"\n\r\n\n\r\na", {"\n\r\n\n\r\na"}, {"a"}},
        {"a\r\n\rb", {"a\r\n\rb"}, {"a", "\rb"}},
        {"a\rb", {"a\rb"}, {"a\rb"}},
        {std::string("a\r\0\nb\x80", 6), {"a\r", "\nb\u20AC"}, {"a\r", "b\u20AC"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.buffer);
        TextList texts;
        AppendTexts(c.buffer.data(), c.buffer.size(), &texts);
        EXPECT_EQ(TextsOf(texts), c.texts);
        TextList lines;
        AppendTextLines(c.buffer.data(), c.buffer.size(), &lines);
        EXPECT_EQ(TextsOf(lines), c.lines);
    }
}

TEST_F(CommandLists, SlicesEndWithTheBlob) {
    const struct {
        uint16_t pdlType;
        size_t start;
        size_t length;
        Texts expected;
    } cases[] = {
        {kPdlPostScript, 0, 10, {"abc", "defg"}},
        {kPdlPostScript, 6, 0xFFFF, {"efg"}},
        {kPdlPostScript, 2, 1, {"c"}},
        {kPdlPostScript, 10, 1, {}},
        {kPdlPcl6, 0, 3, {"YWJj"}},
        {kPdlPcl6, 8, 0xFFFF, {"Zwo="}},
        {kPdlPcl6, 9, 1, {"Cg=="}},
        {kPdlPcl6, 0, 0, {}},
        {kPdlPcl6, 0xFFFF, 0xFFFF, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.pdlType << " " << c.start << "+" << c.length);
        const OwnedSnapshot snapshot = Bind(c.pdlType, "abc\r\ndefg\n");
        TextList list;
        AppendCommandSlice(*snapshot.Get(), c.start, c.length, &list);
        EXPECT_EQ(TextsOf(list), c.expected);
    }
}

TEST_F(CommandLists, ABlobIsWhatTheFileHasOfIt) {
    const std::string good = SmallModel(kPdlPcl6).Build();
    const struct {
        uint32_t fromEnd;
        uint32_t size;
        size_t expected;
    } cases[] = {{3, 0xFFFFFFFF, 3}, {3, 2, 2}, {3, 0, 0}, {0, 10, 0}};
    for (const auto& c : cases) {
        std::string bytes = good;
        HeaderOf(bytes).blobOffset = static_cast<uint32_t>(bytes.size()) - c.fromEnd;
        HeaderOf(bytes).blobSize = c.size;
        size_t size = 99;
        EXPECT_EQ(static_cast<bool>(LoadBlob(OpenDescription(bytes).Get(), &size)), c.expected > 0);
        EXPECT_EQ(size, c.expected);
    }
}

TEST_F(CommandLists, ColorCommandsOfADeviceMode) {
    PrivateDevMode devMode = {};
    for (int16_t i = 0; i < 6; ++i) {
        devMode.blobRefs[i] = {i, 1};
    }
    devMode.blobRefs[1].second = 0;
    devMode.blobSlices[0] = {6, 0x8001};
    devMode.blobSlices[1] = {7, 0};
    devMode.blobSlices[2] = {8, 0x2001};
    const auto listsOf = [&](uint16_t pdlType, uint32_t optionFlags, uint16_t tableOffset, int16_t slices) {
        devMode.sliceTableOffset = tableOffset;
        devMode.sliceCount = slices;
        const OwnedSnapshot snapshot = Bind(pdlType, "0123456789", optionFlags);
        TextList lists[5];
        AppendColorCommands(*snapshot.Get(), devMode, {&lists[0], &lists[1], &lists[2], &lists[3], &lists[4]});
        std::string line;
        for (const TextList& list : lists) {
            for (const std::string& text : TextsOf(list)) {
                line += text;
            }
            line += "|";
        }
        return line;
    };
    EXPECT_EQ(listsOf(kPdlPostScript, kModelColorSlicesPerPage, kSliceTableOffset, 3), "0268||3|4|5|");
    EXPECT_EQ(listsOf(kPdlPcl6, kModelColorSlicesPerPage, kSliceTableOffset, 3), "MA==Mg==|Ng==OA==|Mw==|NA==|NQ==|");
    EXPECT_EQ(listsOf(kPdlPcl6, 0, kSliceTableOffset, 3), "MA==Mg==Ng==OA==||Mw==|NA==|NQ==|");
    for (const uint16_t offset : {uint16_t{0}, uint16_t{0x8000}, uint16_t{0xFFFF}, uint16_t{0x7FFF}}) {
        EXPECT_EQ(listsOf(kPdlPostScript, 0, offset, 32767), "02||3|4|5|") << offset;
    }
    EXPECT_EQ(listsOf(kPdlPostScript, 0, kSliceTableOffset, -1), "02||3|4|5|");
    const uint16_t end = sizeof(PrivateDevMode) - offsetof(PrivateDevMode, extensionTag);
    for (const uint16_t behind : {2, 4}) {
        EXPECT_EQ(listsOf(kPdlPostScript, 0, static_cast<uint16_t>(end - behind), 2), "02||3|4|5|") << behind;
    }
}

}  // namespace
}  // namespace velmora
