// The colours, edits of the list and applies of the Watermark page, apart from its windows.
#include <algorithm>
#include <cstring>
#include <functional>
#include <random>
#include <set>
#include <utility>

#include "driver/base/text.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/settings/settings_folder.h"
#include "driver/ui/watermark_colors.h"
#include "driver/ui/watermark_rules.h"
#include "tests/driver/machine.h"
#include "tests/driver/sheet_package.h"

namespace velmora {

std::ostream& operator<<(std::ostream& out, const WatermarkButtons& buttons) {
    return out << (buttons.canAdd ? "add " : "") << (buttons.canChange ? "change " : "")
               << (buttons.canDelete ? "delete" : "");
}

namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

TEST(WatermarkColors, AreShadesOfFamilies) {
    const struct {
        ShadedColor shaded;
        COLORREF color;
    } colors[] = {
        {{0, 0, false}, RGB(240, 240, 240)}, {{0, 15, true}, RGB(0, 0, 0)},       {{1, 8, false}, RGB(255, 112, 112)},
        {{2, 15, true}, RGB(0, 255, 0)},     {{3, 1, false}, RGB(224, 224, 255)}, {{4, 14, false}, RGB(16, 255, 255)},
        {{5, 15, true}, RGB(255, 0, 255)},   {{6, 2, false}, RGB(255, 255, 208)}, {{7, 3, false}, RGB(255, 255, 255)},
    };
    for (const auto& row : colors) {
        EXPECT_EQ(ColorOf(row.shaded), row.color);
        EXPECT_EQ(ShadeOf(row.shaded.family, row.shaded.shade), row.shaded);
        EXPECT_EQ(FindOpeningShade(row.color, 3), row.shaded);
    }
    for (int family = kGrayFamily; family < kWhiteFamily; ++family) {
        for (int shade = 0; shade <= kLastShade; ++shade) {
            const ShadedColor shaded = ShadeOf(family, shade);
            EXPECT_EQ(FindOpeningShade(ColorOf(shaded), 0), shaded);
            EXPECT_EQ(FindSelectedShade(ColorOf(shaded)), shaded);
        }
    }
}

TEST(WatermarkColors, OfNoFamilyShowAtTheEndOfOne) {
    const ShadedColor noWhite = {kWhiteFamily, kLastShade, false};
    EXPECT_EQ(FindOpeningShade(RGB(1, 2, 3), 4), (ShadedColor{kGrayFamily, kLastShade, true}));
    EXPECT_EQ(FindSelectedShade(RGB(1, 2, 3)), noWhite);
    EXPECT_EQ(FindSelectedShade(RGB(255, 255, 255)), noWhite);
    EXPECT_EQ(FindOpeningShade(RGB(255, 255, 255), 99), (ShadedColor{kWhiteFamily, kLastShade, true}));
    EXPECT_EQ(FindOpeningShade(RGB(255, 255, 255), -1), (ShadedColor{kWhiteFamily, 0, false}));
}

// A program that renders a file of its own for each watermark.
struct Renderer {
    int calls = 0;
    Texts files;
};
Renderer renderer;

int32_t Render(const SheetContext&, WatermarkRecord* record, bool) {
    const std::string number = std::to_string(++renderer.calls);
    const WideText file = TEXT("C:\\") + WideText(number.begin(), number.end());
    CopyText(record->fileName, ARRAYSIZE(record->fileName), (file + TEXT(".WM")).c_str());
    CopyText(record->colorFileName, ARRAYSIZE(record->colorFileName), (file + TEXT(".CWM")).c_str());
    record->resolution = 600;
    record->width = 1200;
    record->height = 400;
    for (const WCHAR* path : {record->fileName, record->colorFileName}) {
        WriteDriveFile(path, "");
        renderer.files.push_back(driver_test::ToText(path));
    }
    return 1;
}

WatermarkRecord UserMark(int number) {
    WatermarkRecord record;
    MakeBlankWatermark(&record);
    record.type = kTextWatermark;
    record.needsRemake = 0;
    const WCHAR name[] = {TEXT('U'), static_cast<WCHAR>(TEXT('a') + number), 0};
    CopyText(record.text, ARRAYSIZE(record.text), name);
    return record;
}

class WatermarkRules : public MachineTest {
  protected:
    void SetUp() override {
        renderer = {};
        Install(SheetPackage());
        BuildDefaultDevMode(Printer(), kPrinterName, &devMode_);
        PrepareSettingsFile(kPrinterName);
    }

    // Opens the page over the stored list with more entries behind it: "Ua", "Ub"... behind the built-in ones.
    void Open(int own, int chosen = 0) {
        context_.Close();
        std::vector<WatermarkRecord> records = Records(LoadWatermarkList(kPrinterName));
        for (int i = 0; i < own; ++i) {
            records.push_back(UserMark(static_cast<int>(records.size()) - 8));
        }
        Open(records, chosen);
    }
    void Open(const std::vector<WatermarkRecord>& records, int chosen) {
        SaveWatermarkList(kPrinterName, records.data(), static_cast<uint16_t>(records.size()));
        devMode_.privatePart.outputLevel = static_cast<int16_t>(chosen);
        context_ = OwnedSheetContext(CreateSheetContext(Printer(), kPrinterName, &devMode_));
        OpenWatermarks(Context());
        SwitchWatermark(Context(), true);
    }
    void TearDown() override {
        context_.Close();
        MachineTest::TearDown();
    }

    SheetContext* Context() const { return context_.Get(); }
    WatermarkEdit& Edit() const { return Context()->watermarkEdit; }
    PrivateDevMode& Own() { return devMode_.privatePart; }
    WatermarkRecord& Entry(size_t index) const { return Context()->watermarks.records.Get()[index]; }
    static std::vector<WatermarkRecord> Records(const WatermarkList& list) {
        return {list.records.Get(), list.records.Get() + list.count};
    }
    Texts Names() const {
        Texts names;
        for (const WatermarkRecord& record : Records(Context()->watermarks)) {
            names.push_back(driver_test::ToText(record.text));
        }
        return names;
    }
    void SetSize(int size) {
        SetNumber(&Edit().choices.size, size);
        EditWatermark(Context());
    }
    // The device mode must be one that the next sheet accepts.
    void Apply() {
        ApplyWatermarks(Context(), Render);
        Context()->committedPrivate = Own();
        PrivateDevMode checked = Own();
        ValidationReport report;
        ValidatePrivateDevMode(Printer(), &checked, Context()->descriptionFile.Get(), Context()->model.Get(), &report);
        for (const std::string& name : RepairsOf(report)) {
            EXPECT_FALSE(name.starts_with("watermark") || name.starts_with("output")) << name;
        }
    }
    bool IsSaved() const {
        const WatermarkList stored = LoadWatermarkList(kPrinterName);
        const WatermarkList& list = Context()->watermarks;
        return stored.count == list.count &&
               memcmp(stored.records.Get(), list.records.Get(), list.count * sizeof(WatermarkRecord)) == 0;
    }

    VelmoraDevMode devMode_ = {};
    OwnedSheetContext context_;
};

TEST_F(WatermarkRules, ButtonsFollowWhatIsTypedSelectedAndEdited) {
    constexpr WatermarkButtons kNone = {}, kAdd = {true, false, false}, kChange = {false, true, false};
    constexpr WatermarkButtons kDelete = {false, false, true}, kOwn = {false, true, true};
    constexpr size_t kBuiltIn = 1, kUsers = 8;
    const struct {
        const char* what;
        int own;             // entries of the user; 10 fill the list
        size_t selected;     // entry
        const WCHAR* typed;  // null: nothing
        int size;            // 0: the entry's
        WatermarkButtons buttons;
        bool isEditedBack = false;
    } rows[] = {
        {"a built-in entry", 2, kBuiltIn, nullptr, 0, kNone},
        {"the user's", 2, kUsers, nullptr, 0, kOwn},
        {"no name", 2, kUsers, TEXT(""), 0, kNone},
        {"a new name", 2, kBuiltIn, TEXT("New"), 0, kAdd},
        {"a new name for the user's", 2, kUsers, TEXT("New"), 0, {true, true, false}},
        {"the other of the user's", 2, kBuiltIn, TEXT("Ub"), 0, kDelete},
        {"the name of a built-in one", 2, kUsers, TEXT("Draft"), 0, kNone},
        {"a built-in entry's size", 2, kBuiltIn, nullptr, 9, kNone},
        {"the user's entry's size", 2, kUsers, nullptr, 9, kOwn},
        {"the user's entry's size and back", 2, kUsers, nullptr, 9, kOwn, true},
        {"a new name and size and back", 2, kBuiltIn, TEXT("New"), 9, kAdd, true},
        {"full: a new name", 10, kBuiltIn, TEXT("New"), 0, kNone},
        {"full: a new name for the user's", 10, kUsers, TEXT("New"), 0, kChange},
        {"full: the other of the user's", 10, kBuiltIn, TEXT("Ub"), 0, kOwn},
        {"full: the name of a built-in one", 10, kUsers, TEXT("Draft"), 0, kAdd},
        {"full: the name of a built-in one, and size", 10, kUsers, TEXT("Draft"), 9, kNone},
        {"full: size", 10, kUsers, nullptr, 9, kOwn},
    };
    int own = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        if (own != row.own) {
            Open(row.own - own);
            own = row.own;
        }
        SelectWatermark(Context(), row.selected);
        const int size = Edit().choices.size.position;
        if (row.typed) {
            EditWatermarkName(Context(), row.typed);
        }
        if (row.size != 0) {
            SetSize(row.size);
        }
        if (row.isEditedBack) {
            SetSize(size);
        }
        EXPECT_EQ(Edit().buttons, row.buttons);
        SwitchWatermark(Context(), false);
        EXPECT_EQ(Edit().buttons, kNone);
        SwitchWatermark(Context(), true);
        EXPECT_EQ(Edit().buttons, row.selected == kUsers ? kDelete : kNone);
    }
}

TEST_F(WatermarkRules, JapaneseHasFewerBuiltInOnesAndLessRoom) {
    machine_.SetLanguage(MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT));
    Open(10);
    EXPECT_FALSE(IsUserWatermark(*Context(), 5));
    EXPECT_TRUE(IsUserWatermark(*Context(), 6));
    EditWatermarkName(Context(), TEXT("New"));
    AddWatermark(Context());
    EXPECT_EQ(Context()->watermarks.count, 16);
}

TEST_F(WatermarkRules, StoresNumbersWithinTheirRangesAndFacesOfTheList) {
    Open(1);
    WatermarkChoices& choices = Edit().choices;
    EditWatermarkName(Context(), TEXT("New"));
    CopyText(choices.face, ARRAYSIZE(choices.face), TEXT("Symbol"));
    choices.size = {TEXT("1"), 50, kFewestPoints, kMostPoints};
    TurnWatermark(Context(), 370, false);
    ChooseWatermarkColor(Context(), kWhiteFamily, 4);
    AddWatermark(Context());
    ASSERT_EQ(Names().size(), 10u);
    EXPECT_EQ(driver_test::ToText(Entry(9).style.face), "Symbol");
    EXPECT_EQ(Entry(9).style.charSet, SYMBOL_CHARSET);
    EXPECT_EQ(Entry(9).style.size, kFewestPoints);
    EXPECT_EQ(Entry(9).angle, 3550);
    EXPECT_EQ(Entry(10).type, 0u);
    SelectWatermark(Context(), 9);
    EXPECT_EQ(choices.shade, (ShadedColor{kWhiteFamily, kLastShade, false}));
    EXPECT_EQ(Own().shadeMaxFlag, 0);

    for (const WCHAR* name : {TEXT("Draft"), TEXT("Unknown")}) {
        EditWatermarkName(Context(), name);
        DeleteWatermark(Context());
        EXPECT_EQ(Names().size(), 10u);
    }
}

TEST_F(WatermarkRules, ListsFromOutsideAreSafe) {
    WatermarkRecord image = UserMark(0);
    image.type = kImageWatermark;
    std::fill(std::begin(image.imageName), std::end(image.imageName), TEXT('\u1234'));
    image.imageName[MAX_PATH - 1] = 0;
    image.scaleX = image.scaleY = 50;
    WatermarkRecord odd = UserMark(1);
    odd.style.size = 2000;
    odd.angle = 7777;
    odd.placement = 77;
    CopyText(odd.style.face, ARRAYSIZE(odd.style.face), TEXT("No such face"));
    Open({image, odd}, 0);
    for (const size_t index : {0, 1}) {
        SelectWatermark(Context(), index);
        Own().outputFlag = 1;
        Context()->committedPrivate.outputLevel = static_cast<int16_t>(index);
        EXPECT_FALSE(IsWatermarkChanged(*Context())) << index;
    }
    EXPECT_EQ(Edit().choices.size.position, kMostPoints);
    EXPECT_EQ(Edit().choices.angle, kMostDegrees);
    EXPECT_EQ(Edit().choices.face[0], 0);
    SelectWatermark(Context(), 1);
    Apply();
    EXPECT_EQ(Entry(1).placement, 77);
    EXPECT_EQ(ValueOf(Own().watermarkPosition), 0u);
    SelectWatermark(Context(), 0);
    Apply();
    EXPECT_EQ(Entry(0).type, kImageWatermark);
    SetSize(33);
    Apply();
    EXPECT_EQ(Entry(0).type, kTextWatermark);
    EXPECT_EQ(driver_test::ToText(Entry(0).style.face), "Arial");
    EXPECT_TRUE(IsSaved());  // nothing of the picture is left

    std::vector<WatermarkRecord> many(21, UserMark(0));
    for (size_t i = 0; i < many.size(); ++i) {
        many[i].text[1] = static_cast<WCHAR>(TEXT('A') + i);
        CopyText(many[i].fileName, ARRAYSIZE(many[i].fileName), TEXT("C:\\many.WM"));
        many[i].resolution = many[i].height = many[i].width = UINT32_MAX;
    }
    Open(many, 0);
    SelectWatermark(Context(), 20);
    Apply();
    EXPECT_EQ(Names().size(), 21u);
    EXPECT_EQ(ValueOf(Own().outputLevel), 0);  // can't name it
    EXPECT_EQ(ValueOf(Own().watermarkFlags), 0u);
    Edit().current = SIZE_MAX;
    EditWatermarkName(Context(), TEXT("New"));
    AddWatermark(Context());
    EXPECT_EQ(Names().size(), 21u);

    Open({odd, odd}, INT16_MIN);
    EXPECT_EQ(Edit().current, 0u);
    Open(std::vector<WatermarkRecord>(), 3);
    DeleteWatermark(Context());
    RestoreWatermarks(Context());
    SwitchWatermark(Context(), true);
    Apply();
    EXPECT_EQ(Context()->watermarks.count, 0);
    EXPECT_EQ(ValueOf(Own().watermarkFlags), 0u);

    // A list that there was no memory for leaves the stored one.
    Open({odd}, 0);
    Context()->watermarks = {};
    EditWatermarkName(Context(), TEXT("New"));
    AddWatermark(Context());
    DeleteWatermark(Context());
    RestoreWatermarks(Context());
    SwitchWatermark(Context(), true);
    Apply();
    EXPECT_EQ(Names(), Texts());
    EXPECT_EQ(LoadWatermarkList(kPrinterName).count, 1);
}

TEST_F(WatermarkRules, ChangesAreToldFromWhatIsCommittedAndStored) {
    const struct {
        const char* what;
        std::function<void()> change;
    } changes[] = {
        {"switch", [&] { SwitchWatermark(Context(), false); }},
        {"entry", [&] { SelectWatermark(Context(), 1); }},
        {"face", [&] { CopyText(Edit().choices.face, 32, TEXT("Symbol")); }},
        {"style", [&] { Edit().choices.style = kBoldStyle; }},
        {"size", [&] { SetSize(51); }},
        {"color", [&] { ChooseWatermarkColor(Context(), 2, 8); }},
        {"position", [&] { Edit().choices.position = 4; }},
        {"angle", [&] { TurnWatermark(Context(), 52, true); }},
    };
    Own().outputFlag = 1;
    Open(1);
    for (const auto& row : changes) {
        EXPECT_FALSE(IsWatermarkChanged(*Context())) << row.what;
        row.change();
        EXPECT_TRUE(IsWatermarkChanged(*Context())) << row.what;
        SelectWatermark(Context(), 0);
        SwitchWatermark(Context(), true);
    }
    for (const WCHAR* name : {TEXT("Ua"), TEXT("New")}) {
        EditWatermarkName(Context(), name);
        AddWatermark(Context());
        SelectWatermark(Context(), 0);
        EXPECT_TRUE(IsWatermarkChanged(*Context()));
        Apply();
        EXPECT_FALSE(IsWatermarkChanged(*Context()));
    }
}

TEST_F(WatermarkRules, ApplyWritesTheRenderedFileIntoTheDeviceMode) {
    const struct {
        uint16_t capability;
        uint32_t colorMode;
        short dmColor;
        bool isColor;
    } rows[] = {{kColor, 42, DMCOLOR_MONOCHROME, true}, {kColor, 1, DMCOLOR_COLOR, true},
                {kColor, 1, DMCOLOR_MONOCHROME, false}, {kColor, 2, DMCOLOR_COLOR, false},
                {kColorNone, 42, DMCOLOR_COLOR, false}, {kColorNone, 1, DMCOLOR_COLOR, false}};
    Open(1);
    SelectWatermark(Context(), 8);
    for (const auto& row : rows) {
        Context()->model->colorCapability = row.capability;
        Own().colorMode = row.colorMode;
        devMode_.publicPart.dmColor = row.dmColor;
        Apply();
        EXPECT_EQ(driver_test::ToText(Own().watermarkFile),
                  driver_test::ToText(row.isColor ? Entry(8).colorFileName : Entry(8).fileName));
    }
    EXPECT_EQ(renderer.calls, 1);
    Context()->model->colorCapability = kColor;
    Own().colorMode = 42;
    Entry(8).colorFileName[0] = 0;
    Apply();
    EXPECT_EQ(driver_test::ToText(Own().watermarkFile), driver_test::ToText(Entry(8).fileName));
    EXPECT_TRUE(IsReady(*Context(), 8));
    EXPECT_FALSE(IsReady(*Context(), 0));
    EXPECT_EQ(SelectedReady(*Context()), 8);
    SwitchWatermark(Context(), false);
    Apply();
    EXPECT_EQ(SelectedReady(*Context()), kNoneReady);
}

// Files that were rendered and still are there.
std::set<std::string> Files() {
    std::set<std::string> files;
    for (const std::string& file : renderer.files) {
        if (std::filesystem::exists(DrivePath(WideText(file.begin(), file.end())))) {
            files.insert(file);
        }
    }
    return files;
}

TEST_F(WatermarkRules, EditsInAnyOrderKeepTheListWhole) {
    Open(9);
    const Texts first = Names();
    std::mt19937 random(1);
    const auto pick = [&](size_t count) { return random() % count; };
    size_t most = 0;
    for (int i = 0; i < 100; ++i) {
        const std::set<std::string> before = Files();
        const bool isApplied = i % 50 == 49;
        switch (isApplied ? 7 : pick(7)) {
            case 0:
                SelectWatermark(Context(), pick(Context()->watermarks.count));
                break;
            case 1:
            case 2:
                EditWatermarkName(Context(), UserMark(static_cast<int>(pick(26))).text);
                break;
            case 3:
                SetSize(static_cast<int>(pick(500)));
                break;
            case 4:
                if (Edit().buttons.canDelete && pick(3) == 0) {
                    DeleteWatermark(Context());
                }
                break;
            case 5:
                if (pick(10) == 0) {
                    RestoreWatermarks(Context());
                }
                SwitchWatermark(Context(), true);
                break;
            case 6:
                if (Edit().buttons.canAdd) {
                    AddWatermark(Context());
                } else if (Edit().buttons.canChange) {
                    ChangeWatermark(Context());
                }
                break;
            default:
                Apply();
                break;
        }
        const Texts names = Names();
        most = std::max(most, names.size());
        ASSERT_LE(names.size(), 18u);
        ASSERT_EQ(std::set(names.begin(), names.end()).size(), names.size());
        ASSERT_TRUE(std::equal(first.begin(), first.begin() + 8, names.begin()));
        ASSERT_LT(Edit().current, names.size());
        ASSERT_EQ(Entry(names.size()).type, 0u);
        if (isApplied) {
            std::set<std::string> listed;
            for (const WatermarkRecord& record : Records(Context()->watermarks)) {
                if (record.fileName[0] != 0) {
                    listed.insert({driver_test::ToText(record.fileName), driver_test::ToText(record.colorFileName)});
                }
            }
            ASSERT_EQ(Files(), listed) << i;
            ASSERT_FALSE(IsWatermarkChanged(*Context())) << i;
        } else {
            ASSERT_EQ(Files(), before) << i;
        }
    }
    EXPECT_EQ(most, 18u);
}

TEST_F(WatermarkRules, WithoutMemoryTheListStays) {
    using Step = void (*)(SheetContext*);
    const Step steps[] = {AddWatermark, DeleteWatermark, RestoreWatermarks,
                          [](SheetContext* context) { ApplyWatermarks(context, Render); }};
    const std::vector<WatermarkRecord> records = (Open(2), Records(Context()->watermarks));
    const Texts before = Names();
    for (const Step step : steps) {
        for (uint64_t nth = 1, count = nth; nth <= count; ++nth) {
            Open(records, 0);
            EditWatermarkName(Context(), step == DeleteWatermark ? TEXT("Ub") : TEXT("New"));
            host::FailAllocation(nth);
            step(Context());
            count = host::AllocationsSoFar();
            host::ClearFaults();
            Texts names = Names();
            EXPECT_EQ(Entry(names.size()).type, 0u);
            if (names.size() > before.size()) {
                EXPECT_EQ(names.back(), "New");
                names.pop_back();
            } else if (names.size() < before.size()) {
                EXPECT_EQ(Edit().deletedCount, 1u);
                names.push_back("Ub");
            }
            EXPECT_EQ(names, before) << nth;
        }
    }
}

}  // namespace
}  // namespace velmora
