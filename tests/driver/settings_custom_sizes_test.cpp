#include "driver/settings/custom_sizes.h"

#include "driver/base/text.h"
#include "driver/settings/settings_folder.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr WCHAR kIni[] = TEXT("C:\\sizes.ini");
constexpr const char* kBlank = " 21000x29700 1";
constexpr const char* kShipped =
    "[CustomSizes]\r\nNumCustomSizes=1\r\n"
    "CustomName0=Shipped\r\nCustomWidth0=10000\r\nCustomLength0=20000\r\nCustomMetric0=1\r\n";

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
Texts Lines(const CustomSizeList& list, bool blank = false) {
    Texts lines;
    for (size_t i = 0; list.records && i < size_t{list.count} + (blank ? 1 : 0); ++i) {
        lines.push_back(ToText(list.records.Get()[i]));
    }
    return lines;
}

class CustomSizes : public MachineTest {};

TEST_F(CustomSizes, BlankRecords) {
    CustomSizeRecord record;
    for (const bool isMetric : {true, false}) {
        machine_.SetMetric(isMetric);
        memset(&record, 0x55, sizeof(record));
        MakeBlankCustomSize(&record);
        EXPECT_EQ(ToText(record), isMetric ? kBlank : " 533400x754380 0");
        EXPECT_EQ(ValueOf(record.name[63]), 0);
    }
}

TEST_F(CustomSizes, WhatIsWrittenIsRead) {
    const CustomSizeRecord records[] = {Size(TEXT("A name, with = and ;"), 0, 20000, 1),
                                        Size(WideText(63, TEXT('n')).c_str(), 2147483647, 4000000000u, 0)};
    WriteCustomSizes(kIni, records, 2);
    EXPECT_EQ(ReadDriveFile(kIni),
              "[CustomSizes]\r\nNumCustomSizes=2\r\n"
              "CustomName0=A name, with = and ;\r\nCustomWidth0=0\r\nCustomLength0=20000\r\nCustomMetric0=1\r\n"
              "CustomName1=" +
                  std::string(63, 'n') +
                  "\r\nCustomWidth1=2147483647\r\nCustomLength1=4000000000\r\nCustomMetric1=0\r\n");
    EXPECT_EQ(Lines(ReadCustomSizes(kIni), true),
              Texts({"A name, with = and ; 0x20000 1", std::string(63, 'n') + " 2147483647x4000000000 0", kBlank}));
    // Another list takes the place of the whole section, an empty one too.
    WriteCustomSizes(kIni, nullptr, 0);
    EXPECT_EQ(ReadDriveFile(kIni), "[CustomSizes]\r\nNumCustomSizes=0\r\n");
    EXPECT_EQ(Lines(ReadCustomSizes(kIni), true), Texts({kBlank}));
}

// Names that reading would take something from, and one that fills its record.
TEST_F(CustomSizes, EveryNameIsReadAsItIs) {
    for (const WideText& name :
         {WideText(TEXT(" a")), WideText(TEXT("a\t")), WideText(TEXT("  ")), WideText(TEXT("\"a\"")),
          WideText(TEXT("'a'")), WideText(TEXT("\"")), WideText(TEXT("a\"")), WideText(62, TEXT('n')) + TEXT(" ")}) {
        const CustomSizeRecord record = Size(name.c_str(), 1, 2, 1);
        WriteCustomSizes(kIni, &record, 1);
        EXPECT_EQ(Lines(ReadCustomSizes(kIni)), Texts({driver_test::ToText(name.c_str()) + " 1x2 1"}));
    }
    CustomSizeRecord full[] = {Size(TEXT(""), 1, 2, 1), Size(TEXT("next"), 3, 4, 1)};
    std::fill(std::begin(full[0].name), std::end(full[0].name), TEXT('n'));
    WriteCustomSizes(kIni, full, 2);
    EXPECT_EQ(Lines(ReadCustomSizes(kIni)), Texts({std::string(63, 'n') + " 1x2 1", "next 3x4 1"}));
}

TEST_F(CustomSizes, AnIncompleteRecordEmptiesTheList) {
    const Texts good = {"NumCustomSizes=2", "CustomName0=One", "CustomWidth0=1",  "CustomLength0=2", "CustomMetric0=1",
                        "CustomName1=Two",  "CustomWidth1=3",  "CustomLength1=4", "CustomMetric1=0"};
    // With another line in the place of one.
    const auto read = [&good](size_t index, const std::string& line) {
        Texts lines = good;
        lines[index] = line;
        std::string ini = "[CustomSizes]\r\n";
        for (const std::string& each : lines) {
            ini += each + "\r\n";
        }
        WriteDriveFile(kIni, ini);
        return Lines(ReadCustomSizes(kIni), true);
    };
    EXPECT_EQ(read(0, good[0]), Texts({"One 1x2 1", "Two 3x4 0", kBlank}));
    EXPECT_EQ(read(0, "NumCustomSizes=1"), Texts({"One 1x2 1", kBlank}));
    for (size_t i = 0; i < good.size(); ++i) {
        const std::string key = good[i].substr(0, good[i].find('=') + 1);
        EXPECT_EQ(read(i, ""), Texts({kBlank})) << key;
        EXPECT_EQ(read(i, key + (key.starts_with("CustomName") ? "" : "-1")), Texts({kBlank})) << key;
    }
    for (const char* count : {"text", "3", "65535", "65536"}) {
        EXPECT_EQ(read(0, std::string("NumCustomSizes=") + count), Texts({kBlank})) << count;
    }
}

TEST_F(CustomSizes, TheUsersOrThoseOfTheDriver) {
    Install(PackageOf("", kShipped));
    const CustomSizeRecord own = Size(TEXT("Own"), 11111, 22222, 0);
    SaveCustomSizes(kPrinterName, &own, 1);  // no settings file name: not stored
    EXPECT_EQ(Lines(LoadCustomSizes(kPrinterName)), Texts({"Shipped 10000x20000 1"}));
    PrepareSettingsFile(kPrinterName);  // a name, but no file yet
    EXPECT_EQ(Lines(LoadCustomSizes(kPrinterName)), Texts({"Shipped 10000x20000 1"}));
    SaveCustomSizes(kPrinterName, &own, 1);
    EXPECT_EQ(Lines(LoadCustomSizes(kPrinterName)), Texts({"Own 11111x22222 0"}));
    SaveCustomSizes(kPrinterName, nullptr, 0);
    EXPECT_EQ(LoadCustomSizes(kPrinterName).count, 0);
    EXPECT_EQ(ReadDriveFile(InstalledPath(TEXT("KV62.INI"))), kShipped);
    EXPECT_EQ(LoadCustomSizes(TEXT("Unknown")).count, 0);
}

TEST_F(CustomSizes, FormsOfTheUser) {
    Install("");
    EXPECT_EQ(EnumUserForms(Printer()).count, 0);
    AddForm(TEXT("Half"), FORM_USER, 100005, 100004);
    AddForm(TEXT("Of a printer"), FORM_PRINTER, 50000, 50000);
    AddForm(WideText(70, TEXT('L')), FORM_USER, 148000, 210000);
    EXPECT_EQ(Lines(EnumUserForms(Printer())), Texts({"Half 10001x10000 1", std::string(63, 'L') + " 14800x21000 1"}));
    machine_.SetMetric(false);
    EXPECT_EQ(Lines(EnumUserForms(Printer()))[0], "Half 10001x10000 0");
    EXPECT_EQ(EnumUserForms(INVALID_HANDLE_VALUE).count, 0);
}

}  // namespace
}  // namespace velmora
