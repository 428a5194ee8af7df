#include "driver/devdesc/paper_lookup.h"

#include <cstring>

#include "driver/devdesc/description_file.h"
#include "tests/driver/description_builder.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

PaperRecord Paper(int16_t id, int16_t width, int16_t length, int16_t pclSizeCode = 0, int16_t isMetric = 0) {
    PaperRecord record = {};
    record.nameRef = 1;
    record.paperId = id;
    record.width = width;
    record.length = length;
    record.pclSizeCode = pclSizeCode;
    record.isMetric = isMetric;
    return record;
}

MarginRecord Margins(uint16_t orientations, int16_t left, int16_t top, int16_t right, int16_t bottom) {
    MarginRecord record = {};
    record.mark = 1;
    record.orientationMask = orientations;
    record.unit = 600;
    record.leftMargin = left;
    record.topMargin = top;
    record.rightMargin = right;
    record.bottomMargin = bottom;
    return record;
}

void AddPaper(MarginRecord* record, int id) {
    record->papers.bytes[id / 8] = static_cast<uint8_t>(record->papers.bytes[id / 8] | (0x80 >> (id % 8)));
}

class PaperLookup : public MachineTest {
  protected:
    // A printer of this model.
    void InstallModel(const DescriptionBuilder& builder, const std::string& iniFile = "") {
        DriverPackage package = PackageOf(builder.Build());
        if (!iniFile.empty()) {
            package.dependent.push_back({u"KV62.INI", iniFile});
        }
        Install(package);
        model_ = LoadDeviceModel(OpenDescriptionFile(Printer()).Get());
        ASSERT_TRUE(model_);
    }

    void TearDown() override {
        model_.Reset(nullptr);
        MachineTest::TearDown();
    }

    // "width x length unit", the unit being the metric flag.
    std::string Size(int id) const { return Size(model_.Get(), id); }
    std::string Size(const DeviceModel* model, int id) const {
        const PaperSize size = LookupPaperSize(Printer(), model, id);
        return std::to_string(size.width) + "x" + std::to_string(size.length) + " " + std::to_string(size.isMetric);
    }

    void AddForm(WideText name, DWORD flags, LONG width, LONG length) {
        FORM_INFO_1W form = {};
        form.Flags = flags;
        form.pName = name.data();
        form.Size = {width, length};
        form.ImageableArea = {0, 0, width, length};
        ASSERT_TRUE(AddFormW(Printer(), 1, reinterpret_cast<BYTE*>(&form))) << GetLastError();
    }

    std::string MarginsOf(int signedId, WORD orientation = kPortraitMargins, LONG scale = 600) const {
        return MarginsOf(model_.Get(), signedId, orientation, scale);
    }
    std::string MarginsOf(const DeviceModel* model, int signedId, WORD orientation, LONG scale) const {
        const MarginPair margins = GetPrintableMargins(Printer(), model, signedId, orientation, scale);
        return std::to_string(margins.horizontal) + "," + std::to_string(margins.vertical);
    }

    HeapOwner<DeviceModel> model_;
};

constexpr const char* kA4 = "2100x2970 1";
constexpr const char* kLetter = "2159x2794 0";

TEST_F(PaperLookup, PapersOfTheTable) {
    InstallModel(SmallModel(kPdlXps));
    EXPECT_EQ(Size(9), "2101x2971 1");
    EXPECT_EQ(Size(1), kLetter);
    EXPECT_EQ(Size(300), kA4);  // 119 to 447 never reach the table, though it has this id
    EXPECT_EQ(Size(118), kA4);
    EXPECT_EQ(Size(0), kA4);
    EXPECT_EQ(Size(nullptr, 9), kA4);
}

TEST_F(PaperLookup, IdsThatNameNoPaperAreTheLocales) {
    DescriptionBuilder builder;
    std::vector<PaperRecord> papers;
    for (const int16_t id : {118, 119, 200, 447, 448, -5}) {
        papers.push_back(Paper(id, 1000, 1500));
    }
    builder.Table(offsetof(DeviceModel, paperTable), papers);
    builder.fields.pdlType = kPdlXps;
    InstallModel(builder);
    for (const bool isMetric : {true, false}) {
        machine_.SetMetric(isMetric);
        for (const int id : {119, 200, 447, -5, -1, 30000}) {
            EXPECT_EQ(Size(id), isMetric ? kA4 : kLetter) << id;
        }
        EXPECT_EQ(Size(118), "1000x1500 0");
        EXPECT_EQ(Size(448), "1000x1500 0");
        EXPECT_EQ(Size(nullptr, 118), isMetric ? kA4 : kLetter);
    }
    const HeapOwner<DeviceModel> bare = HeapOwner<DeviceModel>::Allocate();
    EXPECT_EQ(Size(bare.Get(), 448), kLetter);
}

// Driver-defined papers of PCL models: 511 and down for the negative size codes in order, 512 + code for the others.
TEST_F(PaperLookup, CardsAndSizeCodesOfPclModels) {
    const std::vector<PaperRecord> papers = {
        Paper(9, 2101, 2971, 26, 1), Paper(601, 762, 1270, -1),  Paper(1, 2159, 2794, 2),
        Paper(602, 1016, 1524, -1),  Paper(603, 1100, 1600, -7), Paper(120, 900, 1400, 90),
    };
    constexpr struct {
        int id;
        const char* pcl;
        const char* other;
    } kCases[] = {
        {511, "762x1270 0", kA4},
        {510, "1016x1524 0", kA4},
        {509, "1100x1600 0", kA4},
        {508, kA4, kA4},
        {512, kA4, kA4},
        {512 + 2, "2159x2794 0", kA4},
        {512 + 26, "2101x2971 1", kA4},
        {512 + 90, "1016x1524 0", "1016x1524 0"},
        {513, kA4, kA4},
        {601, "762x1270 0", "762x1270 0"},
        {603, "1100x1600 0", "1100x1600 0"},
    };
    DescriptionBuilder builder;
    builder.Table(offsetof(DeviceModel, paperTable), papers);
    InstallModel(builder);
    for (const uint16_t pdlType : {kPdlPcl6, kPdlPcl5, kPdlPostScript, kPdlImage, kPdlXps, kPdlOwn}) {
        model_->pdlType = pdlType;
        for (const auto& c : kCases) {
            EXPECT_EQ(Size(c.id), pdlType <= kPdlPcl5 ? c.pcl : c.other) << c.id << " on " << pdlType;
        }
    }
}

// The first record that matches any of the tests wins, in table order.
TEST_F(PaperLookup, TheFirstMatchWins) {
    DescriptionBuilder builder;
    builder.Table(offsetof(DeviceModel, paperTable),
                  std::vector<PaperRecord>{Paper(700, 100, 200, -1), Paper(511, 300, 400, -1), Paper(510, 500, 600)});
    InstallModel(builder);
    EXPECT_EQ(Size(511), "100x200 0");
    EXPECT_EQ(Size(510), "300x400 0");
    model_->pdlType = kPdlPostScript;
    EXPECT_EQ(Size(511), "300x400 0");
    EXPECT_EQ(Size(510), "500x600 0");
}

constexpr const char* kTwoSizes =
    "[CustomSizes]\r\nNumCustomSizes=2\r\n"
    "CustomName0=One\r\nCustomWidth0=12345\r\nCustomLength0=23459\r\nCustomMetric0=1\r\n"
    "CustomName1=Two\r\nCustomWidth1=10000\r\nCustomLength1=20000\r\nCustomMetric1=0\r\n";

TEST_F(PaperLookup, CustomSizesThenUserForms) {
    InstallModel(SmallModel(kPdlPcl6), kTwoSizes);
    AddForm(u"Printer form", FORM_PRINTER, 50000, 60000);
    AddForm(u"User form", FORM_USER, 100004, 199996);
    EXPECT_EQ(Size(448), "1234x2345 1");
    EXPECT_EQ(Size(449), "1000x2000 0");
    EXPECT_EQ(Size(450), "1000x2000 1");
    EXPECT_EQ(Size(451), kA4);
    machine_.SetMetric(false);
    EXPECT_EQ(Size(450), "1000x2000 0");
    EXPECT_EQ(Size(451), kLetter);
}

TEST_F(PaperLookup, CustomSizesComeAfterTheTable) {
    DescriptionBuilder builder;
    builder.Table(offsetof(DeviceModel, paperTable), std::vector<PaperRecord>{Paper(449, 700, 800)});
    builder.fields.pdlType = kPdlXps;
    InstallModel(builder, kTwoSizes);
    EXPECT_EQ(Size(448), "1234x2345 1");
    EXPECT_EQ(Size(449), "700x800 0");
}

TEST_F(PaperLookup, MarginsOfPapers) {
    MarginRecord first = Margins(kPortraitMargins, 100, 110, 120, 130);
    AddPaper(&first, 9);
    AddPaper(&first, 255);
    MarginRecord second = Margins(kLandscapeMargins, 200, 210, 220, 230);
    AddPaper(&second, 9);
    MarginRecord third = Margins(kPortraitMargins | kLandscapeMargins, 300, 310, 320, 330);
    AddPaper(&third, 9);
    AddPaper(&third, 1);
    AddPaper(&third, 0);
    third.maxWidth = 10;
    DescriptionBuilder builder;
    builder.Table(offsetof(DeviceModel, marginTable), std::vector<MarginRecord>{first, second, third});
    InstallModel(builder);
    EXPECT_EQ(MarginsOf(9), "100,110");
    EXPECT_EQ(MarginsOf(-9), "120,130");
    EXPECT_EQ(MarginsOf(9, kLandscapeMargins), "200,210");
    EXPECT_EQ(MarginsOf(-9, kLandscapeMargins), "220,230");
    EXPECT_EQ(MarginsOf(1), "300,310");
    EXPECT_EQ(MarginsOf(1, kLandscapeMargins), "300,310");
    EXPECT_EQ(MarginsOf(255), "100,110");
    EXPECT_EQ(MarginsOf(0), "320,330");     // right and bottom; the custom bit, no size to look at
    EXPECT_EQ(MarginsOf(8), "150,150");     // in no set: a quarter inch
    EXPECT_EQ(MarginsOf(9, 0), "150,150");  // no orientation at all
    EXPECT_EQ(MarginsOf(8, kPortraitMargins, 25400), "6350,6350");
    EXPECT_EQ(MarginsOf(nullptr, 9, kPortraitMargins, 603), "150,150");
    const HeapOwner<DeviceModel> bare = HeapOwner<DeviceModel>::Allocate();
    EXPECT_EQ(MarginsOf(bare.Get(), 9, kPortraitMargins, 1200), "300,300");
}

TEST_F(PaperLookup, MarginsOfIdsThatNameNoPaperAreTheLocales) {
    MarginRecord a4 = Margins(kPortraitMargins, 1, 2, 3, 4);
    AddPaper(&a4, 9);
    MarginRecord letter = Margins(kPortraitMargins, 5, 6, 7, 8);
    AddPaper(&letter, 1);
    MarginRecord custom = Margins(kPortraitMargins, 9, 10, 11, 12);
    for (int id = 119; id < 256; ++id) {
        AddPaper(&custom, id);
    }
    AddPaper(&custom, 0);
    custom.maxWidth = 32767;
    custom.maxLength = 32767;
    DescriptionBuilder builder;
    builder.Table(offsetof(DeviceModel, marginTable), std::vector<MarginRecord>{custom, a4, letter});
    InstallModel(builder);
    for (const int id : {119, 255, 256, 447}) {
        machine_.SetMetric(true);
        EXPECT_EQ(MarginsOf(id), "1,2") << id;
        EXPECT_EQ(MarginsOf(-id), "3,4") << id;
        machine_.SetMetric(false);
        EXPECT_EQ(MarginsOf(id), "5,6") << id;
    }
    EXPECT_EQ(MarginsOf(448), "9,10");
}

TEST_F(PaperLookup, MarginsOfCustomSizesGoByTheirLimits) {
    MarginRecord narrow = Margins(kPortraitMargins, 1, 1, 1, 1);
    AddPaper(&narrow, 0);
    narrow.minWidth = 900;
    narrow.maxWidth = 1000;
    narrow.minLength = 2000;
    narrow.maxLength = 2000;
    MarginRecord wide = Margins(kPortraitMargins, 2, 2, 2, 2);
    AddPaper(&wide, 0);
    wide.minWidth = 1001;
    wide.maxWidth = 1234;
    wide.minLength = 0;
    wide.maxLength = 2344;
    MarginRecord longer = wide;
    longer.leftMargin = 3;
    longer.maxLength = 2345;
    MarginRecord notCustom = Margins(kPortraitMargins, 4, 4, 4, 4);
    AddPaper(&notCustom, 1);
    notCustom.maxWidth = 32767;
    notCustom.maxLength = 32767;
    MarginRecord wider = Margins(kPortraitMargins, 5, 5, 5, 5);
    AddPaper(&wider, 0);
    wider.minWidth = 1235;
    wider.maxWidth = 1300;
    wider.maxLength = 2345;
    MarginRecord taller = Margins(kPortraitMargins, 6, 6, 6, 6);
    AddPaper(&taller, 0);
    taller.maxWidth = 1300;
    taller.minLength = 2346;
    taller.maxLength = 2400;
    DescriptionBuilder builder = SmallModel(kPdlPcl6);
    builder.Table(offsetof(DeviceModel, marginTable),
                  std::vector<MarginRecord>{notCustom, wider, taller, narrow, wide, longer});
    InstallModel(builder, kTwoSizes);
    EXPECT_EQ(MarginsOf(448), "3,2");
    EXPECT_EQ(MarginsOf(449), "1,1");
    EXPECT_EQ(MarginsOf(450), "150,150");  // A4 by the locale, which no record holds for
}

// The product first, then the quotient toward zero, then 16 bits.
TEST_F(PaperLookup, MarginArithmetic) {
    MarginRecord record = Margins(kPortraitMargins, -101, 32767, 200, 1);
    AddPaper(&record, 9);
    DescriptionBuilder builder;
    builder.Table(offsetof(DeviceModel, marginTable), std::vector<MarginRecord>{record});
    InstallModel(builder);
    auto* stored = const_cast<MarginRecord*>(model_->marginTable);
    stored->unit = 1200;
    EXPECT_EQ(MarginsOf(-9, kPortraitMargins, 600), "100,0");
    EXPECT_EQ(MarginsOf(9, kPortraitMargins, 600), "-50,16383");
    stored->unit = 600;
    EXPECT_EQ(MarginsOf(9, kPortraitMargins, 25400),
              std::to_string(-101 * 25400 / 600) + "," +
                  std::to_string(static_cast<int16_t>(static_cast<int64_t>(32767) * 25400 / 600)));
    stored->unit = -600;
    EXPECT_EQ(MarginsOf(-9, kPortraitMargins, 600), "-200,-1");
    stored->unit = 0;
    EXPECT_EQ(MarginsOf(9, kPortraitMargins, 600), "150,150");
}

}  // namespace
}  // namespace velmora
