// What the PrintTicket provider reads of a printer's model.
#include "driver/ptprovider/printer_snapshot.h"

#include <functional>

#include "driver/base/text.h"
#include "driver/ptprovider/print_schema.h"
#include "tests/driver/machine.h"
#include "tests/driver/resource_file.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

// A name with the preferred prefix of its namespace, "own:" where it has none.
std::string NameOf(const OptionName& name) {
    std::string prefix = "own";
    for (const StandardNamespace& standard : kStandardNamespaces) {
        if (TextsEqual(standard.uri, name.namespaceUri)) {
            prefix = ToText(standard.prefix);
        }
    }
    return prefix + ":" + ToText(name.keyword);
}

// "name display name numbers" of each entry.
template <class Entry, class... Numbers>
Texts Lines(const EntryList<Entry>& list, Numbers... numbers) {
    Texts lines;
    for (const Entry& entry : list) {
        std::string line;
        if constexpr (requires { entry.name; }) {
            line = NameOf(entry.name) + " ";
        }
        line += ToText(entry.displayName);
        ((line += " " + std::to_string(std::invoke(numbers, entry))), ...);
        lines.push_back(line);
    }
    return lines;
}

TEST(Keywords, AreTakenApart) {
    const WideText longName(200, TEXT('n'));
    const struct {
        WideText text;
        std::string expected;
    } cases[] = {
        {TEXT("psk:ISOA4"), "psk:ISOA4"},
        {TEXT("kxp:Card"), "kxp:Card"},
        {TEXT("oem:Special"), "own:Special"},
        {TEXT("Plain"), "own:Plain"},
        {TEXT(":Odd"), "own:Odd"},
        {TEXT("PSK:A4"), "own:A4"},
        {TEXT("pskx:A4"), "own:A4"},
        {TEXT("ps:A4"), "own:A4"},
        {TEXT("psk:a:b"), "psk:a:b"},
        {TEXT("psk"), "own:psk"},
        {TEXT("psk:"), "psk:"},
        {TEXT(""), "own:"},
        {TEXT("kxp:") + longName, "kxp:" + std::string(79, 'n')},
    };
    for (const auto& c : cases) {
        OptionName name;
        ParseKeyword(c.text.c_str(), TEXT("urn:own"), &name);
        EXPECT_EQ(NameOf(name), c.expected) << ToText(c.text);
    }
}

TEST(CustomSizeKeywords, SayTheSize) {
    const struct {
        CustomSizeRecord size;
        const char* expected;
    } cases[] = {
        {{21000, 29700, 1, {}}, "custom_210.0x297.0mm"},
        {{9, 10, 1, {}}, "custom_0.0x0.1mm"},
        {{12349, 123456, 1, {}}, "custom_123.4x1234.5mm"},
        {{21590, 27940, 0, {}}, "custom_8.500x11.000in"},
        {{2539, 2543, 0, {}}, "custom_0.999x1.001in"},
        {{0, 254, 0, {}}, "custom_0.000x0.100in"},
        {{0xFFFFFFFF, 0xFFFFFFFF, 1, {}}, "custom_42949672.9x42949672.9mm"},
    };
    for (const auto& c : cases) {
        WCHAR keyword[kKeywordCapacity];
        FormatCustomSizeKeyword(c.size, keyword);
        EXPECT_EQ(ToText(keyword), c.expected);
    }
}

class Snapshot : public MachineTest {
  protected:
    static constexpr const char* kIni =
        "[PrinterDriver]\r\nMXDWConfig=1\r\n[CustomSizes]\r\nNumCustomSizes=2\r\n"
        "CustomName0=Mine\r\nCustomWidth0=12340\r\nCustomLength0=23450\r\nCustomMetric0=1\r\n"
        "CustomName1=Ours\r\nCustomWidth1=5080\r\nCustomLength1=7620\r\nCustomMetric1=0\r\n";

    // A model with an entry or two in every table.
    static DescriptionBuilder FullModel() {
        DescriptionBuilder b = SmallModel(kPdlPcl6, kColor);
        const auto label = [&](const char* text) { return b.AddString(text); };
        const auto name = [&](const char* text) { return b.AddName(text); };
        b.Table(offsetof(DeviceModel, paperTable),
                std::vector<PaperRecord>{
                    {label("A4"), 9, name("psk:ISOA4"), 2100, 2970, 1, {}, 0, 0, 0, {1, 2, 3}},
                    {label(std::string(200, 'l').c_str()), 300, name("Card"), 1016, 1524, 0, {}, -1, 0, 0, {}}});
        const auto plain = static_cast<int16_t>(label("Plain"));
        const auto gloss = static_cast<int16_t>(label("Gloss"));
        const auto null = static_cast<int16_t>(name("null"));
        b.Table(offsetof(DeviceModel, mediaTable),
                std::vector<MediaRecord>{{1, plain, 0, null, name("psk:Plain"), 257, {4, 5, 6}},
                                         {2, gloss, 0, 0, name("kxp:Gloss"), 258, {}}});
        b.Table(offsetof(DeviceModel, binTable),
                std::vector<BinRecord>{{1, 7, -2117, name("psk:AutoSelect")},
                                       {0x10, 261, static_cast<int16_t>(label(std::string(99, 't').c_str())), 0}});
        b.Table(offsetof(DeviceModel, extraKeywordTable),
                std::vector<ExtraKeywordRecord>{{8, 77, label("Extra"), name("x:Extra")}});
        b.Table(offsetof(DeviceModel, resolutionTable),
                std::vector<ResolutionRecord>{{1, 600, 0, label("600 dpi"), 600, 300, 0, 0, name("R600"), {7, 8, 9}}});
        const size_t lists[] = {offsetof(DeviceModel, extraListA),      offsetof(DeviceModel, extraListB),
                                offsetof(DeviceModel, extraListC),      offsetof(DeviceModel, mediaColorList),
                                offsetof(DeviceModel, photoIntentList), offsetof(DeviceModel, signatureOptionList)};
        for (uint32_t i = 0; i < std::size(lists); ++i) {
            b.Table(lists[i],
                    std::vector<KeywordRecord>{
                        {1, 0, label("Entry"), name(("kxp:E" + std::to_string(i)).c_str()), {}, {i, 0xFFFFFFFF, 0}}});
        }
        // Two features share a run, one leads outside, one has no options.
        const std::vector<OptionRecord> options = {
            {label("One"), 0, name("kxp:One")}, {label("Two"), 0, name("psk:Two")}, {}, {label("Three"), 0, name("3")}};
        b.Table(offsetof(DeviceModel, optionTable), options);
        b.Table(offsetof(DeviceModel, featureTable),
                std::vector<FeatureRecord>{{label("F0"), 0, 0x10, 0, name("kxp:F0")},
                                           {label("F1"), 0, 0, 1, name("F1")},
                                           {label("F2"), 0, 0, 32767, name("F2")},
                                           {label("F3"), 0, 0, -1, name("F3")},
                                           {label("F4"), 0, 0, 2, name("F4")}});
        b.Table(offsetof(DeviceModel, colorModeTable),
                std::vector<ColorModeRecord>{{kColorModeHasDefaults, label("Vivid"), 0},
                                             {kColorModeManual, 0, -1},
                                             {kColorModeSystem, 0, -1},
                                             {1, 0, -1}});
        const std::vector<ColorFeatureRecord> features(6, {label("Tone"), 1});
        b.Table(offsetof(DeviceModel, textColorFeatures), features);
        b.Table(offsetof(DeviceModel, generalColorFeatures),
                std::vector<ColorFeatureRecord>{{label("None"), -7}, {label("Last"), 2}});
        b.Table(offsetof(DeviceModel, colorOptionValues),
                std::vector<ColorValueRecord>{{}, {label("Soft"), 0, 0, 0, 0}, {label("Hard"), 0, 0, 0, 0}});
        return b;
    }

    void InstallFull(const DescriptionBuilder& builder) {
        DriverPackage package = PackageOf(builder.Build(), kIni);
        package.dependent[0].bytes = StringModule({{2117, TEXT("Any tray")},
                                                   {2420, TEXT("ini")},
                                                   {2654, TEXT("ovl")},
                                                   {3361, TEXT("Manual")},
                                                   {3362, TEXT("System")},
                                                   {3363, TEXT("Printer")}});
        Install(package);
    }
};

TEST_F(Snapshot, HasAnEntryForEachRecord) {
    DescriptionBuilder builder = FullModel();
    builder.blob = "commands";
    InstallFull(builder);
    const OwnedSnapshot owner = LoadPrinterSnapshot(Printer());
    ASSERT_TRUE(owner);
    const PrinterSnapshot& snapshot = *owner.Get();
    const auto first = [](const auto& entry) { return entry.options.first; };
    const auto count = [](const auto& entry) { return entry.options.count; };
    const auto last = [](const auto& entry) { return entry.ticketValues[2]; };
    EXPECT_EQ(Lines(snapshot.papers, &PaperEntry::width, &PaperEntry::length, &PaperEntry::isMetric,
                    &PaperEntry::paperId, last),
              (Texts{"psk:ISOA4 A4 210000 297000 1 9 3", "oem:Card " + std::string(127, 'l') + " 101600 152400 0 300 0",
                     "oem:custom_123.4x234.5mm Mine 123400 234500 1 448 0",
                     "oem:custom_2.000x3.000in Ours 50800 76200 0 449 0"}));
    EXPECT_EQ(Lines(snapshot.media, &MediaEntry::index, last), (Texts{"psk:Plain Plain 1 6", "kxp:Gloss Gloss 2 0"}));
    EXPECT_EQ(ToText(snapshot.media[0].rendererName), "null");
    EXPECT_EQ(Lines(snapshot.trays, &TrayEntry::optionMask, &TrayEntry::binId),
              (Texts{"psk:AutoSelect Any tray 1 7", "oem: " + std::string(47, 't') + " 16 261"}));
    EXPECT_EQ(Lines(snapshot.extraKeywords, &ExtraKeywordEntry::optionMask, &ExtraKeywordEntry::id),
              Texts{"oem:Extra Extra 8 77"});
    EXPECT_EQ(Lines(snapshot.resolutions, &ResolutionEntry::xDpi, &ResolutionEntry::yDpi,
                    &ResolutionEntry::resolutionId, last),
              Texts{"oem:R600 600 dpi 600 300 600 9"});
    size_t number = 0;
    for (const auto* const list : {&snapshot.extraListA, &snapshot.extraListB, &snapshot.extraListC,
                                   &snapshot.mediaColors, &snapshot.photoIntents, &snapshot.signatureOptions}) {
        EXPECT_EQ(Lines(*list), Texts{"kxp:E" + std::to_string(number++) + " Entry"});
        EXPECT_EQ((*list)[0].ticketValues[1], 0xFFFFFFFF);
    }
    EXPECT_EQ(Lines(snapshot.features, &FeatureEntry::featureMask, first, count),
              (Texts{"kxp:F0 F0 16 0 2", "oem:F1 F1 0 1 1", "oem:F2 F2 0 0 0", "oem:F3 F3 0 0 0", "oem:F4 F4 0 0 0"}));
    EXPECT_EQ(Lines(snapshot.options), (Texts{"kxp:One One", "psk:Two Two"}));
    EXPECT_EQ(Lines(snapshot.colorModes, &ColorModeEntry::kind),
              (Texts{"Vivid 8", "Manual 4", "System 2", "Printer 1"}));
    EXPECT_EQ(snapshot.colorModeKinds, 15u);
    const auto firstValue = [](const ColorFeatureEntry& entry) { return entry.values.first; };
    const auto values = [](const ColorFeatureEntry& entry) { return entry.values.count; };
    EXPECT_EQ(Lines(snapshot.colorFeatures[0], firstValue, values), Texts(4, "Tone 1 2"));
    EXPECT_EQ(Lines(snapshot.colorFeatures[3], firstValue, values), (Texts{"None 0 0", "Last 2 1"}));
    ASSERT_EQ(snapshot.colorValues.count, 3u);
    EXPECT_EQ(ToText(snapshot.colorValues[2].displayName), "Hard");
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(snapshot.blob.Get()), snapshot.blobSize), "commands");
    EXPECT_EQ(ToText(snapshot.ownPrefix), "oem");
    EXPECT_EQ(ToText(snapshot.ownNamespace), ToText(kOemNamespace));
    EXPECT_TRUE(ToText(snapshot.descriptionPath).ends_with("\\3\\KV62.XPI"));
    EXPECT_EQ(snapshot.installed.installedOptions, 0x11u);
    EXPECT_TRUE(snapshot.isXpsWriter);
}

TEST_F(Snapshot, TakesTheModelsNamespace) {
    DescriptionBuilder builder = FullModel();
    builder.fields.oemNamespaceRef = builder.AddName("urn:" + std::string(200, 'm'));
    builder.fields.oemPrefixRef = builder.AddName("mine");
    InstallFull(builder);
    const OwnedSnapshot owner = LoadPrinterSnapshot(Printer());
    EXPECT_EQ(ToText(owner.Get()->ownNamespace), "urn:" + std::string(155, 'm'));
    EXPECT_EQ(ToText(owner.Get()->ownPrefix), "mine");
    EXPECT_EQ(owner.Get()->resolutions[0].name.namespaceUri, owner.Get()->ownNamespace);
}

TEST_F(Snapshot, OfAPrinterWithoutModel) {
    Install("");
    const OwnedSnapshot owner = LoadPrinterSnapshot(Printer());
    ASSERT_TRUE(owner);
    const PrinterSnapshot& snapshot = *owner.Get();
    EXPECT_FALSE(snapshot.model);
    EXPECT_FALSE(snapshot.descriptionFile);
    EXPECT_EQ(snapshot.papers.count + snapshot.trays.count + snapshot.blobSize, 0u);
    EXPECT_EQ(ToText(snapshot.ownPrefix), "oem");
    EXPECT_FALSE(snapshot.isXpsWriter);
}

TEST_F(Snapshot, ReadsTheFileAtOnceHoweverManyEntries) {
    Install("");
    const auto readsWith = [&](uint16_t papers) {
        DescriptionBuilder builder = SmallModel(kPdlPcl6);
        std::vector<PaperRecord> records(papers);
        for (uint16_t i = 0; i < papers; ++i) {
            records[i].nameRef = builder.AddString("Paper " + std::to_string(i));
            records[i].keywordRef = builder.AddName("kxp:P" + std::to_string(i));
        }
        builder.Table(offsetof(DeviceModel, paperTable), records);
        DriverPackage package = PackageOf(builder.Build());
        package.driverName = TEXT("Many ") + WideText(1, static_cast<WCHAR>(TEXT('0') + papers % 10));
        const WideText printerName = package.driverName;
        InstallPrinter(package, printerName);
        const OwnedPrinter printer = OpenWithAllAccess(printerName);
        const uint64_t before = host::CallsSoFar("ReadFile");
        const OwnedSnapshot owner = LoadPrinterSnapshot(printer.Get());
        EXPECT_EQ(owner.Get()->papers.count, papers);
        EXPECT_EQ(NameOf(owner.Get()->papers[papers - 1u].name), "kxp:P" + std::to_string(papers - 1));
        return host::CallsSoFar("ReadFile") - before;
    };
    EXPECT_EQ(readsWith(2000), readsWith(1));
}

// Whatever the header says, texts that are read at once are those that are read singly.
TEST_F(Snapshot, PooledTextsAreTheFilesTexts) {
    DescriptionBuilder builder = FullModel();
    const std::string good = builder.Build();
    for (const uint32_t shift : {0u, 1u, 40u, 1000000u, 0xFFFFFFFFu}) {
        for (const size_t field :
             {offsetof(DescriptionFileHeader, languageTableOffset), offsetof(DescriptionFileHeader, stringIndexOffset),
              offsetof(DescriptionFileHeader, stringPoolOffset), offsetof(DescriptionFileHeader, nameIndexOffset),
              offsetof(DescriptionFileHeader, namePoolOffset)}) {
            std::string bytes = good;
            uint32_t offset = 0;
            memcpy(&offset, bytes.data() + field, sizeof(offset));
            offset += shift;
            memcpy(bytes.data() + field, &offset, sizeof(offset));
            const OwnedFile file = OpenDescription(bytes);
            const StringPool pool(file.Get(), LANG_ENGLISH, nullptr);
            for (int reference = -2; reference < 300; reference += reference < 40 ? 1 : 37) {
                WCHAR pooled[40];
                WCHAR single[40];
                pool.ReadName(static_cast<int16_t>(reference), pooled, ARRAYSIZE(pooled));
                ReadName(file.Get(), static_cast<int16_t>(reference), single, ARRAYSIZE(single));
                EXPECT_EQ(ToText(pooled), ToText(single)) << field << "+" << shift << " name " << reference;
                pool.ReadLocalizedString(static_cast<int16_t>(reference), pooled, ARRAYSIZE(pooled));
                ReadLocalizedString(file.Get(), LANG_ENGLISH, nullptr, static_cast<int16_t>(reference), single,
                                    ARRAYSIZE(single));
                EXPECT_EQ(ToText(pooled), ToText(single)) << field << "+" << shift << " string " << reference;
            }
        }
    }
}

}  // namespace
}  // namespace velmora
