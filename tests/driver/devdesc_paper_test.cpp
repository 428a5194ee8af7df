#include "driver/devdesc/paper_lookup.h"

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

// Margins `left`, `left` + 1, … clockwise from the left, in 600 dpi, of these papers; 0 stands for custom sizes.
MarginRecord Margins(uint16_t orientations, int16_t left, const std::vector<int>& papers) {
    MarginRecord record = {};
    record.mark = 1;
    record.orientationMask = orientations;
    record.unit = 600;
    record.leftMargin = left;
    record.topMargin = static_cast<int16_t>(left + 1);
    record.rightMargin = static_cast<int16_t>(left + 2);
    record.bottomMargin = static_cast<int16_t>(left + 3);
    for (const int id : papers) {
        record.papers.bytes[id / 8] |= static_cast<uint8_t>(0x80 >> (id % 8));
    }
    return record;
}

MarginRecord CustomMargins(int16_t left, uint16_t minWidth, uint16_t maxWidth, uint16_t minLength, uint16_t maxLength) {
    MarginRecord record = Margins(kPortraitMargins, left, {0});
    record.minWidth = minWidth;
    record.maxWidth = maxWidth;
    record.minLength = minLength;
    record.maxLength = maxLength;
    return record;
}

constexpr const char* kTwoSizes =
    "[CustomSizes]\r\nNumCustomSizes=2\r\n"
    "CustomName0=One\r\nCustomWidth0=12345\r\nCustomLength0=23459\r\nCustomMetric0=1\r\n"
    "CustomName1=Two\r\nCustomWidth1=10000\r\nCustomLength1=20000\r\nCustomMetric1=0\r\n";

class PaperLookup : public MachineTest {
  protected:
    // A printer of this model.
    void InstallModel(const DescriptionBuilder& builder, const std::string& iniFile = "") {
        Install(PackageOf(builder.Build(), iniFile));
        model_ = LoadDeviceModel(OpenDescriptionFile(Printer()).Get());
        ASSERT_TRUE(model_);
    }
    void InstallPapers(const std::vector<PaperRecord>& papers, uint16_t pdlType, const std::string& iniFile = "") {
        DescriptionBuilder builder;
        builder.fields.pdlType = pdlType;
        builder.Table(offsetof(DeviceModel, paperTable), papers);
        InstallModel(builder, iniFile);
    }
    void InstallMargins(const std::vector<MarginRecord>& margins) {
        DescriptionBuilder builder = SmallModel(kPdlPcl6);
        builder.Table(offsetof(DeviceModel, marginTable), margins);
        InstallModel(builder, kTwoSizes);
    }

    // "width x length unit", the unit being the metric flag.
    std::string Size(int id) const { return Size(model_.Get(), id); }
    std::string Size(const DeviceModel* model, int id) const {
        const PaperSize size = LookupPaperSize(Printer(), model, id);
        return std::to_string(size.width) + "x" + std::to_string(size.length) + " " + std::to_string(size.isMetric);
    }
    std::string MarginsOf(int signedId, WORD orientation = kPortraitMargins, LONG scale = 600) const {
        const MarginPair margins = GetPrintableMargins(Printer(), model_.Get(), signedId, orientation, scale);
        return std::to_string(margins.horizontal) + "," + std::to_string(margins.vertical);
    }
};

constexpr const char* kA4 = "2100x2970 1";
constexpr const char* kLetter = "2159x2794 0";

// 119 to 447 and negative ones never reach the table.
TEST_F(PaperLookup, IdsThatNameNoPaperAreTheLocales) {
    std::vector<PaperRecord> papers;
    for (const int16_t id : {118, 119, 200, 447, 448, -5}) {
        papers.push_back(Paper(id, 1000, 1500));
    }
    InstallPapers(papers, kPdlXps);
    const HeapOwner<DeviceModel> bare = HeapOwner<DeviceModel>::Allocate();
    for (const bool isMetric : {true, false}) {
        machine_.SetMetric(isMetric);
        for (const int id : {0, 117, 119, 200, 447, -5, -1, 30000}) {
            EXPECT_EQ(Size(id), isMetric ? kA4 : kLetter) << id;
        }
        EXPECT_EQ(Size(118), "1000x1500 0");
        EXPECT_EQ(Size(448), "1000x1500 0");
        EXPECT_EQ(Size(nullptr, 118), isMetric ? kA4 : kLetter);
        EXPECT_EQ(Size(bare.Get(), 448), isMetric ? kA4 : kLetter);
    }
}

// Driver-defined papers of PCL models: 511 and down for the negative size codes in order, 512 + code for the others.
TEST_F(PaperLookup, CardsAndSizeCodesOfPclModels) {
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
        {512 + 90, "1016x1524 0", "1016x1524 0"},  // the id of a record before that of the code
        {603, "1100x1600 0", "1100x1600 0"},
    };
    InstallPapers({Paper(9, 2101, 2971, 26, 1), Paper(601, 762, 1270, -1), Paper(1, 2159, 2794, 2),
                   Paper(602, 1016, 1524, -1), Paper(603, 1100, 1600, -7), Paper(120, 900, 1400, 90)},
                  kPdlPcl6);
    for (const uint16_t pdlType : {kPdlPcl6, kPdlPcl5, kPdlPostScript, kPdlImage, kPdlXps, kPdlOwn}) {
        model_->pdlType = pdlType;
        for (const auto& c : kCases) {
            EXPECT_EQ(Size(c.id), pdlType <= kPdlPcl5 ? c.pcl : c.other) << c.id << " on " << pdlType;
        }
    }
}

// The first record that matches any of the tests wins, in table order.
TEST_F(PaperLookup, TheFirstMatchWins) {
    InstallPapers({Paper(700, 100, 200, -1), Paper(511, 300, 400, -1), Paper(510, 500, 600)}, kPdlPcl6);
    EXPECT_EQ(Size(511), "100x200 0");
    EXPECT_EQ(Size(510), "300x400 0");
    model_->pdlType = kPdlPostScript;
    EXPECT_EQ(Size(511), "300x400 0");
    EXPECT_EQ(Size(510), "500x600 0");
}

TEST_F(PaperLookup, TheTableThenCustomSizesThenUserForms) {
    InstallPapers({Paper(449, 700, 800)}, kPdlXps, kTwoSizes);
    AddForm(TEXT("Printer form"), FORM_PRINTER, 50000, 60000);
    AddForm(TEXT("User form"), FORM_USER, 100004, 199996);
    EXPECT_EQ(Size(448), "1234x2345 1");
    EXPECT_EQ(Size(449), "700x800 0");
    EXPECT_EQ(Size(450), "1000x2000 1");
    EXPECT_EQ(Size(451), kA4);
    AddForm(TEXT("Vast form"), FORM_USER, 2000000000, 199996);
    EXPECT_EQ(Size(451), "32767x2000 1") << "as much as a device mode can hold";
    WideText vast = TEXT("Vast form");
    DeleteFormW(Printer(), vast.data());
    machine_.SetMetric(false);
    EXPECT_EQ(Size(450), "1000x2000 0");
    EXPECT_EQ(Size(451), kLetter);
}

TEST_F(PaperLookup, MarginsOfPapers) {
    InstallMargins({Margins(kPortraitMargins, 100, {9, 255}), Margins(kLandscapeMargins, 200, {9}),
                    Margins(kPortraitMargins | kLandscapeMargins, 300, {9, 1, 0})});
    constexpr struct {
        int signedId;  // negative: right and bottom
        WORD orientation;
        LONG scale;
        const char* margins;
    } kCases[] = {
        {9, kPortraitMargins, 600, "100,101"},
        {-9, kPortraitMargins, 600, "102,103"},
        {9, kLandscapeMargins, 600, "200,201"},
        {-9, kLandscapeMargins, 600, "202,203"},
        {1, kPortraitMargins, 600, "300,301"},
        {1, kLandscapeMargins, 600, "300,301"},
        {255, kPortraitMargins, 600, "100,101"},
        {0, kPortraitMargins, 600, "302,303"},  // the custom bit, no size to look at
        {9, 0, 600, "150,150"},                 // no orientation at all: a quarter inch
        {8, kPortraitMargins, 25403, "6350,6350"},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(MarginsOf(c.signedId, c.orientation, c.scale), c.margins) << c.signedId << " " << c.orientation;
    }
    model_ = HeapOwner<DeviceModel>::Allocate();
    EXPECT_EQ(MarginsOf(9), "150,150");
    model_.Reset(nullptr);
    EXPECT_EQ(MarginsOf(9), "150,150");
}

TEST_F(PaperLookup, MarginsOfIdsThatNameNoPaperAreTheLocales) {
    std::vector<int> others = {0};
    for (int id = 119; id < 256; ++id) {
        others.push_back(id);
    }
    MarginRecord custom = Margins(kPortraitMargins, 9, others);
    custom.maxWidth = 32767;
    custom.maxLength = 32767;
    InstallMargins({custom, Margins(kPortraitMargins, 1, {9}), Margins(kPortraitMargins, 5, {1})});
    for (const int id : {119, 255, 256, 447}) {
        machine_.SetMetric(true);
        EXPECT_EQ(MarginsOf(id), "1,2") << id;
        EXPECT_EQ(MarginsOf(-id), "3,4") << id;
        machine_.SetMetric(false);
        EXPECT_EQ(MarginsOf(id), "5,6") << id;
    }
    EXPECT_EQ(MarginsOf(448), "9,10");
}

// The sizes are 1234 x 2345 and 1000 x 2000.
TEST_F(PaperLookup, MarginsOfCustomSizesGoByTheirLimits) {
    MarginRecord notCustom = CustomMargins(4, 0, 32767, 0, 32767);
    notCustom.papers.bytes[0] = 0x40;
    InstallMargins({notCustom, CustomMargins(5, 1235, 1300, 0, 2345), CustomMargins(6, 0, 1300, 2346, 2400),
                    CustomMargins(1, 900, 1000, 2000, 2000), CustomMargins(2, 1001, 1234, 0, 2344),
                    CustomMargins(3, 1001, 1234, 0, 2345)});
    EXPECT_EQ(MarginsOf(448), "3,4");
    EXPECT_EQ(MarginsOf(449), "1,2");
    EXPECT_EQ(MarginsOf(450), "150,150");  // A4 by the locale, which no record holds for
}

// The product first, then the quotient toward zero, then 16 bits.
TEST_F(PaperLookup, MarginArithmetic) {
    MarginRecord record = Margins(kPortraitMargins, -101, {9});
    record.topMargin = 32767;
    InstallMargins({record});
    auto* stored = const_cast<MarginRecord*>(model_->marginTable);
    constexpr struct {
        int16_t unit;
        LONG scale;
        const char* margins;
    } kCases[] = {
        {1200, 600, "-50,16383"}, {600, 25400, "-4275,10880"}, {-600, 600, "101,-32767"}, {0, 600, "150,150"}};
    for (const auto& c : kCases) {
        stored->unit = c.unit;
        EXPECT_EQ(MarginsOf(9, kPortraitMargins, c.scale), c.margins) << c.unit;
    }
}

}  // namespace
}  // namespace velmora
