#include "driver/devdesc/description_file.h"

#include "driver/devdesc/model_tables.h"
#include "tests/driver/machine.h"
#include "tests/driver/resource_file.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class DescriptionFile : public MachineTest {
  protected:
    // The text that a read of file_ gives in an exact block, so that the address sanitizer sees its ends.
    std::string String(WORD language, int16_t reference, size_t capacity = 64, HMODULE module = nullptr) const {
        std::vector<WCHAR> text(capacity, TEXT('#'));
        ReadLocalizedString(file_.Get(), language, module, reference, text.data(), capacity);
        return ToText(text.data());
    }
    std::string WideName(int16_t reference, size_t capacity = 64) const {
        std::vector<WCHAR> text(capacity, TEXT('#'));
        ReadName(file_.Get(), reference, text.data(), capacity);
        return ToText(text.data());
    }
    std::string AnsiName(int16_t reference, size_t capacity = 64) const {
        std::vector<char> text(capacity, '#');
        ReadName(file_.Get(), reference, text.data(), capacity);
        return text.data();
    }
};

TEST_F(DescriptionFile, IsFoundAmongTheDriversFiles) {
    DriverPackage package = PackageOf(SmallModel(kPdlPcl6).Build());
    package.dependent.push_back({TEXT("other.xpi"), SmallModel(kPdlPcl5).Build()});
    Install(package);
    const auto language = [&] {
        const OwnedFile first = OpenDescriptionFile(Printer());  // others may read it meanwhile
        const HeapOwner<DeviceModel> model = LoadDeviceModel(OpenDescriptionFile(Printer()).Get());
        return model ? model->pdlType : 0xFFFF;
    };
    EXPECT_EQ(language(), kPdlPcl5);
    SetString(Printer(), TEXT("XPI"), TEXT("kv62.xpi"));
    EXPECT_EQ(language(), kPdlPcl6);
    SetString(Printer(), TEXT("XPI"), TEXT("missing"));
    EXPECT_EQ(language(), 0xFFFF);
    SetString(Printer(), TEXT("XPI"), TEXT("kv62.xpi"));
    std::filesystem::remove(DrivePath(InstalledPath(TEXT("KV62.XPI"))));
    EXPECT_FALSE(OpenDescriptionFile(Printer()));
}

TEST_F(DescriptionFile, NoModelWithoutAFileAHeaderOrABlock) {
    EXPECT_FALSE(LoadDeviceModel(INVALID_HANDLE_VALUE));
    const std::string good = SmallModel(kPdlPcl6).Build();
    std::string file = good;
    for (const size_t length : {0u, 71u, 72u, HeaderOf(file).languageTableOffset - 1}) {
        EXPECT_FALSE(Load(good.substr(0, length))) << length;
    }
    HeaderOf(file).deviceBlockOffset = 0xFFFFFF00;
    EXPECT_FALSE(Load(file));
    file = good;
    HeaderOf(file).languageTableOffset = HeaderOf(file).deviceBlockOffset;
    EXPECT_FALSE(Load(file));
    HeaderOf(file).languageTableOffset -= 10;  // the length has 16 bits: 65526 bytes, which aren't there
    EXPECT_FALSE(Load(file));
    file = good;
    HeaderOf(file).languageTableOffset += 0x10000;
    EXPECT_EQ(CountRecords(Load(file)->paperTable), 3u);
}

// What a block is too short for reads as 0 and absent.
TEST_F(DescriptionFile, ShortBlocks) {
    std::string file = SmallModel(kPdlPcl5).Build();
    for (const size_t length : {1u, 4u, 20u, 304u, 369u}) {
        SCOPED_TRACE(length);
        HeaderOf(file).languageTableOffset = HeaderOf(file).deviceBlockOffset + static_cast<uint32_t>(length);
        const HeapOwner<DeviceModel> model = Load(file);
        ASSERT_TRUE(model);
        EXPECT_EQ(ValueOf(model->modelCode), length >= 6 ? 0x4321 : 0);
        EXPECT_EQ(ValueOf(model->defaultMedia), length >= 314 ? 2 : 0);
        EXPECT_EQ(ValueOf(model->paperTable), nullptr);  // it lies behind the end
    }
}

TEST_F(DescriptionFile, SlotsThatLeadOutsideTheBlockAreAbsent) {
    DescriptionBuilder builder = SmallModel(kPdlPcl6);
    builder.Text(offsetof(DeviceModel, defaultFontA), "X");  // the block's last two bytes
    std::string file = builder.Build();
    const uint32_t start = HeaderOf(file).deviceBlockOffset;
    const uint32_t length = HeaderOf(file).languageTableOffset - start;
    const std::pair<size_t, uint64_t> slots[] = {
        {offsetof(DeviceModel, paperTable), length},
        {offsetof(DeviceModel, binTable), 0xFFFFFFFF},
        {offsetof(DeviceModel, mediaTable), length - 1},
        {offsetof(DeviceModel, featureTable), sizeof(DeviceModel) - 1},        // the record's addresses are no table
        {offsetof(DeviceModel, extraListC), 0x7F00000000000000 + length - 2},  // the high half doesn't count
    };
    for (const auto& [slot, value] : slots) {
        memcpy(file.data() + start + slot, &value, sizeof(value));
    }
    const HeapOwner<DeviceModel> model = Load(file);
    ASSERT_TRUE(model);
    EXPECT_EQ(ValueOf(model->paperTable), nullptr);
    EXPECT_EQ(ValueOf(model->binTable), nullptr);
    EXPECT_EQ(ValueOf(model->featureTable), nullptr);
    EXPECT_EQ(CountRecords(model->mediaTable), 0u);
    ASSERT_TRUE(model->extraListC != nullptr);
    EXPECT_EQ(CountRecords(model->extraListC), 1u);  // "X" marks a record that runs out of the block
    EXPECT_EQ(ValueOf(model->extraListC[0].keywordRef), 0);
    EXPECT_STREQ(model->defaultFontA, "X");
}

TEST_F(DescriptionFile, TablesWithoutTerminatorEndWithTheBlock) {
    const auto load = [](size_t slot, size_t bytes) {
        DescriptionBuilder builder;
        builder.Bytes(slot, std::string(bytes, '\xFF'));
        return Load(builder.Build());
    };
    EXPECT_EQ(CountRecords(load(offsetof(DeviceModel, paperTable), 64)->paperTable), 2u);
    EXPECT_EQ(CountRecords(load(offsetof(DeviceModel, paperTable), 33)->paperTable), 2u);
    EXPECT_EQ(CountRecords(load(offsetof(DeviceModel, constraintTable), 130)->constraintTable), 3u);
    EXPECT_EQ(CountRecords(load(offsetof(DeviceModel, memoryTable), 7)->memoryTable), 2u);
    EXPECT_STREQ(load(offsetof(DeviceModel, defaultFontA), 5)->defaultFontA, "\xFF\xFF\xFF\xFF\xFF");
}

using Groups = std::vector<uint16_t>;

Groups StartsOf(const HeapOwner<DeviceModel>& model) {
    Groups starts;
    for (const PackedU16* start = model ? model->fontGroups : nullptr; start && start->value != 0; ++start) {
        starts.push_back(start->value);
    }
    return starts;
}

// A group ends where the sum would pass 32767; a first record that is too long is a group of its own.
TEST_F(DescriptionFile, FontGroups) {
    const struct {
        std::vector<size_t> sizes;
        size_t room;  // of the array, in entries; none: the slot is absent
        Groups starts;
    } cases[] = {
        {{20000, 15000, 40000, 1000}, 8, {1, 2, 3, 4}},
        {{10000, 10000, 10000, 10000}, 8, {1, 4}},
        {{32767, 1}, 8, {1, 2}},
        {{32766, 1, 1}, 8, {1, 3}},
        {{0, 0, 0}, 8, {1}},
        {{40000, 100, 200}, 8, {1, 2}},
        {{40000, 40000}, 8, {1, 2}},
        {{}, 8, {}},
        {{100}, 0, {}},
        {{20000, 20000, 20000}, 2, {1, 2}},  // no more than the block has room for
    };
    for (const auto& c : cases) {
        DescriptionBuilder builder;
        for (const size_t size : c.sizes) {
            builder.AddFont(std::string(size, 'f'));
        }
        if (c.room > 0) {
            builder.Bytes(offsetof(DeviceModel, fontGroups), std::string(c.room * 2, '\0'));
        }
        EXPECT_EQ(StartsOf(Load(builder.Build())), c.starts) << "row " << &c - cases;
    }
}

TEST_F(DescriptionFile, FontGroupsOfHostileFiles) {
    DescriptionBuilder builder;
    builder.AddFont("font");
    const uint32_t end = builder.Bytes(offsetof(DeviceModel, memoryTable), "1234") + 4;
    for (const uint32_t offset : {8u, end, end + 1, end + 0x10000, 0xFFFFFFFFu}) {
        builder.SetSlot(offsetof(DeviceModel, fontGroups), offset);
        const HeapOwner<DeviceModel> model = Load(builder.Build());
        ASSERT_TRUE(model) << offset;
        EXPECT_TRUE(model->fontGroups == nullptr) << offset;
    }
    builder.Table(offsetof(DeviceModel, fontGroups), std::vector<PackedU16>(4));
    for (const int16_t count : {int16_t{-1}, int16_t{32767}}) {  // none, and more than the file has
        builder.fields.fontCount = count;
        const HeapOwner<DeviceModel> model = Load(builder.Build());
        EXPECT_EQ(StartsOf(model), Groups()) << count;
        EXPECT_EQ(ValueOf(model->fontCount), count < 0 ? 0 : count);
    }
    builder.fields.fontCount = 1;
    std::string file = builder.Build();
    HeaderOf(file).fontIndexOffset = static_cast<uint32_t>(file.size()) - 4;
    EXPECT_EQ(StartsOf(Load(file)), Groups());
}

TEST_F(DescriptionFile, StringsOfALanguageOrOfTheModule) {
    DescriptionBuilder builder;
    builder.AddString("Paper");
    builder.AddString("Tray");
    builder.SetLanguageBase(LANG_GERMAN, builder.NextLanguageBase());
    builder.AddString("Papier");
    builder.AddString("Schacht");
    file_ = OpenDescription(builder.Build());
    WriteDriveFile(TEXT("C:\\strings.dll"),
                   StringModule({{1, TEXT("one")}, {2009, TEXT("A4")}, {32768, TEXT("last")}}));
    const OwnedModule module(LoadLibraryW(TEXT("C:\\strings.dll")));
    const struct {
        WORD language;
        int16_t reference;  // negative ones are the module's
        size_t capacity;
        const char* text;
    } cases[] = {
        {LANG_ENGLISH, 1, 64, "Paper"}, {LANG_GERMAN, 2, 64, "Schacht"},
        {LANG_FRENCH, 1, 64, "Paper"},  // whatever base the table holds there
        {LANG_ENGLISH, 0, 64, ""},      {LANG_ENGLISH, 2, 4, "Tra"},
        {LANG_ENGLISH, 2, 5, "Tray"},   {LANG_ENGLISH, 2, 1, ""},
        {LANG_ENGLISH, -1, 64, "one"},  {LANG_ENGLISH, -2009, 64, "A4"},
        {LANG_ENGLISH, -2, 64, ""},     {LANG_ENGLISH, -32768, 64, "last"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(String(c.language, c.reference, c.capacity, module.Get()), c.text) << c.reference;
    }
    EXPECT_EQ(String(LANG_ENGLISH, -1), "");  // no module
}

// The sum of base and reference isn't cut to 16 bits: only a file that is long enough has the entry.
TEST_F(DescriptionFile, StringIndexesHave32Bits) {
    DescriptionBuilder builder;
    for (int i = 0; i < 20; ++i) {
        builder.AddString("wrong");
    }
    builder.SetLanguageBase(LANG_ENGLISH, 0xFFFF);
    std::string file = builder.Build();
    file_ = OpenDescription(file);
    EXPECT_EQ(String(LANG_ENGLISH, 10), "");
    constexpr uint32_t kEntryOffset = (0xFFFF + 10) * sizeof(uint16_t);
    const auto index = static_cast<uint32_t>(file.size());
    HeaderOf(file).stringIndexOffset = index;
    HeaderOf(file).stringPoolOffset = index + kEntryOffset;
    file.resize(file.size() + kEntryOffset, '\x01');
    file_.Close();
    file_ = OpenDescription(file + std::string("\2\0right", 7));
    EXPECT_EQ(String(LANG_ENGLISH, 10), "right");
}

TEST_F(DescriptionFile, NamesAreReadWideOrAsTheyAre) {
    machine_.SetAnsiCodePage(932);
    DescriptionBuilder builder;
    builder.AddName("psk:ISOA4");
    builder.AddName("\x83\x41\x83\x43");
    builder.AddName("last", false);
    std::string bytes = builder.Build();
    // Names end the file: the last one, without NUL, reads up to the file's end, which is no failure.
    HeaderOf(bytes).stringIndexOffset = HeaderOf(bytes).nameIndexOffset;
    HeaderOf(bytes).stringPoolOffset = HeaderOf(bytes).namePoolOffset;
    file_ = OpenDescription(bytes);
    const struct {
        int16_t reference;
        size_t capacity;
        const char* wide;
        const char* ansi;
    } cases[] = {
        {1, 80, "psk:ISOA4", "psk:ISOA4"},
        {1, 4, "psk", "psk"},
        {2, 80, "\xE3\x82\xA2\xE3\x82\xA4", "\x83\x41\x83\x43"},
        {2, 3, "\xE3\x82\xA2", "\x83\x41"},  // half a character was read
        {2, 2, "\xE3\x82\xA2", ""},
        {3, 80, "last", "last"},
        {3, 4, "las", "las"},
        {0, 80, "", ""},
        {-1, 80, "", ""},
        {30000, 80, "", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(WideName(c.reference, c.capacity), c.wide) << c.reference;
        EXPECT_EQ(AnsiName(c.reference, c.capacity), c.ansi) << c.reference;
    }
    EXPECT_EQ(String(LANG_ENGLISH, 3), "last");
}

TEST_F(DescriptionFile, TextsAreCutAtTheirCapacityAndTheirPool) {
    DescriptionBuilder builder;
    builder.AddText("@PJL SET TRAY=1\r\n");
    builder.AddText(std::string(2000, 'x'));
    builder.AddText("to the end", false);
    builder.AddFont("FONT DATA");
    std::string bytes = builder.Build();
    const auto read = [&](int16_t reference, bool isShort = false) {
        const OwnedFile file = OpenDescription(bytes);
        std::vector<char> text(isShort ? kShortTextCapacity : kTextCapacity, '#');
        (isShort ? ReadShortText : ReadText)(file.Get(), reference, text.data());
        return std::string(text.data());
    };
    for (const bool isShort : {false, true}) {
        EXPECT_EQ(read(1, isShort), "@PJL SET TRAY=1\r\n");
        EXPECT_EQ(read(2, isShort), std::string((isShort ? kShortTextCapacity : kTextCapacity) - 1, 'x'));
        EXPECT_EQ(read(3, isShort), "to the end");
        EXPECT_EQ(read(0, isShort) + read(-1, isShort), "");
    }
    HeaderOf(bytes).fontPoolOffset = HeaderOf(bytes).textPoolOffset + 4;
    EXPECT_EQ(read(1), "@PJL");
    EXPECT_EQ(read(2), "");  // begins behind the pool
    HeaderOf(bytes).fontPoolOffset = 0xFFFFFFFF;
    EXPECT_EQ(read(3), "to the endFONT DATA");  // up to the first NUL, in the blob's place
}

TEST_F(DescriptionFile, Images) {
    DescriptionBuilder builder;
    for (const auto& [size, rest] : {std::pair(20u, "pixels"), {0xFFFFFFFFu, ""}, {13u, ""}, {18u, "last"}}) {
        BITMAPFILEHEADER header = {};
        header.bfSize = size;
        builder.AddImage(std::string(reinterpret_cast<const char*>(&header), sizeof(header)) + rest);
    }
    std::string bytes = builder.Build();
    bytes.resize(HeaderOf(bytes).imagePoolOffset + 20 + 14 + 14 + 18);
    const auto read = [&](uint16_t index) { return ReadImage(OpenDescription(bytes).Get(), index); };
    const HeapOwner<BITMAPFILEHEADER> first = read(0);
    ASSERT_TRUE(first);
    EXPECT_EQ(memcmp(first.Get() + 1, "pixels", 6), 0);
    EXPECT_TRUE(read(3));  // ends with the file
    bytes.pop_back();
    for (const uint16_t none : {1, 2, 3, 0xFFFF}) {
        EXPECT_FALSE(read(none)) << none;
    }
}

TEST_F(DescriptionFile, TheBlob) {
    DescriptionBuilder builder;
    builder.blob = "commands";
    std::string bytes = builder.Build();
    std::string read;
    const auto size = [&](size_t capacity) {
        const OwnedFile file = OpenDescription(bytes);
        read.assign(capacity, '#');
        EXPECT_EQ(ReadBlob(file.Get(), nullptr, 0), static_cast<uint16_t>(HeaderOf(bytes).blobSize));
        return ReadBlob(file.Get(), read.data(), capacity);
    };
    EXPECT_EQ(size(10), 8);
    EXPECT_EQ(read, "commands##");
    EXPECT_EQ(size(7), 0);  // no room for the whole
    HeaderOf(bytes).blobOffset = static_cast<uint32_t>(bytes.size());
    EXPECT_EQ(size(10), 0);
    HeaderOf(bytes).blobOffset -= 3;
    EXPECT_EQ(size(10), 8);  // some of it arrived
    // Above 65535 bytes the answer holds the low half, but all is read.
    builder.blob = std::string(65536 + 4, 'b') + "!";
    bytes = builder.Build();
    EXPECT_EQ(size(65541), 5);
    EXPECT_EQ(read, builder.blob);
}

TEST_F(DescriptionFile, PatternsAndFonts) {
    DescriptionBuilder builder;
    builder.AddPattern(std::string(2048, 'a'));
    builder.AddPattern(std::string(2048, 'b'));
    builder.AddFont(std::string(100, 'f'));
    builder.AddFont(std::string(23, 'g'));
    std::string bytes = builder.Build();
    file_ = OpenDescription(bytes);
    std::string block(2049, '#');
    EXPECT_EQ(ReadPatternBlock(file_.Get(), 1, block.data(), 2048), 2048u);
    EXPECT_EQ(block, std::string(2048, 'b') + "#");
    EXPECT_EQ(ReadPatternBlock(file_.Get(), 1, nullptr, 2048), 2048u);
    EXPECT_EQ(ReadPatternBlock(file_.Get(), 0, block.data(), 0), 0u);
    EXPECT_EQ(ReadPatternBlock(file_.Get(), -1, nullptr, 0), 0u);
    const HeapOwner<DeviceModel> model = LoadDeviceModel(file_.Get());
    EXPECT_EQ(GetFontDataSize(file_.Get(), *model), 123u);
    model->fontCount = 0;
    EXPECT_EQ(GetFontDataSize(file_.Get(), *model), 0u);
    model->fontCount = 32767;
    HeaderOf(bytes).fontIndexOffset = static_cast<uint32_t>(bytes.size()) - 4;
    EXPECT_EQ(GetFontDataSize(OpenDescription(bytes).Get(), *model), 0u);
}

// Every header field in turn leads to the file's end, beyond it, and as far as it goes; and headers that are cut.
TEST_F(DescriptionFile, HeadersThatPointOutside) {
    DescriptionBuilder builder = SmallModel(kPdlPcl6, kColor);
    builder.AddName("name");
    builder.AddText("text");
    builder.AddImage(std::string(14, 'i'));
    builder.AddFont("font");
    const std::string good = builder.Build();
    const auto size = static_cast<uint32_t>(good.size());
    for (size_t field = 0; field < sizeof(DescriptionFileHeader); field += sizeof(uint32_t)) {
        ReadEverything(OpenDescription(good.substr(0, field)).Get());
        for (const uint32_t value : {0u, size - 1, size, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
            std::string bytes = good;
            memcpy(bytes.data() + field, &value, sizeof(value));
            ReadEverything(OpenDescription(bytes).Get());
        }
    }
}

}  // namespace
}  // namespace velmora
