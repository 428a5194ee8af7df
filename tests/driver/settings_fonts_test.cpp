#include <string>

#include "driver/base/text.h"
#include "driver/settings/font_list.h"
#include "driver/settings/font_substitutions.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class Fonts : public MachineTest {
  protected:
    // The model's default list: pairs of texts one behind the other.
    void InstallWith(const std::string& defaults, const std::string& ini = "") {
        DescriptionBuilder builder = SmallModel(kPdlPcl6);
        builder.Bytes(offsetof(DeviceModel, defaultFontSubs), defaults + std::string(1, '\0'));
        Install(PackageOf(builder.Build(), ini));
        file_ = OpenDescriptionFile(Printer());
        model_ = LoadDeviceModel(file_.Get());
    }

    // The printer's table with '|' for each terminator, and its size before it.
    std::string TableOf(bool usesIni = true) {
        const DWORD size = BuildFontSubstitutionTable(Printer(), *model_, nullptr, 0, usesIni);
        WideText table(size, u'#');
        EXPECT_EQ(BuildFontSubstitutionTable(Printer(), *model_, table.data(), size, usesIni), size);
        std::string text = std::to_string(size) + " ";
        for (size_t i = 0; i < size; ++i) {
            text += table[i] == 0 ? '|' : static_cast<char>(table[i]);
            if (table[i] == 0 && (i == 0 || table[i - 1] == 0)) {
                break;
            }
        }
        return text;
    }
};

std::string Pairs(const std::string& text) {  // '|' for each terminator
    std::string bytes = text;
    std::replace(bytes.begin(), bytes.end(), '|', '\0');
    return bytes;
}

TEST_F(Fonts, ListHasTrueTypeAndDeviceFontsOnce) {
    machine_.SetFonts({{u"Raster", RASTER_FONTTYPE, ANSI_CHARSET},
                       {u"Device", DEVICE_FONTTYPE, SYMBOL_CHARSET},
                       {u"Both", DEVICE_FONTTYPE | TRUETYPE_FONTTYPE, SHIFTJIS_CHARSET},
                       {u"Both", TRUETYPE_FONTTYPE, ANSI_CHARSET},
                       {WideText(40, u'x'), TRUETYPE_FONTTYPE, ANSI_CHARSET}});
    const OwnedDeviceContext display(CreateDCW(u"DISPLAY", nullptr, nullptr, nullptr));
    const FontList list = BuildFontList(display.Get());
    ASSERT_EQ(list.count, 3u);
    EXPECT_EQ(WideText(list.faces.Get(), 5 + 7), WideText(u"Both\0Device\0", 12));
    EXPECT_TRUE(HasFont(list, WideText(31, u'x').c_str()));
    EXPECT_FALSE(HasFont(list, u"both"));
    EXPECT_EQ(list.types.Get()[0], 64018u);
    EXPECT_EQ(list.types.Get()[1], 64062u);
    EXPECT_EQ(list.charSets.Get()[0], SHIFTJIS_CHARSET);
    EXPECT_EQ(BuildFontList(nullptr).count, 0u);
}

TEST_F(Fonts, DefaultPairsOfTheModel) {
    machine_.SetFonts({{u"Arial", TRUETYPE_FONTTYPE, ANSI_CHARSET},
                       {u"Gothic (Vertical)", TRUETYPE_FONTTYPE, ANSI_CHARSET},
                       {u"Raster", RASTER_FONTTYPE, ANSI_CHARSET}});
    const struct {
        std::string defaults;
        std::string table;
    } cases[] = {
        {"", "1 |"},
        {"Arial|Univers|", "15 Arial|Univers||"},
        {"arial|Univers|Missing|X|Raster|Y|Arial|Univers|", "15 Arial|Univers||"},
        {"Arial|A|Arial|B|", "17 Arial|A||"},  // counted twice, written once
        {"Arial||Arial|A|", "9 Arial|A||"},
        {"Gothic (Vertical)|G|Gothic|H|", "30 Gothic (Vertical)|G|Gothic|G||"},
        {"Arial|" + std::string(40, 'p') + "|", "48 Arial|" + std::string(31, 'p') + "||"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.defaults);
        DescriptionBuilder builder = SmallModel(kPdlPcl6);
        builder.Bytes(offsetof(DeviceModel, defaultFontSubs), Pairs(c.defaults) + std::string(1, '\0'));
        const std::string file = builder.Build();
        model_ = Load(file);
        EXPECT_EQ(TableOf(), c.table);
    }
    model_ = Load(SmallModel(kPdlPcl6).Build());  // no list at all
    EXPECT_EQ(TableOf(), "1 |");
    host::FailCall("CreateDCW", ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(BuildFontSubstitutionTable(Printer(), *model_, nullptr, 0, true), 0u);
}

TEST_F(Fonts, TableOfTheIniFile) {
    const std::string pairs =
        "FontSubSys0=Arial\nFontSubPrt0=Univers\nFontSubSys1=Two\nFontSubPrt1=\nFontSubSys2=Ab\nFontSubPrt2=C\n";
    const struct {
        std::string keys;
        std::string table;
    } cases[] = {
        {"FontSubSize=20\nNumFontSubs=3\n", "20 Arial|Univers|Ab|C||"},
        {"FontSubSize=19\nNumFontSubs=3\n", "19 Arial|Univers||"},  // no room for the last pair
        {"FontSubSize=40\nNumFontSubs=1\n", "40 Arial|Univers||"},
        {"FontSubSize=40\nNumFontSubs=9\n", "40 Arial|Univers|Ab|C||"},
        {"FontSubSize=1\nNumFontSubs=0\n", "1 |"},
        {"FontSubSize=65535\nNumFontSubs=2\n", "17 Courier New|Cou||"},  // as without the section, as the next
        {"FontSubSize=20\n", "17 Courier New|Cou||"},
        {"NumFontSubs=2\n", "17 Courier New|Cou||"},
    };
    InstallWith(Pairs("Courier New|Cou|"), "[Other]\n");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.keys);
        WriteDriveFile(InstalledPath(u"KV62.INI"), "[FontSubstitutions]\n" + c.keys + pairs);
        EXPECT_EQ(TableOf(), c.table);
        EXPECT_EQ(TableOf(false), "17 Courier New|Cou||");
    }
}

}  // namespace
}  // namespace velmora
