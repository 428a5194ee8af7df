#include <cstring>

#include "driver/base/text.h"
#include "driver/entry/resource_module.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"
#include "tests/driver/machine.h"
#include "tests/driver/resource_file.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr WCHAR kIni[] = TEXT("C:\\marks.ini");
constexpr const char* kBlank = "0 '' Arial 0 72 450 7070FF";

// A language module with built-in watermarks "EN0", "EN1"...
std::string ModuleOf(const WideText& code, unsigned builtIns, const WideText& charSet) {
    std::map<unsigned, WideText> strings = {{2420, TEXT("ini")}, {2498, TEXT("Face")}, {2499, charSet}, {2500, code}};
    for (unsigned i = 0; i < builtIns; ++i) {
        strings[2490 + i] = code.substr(0, 2) + static_cast<WCHAR>(TEXT('0') + i);
    }
    return StringModule(strings);
}

std::string ToText(const WatermarkRecord& record) {
    char text[64];
    if (record.type == kImageWatermark) {
        snprintf(text, sizeof(text), " %u%%x%u%% %u", record.scaleX, record.scaleY, record.angle);
        return "2 '" + driver_test::ToText(record.text) + "' " + driver_test::ToText(record.imageName) + text;
    }
    snprintf(text, sizeof(text), " %u %u %u %X", record.style.charSet, record.style.size, record.angle,
             record.style.color);
    return std::to_string(record.type) + " '" + driver_test::ToText(record.text) + "' " +
           driver_test::ToText(record.style.face) + text;
}

// The records of a list and the blank one behind them.
Texts Lines(const WatermarkList& list) {
    Texts lines;
    for (size_t i = 0; list.records && i <= list.count; ++i) {
        lines.push_back(ToText(list.records.Get()[i]));
    }
    return lines;
}

Texts Names(const WatermarkList& list) {
    Texts names;
    for (size_t i = 0; i < list.count; ++i) {
        names.push_back(driver_test::ToText(list.records.Get()[i].text));
    }
    return names;
}

WatermarkRecord TextMark(const WCHAR* text) {
    WatermarkRecord record;
    MakeBlankWatermark(&record);
    record.type = kTextWatermark;
    record.needsRemake = 0;
    CopyText(record.text, ARRAYSIZE(record.text), text);
    return record;
}

WatermarkRecord ImageMark(const WCHAR* text) {
    WatermarkRecord record = {};
    record.type = kImageWatermark;
    CopyText(record.text, ARRAYSIZE(record.text), text);
    CopyText(record.imageName, ARRAYSIZE(record.imageName), TEXT("C:\\logo.bmp"));
    record.scaleX = 50;
    record.scaleY = 200;
    return record;
}

void SetRendered(WatermarkRecord* record, const WCHAR* file, const WCHAR* colorFile) {
    CopyText(record->fileName, ARRAYSIZE(record->fileName), file);
    CopyText(record->colorFileName, ARRAYSIZE(record->colorFileName), colorFile);
    record->resolution = 600;
    record->width = 1200;
    record->height = 400;
}

class Watermarks : public MachineTest {
  protected:
    void SetUp() override {
        DriverPackage package = PackageOf("");
        package.dependent = {{TEXT("KV62ENUS.DLL"), ModuleOf(TEXT("ENUS"), 8, TEXT("0"))},
                             {TEXT("KV62GERM.DLL"), ModuleOf(TEXT("GERM"), 8, TEXT("222"))},
                             {TEXT("KV62JAPA.DLL"), ModuleOf(TEXT("JAPA"), 6, TEXT("128"))}};
        Install(package);
    }

    WatermarkList LoadIn(WORD language) {
        machine_.SetLanguage(MAKELANGID(language, 1));
        return LoadWatermarkList(kPrinterName);
    }

    static WideText SettingsFile() {
        WCHAR path[MAX_PATH];
        EXPECT_TRUE(GetSettingsFilePath(kPrinterName, path, ARRAYSIZE(path)));
        return path;
    }

    static std::string Key(const WideText& name) {
        WCHAR value[MAX_PATH];
        GetPrivateProfileStringW(TEXT("Watermarks"), name.c_str(), TEXT("none"), value, ARRAYSIZE(value),
                                 SettingsFile().c_str());
        return driver_test::ToText(value);
    }

    // Appends these records to the printer's list, which has the built-in ones already.
    void Append(const std::vector<WatermarkRecord>& own) {
        const WatermarkList list = LoadWatermarkList(kPrinterName);
        std::vector<WatermarkRecord> records(list.records.Get(), list.records.Get() + list.count);
        records.insert(records.end(), own.begin(), own.end());
        SaveWatermarkList(kPrinterName, records.data(), static_cast<uint16_t>(records.size()));
    }
};

TEST_F(Watermarks, FirstUseWritesTheBuiltInOnes) {
    EXPECT_EQ(Lines(LoadWatermarkList(kPrinterName)), Texts({kBlank}));  // no settings file name
    PrepareSettingsFile(kPrinterName);
    const WatermarkList list = LoadWatermarkList(kPrinterName);
    EXPECT_EQ(Names(list), Texts({"EN0", "EN1", "EN2", "EN3", "EN4", "EN5", "EN6", "EN7"}));
    EXPECT_EQ(Lines(list)[0], "1 'EN0' Face 0 50 450 7070FF");
    EXPECT_EQ(Lines(list)[8], kBlank);
    EXPECT_EQ(list.records.Get()[0].needsRemake, 0u);
    EXPECT_EQ(list.records.Get()[8].needsRemake, 1u);
    const std::string file = ReadDriveFile(SettingsFile());
    EXPECT_TRUE(file.starts_with("[Watermarks]\r\nLanguage=ENUS\r\nWMType0=1\r\nWMString0=EN0\r\n")) << file;
    EXPECT_TRUE(file.ends_with("\r\nNumWatermarks=8\r\n"));
    EXPECT_EQ(Lines(LoadWatermarkList(TEXT("Unknown"))), Texts({kBlank}));
}

TEST_F(Watermarks, BuiltInOnesOfAModule) {
    EXPECT_EQ(Lines(BuildDefaultWatermarkList(nullptr)), Texts({kBlank}));
    machine_.SetLanguage(MAKELANGID(LANG_JAPANESE, 1));
    const WatermarkList list = BuildDefaultWatermarkList(LoadResourceModule(Printer(), nullptr).Get());
    ASSERT_EQ(list.count, 6);
    EXPECT_EQ(Lines(list)[5], "1 'JA5' Face 128 50 450 7070FF");
    EXPECT_EQ(Lines(list)[6], kBlank);
    WriteDriveFile(InstalledPath(TEXT("KV62JAPA.DLL")), StringModule({{2490, TEXT("No face")}}));
    EXPECT_EQ(BuildDefaultWatermarkList(LoadResourceModule(Printer(), nullptr).Get()).count, 0);
}

TEST_F(Watermarks, WhatIsWrittenIsRead) {
    WatermarkRecord records[] = {TextMark(TEXT("Text")), ImageMark(TEXT("Image")), TextMark(TEXT("Plain"))};
    records[0].style.rightToLeft = 1;
    records[0].style.charSet = 255;
    records[0].style.color = 0x12AB;
    records[0].placement = 9;
    records[0].positionX = -1;
    records[0].positionY = INT32_MIN;
    SetRendered(&records[0], TEXT("C:\\a.wm"), TEXT("C:\\a.cwm"));
    SetRendered(&records[1], TEXT(""), TEXT("C:\\b.cwm"));
    WriteWatermarkList(kPrinterName, kIni, records, 3);
    EXPECT_EQ(ReadDriveFile(kIni),
              "[Watermarks]\r\nLanguage=ENUS\r\nNumWatermarks=3\r\n"
              "WMType0=1\r\nWMString0=Text\r\nWMAngle0=450\r\nWMRTL0=1\r\nWMCharSet0=255\r\nWMFace0=Arial\r\n"
              "WMBold0=0\r\nWMItalic0=0\r\nWMSize0=72\r\nWMColor0=000012AB\r\nWMOutline0=0\r\nWMPlacement0=9\r\n"
              "WMPositionX0=-1\r\nWMPositionY0=-2147483648\r\nWMFileName0=C:\\a.wm\r\nWMColorFile0=C:\\a.cwm\r\n"
              "WMResolution0=600\r\nWMWidth0=1200\r\nWMHeight0=400\r\n"
              "WMType1=2\r\nWMString1=Image\r\nWMAngle1=0\r\nWMImageName1=C:\\logo.bmp\r\nWMScaleX1=50\r\n"
              "WMScaleY1=200\r\nWMPlacement1=0\r\nWMPositionX1=0\r\nWMPositionY1=0\r\nWMColorFile1=C:\\b.cwm\r\n"
              "WMResolution1=600\r\nWMWidth1=1200\r\nWMHeight1=400\r\n"
              "WMType2=1\r\nWMString2=Plain\r\nWMAngle2=450\r\nWMCharSet2=0\r\nWMFace2=Arial\r\nWMBold2=0\r\n"
              "WMItalic2=0\r\nWMSize2=72\r\nWMColor2=007070FF\r\nWMOutline2=0\r\nWMPlacement2=0\r\n"
              "WMPositionX2=0\r\nWMPositionY2=0\r\n");
    const WatermarkList list = ReadWatermarkList(kIni);
    ASSERT_EQ(list.count, 3);
    EXPECT_EQ(memcmp(list.records.Get(), records, sizeof(records)), 0);
    // Another list takes the place of the whole section. Without a module the language stays.
    WriteDriveFile(InstalledPath(TEXT("KV62ENUS.DLL")), "no library");
    WriteWatermarkList(kPrinterName, kIni, nullptr, 0);
    EXPECT_EQ(ReadDriveFile(kIni), "[Watermarks]\r\nLanguage=ENUS\r\nNumWatermarks=0\r\n");
    EXPECT_EQ(Lines(ReadWatermarkList(kIni)), Texts({kBlank}));
}

TEST_F(Watermarks, AnInvalidEntryEmptiesTheList) {
    WatermarkRecord records[] = {TextMark(TEXT("Text")), ImageMark(TEXT("Image"))};
    SetRendered(&records[0], TEXT("C:\\a.wm"), TEXT(""));
    WriteWatermarkList(kPrinterName, kIni, records, 2);
    const std::string file = ReadDriveFile(kIni);
    // With another value in the place of one; null deletes it.
    const auto read = [&file](const WCHAR* key, const WCHAR* value) {
        WriteDriveFile(kIni, file);
        WritePrivateProfileStringW(TEXT("Watermarks"), key, value, kIni);
        return Lines(ReadWatermarkList(kIni));
    };
    const Texts good = {"1 'Text' Arial 0 72 450 7070FF", "2 'Image' C:\\logo.bmp 50%x200% 0", kBlank};
    const struct {
        const WCHAR* key;
        const WCHAR* value;
    } invalid[] = {
        {TEXT("WMString0"), nullptr},       {TEXT("WMString1"), TEXT("")},         {TEXT("WMFace0"), nullptr},
        {TEXT("WMBold0"), nullptr},         {TEXT("WMItalic0"), TEXT("-1")},       {TEXT("WMOutline0"), TEXT("")},
        {TEXT("WMColor0"), nullptr},        {TEXT("WMColor0"), TEXT("FFFFFFFF")},  {TEXT("WMSize0"), nullptr},
        {TEXT("WMSize0"), TEXT("65535")},   {TEXT("WMAngle0"), TEXT("65586")},     {TEXT("WMAngle0"), nullptr},
        {TEXT("WMImageName1"), nullptr},    {TEXT("WMResolution0"), nullptr},      {TEXT("WMWidth0"), TEXT("0")},
        {TEXT("WMHeight0"), nullptr},       {TEXT("NumWatermarks"), nullptr},      {TEXT("NumWatermarks"), TEXT("3")},
        {TEXT("NumWatermarks"), TEXT("0")}, {TEXT("NumWatermarks"), TEXT("-2")},   {TEXT("WMType1"), nullptr},
        {TEXT("WMType0"), TEXT("2")},       {TEXT("NumWatermarks"), TEXT("65535")}};
    for (const auto& c : invalid) {
        EXPECT_EQ(read(c.key, c.value), Texts({kBlank})) << driver_test::ToText(c.key);
    }
    const struct {
        const WCHAR* key;
        const WCHAR* value;
        size_t index;
        const char* line;
    } valid[] = {
        {TEXT("WMType0"), nullptr, 0, "1 'Text' Arial 0 72 450 7070FF"},
        {TEXT("WMType1"), TEXT("7"), 1, "7 'Image'  0 0 0 0"},
        {TEXT("WMCharSet0"), nullptr, 0, "1 'Text' Arial 255 72 450 7070FF"},
        {TEXT("WMSize0"), TEXT("65534"), 0, "1 'Text' Arial 0 65534 450 7070FF"},
        {TEXT("WMScaleX1"), nullptr, 1, "2 'Image' C:\\logo.bmp 100%x200% 0"},
        {TEXT("WMAngle1"), TEXT("900"), 1, "2 'Image' C:\\logo.bmp 50%x200% 0"},
        {TEXT("WMPositionX0"), nullptr, 0, "1 'Text' Arial 0 72 450 7070FF"},
    };
    for (const auto& c : valid) {
        Texts lines = good;
        lines[c.index] = c.line;
        EXPECT_EQ(read(c.key, c.value), lines) << driver_test::ToText(c.key);
    }
    EXPECT_EQ(read(TEXT("NumWatermarks"), TEXT("1")), Texts({good[0], kBlank}));
}

TEST_F(Watermarks, ALanguageBringsItsOwnAndKeepsTheUsers) {
    PrepareSettingsFile(kPrinterName);
    LoadIn(LANG_JAPANESE);
    WatermarkRecord first = TextMark(TEXT("First"));
    first.style.charSet = 255;
    first.positionX = -40;
    SetRendered(&first, TEXT("C:\\first.wm"), TEXT("C:\\first.cwm"));
    Append({first, TextMark(TEXT("Second")), TextMark(TEXT("Third"))});
    const Texts japanese = {"JA0", "JA1", "JA2", "JA3", "JA4", "JA5", "First", "Second", "Third"};
    EXPECT_EQ(Names(LoadIn(LANG_JAPANESE)), japanese);
    const Texts english = {"EN0", "EN1", "EN2", "EN3", "EN4", "EN5", "EN6", "EN7", "First", "Second", "Third"};
    EXPECT_EQ(Names(LoadIn(LANG_ENGLISH)), english);
    const WatermarkList german = LoadIn(LANG_GERMAN);
    EXPECT_EQ(Lines(german)[7], "1 'GE7' Face 222 50 450 7070FF");
    ASSERT_EQ(german.count, 11);
    EXPECT_EQ(memcmp(german.records.Get() + 8, &first, sizeof(first)), 0);
    EXPECT_EQ(Key(TEXT("NumWatermarks")), "11");
    const WatermarkList back = LoadIn(LANG_JAPANESE);
    EXPECT_EQ(Names(back), japanese);
    EXPECT_EQ(Lines(back)[0], "1 'JA0' Face 128 50 450 7070FF");
    EXPECT_EQ(memcmp(back.records.Get() + 6, &first, sizeof(first)), 0);
    EXPECT_EQ(Key(TEXT("NumWatermarks")) + Key(TEXT("Language")) + Key(TEXT("WMString9")), "9JAPAnone");
    // Without a module nothing is rewritten.
    WriteDriveFile(InstalledPath(TEXT("KV62ENUS.DLL")), "no library");
    EXPECT_EQ(Names(LoadIn(LANG_ENGLISH)), japanese);
}

TEST_F(Watermarks, CountsThatAreNotTrue) {
    PrepareSettingsFile(kPrinterName);
    const struct {
        WORD from;
        WORD to;
        const WCHAR* count;  // null: none
        const char* becomes;
    } cases[] = {
        {LANG_ENGLISH, LANG_JAPANESE, TEXT("1"), "0"},
        {LANG_ENGLISH, LANG_JAPANESE, TEXT("65535"), "65533"},
        {LANG_JAPANESE, LANG_ENGLISH, nullptr, "2"},
        {LANG_JAPANESE, LANG_GERMAN, TEXT("999"), "1001"},
    };
    for (const auto& c : cases) {
        DeleteWatermarkFiles(SettingsFile().c_str());
        LoadIn(c.from);
        WritePrivateProfileStringW(TEXT("Watermarks"), TEXT("NumWatermarks"), c.count, SettingsFile().c_str());
        LoadIn(c.to);
        EXPECT_EQ(Key(TEXT("NumWatermarks")), c.becomes);
        EXPECT_EQ(Key(TEXT("WMString0")), c.to == LANG_JAPANESE ? "JA0" : c.to == LANG_GERMAN ? "GE0" : "EN0");
        EXPECT_EQ(Key(TEXT("WMString7")), c.to == LANG_JAPANESE ? "none" : c.to == LANG_GERMAN ? "GE7" : "EN7");
    }
}

// Such a list reads as empty, but its entries stay for a file that is mended.
TEST_F(Watermarks, AGapMovesWithTheEntriesAroundIt) {
    PrepareSettingsFile(kPrinterName);
    LoadIn(LANG_JAPANESE);
    Append({TextMark(TEXT("First")), TextMark(TEXT("Second")), TextMark(TEXT("Third"))});
    WritePrivateProfileStringW(TEXT("Watermarks"), TEXT("WMString7"), nullptr, SettingsFile().c_str());
    LoadIn(LANG_ENGLISH);
    EXPECT_EQ(Key(TEXT("WMString8")) + Key(TEXT("WMString9")) + Key(TEXT("WMString10")), "FirstnoneThird");
    LoadIn(LANG_JAPANESE);
    EXPECT_EQ(Key(TEXT("WMString6")) + Key(TEXT("WMString7")) + Key(TEXT("WMString8")) + Key(TEXT("NumWatermarks")),
              "FirstnoneThird9");
}

TEST_F(Watermarks, AMovedImageLeavesItsPictureBehind) {
    PrepareSettingsFile(kPrinterName);
    LoadIn(LANG_JAPANESE);
    Append({ImageMark(TEXT("Image"))});
    EXPECT_EQ(LoadIn(LANG_ENGLISH).count, 0);
    EXPECT_EQ(Key(TEXT("WMType8")) + Key(TEXT("WMString8")) + Key(TEXT("WMImageName8")) + Key(TEXT("WMScaleX8")),
              "2Imagenonenone");
}

TEST_F(Watermarks, RenderedFilesGoWithWhatTheyShow) {
    PrepareSettingsFile(kPrinterName);
    const WatermarkList list = LoadIn(LANG_ENGLISH);
    WatermarkRecord own = TextMark(TEXT("Own"));
    SetRendered(&list.records.Get()[1], TEXT("C:\\r\\1.wm"), TEXT("C:\\r\\1.cwm"));
    SetRendered(&list.records.Get()[7], TEXT(""), TEXT("C:\\r\\7.cwm"));
    SetRendered(&own, TEXT("C:\\r\\own.wm"), TEXT("C:\\r\\own.cwm"));
    list.records.Get()[8] = own;
    SaveWatermarkList(kPrinterName, list.records.Get(), 9);
    const WideText files[] = {TEXT("1.wm"), TEXT("1.cwm"), TEXT("7.cwm"), TEXT("own.wm"), TEXT("own.cwm")};
    const auto existing = [&files] {
        std::string names;
        for (const WideText& name : files) {
            names += DriveFileExists(TEXT("C:\\r\\") + name) ? driver_test::ToText(name) + " " : "";
        }
        return names;
    };
    for (const WideText& name : files) {
        WriteDriveFile(TEXT("C:\\r\\") + name, "rendered");
    }
    LoadIn(LANG_ENGLISH);
    EXPECT_EQ(existing(), "1.wm 1.cwm 7.cwm own.wm own.cwm ");
    EXPECT_EQ(LoadIn(LANG_JAPANESE).count, 7);  // one has another text now, one is gone
    EXPECT_EQ(existing(), "own.wm own.cwm ");
    EXPECT_EQ(Key(TEXT("WMFileName1")) + Key(TEXT("WMColorFile1")) + Key(TEXT("WMFileName0")), "none");
    const WideText file = SettingsFile();
    DeleteWatermarkFiles(file.c_str());
    EXPECT_EQ(existing(), "");
    EXPECT_FALSE(DriveFileExists(file));
}

TEST_F(Watermarks, FoundByTheFileOfADeviceMode) {
    const WideText longFile = TEXT("C:\\") + WideText(92, TEXT('l'));  // 95 characters
    WatermarkRecord records[] = {TextMark(TEXT("Plain")), TextMark(TEXT("Mono")), TextMark(TEXT("Long"))};
    SetRendered(&records[1], TEXT("C:\\a.wm"), TEXT("C:\\a.cwm"));
    SetRendered(&records[2], TEXT("C:\\b.wm"), (longFile + TEXT("more")).c_str());
    WriteWatermarkList(kPrinterName, kIni, records, 3);
    const WatermarkList list = ReadWatermarkList(kIni);
    const auto find = [&list](const WideText& file) {
        const WatermarkRecord* found = FindWatermarkByFile(list, file.c_str());
        return found ? driver_test::ToText(found->text) : "none";
    };
    EXPECT_EQ(find(TEXT("C:\\a.wm")) + find(TEXT("C:\\a.cwm")) + find(longFile) + find(longFile + TEXT("other")),
              "MonoMonoLongLong");
    for (const WideText file : {TEXT(""), TEXT("C:\\A.wm"), TEXT("C:\\a.w"), TEXT("C:\\a.wmx"), TEXT("a.wm")}) {
        EXPECT_EQ(find(file), "none") << driver_test::ToText(file);
    }
    EXPECT_EQ(find(longFile.substr(0, 94)), "none");
    EXPECT_EQ(FindWatermarkByFile(WatermarkList(), TEXT("C:\\a.wm")), nullptr);
}

}  // namespace
}  // namespace velmora
