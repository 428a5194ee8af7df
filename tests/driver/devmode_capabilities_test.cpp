#include "driver/devmode/device_capabilities.h"

#include <functional>

#include "driver/entry/driver_interface.h"
#include "driver/settings/custom_sizes.h"
#include "driver/settings/device_info.h"
#include "tests/driver/machine.h"
#include "tests/driver/resource_file.h"
#include "tools/velmora/capability_formats.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr BYTE kPattern = 0xA5;
constexpr const char* kSizes =
    "[CustomSizes]\r\nNumCustomSizes=2\r\n"
    "CustomName0=Half\r\nCustomWidth0=10009\r\nCustomLength0=20000\r\nCustomMetric0=1\r\n"
    "CustomName1=Slip\r\nCustomWidth1=9000\r\nCustomLength1=30000\r\nCustomMetric1=0\r\n";
constexpr const char* kStandardPapers = "8 9 11 70 12 13 88 1 6 7 34 20 27";
constexpr const char* kStandardSizes =
    "2970x4200 2100x2970 1480x2100 1050x1480 2570x3640 1820x2570 1280x1820 2159x2794 1397x2159 1841x2667 1760x2500 "
    "1048x2413 1100x2200";

std::string EntryText(CapabilityKind kind, const BYTE* entry, size_t nameCapacity) {
    DWORD numbers[2] = {};
    switch (kind) {
        case CapabilityKind::kWords:
            memcpy(numbers, entry, sizeof(WORD));
            return std::to_string(numbers[0]);
        case CapabilityKind::kDwords:
            memcpy(numbers, entry, sizeof(DWORD));
            return std::to_string(numbers[0]);
        case CapabilityKind::kPairs:
            memcpy(numbers, entry, sizeof(POINT));
            return std::to_string(numbers[0]) + "x" + std::to_string(numbers[1]);
        default: {
            WideText slot(nameCapacity, 0);
            memcpy(slot.data(), entry, nameCapacity * sizeof(WCHAR));
            const size_t length = slot.find_last_not_of(TEXT('\0')) + 1;  // zeros to the slot's end, or it shows
            return "'" + driver_test::ToText(slot.substr(0, length)) + "'";
        }
    }
}

class Capabilities : public MachineTest {
  protected:
    // A colour PCL 6 model with A4, Letter and a card of 1016 x 1524, custom sizes of 900 x 1480 to 2970 x 4320, trays
    // of which the second needs an option, and media.
    static DescriptionBuilder Model() {
        DescriptionBuilder builder = SmallModel(kPdlPcl6, kColor);
        builder.fields.pagesPerMinute = 32;
        const auto reference = [&](std::string_view text) { return static_cast<int16_t>(builder.AddString(text)); };
        builder.Table(offsetof(DeviceModel, binTable),
                      std::vector<BinRecord>{{0x1, 7, reference("Upper"), 0},
                                             {0x20, 261, reference("Lower"), 0},
                                             {0x30, 262, reference("A tray of more than 24 characters"), 0},
                                             {0x10, 4, 0, 0}});
        builder.Table(offsetof(DeviceModel, mediaTable),
                      std::vector<MediaRecord>{{1, reference("Plain"), 0, 0, 0, 257, {}},
                                               {2, -2420, 0, 0, 0, 70000, {}},
                                               {4, reference(std::string(70, 'm')), 0, 0, 0, 258, {}}});
        return builder;
    }

    // Driver files with the names of the standard papers, "#" and the string's id each.
    static DriverPackage Package(const std::string& description, const std::string& iniFile = "") {
        DriverPackage package = PackageOf(description, iniFile);
        std::map<unsigned, WideText> strings = {{2117, TEXT("Any")}, {2420, TEXT("ini")}, {5107, TEXT("Default")}};
        for (unsigned id = 2000; id <= 2038; ++id) {
            const std::string number = std::to_string(id);
            strings[id] = TEXT("#") + WideText(number.begin(), number.end());
        }
        package.dependent[0].bytes = StringModule(strings);
        return package;
    }

    // The answer, and a list's entries. Asked for the count and for the content, which must agree, at an odd address
    // and not a byte beyond the entries.
    std::string Ask(WORD capability) const {
        const CapabilityFormat& format = kCapabilityFormats[capability - 1];
        WideText name = kPrinterName;
        const DWORD count = DrvDeviceCapabilities(Printer(), name.data(), capability, nullptr, nullptr);
        std::string text = std::to_string(count);
        const size_t size = EntrySize(format) * count;
        std::vector<BYTE> output(1 + size + 1, kPattern);
        EXPECT_EQ(DrvDeviceCapabilities(Printer(), name.data(), capability, output.data() + 1, nullptr), count);
        EXPECT_TRUE(output.front() == kPattern && output.back() == kPattern) << format.name;
        for (size_t at = 0; at < size; at += EntrySize(format)) {
            text += (at == 0 ? ": " : " ") + EntryText(format.kind, output.data() + 1 + at, format.nameCapacity);
        }
        return text;
    }
};

TEST_F(Capabilities, WithAndWithoutModel) {
    const std::string paperNames =
        "'#2013' '#2014' '#2016' '#2017' '#2018' '#2020' '#2021' '#2000' '#2003' '#2004' '#2038' '#2024' '#2030'";
    const std::string longMedium(63, 'm');
    const struct {
        WORD capability;
        std::string withModel;
        std::string withoutModel;
    } cases[] = {
        {DC_FIELDS, std::to_string(0xF70F | 0x3800800), std::to_string(0xF70F)},
        {DC_PAPERS, std::string("16: ") + kStandardPapers + " 448 449 256", "1: 9"},
        {DC_PAPERSIZE, std::string("16: ") + kStandardSizes + " 1000x2000 900x3000 2100x2970", "1: 2100x2970"},
        {DC_MINEXTENT, std::to_string(900 | 1480 << 16), std::to_string(2100 | 2970 << 16)},
        {DC_MAXEXTENT, std::to_string(2970 | 4320 << 16), std::to_string(2100 | 2970 << 16)},
        {DC_BINS, "6: 7 262 4 2000 2001 2002", "1: 1025"},
        {DC_DUPLEX, "1", "1"},
        {DC_SIZE, "220", "220"},
        {DC_EXTRA, "3868", "3868"},
        {DC_VERSION, "1025", "1025"},
        {DC_DRIVER, "2560", "2560"},
        {DC_BINNAMES, "6: ' Upper' ' A tray of more than 24 ' ' ' 'Plain' 'ini' '" + std::string(23, 'm') + "'",
         "1: 'Autoselect'"},
        {DC_ENUMRESOLUTIONS, "3: 600x600 1200x600 1200x1200", "1: 300x300"},
        {DC_FILEDEPENDENCIES, "0", "0"},
        {DC_TRUETYPE, "3", "1"},
        {DC_PAPERNAMES, "16: " + paperNames + " 'Half' 'Slip' 'Any'", "1: 'Default'"},
        {DC_ORIENTATION, "90", "90"},
        {DC_COPIES, "999", "999"},
        {DC_BINADJUST, "0", "0"},
        {DC_EMF_COMPLIANT, "0", "0"},
        {DC_DATATYPE_PRODUCED, "0", "0"},
        {DC_COLLATE, "1", "1"},
        {DC_MANUFACTURER, "0", "0"},
        {DC_MODEL, "0", "0"},
        {DC_PERSONALITY, "1: 'PCL6'", "1: 'Velmora'"},
        {DC_PRINTRATE, "32", "0"},
        {DC_PRINTRATEUNIT, "1", "1"},
        {DC_PRINTERMEM, std::to_string(96 * 1024), "0"},
        {DC_MEDIAREADY, "1: 'A4'", "1: 'A4'"},
        {DC_STAPLE, "1", "1"},
        {DC_PRINTRATEPPM, "32", "0"},
        {DC_COLORDEVICE, "1", "0"},
        {DC_NUP, "7: 1 2 4 6 8 9 16", "7: 1 2 4 6 8 9 16"},
        {DC_MEDIATYPENAMES, "3: 'Plain' 'ini' '" + longMedium + "'", "0"},
        {DC_MEDIATYPES, "3: 257 70000 258", "0"},
    };
    static_assert(std::size(cases) == std::size(kCapabilityFormats));
    Install(Package(Model().Build(), kSizes));
    SetDeviceInfo(Printer(), {0x11, 0, kDuplexInstalled | kStaplerInstalled, 0});
    SetMemorySetting(Printer(), 96);
    for (const auto& c : cases) {
        EXPECT_EQ(Ask(c.capability), c.withModel) << kCapabilityFormats[c.capability - 1].name;
    }
    WriteDriveFile(InstalledPath(TEXT("KV62.XPI")), "no description");
    for (const auto& c : cases) {
        EXPECT_EQ(Ask(c.capability), c.withoutModel) << kCapabilityFormats[c.capability - 1].name;
    }
    WORD output = 0x5555;
    for (const WORD capability : {0, 36, 37, 0x8001, 0xFFFF}) {
        EXPECT_EQ(GetDeviceCapability(Printer(), capability, &output), 0u) << capability;
    }
    EXPECT_EQ(output, 0x5555);
    EXPECT_EQ(GetDeviceCapability(INVALID_HANDLE_VALUE, DC_BINS, &output), 1u);
    EXPECT_EQ(output, 1025);
}

TEST_F(Capabilities, FollowTheModel) {
    constexpr size_t kBinTable = offsetof(DeviceModel, binTable);
    constexpr size_t kPaperTable = offsetof(DeviceModel, paperTable);
    constexpr size_t kMediaTable = offsetof(DeviceModel, mediaTable);
    constexpr size_t kMemoryTable = offsetof(DeviceModel, memoryTable);
    const auto pdl = [](uint16_t pdlType, uint16_t color = kColorNone) {
        return [=](DescriptionBuilder& builder) {
            builder.fields.pdlType = pdlType;
            builder.fields.colorCapability = color;
        };
    };
    const auto customUpTo = [](uint16_t width, uint16_t length) {
        return [=](DescriptionBuilder& builder) {
            builder.fields.customMaxWidth = width;
            builder.fields.customMaxLength = length;
        };
    };
    const auto without = [](size_t slot) { return [=](DescriptionBuilder& builder) { builder.SetSlot(slot, 0); }; };
    const std::string images = "9: 1 2 4 6 8 9 12 16 25";
    const struct {
        std::function<void(DescriptionBuilder&)> change;
        WORD capability;
        std::string answer;
    } cases[] = {
        {pdl(kPdlPcl6, kColorSecondKind), DC_COLORDEVICE, "0"},
        {pdl(kPdlPcl6, kColorSecondKind), DC_FIELDS, std::to_string(0xE70F | 0x3800800)},
        {pdl(kPdlPcl6, 2), DC_FIELDS, std::to_string(0xE70F)},
        {pdl(kPdlPcl5, kColorSecondKind), DC_PERSONALITY, "1: 'PCL5c'"},
        {pdl(kPdlPcl5), DC_PERSONALITY, "1: 'PCL5e'"},
        {[](auto& builder) {
             builder.fields.pdlType = kPdlPcl5;
             builder.fields.colorCapability = kColorNone;
             builder.fields.defaultOptionFlags = kModelPlainPcl5;
         },
         DC_PERSONALITY, "1: 'PCL5'"},
        {pdl(9), DC_PERSONALITY, "1: 'Velmora'"},
        {pdl(kPdlImage), DC_NUP, images},
        {pdl(kPdlImage), DC_TRUETYPE, "1"},
        {pdl(kPdlImage), DC_BINS, "1: 7"},
        {pdl(kPdlImage), DC_BINNAMES, "1: 'Upper'"},
        {pdl(kPdlImage), DC_MEDIATYPES, "3: 257 70000 258"},
        {without(kMediaTable), DC_BINNAMES, "1: 'Upper'"},
        {without(kMediaTable), DC_MEDIATYPENAMES, "0"},
        {without(kBinTable), DC_BINS, "3: 2000 2001 2002"},
        {without(kMemoryTable), DC_PRINTERMEM, "0"},
        {without(kPaperTable), DC_PAPERS, std::string("16: ") + kStandardPapers + " 448 449 256"},
        // The size of any paper's entry is the standard one: SmallModel's own A4 is 0.1 mm larger.
        {without(kPaperTable), DC_MINEXTENT, std::to_string(900 | 1480 << 16)},
        {customUpTo(0, 4320), DC_PAPERS, std::string("13: ") + kStandardPapers},
        {customUpTo(2970, 0), DC_PAPERSIZE, std::string("13: ") + kStandardSizes},
        {customUpTo(0, 0), DC_MINEXTENT, std::to_string(1016 | 1524 << 16)},
        {customUpTo(0, 0), DC_MAXEXTENT, std::to_string(2159 | 2971 << 16)},
        {customUpTo(65535, 40000), DC_MAXEXTENT, std::to_string(0xFFFFu | 40000u << 16)},
        {[=](auto& builder) { customUpTo(0, 0)(builder), without(kPaperTable)(builder); }, DC_MINEXTENT, "4294967295"},
        {[=](auto& builder) { customUpTo(0, 0)(builder), without(kPaperTable)(builder); }, DC_MAXEXTENT, "0"},
        {[](auto& builder) { builder.fields.pagesPerMinute = -1; }, DC_PRINTRATE, "4294967295"},
    };
    Install(Package(Model().Build(), kSizes));
    SetDeviceInfo(Printer(), {0x01, 0, 0, 0});
    SetMemorySetting(Printer(), 96);
    size_t number = 0;
    for (const auto& c : cases) {
        DescriptionBuilder builder = Model();
        c.change(builder);
        Describe(builder);
        EXPECT_EQ(Ask(c.capability), c.answer)
            << "case " << number << ", " << kCapabilityFormats[c.capability - 1].name;
        ++number;
    }
}

TEST_F(Capabilities, FollowTheUser) {
    Install(Package(Model().Build(), kSizes));
    const auto last = [this](WORD capability) {
        const std::string text = Ask(capability);
        return text.substr(text.rfind(' ') + 1);
    };
    EXPECT_EQ(last(DC_PAPERSIZE), "2100x2970");
    machine_.SetMetric(false);
    EXPECT_EQ(last(DC_PAPERSIZE), "2159x2794");
    EXPECT_EQ(Ask(DC_MEDIAREADY), "1: 'A4'");
    EXPECT_EQ(Ask(DC_BINS), "6: 7 262 4 2000 2001 2002") << "the model's default options";
    // Without a resource module the names of standard papers are empty, those of the user's sizes aren't.
    WriteDriveFile(InstalledPath(TEXT("KV62ENUS.DLL")), "no module");
    EXPECT_EQ(last(DC_PAPERNAMES), "''");
    EXPECT_NE(Ask(DC_PAPERNAMES).find("'' 'Half' 'Slip' ''"), std::string::npos);
    WriteDriveFile(InstalledPath(TEXT("KV62.XPI")), "");
    EXPECT_EQ(Ask(DC_PAPERS), "1: 1");
    EXPECT_EQ(Ask(DC_MAXEXTENT), std::to_string(2159 | 2794 << 16));
}

}  // namespace
}  // namespace velmora
