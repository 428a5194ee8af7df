// Having watermarks rendered: what the program is told, and what is made of its answers.
#include <functional>

#include "driver/base/text.h"
#include "driver/settings/settings_folder.h"
#include "driver/ui/watermark_maker.h"
#include "driver/ui/watermark_rules.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

constexpr DWORD kTick = 0x0A1B2C3D;
constexpr uint32_t kNone = 0xFFFFFFFF;

WatermarkRecord TextMark() {
    WatermarkRecord record = {};
    MakeBlankWatermark(&record);
    record.type = kTextWatermark;
    CopyText(record.text, ARRAYSIZE(record.text), TEXT(" Draft"));
    record.style.bold = 1;
    record.style.rightToLeft = 1;
    record.style.color = RGB(255, 0, 0);
    return record;
}

WatermarkRecord PictureMark() {
    WatermarkRecord record = {};
    record.type = kImageWatermark;
    CopyText(record.text, ARRAYSIZE(record.text), TEXT("Logo"));
    CopyText(record.imageName, ARRAYSIZE(record.imageName), TEXT("C:\\logo.bmp"));
    record.scaleX = 50;
    record.scaleY = 200;
    record.needsRemake = 1;
    return record;
}

class WatermarkMaker : public MachineTest {
  protected:
    void Install(uint16_t pdlType, uint16_t colorCapability) {
        DriverPackage package = PackageOf(SmallModel(pdlType, colorCapability).Build());
        package.dependent.push_back({u"KV62WM.EXE", "no program"});
        MachineTest::Install(package);
        WCHAR folder[MAX_PATH];
        GetSettingsFolder(kPrinterName, folder, ARRAYSIZE(folder));
        jobFile_ = WideText(folder) + u"\\0A1B2C3D.INI";
        GetShortPath(folder, ARRAYSIZE(folder));
        file_ = WideText(folder) + u"\\0A1B2C3D.WM";
        colorFile_ = WideText(folder) + u"\\0A1B2C3D.CWM";
        machine_.SetProgram(u"KV62WM.EXE", [this](const std::string& commandLine) {
            commandLines_.push_back(commandLine);
            jobs_.push_back(ReadDriveFile(jobFile_));
            program_();
        });
    }

    // The program's answer.
    void Write(const char16_t* key, const char16_t* value) const {
        WritePrivateProfileStringW(u"MAKEWM", key, value, jobFile_.c_str());
    }
    static void Signal() {
        const OwnedEvent event(OpenEventW(EVENT_MODIFY_STATE, FALSE, u"0A1B2C3D.INI"));
        SetEvent(event.Get());
    }
    void Answer() const {
        Write(u"Size.x", jobs_.size() == 1 ? u"120" : u"999");
        Write(u"Size.y", u"40");
        Write(u"Result", jobs_.size() == 1 ? u"7" : u"999");
        Write(u"text.FontChange", u"1");
        Signal();
    }

    // As the tick counts kTick.
    int32_t Make(WatermarkRecord* record, bool isMonochromeOnly = false) {
        VelmoraDevMode devMode = {};
        const OwnedSheetContext context(CreateSheetContext(Printer(), kPrinterName, &devMode));
        const Texts withContext = host::StillOpen();
        machine_.SetTickCount(kTick);
        const int32_t result = MakeWatermarkFile(*context.Get(), record, isMonochromeOnly);
        EXPECT_EQ(host::StillOpen(), withContext);
        EXPECT_FALSE(DriveFileExists(jobFile_));
        return result;
    }

    WideText jobFile_;
    WideText file_;
    WideText colorFile_;
    Texts commandLines_;
    Texts jobs_;  // as the program found them
    std::function<void()> program_ = [this] { Answer(); };
};

TEST_F(WatermarkMaker, TellsTheProgramWhatToRender) {
    const std::string text =
        "text.String=\" Draft\"\r\ntext.Face=Arial\r\ntext.CharSet=0\r\ntext.Outline=0\r\ntext.PtSize=72\r\n"
        "text.Color={COLOR}\r\ntext.Bold=1\r\ntext.Italic=0\r\ntext.AutoFontChange=0\r\ntext.RightToLeft=1\r\n";
    const std::string picture = "image.File=C:\\logo.bmp\r\nimage.Scale.x=50\r\nimage.Scale.y=200\r\n";
    const struct {
        const char* name;
        uint16_t pdlType;
        uint16_t colorCapability;
        bool isMonochromeOnly;
        WatermarkRecord record;
        const char* color;  // of the first file
        bool hasColorFile;
    } cases[] = {
        {"monochrome", kPdlPcl5, kColorNone, false, TextMark(), "4802889", false},
        {"colour", kPdlPcl6, kColor, false, TextMark(), "4802889", true},
        {"monochrome only", kPdlPcl6, kColor, true, TextMark(), "4802889", false},
        {"image model", kPdlImage, kColor, false, TextMark(), "255", false},
        {"picture", kPdlPcl5, kColorNone, false, PictureMark(), "", false},
        {"picture in colour", kPdlPcl5, kColor, false, PictureMark(), "", true},
    };
    Install(kPdlPcl5, kColorNone);
    WCHAR program[MAX_PATH];
    ASSERT_TRUE(FindDriverFile(Printer(), nullptr, TEXT("WM.EXE"), program));
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        jobs_.clear();
        commandLines_.clear();
        Describe(SmallModel(c.pdlType, c.colorCapability));
        WatermarkRecord record = c.record;
        CopyText(record.colorFileName, ARRAYSIZE(record.colorFileName), TEXT("C:\\old.CWM"));
        EXPECT_EQ(Make(&record, c.isMonochromeOnly), 7);

        const bool isText = record.type == kTextWatermark;
        const bool isImageModel = c.pdlType == kPdlImage;
        const auto jobOf = [&](const WideText& file, const std::string& color) {
            std::string job = "[MAKEWM]\r\nPrinter=Test Printer\r\nOutputFile=" + ToText(file) +
                              "\r\nType=" + (isText ? "1" : "2") +
                              "\r\nResolution=1200\r\nImageDriver=" + (isImageModel ? "1" : "0") +
                              "\r\nAngle=" + (isText ? "450" : "0") + "\r\n" + (isText ? text : picture) +
                              "Size.x=-1\r\nSize.y=-1\r\nResult=-1\r\n";
            const size_t place = job.find("{COLOR}");
            return place == job.npos ? job : job.replace(place, 7, color);
        };
        Texts jobs = {jobOf(file_, c.color)};
        if (c.hasColorFile) {
            // The first answer was put behind the job's keys.
            jobs.push_back(jobOf(colorFile_, "255") + "text.FontChange=" + (isText ? "0" : "1") + "\r\n");
        }
        EXPECT_EQ(jobs_, jobs);
        EXPECT_EQ(commandLines_, Texts(jobs.size(), ToText(program) + " " + ToText(jobFile_)));

        EXPECT_EQ(ToText(record.fileName), ToText(file_));
        EXPECT_EQ(ToText(record.colorFileName), ToText(c.hasColorFile ? colorFile_ : isImageModel ? file_ : u""));
        EXPECT_EQ(record.resolution, 1200u);
        EXPECT_EQ(record.width, 120u);
        EXPECT_EQ(record.height, 40u);
        EXPECT_EQ(record.needsRemake, 1u);
    }
}

TEST_F(WatermarkMaker, TakesWhatTheProgramAnswers) {
    const auto nothing = [] {};
    const auto answer = [this] { Answer(); };
    const auto half = [this] {
        Write(u"Size.x", u"120");
        Signal();
    };
    const struct {
        const char* name;
        std::function<void()> program;
        const char* failedCall;
        uint64_t failedAt;
        size_t runs;
        int32_t result;
        uint32_t width;
        const char* colorFile;
    } cases[] = {
        {"hangs or dies", nothing, nullptr, 0, 2, -1, kNone, "new"},
        {"answers half", half, nullptr, 0, 2, -1, 120, "new"},
        {"without an event", answer, "CreateEventW", 1, 2, 7, 120, "new"},
        {"without an event and an answer", nothing, "CreateEventW", 1, 2, -1, kNone, "new"},
        {"doesn't start", nothing, "WinExec", 1, 0, 0, 0, "old"},
        {"doesn't start again", answer, "WinExec", 2, 1, 0, 120, "new"},
    };
    Install(kPdlPcl6, kColor);
    machine_.SetWaitsElapseAtOnce(true);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        jobs_.clear();
        program_ = c.program;
        WatermarkRecord record = TextMark();
        CopyText(record.colorFileName, ARRAYSIZE(record.colorFileName), TEXT("old"));
        if (c.failedCall) {
            host::FailCall(c.failedCall, ERROR_FILE_NOT_FOUND, c.failedAt);
        }
        EXPECT_EQ(Make(&record), c.result);
        host::ClearFaults();
        EXPECT_EQ(jobs_.size(), c.runs);
        EXPECT_EQ(record.width, c.width);
        EXPECT_EQ(ToText(record.fileName), ToText(file_));
        EXPECT_EQ(ToText(record.colorFileName), c.colorFile == std::string("new") ? ToText(colorFile_) : "old");
    }
}

TEST_F(WatermarkMaker, WaitsTenSecondsForEachFile) {
    Install(kPdlPcl6, kColor);
    machine_.SetWaitsElapseAtOnce(true);
    program_ = [] {};
    WatermarkRecord record = TextMark();
    EXPECT_EQ(Make(&record), -1);
    EXPECT_EQ(GetTickCount(), kTick + 20000);

    // Without an event it looks for an answer instead.
    host::FailCall("CreateEventW", ERROR_NOT_ENOUGH_MEMORY);
    const uint64_t before = host::CallsSoFar("GetPrivateProfileIntW");
    EXPECT_EQ(Make(&record, true), -1);
    EXPECT_EQ(GetTickCount(), kTick);
    EXPECT_GE(host::CallsSoFar("GetPrivateProfileIntW") - before, 300u);
}

TEST_F(WatermarkMaker, LeavesFilesOfTheSameNumberAlone) {
    Install(kPdlPcl5, kColorNone);
    const WideText settings = jobFile_;
    WriteDriveFile(settings, "[Watermarks]\r\n");
    jobFile_.replace(jobFile_.size() - 5, 1, u"E");
    program_ = [] {};
    machine_.SetWaitsElapseAtOnce(true);
    WatermarkRecord record = TextMark();
    EXPECT_EQ(Make(&record), -1);
    EXPECT_TRUE(WideText(record.fileName).ends_with(u"0A1B2C3E.WM"));
    EXPECT_EQ(ReadDriveFile(settings), "[Watermarks]\r\n");
}

// Lists are compared with the store byte for byte, and short paths are shorter than the long ones.
TEST_F(WatermarkMaker, LeavesRecordsAsTheyAreStored) {
    Install(kPdlPcl6, kColor);
    program_ = [this] {
        Answer();
        Write(u"text.FontChange", u"0");
    };
    PrepareSettingsFile(kPrinterName);
    const WatermarkRecord record = TextMark();
    SaveWatermarkList(kPrinterName, &record, 1);
    VelmoraDevMode devMode = {};
    devMode.privatePart.outputFlag = 1;
    const OwnedSheetContext context(CreateSheetContext(Printer(), kPrinterName, &devMode));
    OpenWatermarks(context.Get());
    machine_.SetTickCount(kTick);
    ApplyWatermarks(context.Get(), MakeWatermarkFile);
    EXPECT_EQ(ToText(context.Get()->watermarks.records->colorFileName), ToText(colorFile_));
    EXPECT_FALSE(IsWatermarkChanged(*context.Get()));
}

}  // namespace
}  // namespace velmora
