// The rendering program as the driver runs it: by a job's file, its answers in that file and its event.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>

#include "platform/host.h"
#include "tools/wm/render_job.h"
#include "tools/wm/watermark_file.h"
#include "tools/wm/watermark_program.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using Keys = std::map<std::string, std::string>;

constexpr int kUntouched = -1;

class WatermarkProgram : public testing::Test {
  protected:
    ~WatermarkProgram() override { EXPECT_EQ(host::StillOpen(), std::vector<std::string>{}); }

    fs::path At(const std::string& name) const { return machine_.Drive() / name; }

    void Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(At(name), std::ios::binary) << bytes;
    }

    // Runs the program on a job with these keys. What it answers is read by Answer; its file, if there is one, is
    // `picture_`.
    int Render(const Keys& keys, const std::string& commandLine = R"(C:\KV62WM.EXE C:\A job.INI)") {
        std::string text = "[MAKEWM]\r\nSize.x=-1\r\nSize.y=-1\r\nResult=-1\r\n";
        std::string output = "out.WM";
        for (const auto& [key, value] : keys) {
            text += key + "=" + value + "\r\n";
            output = key == "OutputFile" && !value.empty() ? value.substr(3) : output;
        }
        text += keys.contains("OutputFile") ? "" : "OutputFile=C:\\out.WM\r\n";
        Write("A job.INI", text);
        fs::remove(At(output));
        Run(commandLine);

        picture_.reset();
        if (fs::exists(At(output))) {
            std::ifstream stream(At(output), std::ios::binary);
            const std::string bytes(std::istreambuf_iterator<char>(stream), {});
            const char* fault = nullptr;
            picture_ = ReadWatermarkFile({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}, &fault);
            EXPECT_TRUE(picture_) << fault;
        }
        EXPECT_FALSE(fs::exists(At(output + "~")));
        return Answer(u"Result");
    }

    static void Run(const std::string& commandLine) {
        const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, TEXT("A job.INI"));
        RunWatermarkProgram(commandLine.c_str());
        EXPECT_EQ(WaitForSingleObject(event, 0), DWORD{WAIT_OBJECT_0}) << commandLine;
        CloseHandle(event);
    }

    static int Answer(const char16_t* key) {
        return static_cast<int>(GetPrivateProfileIntW(u"MAKEWM", key, -100, u"C:\\A job.INI"));
    }

    // The rendered picture as letters: '#' for ink, '.' for paper.
    std::string Corners() const {
        std::string text;
        for (const uint32_t y : {0u, picture_->header.height - 1}) {
            for (const uint32_t x : {0u, picture_->header.width - 1}) {
                text += picture_->ColorAt(x, y) == kPaper ? '.' : '#';
            }
        }
        return text;
    }

    size_t Ink() const {
        size_t count = 0;
        for (uint32_t y = 0; y < picture_->header.height; ++y) {
            for (uint32_t x = 0; x < picture_->header.width; ++x) {
                count += picture_->ColorAt(x, y) != kPaper;
            }
        }
        return count;
    }

    host::Machine machine_;
    std::optional<WatermarkPicture> picture_;
};

Keys TextJob(const Keys& changes = {}) {
    Keys keys = {{"Type", "1"},          {"Resolution", "600"}, {"Angle", "0"},           {"text.String", "L"},
                 {"text.Face", "Arial"}, {"text.PtSize", "72"}, {"text.Color", "4802889"}};
    for (const auto& [key, value] : changes) {
        keys[key] = value;
    }
    return keys;
}

TEST_F(WatermarkProgram, DrawsTextsAsLargeAsTheirInk) {
    ASSERT_EQ(Render(TextJob()), kRendered);
    ASSERT_TRUE(picture_);
    const WatermarkHeader upright = picture_->header;
    EXPECT_EQ(upright.dotBits, kInkOrPaper);
    EXPECT_EQ(upright.inkColor, 0x494949u);
    EXPECT_EQ(upright.resolution, 600u);
    EXPECT_EQ(Answer(u"Size.x"), static_cast<int>(upright.width));
    EXPECT_EQ(Answer(u"Size.y"), static_cast<int>(upright.height));
    EXPECT_EQ(Answer(u"text.FontChange"), 0);
    // A capital is about 0.7 of the font's size, of 600 dots, high; an L is narrower.
    EXPECT_NEAR(upright.height, 430, 20);
    EXPECT_NEAR(upright.width, 290, 40);

    // An L has one corner of paper, which goes around counter-clockwise.
    const struct {
        const char* angle;
        const char* corners;  // from the top left
    } turns[] = {{"0", "#.##"}, {"900", ".###"}, {"1800", "##.#"}, {"2700", "###."}};
    for (const auto& turn : turns) {
        ASSERT_EQ(Render(TextJob({{"Angle", turn.angle}})), kRendered);
        EXPECT_EQ(Corners(), turn.corners) << turn.angle;
        const bool isUpright = std::atoi(turn.angle) % 1800 == 0;
        EXPECT_NEAR(picture_->header.width, isUpright ? upright.width : upright.height, 2) << turn.angle;
        EXPECT_NEAR(picture_->header.height, isUpright ? upright.height : upright.width, 2) << turn.angle;
    }
    ASSERT_EQ(Render(TextJob({{"Angle", "450"}})), kRendered);
    EXPECT_EQ(Corners(), "....");
}

TEST_F(WatermarkProgram, DrawsTheTextsStyle) {
    ASSERT_EQ(Render(TextJob()), kRendered);
    const size_t ink = Ink();
    const uint32_t width = picture_->header.width;
    const uint32_t height = picture_->header.height;

    ASSERT_EQ(Render(TextJob({{"text.Bold", "1"}})), kRendered);
    EXPECT_GT(Ink(), ink * 5 / 4);
    ASSERT_EQ(Render(TextJob({{"text.Italic", "1"}})), kRendered);
    EXPECT_EQ(picture_->ColorAt(0, 0), kPaper);
    ASSERT_EQ(Render(TextJob({{"text.Outline", "1"}})), kRendered);
    EXPECT_EQ(picture_->header.width, width + 2 * 15);  // a line of 1/40 of the font's size around
    EXPECT_EQ(picture_->header.height, height + 2 * 15);
    EXPECT_NE(picture_->ColorAt(5, height / 2), kPaper);
    EXPECT_EQ(picture_->ColorAt(15 + 30, height / 2), kPaper);

    // What ends a text that is read from right to left stands at its left.
    ASSERT_EQ(Render(TextJob({{"text.String", "L."}})), kRendered);
    EXPECT_NE(picture_->ColorAt(0, 0), kPaper);
    ASSERT_EQ(Render(TextJob({{"text.String", "L."}, {"text.RightToLeft", "1"}})), kRendered);
    EXPECT_EQ(picture_->ColorAt(0, 0), kPaper);

    ASSERT_EQ(Render(TextJob({{"text.Face", "Nowhere"}, {"OutputFile", "C:\\out.cwm"}, {"text.Color", "7368959"}})),
              kRendered);
    EXPECT_EQ(Answer(u"text.FontChange"), 1);
    EXPECT_EQ(picture_->header.inkColor, 0x7070FFu);

    // The largest of the page, drawn in bands: the stem has no gap.
    ASSERT_EQ(Render(TextJob({{"text.PtSize", "400"}})), kRendered);
    EXPECT_NEAR(picture_->header.height, height * 400.0 / 72, 5);
    for (uint32_t y = 0; y < picture_->header.height; ++y) {
        ASSERT_NE(picture_->ColorAt(picture_->header.width / 20, y), kPaper) << y;
    }
}

// A bitmap file of 2 by 2 pixels, red and green above blue and white, at `perMeter` pixels a metre.
std::string BitmapOf(WORD bits, bool isTopDown = false, LONG perMeter = 0) {
    const RGBQUAD colors[] = {{0, 0, 255, 0}, {0, 255, 0, 0}, {255, 0, 0, 0}, {255, 255, 255, 0}};
    std::string table;
    std::string rows[2];
    for (const size_t index : {0, 1, 2, 3}) {
        std::string& row = rows[index / 2];
        const auto* const color = reinterpret_cast<const char*>(&colors[index]);
        if (bits > 8) {
            row.append(color, bits / 8u);
        } else if (bits == 8) {
            row += static_cast<char>(index);
        } else if (index % 2 == 0) {
            row += static_cast<char>(index << 4 | (index + 1));
        }
        table.append(bits <= 8 ? color : "", bits <= 8 ? sizeof(RGBQUAD) : 0);
    }
    for (std::string& row : rows) {
        row.resize((row.size() + 3) / 4 * 4);
    }
    BITMAPFILEHEADER file = {};
    file.bfType = 0x4D42;
    file.bfOffBits = static_cast<DWORD>(sizeof(file) + sizeof(BITMAPINFOHEADER) + table.size());
    BITMAPINFOHEADER info = {};
    info.biSize = sizeof(info);
    info.biWidth = 2;
    info.biHeight = isTopDown ? -2 : 2;
    info.biPlanes = 1;
    info.biBitCount = bits;
    info.biXPelsPerMeter = info.biYPelsPerMeter = perMeter;
    info.biClrUsed = static_cast<DWORD>(table.size() / sizeof(RGBQUAD));
    return std::string(reinterpret_cast<const char*>(&file), sizeof(file)) +
           std::string(reinterpret_cast<const char*>(&info), sizeof(info)) + table +
           (isTopDown ? rows[0] + rows[1] : rows[1] + rows[0]);
}

Keys PictureJob(const Keys& changes = {}) {
    Keys keys = {{"Type", "2"},
                 {"Resolution", "192"},
                 {"Angle", "0"},
                 {"image.File", "C:\\picture.bmp"},
                 {"image.Scale.x", "100"},
                 {"image.Scale.y", "200"},
                 {"OutputFile", "C:\\out.CWM"}};
    for (const auto& [key, value] : changes) {
        keys[key] = value;
    }
    return keys;
}

TEST_F(WatermarkProgram, DrawsPicturesScaledAndTurned) {
    constexpr COLORREF kRed = RGB(255, 0, 0);
    constexpr COLORREF kGreen = RGB(0, 255, 0);
    constexpr COLORREF kBlue = RGB(0, 0, 255);
    using Corners = std::array<COLORREF, 4>;  // from the top left
    constexpr Corners kUpright = {kRed, kGreen, kBlue, kPaper};
    constexpr Corners kInGray = {RGB(73, 73, 73), RGB(154, 154, 154), RGB(26, 26, 26), kPaper};
    constexpr Corners kNoInk = {kPaper, kPaper, kPaper, kPaper};
    const Keys tilted = {{"Angle", "450"}, {"image.Scale.x", "1000"}, {"image.Scale.y", "1000"}};
    const Keys tiny = {{"image.Scale.x", "1"}, {"image.Scale.y", "1"}};
    const Keys forImages = {{"OutputFile", "C:\\out.WM"}, {"ImageDriver", "1"}};
    const struct {
        const char* name;
        std::string bitmap;
        Keys changes;
        DotBits dotBits;
        uint32_t width;
        uint32_t height;
        Corners corners;
    } cases[] = {
        {"24 bits", BitmapOf(24), {}, kTrueColor, 4, 8, kUpright},
        {"32 bits", BitmapOf(32), {}, kTrueColor, 4, 8, kUpright},
        {"8 bits", BitmapOf(8), {}, kTrueColor, 4, 8, kUpright},
        {"4 bits", BitmapOf(4), {}, kTrueColor, 4, 8, kUpright},
        {"from the top", BitmapOf(24, true), {}, kTrueColor, 4, 8, kUpright},
        {"192 dpi", BitmapOf(24, false, 7559), {}, kTrueColor, 2, 4, kUpright},
        {"turned", BitmapOf(24), {{"Angle", "900"}}, kTrueColor, 8, 4, {kGreen, kPaper, kRed, kBlue}},
        {"turned by half", BitmapOf(24), tilted, kTrueColor, 57, 57, kNoInk},
        {"scaled away", BitmapOf(24), tiny, kTrueColor, 1, 1, kNoInk},
        {"grey", BitmapOf(24), {{"OutputFile", "C:\\out.WM"}}, kGray, 4, 8, kInGray},
        {"an image model's", BitmapOf(24), forImages, kTrueColor, 4, 8, kUpright},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Write("picture.bmp", c.bitmap);
        ASSERT_EQ(Render(PictureJob(c.changes)), kRendered);
        ASSERT_TRUE(picture_);
        const WatermarkHeader& header = picture_->header;
        EXPECT_EQ(header.dotBits, c.dotBits);
        EXPECT_EQ(header.width, c.width);
        EXPECT_EQ(header.height, c.height);
        EXPECT_EQ(Answer(u"Size.x"), static_cast<int>(c.width));
        EXPECT_EQ(Answer(u"text.FontChange"), -100);
        for (uint32_t i = 0; i < 4; ++i) {
            EXPECT_EQ(picture_->ColorAt(i % 2 * (header.width - 1), i / 2 * (header.height - 1)), c.corners[i]) << i;
        }
    }
}

TEST_F(WatermarkProgram, SaysWhatItCannotRender) {
    Write("picture.bmp", BitmapOf(24));
    Write("text.bmp", "a text");
    const Keys vast = {
        {"image.Scale.x", "10000"}, {"image.Scale.y", "10000"}, {"Resolution", "9600"}, {"Angle", "450"}};
    const struct {
        const char* name;
        Keys job;
        RenderResult result;
        const char* failedCall = nullptr;
    } cases[] = {
        {"nothing is said", {}, kBadJob},
        {"no type", TextJob({{"Type", "3"}}), kBadJob},
        {"no resolution", TextJob({{"Resolution", "0"}}), kBadJob},
        {"no angle", TextJob({{"Angle", "3600"}}), kBadJob},
        {"no text", TextJob({{"text.String", ""}}), kBadJob},
        {"no size", TextJob({{"text.PtSize", "0"}}), kBadJob},
        {"no output", TextJob({{"OutputFile", ""}}), kBadJob},
        {"no scale", PictureJob({{"image.Scale.x", "-1"}}), kBadJob},
        {"no picture's name", PictureJob({{"image.File", ""}}), kBadJob},
        {"no picture", PictureJob({{"image.File", "C:\\none.bmp"}}), kNoPicture},
        {"another file", PictureJob({{"image.File", "C:\\text.bmp"}}), kUnknownPicture},
        {"letters too large", TextJob({{"text.PtSize", "500"}, {"Resolution", "1200"}}), kTooLarge},
        {"text too long", TextJob({{"text.PtSize", "400"}, {"text.String", std::string(63, 'W')}}), kTooLarge},
        {"picture too large", PictureJob(vast), kTooLarge},
        {"blanks", TextJob({{"text.String", "\"  \""}}), kNothingToDraw},
        {"no drawing", TextJob(), kDrawingFailed, "CreateDIBSection"},
        {"no text's drawing", TextJob(), kDrawingFailed, "ExtTextOutW"},
        {"no folder", TextJob({{"OutputFile", "C:\\none\\out.WM"}}), kNoOutput},
        {"no room", TextJob(), kNoOutput, "WriteFile"},
        {"no place", TextJob(), kNoOutput, "MoveFileExW"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        if (c.failedCall) {
            host::FailCall(c.failedCall, ERROR_DISK_FULL);
        }
        EXPECT_EQ(Render(c.job), c.result);
        EXPECT_FALSE(picture_);
        EXPECT_EQ(Answer(u"Size.x"), kUntouched);
        EXPECT_EQ(Answer(u"Size.y"), kUntouched);
        host::ClearFaults();
    }
}

TEST_F(WatermarkProgram, TakesNoDamagedBitmapForAPicture) {
    const std::string whole = BitmapOf(4);
    for (size_t length = 0; length < whole.size(); ++length) {
        Write("picture.bmp", whole.substr(0, length));
        ASSERT_EQ(Render(PictureJob()), kUnknownPicture) << length;
    }
    // A byte that is wrong gives another picture, or none, and no crash.
    for (size_t place = 0; place < whole.size(); ++place) {
        for (const char value : {'\x01', '\x80', '\xFF'}) {
            std::string damaged = whole;
            damaged[place] = value;
            Write("picture.bmp", damaged);
            const int result = Render(PictureJob());
            ASSERT_TRUE(result == kRendered || result == kUnknownPicture || result == kTooLarge) << place;
        }
    }
}

TEST_F(WatermarkProgram, FindsItsJobInTheCommandLine) {
    for (const char* line : {R"("C:\Print drivers\KV62WM.EXE" "C:\A job.INI")",
                             R"(C:\Print drivers\kv62wm.exe C:\A job.INI)", R"(C:\KV62WM.EXE  C:\A job.INI  )"}) {
        EXPECT_EQ(Render(TextJob(), line), kRendered) << line;
    }
    // Nobody waits for a job that is gone: its file isn't made anew.
    fs::remove(At("A job.INI"));
    Run(R"(C:\KV62WM.EXE C:\A job.INI)");
    EXPECT_FALSE(fs::exists(At("A job.INI")));
    RunWatermarkProgram("C:\\KV62WM.EXE");
    RunWatermarkProgram("");
}

}  // namespace
}  // namespace velmora
