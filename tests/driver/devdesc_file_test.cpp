#include "driver/devdesc/description_file.h"

#include <cstring>
#include <vector>

#include "driver/devdesc/model_tables.h"
#include "tests/driver/description_builder.h"
#include "tests/driver/machine.h"
#include "tests/driver/resource_file.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class DescriptionFile : public MachineTest {
  protected:
    static OwnedFile Open(const std::string& bytes) {
        WriteDriveFile(u"C:\\test.xpi", bytes);
        return OwnedFile(CreateFileW(TEXT("C:\\test.xpi"), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
    }
    static HeapOwner<DeviceModel> Load(const std::string& bytes) { return LoadDeviceModel(Open(bytes).Get()); }

    // Runs every operation that takes a file, with references of all kinds; what they give doesn't matter.
    static void ReadEverything(const std::string& bytes) {
        const OwnedFile file = Open(bytes);
        const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
        for (const int reference : {-32768, -1, 0, 1, 2, 100, 32767}) {
            const auto short16 = static_cast<int16_t>(reference);
            WCHAR wide[64];
            char ansi[64];
            char text[kTextCapacity];
            ReadLocalizedString(file.Get(), 9, nullptr, short16, wide, ARRAYSIZE(wide));
            ReadLocalizedString(file.Get(), 1023, nullptr, short16, wide, ARRAYSIZE(wide));
            ReadName(file.Get(), short16, wide, ARRAYSIZE(wide));
            ReadName(file.Get(), short16, ansi, sizeof(ansi));
            ReadText(file.Get(), short16, text);
            ReadShortText(file.Get(), short16, text);
            ReadImage(file.Get(), static_cast<uint16_t>(reference));
            ReadPatternBlock(file.Get(), short16, text, sizeof(text));
        }
        std::vector<char> blob(70000);
        ReadBlob(file.Get(), blob.data(), blob.size());
        ReadBlob(file.Get(), nullptr, 0);
        if (model) {
            GetFontDataSize(file.Get(), *model);
        }
    }
};

TEST_F(DescriptionFile, IsFoundAmongTheDriversFiles) {
    DriverPackage package = PackageOf(SmallModel(kPdlPcl6).Build());
    package.dependent.push_back({u"other.xpi", SmallModel(kPdlPcl5).Build()});
    Install(package);
    const auto language = [&] {
        const HeapOwner<DeviceModel> model = LoadDeviceModel(OpenDescriptionFile(Printer()).Get());
        return model ? model->pdlType : 0xFFFF;
    };
    EXPECT_EQ(language(), kPdlPcl5);
    SetString(Printer(), u"XPI", u"kv62.xpi");
    EXPECT_EQ(language(), kPdlPcl6);
    SetString(Printer(), u"XPI", u"missing");
    EXPECT_FALSE(OpenDescriptionFile(Printer()));
    EXPECT_EQ(language(), 0xFFFF);
    SetString(Printer(), u"XPI", u"kv62.xpi");
    std::filesystem::remove(DrivePath(InstalledPath(u"KV62.XPI")));
    EXPECT_FALSE(OpenDescriptionFile(Printer()));
}

TEST_F(DescriptionFile, OthersMayReadItMeanwhile) {
    Install(SmallModel(kPdlPcl6).Build());
    const OwnedFile first = OpenDescriptionFile(Printer());
    const OwnedFile second = OpenDescriptionFile(Printer());
    EXPECT_TRUE(first && second);
}

TEST_F(DescriptionFile, LoadsFieldsAndTables) {
    const HeapOwner<DeviceModel> model = Load(SmallModel(kPdlPcl5, kColor).Build());
    ASSERT_TRUE(model);
    EXPECT_EQ(ValueOf(model->pdlType), kPdlPcl5);
    EXPECT_EQ(ValueOf(model->modelCode), 0x4321);
    EXPECT_EQ(CountRecords(model->paperTable), 3u);
    EXPECT_EQ(CountRecords(model->binTable), 2u);
    EXPECT_EQ(CountRecords(model->resolutionTable), 3u);
    EXPECT_EQ(ValueOf(model->mediaTable[1].mediaId), 258u);
    EXPECT_STREQ(model->defaultFontA, "CG Times");
    EXPECT_EQ(ValueOf(model->extraListC), nullptr);
    EXPECT_EQ(ValueOf(model->colorModeTable), nullptr);
}

TEST_F(DescriptionFile, NoModelWithoutAFileAHeaderOrABlock) {
    EXPECT_FALSE(LoadDeviceModel(INVALID_HANDLE_VALUE));
    const std::string good = SmallModel(kPdlPcl6).Build();
    EXPECT_FALSE(Load(""));
    EXPECT_FALSE(Load(good.substr(0, 71)));
    EXPECT_FALSE(Load(good.substr(0, 72)));
    std::string file = good;
    EXPECT_FALSE(Load(good.substr(0, HeaderOf(file).languageTableOffset - 1)));
    HeaderOf(file).deviceBlockOffset = 0xFFFFFF00;
    EXPECT_FALSE(Load(file));
    file = good;
    HeaderOf(file).languageTableOffset = HeaderOf(file).deviceBlockOffset;
    EXPECT_FALSE(Load(file));
    for (size_t length = 0; length < 72; ++length) {
        ReadEverything(good.substr(0, length));
    }
}

TEST_F(DescriptionFile, TheBlocksLengthHas16Bits) {
    std::string file = SmallModel(kPdlPcl5).Build();
    HeaderOf(file).languageTableOffset += 0x10000;
    const HeapOwner<DeviceModel> model = Load(file);
    ASSERT_TRUE(model);
    EXPECT_EQ(CountRecords(model->paperTable), 3u);
    HeaderOf(file).languageTableOffset = HeaderOf(file).deviceBlockOffset - 10;  // 65526 bytes, which aren't there
    EXPECT_FALSE(Load(file));
}

// What a block is too short for reads as 0 and absent.
TEST_F(DescriptionFile, ShortBlocks) {
    const std::string good = SmallModel(kPdlPcl5).Build();
    for (const size_t length : {1u, 4u, 10u, 20u, 100u, 304u, 369u}) {
        SCOPED_TRACE(length);
        std::string file = good;
        DescriptionFileHeader& header = HeaderOf(file);
        header.languageTableOffset = header.deviceBlockOffset + static_cast<uint32_t>(length);
        const HeapOwner<DeviceModel> model = Load(file);
        ASSERT_TRUE(model);
        EXPECT_EQ(ValueOf(model->modelCode), length >= 6 ? 0x4321 : 0);
        EXPECT_EQ(ValueOf(model->defaultMedia), length >= 314 ? 2 : 0);
        EXPECT_EQ(ValueOf(model->paperTable), nullptr);  // it lies behind the end
        EXPECT_EQ(CountRecords(model->resolutionTable), 0u);
    }
}

TEST_F(DescriptionFile, SlotsThatLeadOutsideTheBlockAreAbsent) {
    DescriptionBuilder builder = SmallModel(kPdlPcl6);
    builder.Text(offsetof(DeviceModel, defaultFontA), "X");  // the block's last two bytes
    std::string file = builder.Build();
    const uint32_t start = HeaderOf(file).deviceBlockOffset;
    const uint32_t length = HeaderOf(file).languageTableOffset - start;
    const auto setSlot = [&](size_t slot, uint64_t value) {
        memcpy(file.data() + start + slot, &value, sizeof(value));
    };
    setSlot(offsetof(DeviceModel, paperTable), length);
    setSlot(offsetof(DeviceModel, binTable), 0xFFFFFFFF);
    setSlot(offsetof(DeviceModel, mediaTable), length - 1);
    setSlot(offsetof(DeviceModel, extraListC), 0x7F00000000000000 + length - 2);  // the high half doesn't count
    const HeapOwner<DeviceModel> model = Load(file);
    ASSERT_TRUE(model);
    EXPECT_EQ(ValueOf(model->paperTable), nullptr);
    EXPECT_EQ(ValueOf(model->binTable), nullptr);
    EXPECT_EQ(CountRecords(model->mediaTable), 0u);
    ASSERT_TRUE(model->extraListC != nullptr);
    EXPECT_EQ(CountRecords(model->extraListC), 1u);  // "X" marks a record that runs out of the block
    EXPECT_EQ(ValueOf(model->extraListC[0].keywordRef), 0);
    EXPECT_STREQ(model->defaultFontA, "X");
}

TEST_F(DescriptionFile, TablesWithoutTerminatorEndWithTheBlock) {
    const auto count = [](size_t slot, size_t bytes) {
        DescriptionBuilder builder;
        builder.Bytes(slot, std::string(bytes, '\xFF'));
        return Load(builder.Build());
    };
    EXPECT_EQ(CountRecords(count(offsetof(DeviceModel, paperTable), 64)->paperTable), 2u);
    EXPECT_EQ(CountRecords(count(offsetof(DeviceModel, paperTable), 33)->paperTable), 2u);
    EXPECT_EQ(CountRecords(count(offsetof(DeviceModel, constraintTable), 130)->constraintTable), 3u);
    EXPECT_EQ(CountRecords(count(offsetof(DeviceModel, marginTable), 54)->marginTable), 1u);
    EXPECT_EQ(CountRecords(count(offsetof(DeviceModel, memoryTable), 7)->memoryTable), 2u);
    EXPECT_EQ(std::string(count(offsetof(DeviceModel, defaultFontA), 5)->defaultFontA), "\xFF\xFF\xFF\xFF\xFF");
}

class FontGroups : public DescriptionFile {
  protected:
    // The group starts for records of these sizes, as far as `room` entries (none: the slot is absent).
    static std::vector<uint16_t> Starts(const std::vector<size_t>& sizes, size_t room = 8) {
        DescriptionBuilder builder;
        for (const size_t size : sizes) {
            builder.AddFont(std::string(size, 'f'));
        }
        if (room > 0) {
            builder.Bytes(offsetof(DeviceModel, fontGroups), std::string(room * 2, '\0'));
        }
        return StartsOf(builder.Build());
    }

    static std::vector<uint16_t> StartsOf(const std::string& file) {
        const HeapOwner<DeviceModel> model = Load(file);
        std::vector<uint16_t> starts;
        for (const PackedU16* start = model ? model->fontGroups : nullptr; start && start->value != 0; ++start) {
            starts.push_back(start->value);
        }
        return starts;
    }

    using Groups = std::vector<uint16_t>;
};

TEST_F(FontGroups, StartWhereTheSumWouldPass32767) {
    EXPECT_EQ(Starts({20000, 15000, 40000, 1000}), Groups({1, 2, 3, 4}));
    EXPECT_EQ(Starts({10000, 10000, 10000, 10000}), Groups({1, 4}));
    EXPECT_EQ(Starts({32767}), Groups({1}));
    EXPECT_EQ(Starts({32767, 1}), Groups({1, 2}));
    EXPECT_EQ(Starts({32766, 1, 1}), Groups({1, 3}));
    EXPECT_EQ(Starts({0, 0, 0}), Groups({1}));
}

TEST_F(FontGroups, AFirstRecordThatIsTooLongIsAGroupOfItsOwn) {
    EXPECT_EQ(Starts({40000}), Groups({1}));
    EXPECT_EQ(Starts({40000, 100, 200}), Groups({1, 2}));
    EXPECT_EQ(Starts({40000, 40000}), Groups({1, 2}));
}

TEST_F(FontGroups, NothingIsStoredWithoutFontsRoomOrAnIndex) {
    EXPECT_EQ(Starts({}), Groups());
    EXPECT_EQ(Starts({100}, 0), Groups());
    EXPECT_EQ(Starts({20000, 20000, 20000}, 2), Groups({1, 2}));  // no more than the block has room for

    DescriptionBuilder builder;
    builder.AddFont("font");
    builder.Table(offsetof(DeviceModel, fontGroups), std::vector<PackedU16>(4));
    builder.fields.fontCount = -1;
    EXPECT_EQ(StartsOf(builder.Build()), Groups());
    builder.fields.fontCount = 32767;  // more than the file has
    EXPECT_EQ(StartsOf(builder.Build()).size(), 0u);
    builder.fields.fontCount = 1;
    std::string file = builder.Build();
    HeaderOf(file).fontIndexOffset = static_cast<uint32_t>(file.size()) - 4;
    EXPECT_EQ(StartsOf(file), Groups());
}

TEST_F(FontGroups, AnArrayOutsideTheBlockIsAbsent) {
    DescriptionBuilder builder;
    builder.AddFont("font");
    const uint32_t end = builder.Bytes(offsetof(DeviceModel, memoryTable), "1234") + 4;
    for (const uint32_t offset : {end, end + 1, end + 0x10000, 0xFFFFFFFFu}) {
        builder.SetSlot(offsetof(DeviceModel, fontGroups), offset);
        const HeapOwner<DeviceModel> model = Load(builder.Build());
        ASSERT_TRUE(model) << offset;
        EXPECT_TRUE(model->fontGroups == nullptr) << offset;
    }
}

// The array may lie anywhere in the block, over the slots too: what is written there is checked like everything else.
TEST_F(FontGroups, AnArrayOverTheSlotsHarmsNothing) {
    DescriptionBuilder builder;
    for (int i = 0; i < 200; ++i) {
        builder.AddFont(std::string(32767, 'f'));
    }
    builder.SetSlot(offsetof(DeviceModel, fontGroups), 8);
    const HeapOwner<DeviceModel> model = Load(builder.Build());
    ASSERT_TRUE(model);
    EXPECT_EQ(ValueOf(model->paperTable), nullptr);
}

TEST_F(DescriptionFile, StringsOfALanguage) {
    DescriptionBuilder builder;
    builder.AddString("Paper");
    builder.AddString("Tray");
    builder.SetLanguageBase(LANG_GERMAN, builder.NextLanguageBase());
    builder.AddString("Papier");
    builder.AddString("Schacht");
    const OwnedFile file = Open(builder.Build());
    const auto read = [&](WORD language, int16_t reference, size_t capacity = 64) {
        std::vector<WCHAR> text(capacity, TEXT('#'));
        ReadLocalizedString(file.Get(), language, nullptr, reference, text.data(), capacity);
        return ToText(text.data());
    };
    EXPECT_EQ(read(LANG_ENGLISH, 1), "Paper");
    EXPECT_EQ(read(LANG_ENGLISH, 2), "Tray");
    EXPECT_EQ(read(LANG_GERMAN, 2), "Schacht");
    EXPECT_EQ(read(LANG_FRENCH, 1), "Paper");  // whatever base the table holds there
    EXPECT_EQ(read(LANG_ENGLISH, 0), "");
    EXPECT_EQ(read(LANG_ENGLISH, 2, 3), "Tr");
    EXPECT_EQ(read(LANG_ENGLISH, 2, 4), "Tra");
    EXPECT_EQ(read(LANG_ENGLISH, 2, 5), "Tray");
    EXPECT_EQ(read(LANG_ENGLISH, 2, 1), "");
    EXPECT_EQ(read(LANG_ENGLISH, -1), "");  // no module
}

TEST_F(DescriptionFile, NegativeReferencesAreStringsOfTheModule) {
    WriteDriveFile(u"C:\\strings.dll", StringModule({{1, u"one"}, {2009, u"A4"}, {32768, u"last"}}));
    const OwnedModule module(LoadLibraryW(TEXT("C:\\strings.dll")));
    ASSERT_TRUE(module);
    const OwnedFile file = Open(SmallModel(kPdlPcl6).Build());
    constexpr struct {
        int16_t reference;
        const char* text;
    } kCases[] = {{-1, "one"}, {-2009, "A4"}, {-2, ""}, {-32768, "last"}};
    for (const auto& c : kCases) {
        WCHAR text[16] = TEXT("#");
        ReadLocalizedString(file.Get(), LANG_ENGLISH, module.Get(), c.reference, text, ARRAYSIZE(text));
        EXPECT_EQ(ToText(text), c.text) << c.reference;
    }
}

// The sum of base and reference isn't cut to 16 bits.
TEST_F(DescriptionFile, StringIndexesHave32Bits) {
    DescriptionBuilder builder;
    for (int i = 0; i < 20; ++i) {
        builder.AddString("wrong");
    }
    builder.SetLanguageBase(LANG_ENGLISH, 0xFFFF);
    std::string file = builder.Build();
    WCHAR text[16];
    ReadLocalizedString(Open(file).Get(), LANG_ENGLISH, nullptr, 10, text, ARRAYSIZE(text));
    EXPECT_EQ(text[0], 0);
    // In a file that is long enough the entry is read.
    constexpr uint32_t kEntryOffset = (0xFFFF + 10) * sizeof(uint16_t);
    const auto index = static_cast<uint32_t>(file.size());
    HeaderOf(file).stringIndexOffset = index;
    HeaderOf(file).stringPoolOffset = index + kEntryOffset;
    const uint16_t entry = sizeof(entry);
    file.resize(file.size() + kEntryOffset, '\x01');
    file += std::string(reinterpret_cast<const char*>(&entry), sizeof(entry)) + "right";
    ReadLocalizedString(Open(file).Get(), LANG_ENGLISH, nullptr, 10, text, ARRAYSIZE(text));
    EXPECT_EQ(ToText(text), "right");
}

TEST_F(DescriptionFile, NamesAreReadWideOrAsTheyAre) {
    machine_.SetAnsiCodePage(932);
    DescriptionBuilder builder;
    builder.AddName("psk:ISOA4");
    builder.AddName("\x83\x41");
    const OwnedFile file = Open(builder.Build());
    const auto wide = [&](int16_t reference, size_t capacity) {
        std::vector<WCHAR> text(capacity, TEXT('#'));
        ReadName(file.Get(), reference, text.data(), capacity);
        return ToText(text.data());
    };
    const auto ansi = [&](int16_t reference, size_t capacity) {
        std::vector<char> text(capacity, '#');
        ReadName(file.Get(), reference, text.data(), capacity);
        return std::string(text.data());
    };
    EXPECT_EQ(wide(1, 80), "psk:ISOA4");
    EXPECT_EQ(ansi(1, 80), "psk:ISOA4");
    EXPECT_EQ(wide(2, 80), "\xE3\x82\xA2");
    EXPECT_EQ(ansi(2, 80), "\x83\x41");
    EXPECT_EQ(wide(1, 4), "psk");
    EXPECT_EQ(ansi(1, 4), "psk");
    for (const int16_t none : {0, -1, 30000}) {
        EXPECT_EQ(wide(none, 80), "") << none;
        EXPECT_EQ(ansi(none, 80), "") << none;
    }
}

// The last pool of the file: an entry without NUL reads up to the file's end, which is no failure.
TEST_F(DescriptionFile, EntriesAtTheEndOfTheFileReadShort) {
    DescriptionBuilder builder;
    builder.AddName("last", false);
    std::string bytes = builder.Build();
    HeaderOf(bytes).stringIndexOffset = HeaderOf(bytes).nameIndexOffset;
    HeaderOf(bytes).stringPoolOffset = HeaderOf(bytes).namePoolOffset;
    const OwnedFile file = Open(bytes);
    WCHAR wide[64];
    char ansi[64];
    ReadName(file.Get(), 1, wide, ARRAYSIZE(wide));
    EXPECT_EQ(ToText(wide), "last");
    ReadName(file.Get(), 1, ansi, sizeof(ansi));
    EXPECT_STREQ(ansi, "last");
    ReadLocalizedString(file.Get(), LANG_ENGLISH, nullptr, 1, wide, ARRAYSIZE(wide));
    EXPECT_EQ(ToText(wide), "last");
    ReadName(file.Get(), 1, ansi, 4);
    EXPECT_STREQ(ansi, "las");
}

TEST_F(DescriptionFile, TextsAreCutAtTheirCapacityAndTheirPool) {
    DescriptionBuilder builder;
    builder.AddText("@PJL SET TRAY=1\r\n");
    builder.AddText(std::string(2000, 'x'));
    builder.AddText("to the end", false);
    builder.AddFont("FONT DATA");
    std::string bytes = builder.Build();
    const auto read = [&](int16_t reference, bool isShort) {
        const OwnedFile file = Open(bytes);
        std::vector<char> text(isShort ? kShortTextCapacity : kTextCapacity, '#');
        (isShort ? ReadShortText : ReadText)(file.Get(), reference, text.data());
        return std::string(text.data());
    };
    EXPECT_EQ(read(1, false), "@PJL SET TRAY=1\r\n");
    EXPECT_EQ(read(1, true), "@PJL SET TRAY=1\r\n");
    EXPECT_EQ(read(2, false), std::string(kTextCapacity - 1, 'x'));
    EXPECT_EQ(read(2, true), std::string(kShortTextCapacity - 1, 'x'));
    EXPECT_EQ(read(3, false), "to the end");
    EXPECT_EQ(read(3, true), "to the end");
    for (const int16_t none : {0, -1, -32768}) {
        EXPECT_EQ(read(none, false), "") << none;
    }
    HeaderOf(bytes).fontPoolOffset = HeaderOf(bytes).textPoolOffset + 4;
    EXPECT_EQ(read(1, false), "@PJL");
    EXPECT_EQ(read(2, false), "");  // begins behind the pool
    HeaderOf(bytes).fontPoolOffset = HeaderOf(bytes).textPoolOffset;
    EXPECT_EQ(read(1, true), "");
    HeaderOf(bytes).fontPoolOffset = 0xFFFFFFFF;
    EXPECT_EQ(read(3, false), "to the endFONT DATA");  // up to the first NUL, in the blob's place
}

TEST_F(DescriptionFile, Images) {
    const auto image = [](uint32_t size, const std::string& rest) {
        BITMAPFILEHEADER header = {};
        header.bfType = 0x4D42;
        header.bfSize = size;
        return std::string(reinterpret_cast<const char*>(&header), sizeof(header)) + rest;
    };
    DescriptionBuilder builder;
    builder.AddImage(image(20, "pixels"));
    builder.AddImage(image(0xFFFFFFFF, "pixels"));
    builder.AddImage(image(13, ""));
    builder.AddImage(image(0, ""));
    builder.AddImage(image(18, "last"));
    std::string bytes = builder.Build();
    bytes.resize(HeaderOf(bytes).imagePoolOffset + 20 + 20 + 14 + 14 + 18);
    const auto read = [&](uint16_t index) { return ReadImage(Open(bytes).Get(), index); };
    const HeapOwner<BITMAPFILEHEADER> first = read(0);
    ASSERT_TRUE(first);
    EXPECT_EQ(memcmp(first.Get(), image(20, "pixels").data(), 20), 0);
    EXPECT_FALSE(read(1));
    EXPECT_FALSE(read(2));
    EXPECT_FALSE(read(3));
    EXPECT_TRUE(read(4));  // ends with the file
    bytes.pop_back();
    EXPECT_FALSE(read(4));
    EXPECT_FALSE(read(0xFFFF));
}

TEST_F(DescriptionFile, TheBlob) {
    const auto read = [](std::string bytes, size_t capacity, std::string* blob) {
        const OwnedFile file = Open(bytes);
        std::vector<char> buffer(capacity, '#');
        const uint16_t size = ReadBlob(file.Get(), buffer.data(), capacity);
        blob->assign(buffer.data(), capacity);
        EXPECT_EQ(ReadBlob(file.Get(), nullptr, 0), static_cast<uint16_t>(HeaderOf(bytes).blobSize));
        return size;
    };
    DescriptionBuilder builder;
    std::string blob;
    EXPECT_EQ(read(builder.Build(), 4, &blob), 0);
    builder.blob = "commands";
    std::string bytes = builder.Build();
    EXPECT_EQ(read(bytes, 10, &blob), 8);
    EXPECT_EQ(blob, "commands##");
    EXPECT_EQ(read(bytes, 7, &blob), 0);  // no room for the whole
    HeaderOf(bytes).blobOffset = static_cast<uint32_t>(bytes.size());
    EXPECT_EQ(read(bytes, 10, &blob), 0);
    HeaderOf(bytes).blobOffset = static_cast<uint32_t>(bytes.size()) - 3;
    EXPECT_EQ(read(bytes, 10, &blob), 8);  // some of it arrived

    // Above 65535 bytes the answer holds the low half, but all is read.
    builder.blob = std::string(65536 + 4, 'b') + "!";
    EXPECT_EQ(read(builder.Build(), 65541, &blob), 5);
    EXPECT_EQ(blob, builder.blob);
}

TEST_F(DescriptionFile, PatternsAndFonts) {
    DescriptionBuilder builder;
    builder.AddPattern(std::string(2048, 'a'));
    builder.AddPattern(std::string(2048, 'b'));
    builder.AddFont(std::string(100, 'f'));
    builder.AddFont(std::string(23, 'g'));
    std::string bytes = builder.Build();
    OwnedFile file = Open(bytes);
    std::string block(2049, '#');
    EXPECT_EQ(ReadPatternBlock(file.Get(), 1, block.data(), 2048), 2048u);
    EXPECT_EQ(block, std::string(2048, 'b') + "#");
    EXPECT_EQ(ReadPatternBlock(file.Get(), 1, nullptr, 2048), 2048u);
    EXPECT_EQ(ReadPatternBlock(file.Get(), 0, block.data(), 0), 0u);
    EXPECT_EQ(block[0], 'b');
    EXPECT_EQ(ReadPatternBlock(file.Get(), -1, nullptr, 0), 0u);
    const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
    EXPECT_EQ(GetFontDataSize(file.Get(), *model), 123u);
    model->fontCount = 0;
    EXPECT_EQ(GetFontDataSize(file.Get(), *model), 0u);
    model->fontCount = 32767;
    HeaderOf(bytes).fontIndexOffset = static_cast<uint32_t>(bytes.size()) - 4;
    file = Open(bytes);
    EXPECT_EQ(GetFontDataSize(file.Get(), *model), 0u);
}

// Every header field in turn leads to the file's end, beyond it, and as far as it goes.
TEST_F(DescriptionFile, HeadersThatPointOutside) {
    DescriptionBuilder builder = SmallModel(kPdlPcl6, kColor);
    builder.AddName("name");
    builder.AddText("text");
    builder.AddImage(std::string(14, 'i'));
    builder.AddFont("font");
    const std::string good = builder.Build();
    for (size_t field = 0; field < sizeof(DescriptionFileHeader); field += sizeof(uint32_t)) {
        for (const uint32_t value : {0u, static_cast<uint32_t>(good.size() - 1), static_cast<uint32_t>(good.size()),
                                     0x7FFFFFFFu, 0xFFFFFFFFu}) {
            std::string bytes = good;
            memcpy(bytes.data() + field, &value, sizeof(value));
            ReadEverything(bytes);
        }
    }
    ReadEverything(std::string(500, '\xFF'));
}

}  // namespace
}  // namespace velmora
