// The Watermark page of the document sheet as an application shows it, and the program that renders watermarks.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/contract/sheet_test.h"
#include "tests/contract/transcript.h"
#include "tests/driver/changed_devmode.h"
#include "tools/wm/watermark_file.h"

namespace contract {
namespace {

// Controls of the page.
constexpr int kOn = 7003, kName = 7005, kAdd = 7006, kChange = 7007, kDelete = 7008, kFace = 7010, kStyle = 7012,
              kSize = 7014, kSizeSpin = 7015, kFamily = 7017, kPosition = 7019, kShade = 7023, kAngle = 7025,
              kAngleSlider = 7026, kRestore = 7030, kReady = 3107;

// Of the Paper page.
constexpr int kPaper = 5006;

constexpr int kNoticeOk = 1604;

// What is written of a watermark that the program's stand-in has rendered.
const std::string kRendered =
    "watermarkFlags=36 watermarkIndex=600 watermarkText=\"*.CWM\" watermarkFontSize=200 watermarkAngle=100";
const std::string kRenderedInBlack =
    "watermarkFlags=36 watermarkIndex=600 watermarkText=\"*.WM\" watermarkFontSize=200 watermarkAngle=100";

constexpr WCHAR kProgram[] = TEXT("KV62WM.EXE");

const Step kTurn = TurnTo(kWatermarkTab);

DriverPackage PackageWithoutProgram() {
    DriverPackage package = PackageOf(kColorModel);
    std::erase_if(package.dependentFiles, [](const PackageFile& file) { return file.name == kProgram; });
    return package;
}

WideText Wide(const std::string& text) {
    return WideText(text.begin(), text.end());
}

// A section of an INI file: values by key. Of paths only the extensions stand, since files are named by the time.
using Section = std::map<std::string, std::string>;
Section ReadSection(const WCHAR* section, const WideText& file) {
    std::vector<WCHAR> block(32768);
    GetPrivateProfileSectionW(section, block.data(), static_cast<DWORD>(block.size()), file.c_str());
    Section values;
    for (const WCHAR* line = block.data(); *line != 0; line += WideText(line).size() + 1) {
        const WideText text = line;
        const size_t equals = text.find('=');
        const WideText value = text.substr(equals + 1);
        values[Printable(text.substr(0, equals))] =
            value.find('\\') == WideText::npos ? Printable(value) : '*' + Printable(value.substr(value.rfind('.')));
    }
    return values;
}

// The stored watermarks: "Mine, 36 bold italic 00FF0000, 300 at 9, 200 x 100 *.WM *.CWM".
using Entries = std::vector<std::string>;
Entries ReadEntries(const WideText& file) {
    Section section = ReadSection(TEXT("Watermarks"), file);
    Entries entries;
    for (int i = 0; i < std::stoi(section["NumWatermarks"]); ++i) {
        const auto value = [&](const char* key) { return section[std::string("WM") + key + std::to_string(i)]; };
        std::string entry = value("String") + ", " + value("Size") + (value("Bold") == "1" ? " bold" : "") +
                            (value("Italic") == "1" ? " italic" : "") + ' ' + value("Color") + ", " + value("Angle") +
                            " at " + value("Placement");
        if (!value("FileName").empty()) {
            entry += ", " + value("Width") + " x " + value("Height") + ' ' + value("FileName");
            entry += value("ColorFile").empty() ? "" : ' ' + value("ColorFile");
        }
        entries.push_back(entry);
    }
    return entries;
}

// The entries that differ from before, "[8] Mine, ...", and how many there are where that differs.
std::string StoredChanges(const Entries& before, const Entries& after) {
    std::string text = before.size() == after.size() ? "" : "now " + std::to_string(after.size());
    for (size_t i = 0; i < after.size(); ++i) {
        if (i >= before.size() || before[i] != after[i]) {
            text += (text.empty() ? "[" : " [") + std::to_string(i) + "] " + after[i];
        }
    }
    return text;
}

// How a program that renders answers.
enum class Answer {
    kWhole,    // renders
    kSilent,   // renders, but tells nobody
    kFailure,  // says that it couldn't
    kRubbish,  // writes what is no answer
    kNothing,  // ends, or hangs
};

// Stands in for the program that renders watermarks.
class Renderer {
  public:
    explicit Renderer(ContractEnvironment& environment) {
        environment.AddProgram(kProgram, [this](const std::string& command) { Run(command); });
    }

    Answer answer = Answer::kWhole;

  private:
    void Run(const std::string& command) {
        const std::string program(kProgram, kProgram + std::size(kProgram) - 1);
        const WideText jobFile = Wide(command.substr(command.find(program) + program.size() + 1));
        std::string job = "  renders";
        for (const auto& [key, value] : ReadSection(TEXT("MAKEWM"), jobFile)) {
            job.append(" ").append(key).append("=").append(value);
        }
        Record(job);
        const auto write = [&](const WCHAR* key, const WCHAR* value) {
            WritePrivateProfileStringW(TEXT("MAKEWM"), key, value, jobFile.c_str());
        };
        switch (answer) {
            case Answer::kWhole:
            case Answer::kSilent:
                write(TEXT("Size.x"), TEXT("200"));
                write(TEXT("Size.y"), TEXT("100"));
                write(TEXT("Result"), TEXT("1"));
                write(TEXT("text.FontChange"), TEXT("0"));
                WCHAR output[MAX_PATH];
                GetPrivateProfileStringW(TEXT("MAKEWM"), TEXT("OutputFile"), TEXT(""), output, MAX_PATH,
                                         jobFile.c_str());
                WriteContent(output);
                break;
            case Answer::kFailure:
                write(TEXT("Result"), TEXT("-5"));
                break;
            case Answer::kRubbish:
                write(TEXT("Size.x"), TEXT("wide"));
                write(TEXT("Size.y"), TEXT("-99999999999"));
                write(TEXT("Result"), TEXT("?"));
                break;
            case Answer::kNothing:
                return;
        }
        if (answer != Answer::kSilent) {
            const HANDLE done = OpenEventW(EVENT_MODIFY_STATE, FALSE, FileName(jobFile).c_str());
            EXPECT_TRUE(done != nullptr && SetEvent(done) && CloseHandle(done)) << "nobody waits";
        }
    }

    static void WriteContent(const WCHAR* path) {
        DWORD size = 0;
        const HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        EXPECT_TRUE(WriteFile(file, "rendered", 8, &size, nullptr)) << "the file is there already, or can't be made";
        CloseHandle(file);
    }
};

// Types a name into the editable part of the combo box.
Step Name(const WideText& name) {
    return Type(kName, name);
}

// Drags a slider's thumb to a position.
Step Slide(int slider, int position) {
    return [=] {
        const HWND window = Control(slider);
        SendMessageW(window, TBM_SETPOS, TRUE, position);
        for (const int code : {TB_THUMBTRACK, TB_THUMBPOSITION, TB_ENDTRACK}) {
            SendMessageW(FrontPage(), WM_HSCROLL, MAKEWPARAM(code, code == TB_ENDTRACK ? 0 : position),
                         reinterpret_cast<LPARAM>(window));
        }
    };
}

Step FocusOn(int control) {
    return [control] { SetFocus(Control(control)); };
}

Step Key(WORD key) {
    return [key] { PressKey(key); };
}

// A file by its path, which may be a short one.
std::string ContentOfShort(const WideText& path) {
    std::string bytes(1 << 22, 0);
    DWORD size = 0;
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_TRUE(ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &size, nullptr));
    CloseHandle(file);
    bytes.resize(size);
    return bytes;
}

class WatermarkSheet : public SheetTest {
  protected:
    // CheckSheet over AppliedDevMode with other settings; the user's list has the StoredChanges `stored` then.
    void Check(InstalledPrinter& printer, const char* title, const char* settings, std::vector<Step> steps,
               const std::string& written, const std::string& stored) {
        SCOPED_TRACE(title);
        const velmora::VelmoraDevMode base = AppliedDevMode(printer);  // makes the list, too
        const Entries before = Stored(printer);
        CheckSheet(printer, title, driver_test::With(base, settings), std::move(steps), written);
        const std::string changes = StoredChanges(before, Stored(printer));
        EXPECT_EQ(changes, stored);
        Record("  stores " + changes);
    }

    static WideText SettingsFolder() {
        return Variable(TEXT("APPDATA")) + TEXT("\\Kestranix Inc.\\Velmora Contract\\");
    }

    WideText SettingsFile(const InstalledPrinter& printer) const {
        const PrinterValue name = printer.Data().at(TEXT("Settings"));
        return SettingsFolder() + reinterpret_cast<const WCHAR*>(name.bytes.data());
    }

    Entries Stored(const InstalledPrinter& printer) const { return ReadEntries(SettingsFile(printer)); }

    // Adds a user's watermarks to the stored list until it has so many.
    void Fill(const InstalledPrinter& printer, int count) {
        const WideText file = SettingsFile(printer);
        const auto write = [&](const std::string& key, const std::string& value) {
            WritePrivateProfileStringW(TEXT("Watermarks"), Wide(key).c_str(), Wide(value).c_str(), file.c_str());
        };
        for (int i = 8; i < count; ++i) {
            const std::string index = std::to_string(i);
            write("WMString" + index, "Own " + index);
            std::istringstream settings(
                "Type=1 Face=Arial CharSet=0 Bold=0 Italic=0 Size=40 Outline=0 Color=00000000 Angle=0 Placement=0 "
                "PositionX=0 PositionY=0");
            for (std::string setting; settings >> setting;) {
                const size_t equals = setting.find('=');
                write("WM" + setting.substr(0, equals) + index, setting.substr(equals + 1));
            }
        }
        write("NumWatermarks", std::to_string(count));
    }

    // The rendered files in the user's folder, by their extensions.
    std::string RenderedFiles() const {
        std::vector<std::string> extensions;
        for (const auto& entry : std::filesystem::directory_iterator(environment_->HostPath(SettingsFolder()))) {
            const std::string extension = entry.path().extension().string();
            if (extension != ".ini") {
                extensions.push_back(extension);
            }
        }
        std::sort(extensions.begin(), extensions.end());
        std::string text;
        for (const std::string& extension : extensions) {
            text += (text.empty() ? "" : " ") + extension;
        }
        return text;
    }

    Renderer renderer_{*environment_};
};

TEST_F(WatermarkSheet, ChoosesAWatermark) {
    InstalledPrinter printer(*environment_, PackageOf(kColorModel));
    Check(printer, "looked at", "",
          {kTurn, See(kOn, "on unchecked"), See(kName, "off 0"), See(kDelete, "off"), See(kStyle, "off 0"),
           See(kSize, "off 50"), See(kFamily, "off 1"), See(kPosition, "off 0"), See(kAngle, "off 45"),
           See(kReady, "on item 0 of 1")},
          "", "");
    Check(printer, "on", "",
          {kTurn, Press(kOn), See(kName, "on 0"), See(kAdd, "off"), See(kChange, "off"), See(kDelete, "off"),
           SeeOffered(kName, "0 1 2 3 4 5 6 7"), SeeOffered(kStyle, "0 1 2 3"), SeeOffered(kFamily, "0 1 2 3 4 5 6 7"),
           SeeOffered(kPosition, "0 6 2 7 8 4 9"), See(kSizeSpin, "on 8..400 at 50")},
          kRendered + " outputFlag=1", "[0] Confidential, 50 007070FF, 450 at 0, 200 x 100 *.WM *.CWM");
    Check(printer, "another", "outputFlag=1", {kTurn, ChooseItem(kName, 2), See(kChange, "off")},
          kRendered + " outputLevel=2", "[2] Copy, 50 007070FF, 450 at 0, 200 x 100 *.WM *.CWM");
    Check(printer, "the one that is rendered already", "outputFlag=1 outputLevel=2", {kTurn, ChooseItem(kName, 0)},
          kRendered + " outputLevel=0", "");
    Check(printer, "in black", "outputFlag=1 dmColor=1", {kTurn, ChooseItem(kName, 2)},
          kRenderedInBlack + " outputLevel=2", "");
    Check(printer, "off", "outputFlag=1 watermarkFlags=36 watermarkFontSize=200 watermarkAngle=100 watermarkIndex=600",
          {kTurn, Press(kOn), See(kName, "off 0")},
          "watermarkFlags=0 watermarkIndex=0 watermarkFontSize=0 watermarkAngle=0 outputFlag=0", "");
    Check(printer, "one that there isn't", "outputLevel=17", {kTurn, See(kName, "off 0")}, "outputLevel=0", "");
}

TEST_F(WatermarkSheet, KeepsTheUsersOwn) {
    InstalledPrinter printer(*environment_, PackageOf(kColorModel));
    Check(printer, "added", "",
          {kTurn, Press(kOn), Name(TEXT("Mine")), See(kAdd, "on"), See(kChange, "off"), Choose(kStyle, 3),
           Type(kSize, TEXT("36")), Choose(kFamily, 3), Slide(kShade, 15), Choose(kPosition, 9),
           Slide(kAngleSlider, 47), See(kAngle, "on 45"), Slide(kAngleSlider, 30), Press(kAdd), See(kName, "on 8"),
           See(kAdd, "off"), See(kChange, "on"), See(kDelete, "on")},
          kRendered + " watermarkPosition=9 outputFlag=1 outputLevel=8 shadeMaxFlag=1",
          "now 9 [8] Mine, 36 bold italic 00FF0000, 300 at 9, 200 x 100 *.WM *.CWM");
    Check(printer, "two more, with a name that there is", "outputFlag=1 outputLevel=8",
          {kTurn, See(kName, "on 8"), Name(TEXT("Second")), Press(kAdd), Name(TEXT("Mine")), See(kAdd, "off"),
           See(kDelete, "on"), Name(TEXT("")), See(kDelete, "off"), Name(TEXT("Third")), Press(kAdd)},
          kRendered + " watermarkPosition=9 outputLevel=10 shadeMaxFlag=1",
          "now 11 [9] Second, 36 bold italic 00FF0000, 300 at 9 [10] Third, 36 bold italic 00FF0000, 300 at 9, 200 "
          "x 100 *.WM *.CWM");
    Check(printer, "changed", "outputFlag=1 outputLevel=8",
          {kTurn, Choose(kFamily, 0), Slide(kShade, 0), See(kChange, "on"), Press(kChange), See(kName, "on 8")},
          kRendered + " watermarkPosition=9", "[8] Mine, 36 bold italic 00F0F0F0, 300 at 9, 200 x 100 *.WM *.CWM");
    Check(printer, "renamed", "outputFlag=1 outputLevel=8",
          {kTurn, Name(TEXT("Yours")), See(kAdd, "on"), See(kChange, "on"), Press(kChange), See(kName, "on 8")},
          kRendered + " watermarkPosition=9", "[8] Yours, 36 bold italic 00F0F0F0, 300 at 9, 200 x 100 *.WM *.CWM");
    Check(printer, "edited and not stored by a button", "outputFlag=1 outputLevel=8",
          {kTurn, Type(kSize, TEXT("900")), Leave(), See(kSize, "on 400"), Type(kSize, TEXT("3")), Leave(),
           See(kSize, "on 8"), Type(kSize, TEXT("x")), Leave(), See(kSize, "on 8")},
          kRendered + " watermarkPosition=9", "[8] Yours, 8 bold italic 00F0F0F0, 300 at 9, 200 x 100 *.WM *.CWM");
    Check(printer, "without a name", "outputFlag=1 outputLevel=8", {kTurn, Name(TEXT("")), Type(kSize, TEXT("30"))},
          kRendered + " watermarkPosition=9", "[8] Yours, 30 bold italic 00F0F0F0, 300 at 9, 200 x 100 *.WM *.CWM");
    Check(printer, "with the name of another", "outputFlag=1 outputLevel=8",
          {kTurn, Name(TEXT("Third")), Type(kSize, TEXT("31"))}, kRendered + " watermarkPosition=9 outputLevel=10",
          "[10] Third, 31 bold italic 00F0F0F0, 300 at 9, 200 x 100 *.WM *.CWM");
    Check(printer, "deleted", "outputFlag=1 outputLevel=9",
          {kTurn, ChooseItem(kName, 8), Press(kDelete), See(kName, "on 0"), SeeOffered(kName, "0 1 2 3 4 5 6 7 8 9")},
          kRendered + " outputLevel=0",
          "now 10 [0] Confidential, 50 007070FF, 450 at 0, 200 x 100 *.WM *.CWM [8] Second, 36 bold italic "
          "00FF0000, 300 at 9 [9] Third, 31 bold italic 00F0F0F0, 300 at 9, 200 x 100 *.WM *.CWM");
    const Entries before = Stored(printer);
    const std::string files = ".CWM .CWM .WM .WM";  // of those that there are still
    EXPECT_EQ(RenderedFiles(), files);
    DevModeBuffer output;
    ShowDocumentSheet(printer, {kTurn, Press(kOn), ChooseItem(kName, 8), Press(kDelete), InSheet(PSBTN_CANCEL)},
                      AppliedDevMode(printer), &output);
    EXPECT_EQ(StoredChanges(before, Stored(printer)), "");
    EXPECT_EQ(RenderedFiles(), files);
}

TEST_F(WatermarkSheet, ChangesBuiltInOnesAtApply) {
    InstalledPrinter printer(*environment_, PackageOf(kColorModel));
    Check(printer, "colours", "outputFlag=1", {kTurn, Choose(kFamily, 0), Slide(kShade, 0), See(kChange, "off")},
          kRendered, "[0] Confidential, 50 00F0F0F0, 450 at 0, 200 x 100 *.WM *.CWM");
    Check(printer, "white", "outputFlag=1 outputLevel=1", {kTurn, Choose(kFamily, 7), Slide(kShade, 3)},
          kRendered + " outputStep=3", "[1] Draft, 50 00FFFFFF, 450 at 0, 200 x 100 *.WM *.CWM");
    Check(printer, "the place", "outputFlag=1 outputLevel=2", {kTurn, Choose(kPosition, 4), Slide(kAngleSlider, 355)},
          kRendered + " watermarkPosition=4", "[2] Copy, 50 007070FF, 3550 at 4, 200 x 100 *.WM *.CWM");
    Check(printer, "restored", "outputFlag=1 outputLevel=2",
          {kTurn, See(kAngle, "on 355"), Press(kRestore), See(kOn, "on unchecked"), See(kName, "off 0"),
           See(kAngle, "off 45"), See(kFamily, "off 1")},
          "outputFlag=0 outputLevel=0",
          "[0] Confidential, 50 007070FF, 450 at 0 [1] Draft, 50 007070FF, 450 at 0 [2] Copy, 50 007070FF, 450 at "
          "0");
}

TEST_F(WatermarkSheet, OverwritesInAFullList) {
    InstalledPrinter printer(*environment_, PackageOf(kColorModel));
    AppliedDevMode(printer);
    Fill(printer, 18);
    Check(printer, "a new name", "outputFlag=1 outputLevel=17",
          {kTurn, See(kName, "on 17"), Name(TEXT("Another")), See(kAdd, "off"), See(kChange, "on"), See(kDelete, "off"),
           Type(kSize, TEXT("60"))},
          kRendered + " shadeMaxFlag=1", "[17] Own 17, 60 00000000, 0 at 0, 200 x 100 *.WM *.CWM");
    Check(printer, "room again", "outputFlag=1 outputLevel=17",
          {kTurn, Press(kDelete), Name(TEXT("Another")), See(kAdd, "on"), Press(kAdd)}, kRendered,
          "[17] Another, 50 007070FF, 450 at 0, 200 x 100 *.WM *.CWM");
}

TEST_F(WatermarkSheet, IsRenderedForItsPrinter) {
    const struct {
        const char* model;
        std::string written;
        const char* files;
    } cases[] = {
        {"VELMORA-M2100.XPI", "dmColor=0 " + kRenderedInBlack, "*.WM"},
        {kColorModel, kRendered, "*.WM *.CWM"},
        {"VELMORA-I700.XPI", kRenderedInBlack, "*.WM *.WM"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.model);
        Record(c.model);
        InstalledPrinter printer(*environment_, PackageOf(c.model));
        Check(printer, "on", "", {kTurn, Press(kOn)}, c.written + " outputFlag=1",
              std::string("[0] Confidential, 50 007070FF, 450 at 0, 200 x 100 ") + c.files);
    }
}

TEST_F(WatermarkSheet, EndsWithoutARendering) {
    const struct {
        const char* title;
        Answer answer;
        std::string written;
        std::string stored;
    } cases[] = {
        {"says nothing", Answer::kNothing, "", ""},
        {"fails", Answer::kFailure, "", ""},
        {"writes rubbish", Answer::kRubbish, "", ""},
        {"isn't heard", Answer::kSilent, kRendered + ' ',
         "[0] Confidential, 50 007070FF, 450 at 0, 200 x 100 *.WM *.CWM"},
    };
    for (const auto& c : cases) {
        renderer_.answer = c.answer;
        InstalledPrinter printer(*environment_, PackageOf(kColorModel));
        Check(printer, c.title, "", {kTurn, Press(kOn)}, c.written + "outputFlag=1", c.stored);
        EXPECT_EQ(RenderedFiles(), c.stored.empty() ? "" : ".CWM .WM");
    }
    InstalledPrinter printer(*environment_, PackageWithoutProgram());
    Check(printer, "there is no program", "", {kTurn, Press(kOn)}, "outputFlag=1", "");
}

// By the program of the driver package.
TEST_F(WatermarkSheet, IsReallyRendered) {
    environment_->AddWatermarkProgram();
    const struct {
        const char* model;
        const char* files;
        COLORREF ink;  // of the file that is printed
    } cases[] = {
        {"VELMORA-M2100.XPI", " *.WM", RGB(153, 153, 153)},
        {kColorModel, " *.WM *.CWM", RGB(255, 112, 112)},
        {"VELMORA-I700.XPI", " *.WM *.WM", RGB(255, 112, 112)},
    };
    for (const auto& [model, files, ink] : cases) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        DevModeBuffer output;
        EXPECT_EQ(ShowDocumentSheet(printer, {kTurn, Press(kOn), InSheet(PSBTN_OK)}, AppliedDevMode(printer), &output),
                  IDOK);
        EXPECT_TRUE(Stored(printer)[0].ends_with(files)) << Stored(printer)[0];
        const velmora::PrivateDevMode& own = output.PrivatePart();
        EXPECT_EQ(own.watermarkFlags, 36u);
        const std::string bytes = ContentOfShort(TextOf(own.watermarkFile));
        const char* fault = "";
        const auto picture =
            velmora::ReadWatermarkFile({reinterpret_cast<const BYTE*>(bytes.data()), bytes.size()}, &fault);
        ASSERT_TRUE(picture) << fault;
        EXPECT_EQ(picture->header.inkColor, ink);
        EXPECT_EQ(int{own.watermarkFontSize}, static_cast<int>(picture->header.width));
        EXPECT_EQ(int{own.watermarkAngle}, static_cast<int>(picture->header.height));
        EXPECT_EQ(int{own.watermarkIndex}, static_cast<int>(picture->header.resolution));
    }
}

TEST_F(WatermarkSheet, StaysWhereSettingsConflict) {
    InstalledPrinter printer(*environment_, PackageOf(kColorModel));
    Install(printer, kWithDuplex);
    Check(printer, "a banner on both sides", "dmPaperSize=600 dmDuplex=2",
          {kTurn, Press(kOn), InSheet(PSBTN_OK), Press(kNoticeOk), See(kOn, "on checked"), TurnTo(kPaperTab),
           Choose(kPaper, 9)},
          "dmPaperSize=9 dmDuplex=0 " + kRendered + " outputFlag=1",
          "[0] Confidential, 50 007070FF, 450 at 0, 200 x 100 *.WM *.CWM");
}

TEST_F(WatermarkSheet, IsUsedByTheKeyboard) {
    InstalledPrinter printer(*environment_, PackageOf(kColorModel));
    Check(printer, "arrows", "outputFlag=1",
          {kTurn,
           FocusOn(kAngleSlider),
           Key(VK_RIGHT),
           See(kAngle, "on 50"),
           Key(VK_NEXT),
           See(kAngle, "on 80"),
           Key(VK_HOME),
           See(kAngle, "on 0"),
           Key(VK_END),
           See(kAngle, "on 355"),
           FocusOn(kShade),
           Key(VK_LEFT),
           Key(VK_NEXT),
           FocusOn(kSize),
           Key(VK_UP),
           See(kSize, "on 51"),
           Key(VK_DOWN),
           Key(VK_DOWN),
           See(kSize, "on 49"),
           FocusOn(kPosition),
           Key(VK_DOWN),
           See(kPosition, "on 6"),
           FocusOn(kName),
           Key(VK_DOWN),
           See(kName, "on 1")},
          kRendered + " outputLevel=1", "[1] Draft, 50 007070FF, 450 at 0, 200 x 100 *.WM *.CWM");
}

TEST_F(WatermarkSheet, InEveryLanguage) {
    InstalledPrinter printer(*environment_, PackageOf(kColorModel));
    // Hosts differ in their fonts, and in what they keep of Japanese texts.
    const std::vector<int> hostsOwn = {kName, kFace};
    InEachLanguage([&] {
        ShowDocumentSheet(printer, std::vector<Step>{kTurn} + Look("watermark", hostsOwn) +
                                       std::vector<Step>{Press(kOn), Name(TEXT("Mine"))} +
                                       Look("watermark-new", hostsOwn) +
                                       std::vector<Step>{Press(kAdd), Choose(kFamily, 3)} +
                                       Look("watermark-own", hostsOwn) + std::vector<Step>{InSheet(PSBTN_CANCEL)});
    });
}

}  // namespace
}  // namespace contract
