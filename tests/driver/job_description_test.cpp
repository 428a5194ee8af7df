#include "driver/job/job_description.h"

#include <algorithm>
#include <map>
#include <set>

#include "driver/base/text.h"
#include "driver/job/image_job_record.h"
#include "driver/settings/device_info.h"
#include "driver/settings/settings_folder.h"
#include "tests/driver/changed_devmode.h"
#include "tests/driver/job_model.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr DWORD kRecordSize = 1229;

class JobDescription : public MachineTest {
  protected:
    void SetUp() override { Install(PackageOf("")); }

    void Use(const DescriptionBuilder& builder) {
        file_.Close();
        file_ = OpenDescription(builder.Build());
        model_ = LoadDeviceModel(file_.Get());
        ASSERT_TRUE(model_);
    }
    void UseText(DescriptionBuilder builder = JobModel(kPdlImage)) {
        builder.fields.descriptionFlags = 8;
        Use(builder);
    }

    bool Build(std::string* buffer, DWORD* size, const WCHAR* jobName, VelmoraDevMode devMode) {
        const JobPrinter job = {Printer(), kPrinterName, file_.Get(), *model_};
        return BuildJobDescription(buffer ? buffer->data() : nullptr, size, jobName, job, &devMode);
    }

    // The description in a buffer of exactly the size that was told.
    std::string Describe(const VelmoraDevMode& devMode, const WCHAR* jobName = nullptr) {
        DWORD size = 0;
        EXPECT_FALSE(Build(nullptr, &size, jobName, devMode));
        std::string block(size, 'x');
        EXPECT_TRUE(Build(&block, &size, jobName, devMode));
        EXPECT_LE(size, block.size());
        return block.substr(0, size);
    }

    static Texts EntriesOf(const std::string& block) {
        Texts entries;
        for (size_t place = 0; place < block.size() && block[place] != 0; place += entries.back().size() + 1) {
            entries.emplace_back(block.c_str() + place);
        }
        return entries;
    }

    // The values of a key in the order of their entries.
    static Texts ValuesOf(const std::string& block, const std::string& key) {
        Texts values;
        for (const std::string& entry : EntriesOf(block)) {
            if (entry.starts_with(key + "=")) {
                values.push_back(entry.substr(key.size() + 1));
            }
        }
        return values;
    }
};

VelmoraDevMode Plain() {
    VelmoraDevMode devMode = {};
    CopyText(devMode.privatePart.descriptionPath, 160, TEXT("C:\\model.xpi"));
    return devMode;
}

TEST_F(JobDescription, TextHasAnEntryOfEachSettingInOrder) {
    UseText();
    PrepareSettingsFile(kPrinterName);
    WriteProfileName(kPrinterName, TEXT("Office.icc"));
    VelmoraDevMode devMode = With(Plain(),
                                  "imageMode=4096 imageValueA=2 resolutionIndex=1 psContrast=-5 psBrightness=100 "
                                  "extraKeywordIndex=2 featureSelection=1");
    const auto select = [](int16_t(&options)[4], std::initializer_list<int16_t> selections) {
        std::copy(selections.begin(), selections.end(), options);
    };
    select(devMode.privatePart.textColorOptions, {1, 0, 1});
    select(devMode.privatePart.graphicsColorOptions, {1});
    select(devMode.privatePart.imageColorOptions, {0, 1, 0, 1});
    select(devMode.privatePart.generalColorOptions, {0, 1});
    // The third feature needs bit 3 here, which no printer has; the second a stapler.
    std::string expected =
        "modelName=Velmora Test|xpiName=C:\\model.xpi|format=OCM_COLOR_CMYK32|intentText=t01|preserveKText=t10"
        "|correctionText2=t21|intentImage=i00|preserveKImage=i11|correctionImage2=i20|correctionImage3=i31"
        "|intentGraphics=g01|correctionGeneral0=a00|correctionGeneral1=a11|cmm=TRUE|profile=Office.icc|dpi.x=1200"
        "|dpi.y=600|contrast=-5|brightness=100|jobName=Job|EXTRA=E2|FA=A1|FD=D0||";
    std::ranges::replace(expected, '|', '\0');
    EXPECT_EQ(EntriesOf(Describe(devMode, TEXT("Job"))), EntriesOf(expected));
    // With everything in place the size is the block's own.
    std::string block(4096, 'x');
    DWORD size = 4096;
    EXPECT_TRUE(Build(&block, &size, TEXT("Job"), devMode));
    EXPECT_EQ(size, expected.size());
    EXPECT_EQ(block, expected + std::string(4096 - expected.size(), '\0'));
}

TEST_F(JobDescription, TextByModelAndSettings) {
    using Change = void (*)(DescriptionBuilder*);
    struct Case {
        const char* name;
        const char* settings;
        const char* key;
        Texts values;
        Change change = [](DescriptionBuilder*) {};
    };
    const Case cases[] = {
        {"no colour management", "imageValueA=1", "cmm", {"FALSE"}},
        {"no profile without its management", "imageValueA=1", "profile", {}},
        {"any other management", "imageValueA=3", "cmm", {"TRUE"}},
        {"profile that isn't set", "imageValueA=2", "profile", {""}},
        {"last colour format", "imageMode=131072", "format", {"OCM_COLOR_CMYK16"}},
        {"no colour format", "imageMode=0", "format", {"OCM_COLOR_NONE"}},
        {"unlisted colour format", "imageMode=3", "format", {""}},
        {"no such resolution", "resolutionIndex=-1", "dpi.x", {"0"}},
        {"no colour value -1", "textColorOptions=-1", "intentText", {""}},
        {"no colour value past the last", "textColorOptions=2", "intentText", {""}},
        {"the next keeps its key", "textColorOptions=-1", "preserveKText", {"t10"}},
        {"no job name", "", "jobName", {}},
        {"extra keyword 0 of a model with a list", "", "EXTRA", {""}},
        {"extra keyword without a list",
         "extraKeywordIndex=1",
         "EXTRA",
         {},
         [](DescriptionBuilder* builder) { builder->SetSlot(offsetof(DeviceModel, extraKeywordTable), 0); }},
        {"extra keyword without a key",
         "extraKeywordIndex=1",
         "EXTRA",
         {},
         [](DescriptionBuilder* builder) { builder->fields.jobTextRef = 0; }},
        {"no option -1", "featureSelection=-1", "FA", {}},
        {"option without a value", "featureSelection=2", "FA", {}},
        {"no option past the last", "featureSelection=3", "FA", {}},
        {"the next feature keeps its selection", "featureSelection=-1", "FD", {"D0"}},
        {"margins select nothing", "marginMode=1", "FC", {}},
        {"five colour features",
         "",
         "correctionText4",
         {},
         [](DescriptionBuilder* builder) {
             builder->Table(offsetof(DeviceModel, textColorFeatures), std::vector<ColorFeatureRecord>(5, {1, 0}));
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        DescriptionBuilder builder = JobModel(kPdlImage);
        c.change(&builder);
        UseText(builder);
        EXPECT_EQ(ValuesOf(Describe(With(Plain(), c.settings)), c.key), c.values);
    }
    UseText();
    SetDeviceInfo(Printer(), {1, 0, kStaplerInstalled | 8, 0});
    const std::string block = Describe(With(Plain(), "marginMode=1"));
    EXPECT_EQ(ValuesOf(block, "FB"), Texts({"B0"}));
    EXPECT_EQ(ValuesOf(block, "FC"), Texts({"C0"}));  // by its selection, as the others
}

// Whatever the name's length, the need that is told is enough and is never the record's size.
TEST_F(JobDescription, TextOfEveryLength) {
    UseText();
    VelmoraDevMode devMode = Plain();
    std::fill_n(devMode.privatePart.descriptionPath, 160, TEXT('p'));  // unterminated
    int raised = 0;
    for (size_t length = 0; length <= 1000; ++length) {
        const WideText name(length, TEXT('n'));
        DWORD size = 0;
        ASSERT_FALSE(Build(nullptr, &size, name.c_str(), devMode));
        ASSERT_NE(size, kRecordSize);
        raised += size == kRecordSize + 1 ? 1 : 0;
        const std::string block = Describe(devMode, name.c_str());
        ASSERT_NE(block.size(), kRecordSize);
        ASSERT_EQ(ValuesOf(block, "jobName"), Texts({std::string(length, 'n')})) << length;
        ASSERT_EQ(ValuesOf(block, "FD").size(), 1u);
    }
    EXPECT_EQ(raised, 2);  // of its own, and one that would be the record's
    // The same where everything was written: a name by which the block would have the record's size.
    std::string block(2000, 'x');
    DWORD size = 2000;
    ASSERT_TRUE(Build(&block, &size, TEXT(""), devMode));
    const WideText name(kRecordSize - size, TEXT('n'));
    size = 2000;
    EXPECT_TRUE(Build(&block, &size, name.c_str(), devMode));
    EXPECT_EQ(size, kRecordSize + 1);
    size = kRecordSize;
    EXPECT_FALSE(Build(&block, &size, name.c_str(), devMode));
    EXPECT_GT(size, kRecordSize);
}

// Every capacity below the need: entries are whole or missing, nothing is written behind the capacity, and a second
// call with the size that was told fits.
TEST_F(JobDescription, TextInEveryCapacity) {
    UseText();
    const Texts all = EntriesOf(Describe(Plain()));
    DWORD least = 0;
    Build(nullptr, &least, nullptr, Plain());
    for (DWORD capacity = 0; capacity < least; ++capacity) {
        std::string block(capacity + 1, 'x');
        DWORD size = capacity;
        const bool fits = Build(&block, &size, nullptr, Plain());
        ASSERT_EQ(fits, size <= capacity);
        ASSERT_EQ(block.back(), 'x');
        block.back() = 0;
        const Texts entries = EntriesOf(block);
        ASSERT_TRUE(std::ranges::includes(std::multiset(all.begin(), all.end()),
                                          std::multiset(entries.begin(), entries.end())));
        if (fits) {
            continue;
        }
        block.assign(size, 'x');
        ASSERT_TRUE(Build(&block, &size, nullptr, Plain())) << capacity;
        ASSERT_EQ(EntriesOf(block), all);
    }
}

TEST(ImageJobRecord, DerivedFields) {
    struct Case {
        const char* settings;
        size_t offset;
        std::vector<uint16_t> values;
    };
    const Case cases[] = {
        // what the pages are scaled to
        {"uiFitToPaper=9 dmPaperSize=300 scaleValue=1 scaleWidth=2 scaleLength=3", 944, {9, 0, 0}},
        {"uiFitToPaper=0 dmPaperSize=300 scaleValue=1 scaleWidth=2 scaleLength=3", 944, {0, 0, 0}},
        {"uiFitToPaper=65535 dmPaperSize=257 scaleValue=1 scaleWidth=2 scaleLength=3", 944, {1, 2, 3}},
        {"uiFitToPaper=65535 dmPaperSize=256 scaleValue=1 scaleWidth=2 scaleLength=3", 944, {65535, 0, 0}},
        // numbers of another width, signed and not; the whole of several elements
        {"dmPaperWidth=-2 dmPaperLength=3", 936, {0xFFFE, 0xFFFF, 3, 0}},
        {"finishSide=254 finishFlagB=3", 1200, {0xFFFE, 3}},
        {"colorBalance=-1 colorFlagA=5", 1020, {0xFFFF, 0, 0, 5}},
        // what is only there with another field
        {"uiCode=0x4241 uiFlagA=0", 958, {0, 0}},
        {"colorPreset=6 dmICMIntent=0x20003", 1192, {3}},
        {"colorPreset=5 dmICMIntent=3", 1192, {0}},
        {"outputFlag=1", 1196, {0}},
        {"finishFlagA=0 finishChoice=1", 1198, {0}},
        {"finishFlagA=1 finishChoice=0", 1198, {1}},
        {"finishFlagA=1 finishChoice=1", 1198, {2}},
        {"finishFlagA=255 finishChoice=2", 1198, {3}},
        {"finishFlagA=1 finishChoice=3", 1198, {0}},
        // whether the paper is the one that is fed
        {"uiZoomOn=0 uiFitToPaper=9 dmPaperSize=1", 984, {1}},
        {"uiZoomOn=1 uiFitToPaper=9 dmPaperSize=1", 984, {0}},
        {"uiZoomOn=1 uiFitToPaper=9 dmPaperSize=9", 984, {1}},
        {"uiZoomOn=1 uiFitToPaper=65535 dmPaperSize=258", 984, {1}},
    };
    for (const Case& c : cases) {
        VelmoraDevMode devMode = With({}, c.settings);
        ImageJobRecord record = {};
        FillImageJobRecord("", "", &devMode, &record);
        std::vector<uint16_t> values(c.values.size());
        memcpy(values.data(), reinterpret_cast<const char*>(&record) + c.offset, 2 * values.size());
        EXPECT_EQ(values, c.values) << c.settings;
        EXPECT_EQ(ValueOf(devMode.privatePart.uiFlagD), ValueOf(record.paperMatches)) << c.settings;
    }
}

// Papers that are fed as themselves match; so does one that isn't listed.
TEST(ImageJobRecord, FedPapers) {
    const std::map<int, int> fedAsOthers = {{8, 9}, {70, 11}, {12, 13}, {88, 13}};
    for (int paper = 1; paper <= 400; ++paper) {
        VelmoraDevMode devMode = With({}, "uiZoomOn=1 uiFitToPaper=65535 dmPaperSize=" + std::to_string(paper));
        ImageJobRecord record = {};
        FillImageJobRecord("", "", &devMode, &record);
        EXPECT_EQ(ValueOf(record.paperMatches), fedAsOthers.contains(paper) ? 0u : 1u) << paper;
    }
}

// A driver's name longer than the record's field, of characters of two bytes: none is halved.
TEST(ImageJobRecord, LongNamesAreCutBetweenCharacters) {
    host::Machine machine;
    machine.SetAnsiCodePage(932);
    const std::string name = "n" + std::string(40, '\x82');  // 20 characters of two bytes behind one of one
    for (const size_t before : {0, 1}) {
        VelmoraDevMode devMode = {};
        ImageJobRecord record = {};
        FillImageJobRecord(name.c_str() + 1 - before, std::string(300, 'p').c_str(), &devMode, &record);
        EXPECT_EQ(TextLength(record.driverName), before == 1 ? 31u : 30u);
        EXPECT_EQ(TextLength(record.descriptionPath), 199u);
    }
}

}  // namespace
}  // namespace velmora
