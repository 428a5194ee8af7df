// The driver package's program for watermarks, started as the driver starts it: what it draws of a picture is the same
// on both hosts, of a text only as far as their fonts are.
#include <fstream>
#include <map>
#include <optional>

#include "tests/contract/contract_test.h"
#include "tests/contract/transcript.h"
#include "tools/wm/watermark_file.h"

namespace contract {
namespace {

constexpr WCHAR kJobFile[] = TEXT("C:\\A job.INI");
constexpr WCHAR kEvent[] = TEXT("A job.INI");
constexpr DWORD kLongestWait = 30000;  // milliseconds

using Keys = std::map<WideText, WideText>;

class WatermarkProgramTest : public ContractTest {
  protected:
    ~WatermarkProgramTest() override {
        for (const WCHAR* file : {kJobFile, TEXT("C:\\mark.CWM"), TEXT("C:\\mark.bmp")}) {
            DeleteFileW(file);
        }
    }

    // The rendered file, by a job with these keys. A test failure and none where the program doesn't make it.
    std::optional<velmora::WatermarkPicture> Render(const Keys& keys) {
        DeleteFileW(kJobFile);
        for (const auto& [key, value] : keys) {
            WritePrivateProfileStringW(TEXT("MAKEWM"), key.c_str(), value.c_str(), kJobFile);
        }
        const WideText line = printer_.File(TEXT("KV62WM.EXE")) + TEXT(" ") + kJobFile;
        const HANDLE done = CreateEventW(nullptr, FALSE, FALSE, kEvent);
        EXPECT_GT(WinExec(std::string(line.begin(), line.end()).c_str(), SW_HIDE), 31u);
        EXPECT_EQ(WaitForSingleObject(done, kLongestWait), DWORD{WAIT_OBJECT_0});
        CloseHandle(done);
        EXPECT_EQ(GetPrivateProfileIntW(TEXT("MAKEWM"), TEXT("Result"), 0, kJobFile), 1u);

        const std::string bytes = ContentOf(environment_->HostPath(TEXT("C:\\mark.CWM")));
        const char* fault = nullptr;
        auto picture = velmora::ReadWatermarkFile({reinterpret_cast<const BYTE*>(bytes.data()), bytes.size()}, &fault);
        EXPECT_TRUE(picture) << fault;
        return picture;
    }

    InstalledPrinter printer_{*environment_, PackageOf("VELMORA-C3200.XPI")};
};

TEST_F(WatermarkProgramTest, DrawsPicturesAndTexts) {
    environment_->AddWatermarkProgram();
    constexpr BYTE kBitmap[] = {'B', 'M', 70, 0, 0,  0, 0,   0, 0, 0, 54, 0, 0, 0, 40, 0, 0,   0, 2,   0, 0, 0, 2, 0,
                                0,   0,   1,  0, 24, 0, 0,   0, 0, 0, 16, 0, 0, 0, 0,  0, 0,   0, 0,   0, 0, 0, 0, 0,
                                0,   0,   0,  0, 0,  0, 255, 0, 0, 0, 0,  0, 0, 0, 0,  0, 255, 0, 255, 0, 0, 0};
    std::ofstream(environment_->HostPath(TEXT("C:\\mark.bmp")), std::ios::binary)
        .write(reinterpret_cast<const char*>(kBitmap), sizeof(kBitmap));
    const auto picture = Render({{TEXT("OutputFile"), TEXT("C:\\mark.CWM")},
                                 {TEXT("Type"), TEXT("2")},
                                 {TEXT("Resolution"), TEXT("96")},
                                 {TEXT("Angle"), TEXT("300")},
                                 {TEXT("image.File"), TEXT("C:\\mark.bmp")},
                                 {TEXT("image.Scale.x"), TEXT("400")},
                                 {TEXT("image.Scale.y"), TEXT("400")}});
    ASSERT_TRUE(picture);
    std::string dots;
    for (uint32_t y = 0; y < picture->header.height; ++y) {
        for (uint32_t x = 0; x < picture->header.width; ++x) {
            const COLORREF color = picture->ColorAt(x, y);
            dots += color == RGB(0, 0, 255)   ? 'b'
                    : color == RGB(0, 255, 0) ? 'g'
                    : color == RGB(255, 0, 0) ? 'r'
                    : color == 0              ? 'k'
                                              : '.';
        }
        dots += '/';
    }
    Record("a turned picture: " + dots);

    const auto text = Render({{TEXT("OutputFile"), TEXT("C:\\mark.CWM")},
                              {TEXT("Type"), TEXT("1")},
                              {TEXT("Resolution"), TEXT("600")},
                              {TEXT("Angle"), TEXT("900")},
                              {TEXT("text.String"), TEXT("L")},
                              {TEXT("text.Face"), TEXT("Open Sans")},
                              {TEXT("text.PtSize"), TEXT("72")},
                              {TEXT("text.Color"), TEXT("7368959")}});
    ASSERT_TRUE(text);
    EXPECT_NEAR(text->header.width, 430, 30);  // a capital's height: turned, it lies
    EXPECT_LT(text->header.height, text->header.width);
    EXPECT_EQ(text->ColorAt(0, 0), velmora::kPaper);
    EXPECT_EQ(text->ColorAt(0, text->header.height - 1), RGB(0xFF, 0x70, 0x70));
    EXPECT_EQ(text->ColorAt(text->header.width - 1, 0), RGB(0xFF, 0x70, 0x70));
}

}  // namespace
}  // namespace contract
