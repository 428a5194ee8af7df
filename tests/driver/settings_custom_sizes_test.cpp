#include "driver/settings/custom_sizes.h"

#include <cstring>
#include <vector>

#include "driver/base/text.h"
#include "driver/entry/printer_access.h"
#include "driver/settings/settings_folder.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr const WCHAR* kIni = TEXT("C:\\sizes.ini");

CustomSizeRecord Size(const WCHAR* name, uint32_t width, uint32_t length, uint32_t metric) {
    CustomSizeRecord record = {width, length, metric, {}};
    CopyText(record.name, ARRAYSIZE(record.name), name);
    return record;
}

std::string ToText(const CustomSizeRecord& record) {
    return driver_test::ToText(record.name) + " " + std::to_string(record.width) + "x" + std::to_string(record.length) +
           " " + std::to_string(record.metric);
}

// The records of a list and, with `blank`, the one behind them.
std::vector<std::string> Lines(const CustomSizeList& list, bool blank = true) {
    std::vector<std::string> lines;
    for (size_t i = 0; list.records && i < size_t{list.count} + (blank ? 1 : 0); ++i) {
        lines.push_back(ToText(list.records.Get()[i]));
    }
    return lines;
}

using Texts = std::vector<std::string>;

class CustomSizes : public MachineTest {
  protected:
    static constexpr const char* kShipped =
        "[CustomSizes]\r\nNumCustomSizes=1\r\n"
        "CustomName0=Shipped\r\nCustomWidth0=10000\r\nCustomLength0=20000\r\nCustomMetric0=1\r\n";

    void InstallWithIni(const std::string& ini) {
        DriverPackage package = PackageOf("");
        package.dependent.push_back({u"KV62.INI", ini});
        Install(package);
    }

    // "key=value" lines of the section.
    static Texts Section() {
        WCHAR block[4096];
        GetPrivateProfileSectionW(TEXT("CustomSizes"), block, ARRAYSIZE(block), kIni);
        Texts lines;
        for (const WCHAR* line = block; *line != 0; line += TextLength(line) + 1) {
            lines.push_back(driver_test::ToText(line));
        }
        return lines;
    }
};

TEST_F(CustomSizes, BlankRecords) {
    CustomSizeRecord record;
    memset(&record, 0x55, sizeof(record));
    MakeBlankCustomSize(&record);
    EXPECT_EQ(ToText(record), " 21000x29700 1");
    EXPECT_EQ(ValueOf(record.name[63]), 0);
    machine_.SetMetric(false);
    MakeBlankCustomSize(&record);
    EXPECT_EQ(ToText(record), " 533400x754380 0");
}

TEST_F(CustomSizes, WhatIsWrittenIsRead) {
    const CustomSizeRecord records[] = {Size(TEXT("Small"), 0, 20000, 1),
                                        Size(TEXT("A long name, with = and ;"), 1, 2, 0),
                                        Size(std::u16string(63, u'n').c_str(), 2147483647, 4000000000u, 1)};
    WriteCustomSizes(kIni, records, 3);
    EXPECT_EQ(Section().size(), 13u);
    EXPECT_EQ(Section()[0], "NumCustomSizes=3");
    EXPECT_EQ(Section()[1], "CustomName0=Small");
    EXPECT_EQ(Section()[2], "CustomWidth0=0");
    EXPECT_EQ(Section()[3], "CustomLength0=20000");
    EXPECT_EQ(Section()[4], "CustomMetric0=1");
    EXPECT_EQ(Section()[11], "CustomLength2=4000000000");
    EXPECT_EQ(Lines(ReadCustomSizes(kIni)),
              Texts({"Small 0x20000 1", "A long name, with = and ; 1x2 0",
                     std::string(63, 'n') + " 2147483647x4000000000 1", " 21000x29700 1"}));
    // Another list takes the place of the whole section, an empty one too.
    WriteCustomSizes(kIni, records, 1);
    EXPECT_EQ(Section().size(), 5u);
    WriteCustomSizes(kIni, nullptr, 0);
    EXPECT_EQ(Section(), Texts({"NumCustomSizes=0"}));
    EXPECT_EQ(Lines(ReadCustomSizes(kIni)), Texts({" 21000x29700 1"}));
}

TEST_F(CustomSizes, AnIncompleteRecordEmptiesTheList) {
    const Texts good = {"NumCustomSizes=2", "CustomName0=One", "CustomWidth0=1",  "CustomLength0=2", "CustomMetric0=1",
                        "CustomName1=Two",  "CustomWidth1=3",  "CustomLength1=4", "CustomMetric1=0"};
    const auto read = [](const Texts& lines) {
        std::string ini = "[CustomSizes]\r\n";
        for (const std::string& line : lines) {
            ini += line + "\r\n";
        }
        WriteDriveFile(u"C:\\sizes.ini", ini);
        return Lines(ReadCustomSizes(kIni));
    };
    EXPECT_EQ(read(good), Texts({"One 1x2 1", "Two 3x4 0", " 21000x29700 1"}));
    for (size_t missing = 0; missing < good.size(); ++missing) {
        Texts lines = good;
        lines.erase(lines.begin() + static_cast<ptrdiff_t>(missing));
        EXPECT_EQ(read(lines), Texts({" 21000x29700 1"})) << good[missing];
        lines = good;
        lines[missing] =
            lines[missing].substr(0, lines[missing].find('=') + 1) + (lines[missing].find("Name") == 6 ? "" : "-1");
        EXPECT_EQ(read(lines), Texts({" 21000x29700 1"})) << lines[missing];
    }
    Texts lines = good;
    lines[0] = "NumCustomSizes=1";
    EXPECT_EQ(read(lines), Texts({"One 1x2 1", " 21000x29700 1"}));
    for (const char* count : {"-7", "text", "3", "65535", "65536"}) {
        lines[0] = std::string("NumCustomSizes=") + count;
        EXPECT_EQ(read(lines), Texts({" 21000x29700 1"})) << count;
    }
}

TEST_F(CustomSizes, TheUsersOrThoseOfTheDriver) {
    InstallWithIni(kShipped);
    const CustomSizeRecord own = Size(TEXT("Own"), 11111, 22222, 0);
    EXPECT_EQ(Lines(LoadCustomSizes(kPrinterName), false), Texts({"Shipped 10000x20000 1"}));
    SaveCustomSizes(kPrinterName, &own, 1);  // no settings file name: not stored
    EXPECT_EQ(Lines(LoadCustomSizes(kPrinterName), false), Texts({"Shipped 10000x20000 1"}));

    PrepareSettingsFile(kPrinterName);  // a name, but no file yet
    EXPECT_EQ(Lines(LoadCustomSizes(kPrinterName), false), Texts({"Shipped 10000x20000 1"}));
    SaveCustomSizes(kPrinterName, &own, 1);
    EXPECT_EQ(Lines(LoadCustomSizes(kPrinterName), false), Texts({"Own 11111x22222 0"}));
    SaveCustomSizes(kPrinterName, nullptr, 0);
    EXPECT_EQ(LoadCustomSizes(kPrinterName).count, 0);
    EXPECT_EQ(ReadDriveFile(InstalledPath(u"KV62.INI")), kShipped);
}

TEST_F(CustomSizes, NoneWithoutAStore) {
    Install("");
    const CustomSizeList list = LoadCustomSizes(kPrinterName);
    EXPECT_EQ(list.count, 0);
    EXPECT_EQ(LoadCustomSizes(TEXT("Unknown")).count, 0);
}

TEST_F(CustomSizes, FormsOfTheUser) {
    Install("");
    EXPECT_EQ(EnumUserForms(Printer()).count, 0);
    const auto add = [this](WideText name, DWORD flags, LONG width, LONG length) {
        FORM_INFO_1W form = {};
        form.Flags = flags;
        form.pName = name.data();
        form.Size = {width, length};
        form.ImageableArea = {0, 0, width, length};
        ASSERT_TRUE(AddFormW(Printer(), 1, reinterpret_cast<BYTE*>(&form))) << GetLastError();
    };
    add(u"Half", FORM_USER, 100005, 100004);
    add(u"Of a printer", FORM_PRINTER, 50000, 50000);
    add(WideText(70, u'L'), FORM_USER, 148000, 210000);
    const CustomSizeList metric = EnumUserForms(Printer());
    EXPECT_EQ(Lines(metric, false), Texts({"Half 10001x10000 1", std::string(63, 'L') + " 14800x21000 1"}));
    machine_.SetMetric(false);
    EXPECT_EQ(Lines(EnumUserForms(Printer()), false)[0], "Half 10001x10000 0");
    EXPECT_EQ(EnumUserForms(INVALID_HANDLE_VALUE).count, 0);
}

}  // namespace
}  // namespace velmora
