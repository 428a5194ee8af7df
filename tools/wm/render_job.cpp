#include "tools/wm/render_job.h"

#include "driver/base/format.h"
#include "driver/base/text.h"

namespace velmora {
namespace {

constexpr const WCHAR* kSection = TEXT("MAKEWM");
constexpr uint32_t kTextType = 1;
constexpr uint32_t kPictureType = 2;
constexpr uint32_t kHighestResolution = 9600;  // dpi
constexpr uint32_t kLargestScale = 10000;      // percent
constexpr uint32_t kLargestSize = 10000;       // points
constexpr uint32_t kFullTurn = 3600;           // 0.1 degree
constexpr WCHAR kColorEnding[] = TEXT(".CWM");

uint32_t ReadNumber(const WCHAR* jobFile, const WCHAR* key) {
    return GetPrivateProfileIntW(kSection, key, 0, jobFile);
}

template <size_t kCapacity>
bool ReadText(const WCHAR* jobFile, const WCHAR* key, WCHAR (&text)[kCapacity]) {
    GetPrivateProfileStringW(kSection, key, TEXT(""), text, kCapacity, jobFile);
    return text[0] != 0;
}

void WriteNumber(const WCHAR* jobFile, const WCHAR* key, int64_t number) {
    WCHAR text[24];
    FormatWide(text, ARRAYSIZE(text), TEXT("%d"), number);
    WritePrivateProfileStringW(kSection, key, text, jobFile);
}

bool IsWithin(uint32_t number, uint32_t most) {
    return number >= 1 && number <= most;
}

bool IsColorFile(const WCHAR* path) {
    const size_t length = TextLength(path);
    constexpr size_t kEnding = ARRAYSIZE(kColorEnding) - 1;
    if (length < kEnding) {
        return false;
    }
    for (size_t i = 0; i < kEnding; ++i) {
        const WCHAR c = path[length - kEnding + i];
        if (c != kColorEnding[i] && c != (kColorEnding[i] | 0x20)) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool ReadRenderJob(const WCHAR* jobFile, RenderJob* job) {
    *job = {};
    const bool hasOutput = ReadText(jobFile, TEXT("OutputFile"), job->outputFile);
    const uint32_t type = ReadNumber(jobFile, TEXT("Type"));
    job->resolution = ReadNumber(jobFile, TEXT("Resolution"));
    job->angle = ReadNumber(jobFile, TEXT("Angle"));
    job->isColor = ReadNumber(jobFile, TEXT("ImageDriver")) != 0 || IsColorFile(job->outputFile);
    job->isText = type == kTextType;
    if (!hasOutput || !IsWithin(job->resolution, kHighestResolution) || job->angle >= kFullTurn) {
        return false;
    }
    if (type == kPictureType) {
        auto& picture = job->picture;
        picture.scaleX = ReadNumber(jobFile, TEXT("image.Scale.x"));
        picture.scaleY = ReadNumber(jobFile, TEXT("image.Scale.y"));
        return ReadText(jobFile, TEXT("image.File"), picture.file) && IsWithin(picture.scaleX, kLargestScale) &&
               IsWithin(picture.scaleY, kLargestScale);
    }
    auto& text = job->text;
    ReadText(jobFile, TEXT("text.Face"), text.face);
    text.charSet = static_cast<uint8_t>(ReadNumber(jobFile, TEXT("text.CharSet")));
    text.size = ReadNumber(jobFile, TEXT("text.PtSize"));
    text.color = ReadNumber(jobFile, TEXT("text.Color")) & 0xFFFFFF;
    text.isOutline = ReadNumber(jobFile, TEXT("text.Outline")) != 0;
    text.isBold = ReadNumber(jobFile, TEXT("text.Bold")) != 0;
    text.isItalic = ReadNumber(jobFile, TEXT("text.Italic")) != 0;
    text.isRightToLeft = ReadNumber(jobFile, TEXT("text.RightToLeft")) != 0;
    return job->isText && ReadText(jobFile, TEXT("text.String"), text.string) && IsWithin(text.size, kLargestSize);
}

void WriteRenderAnswer(const WCHAR* jobFile, const RenderJob& job, const RenderAnswer& answer) {
    if (GetFileAttributesW(jobFile) == INVALID_FILE_ATTRIBUTES) {
        return;
    }
    if (answer.result == kRendered) {
        if (job.isText) {
            WriteNumber(jobFile, TEXT("text.FontChange"), answer.isOtherFont);
        }
        WriteNumber(jobFile, TEXT("Size.x"), answer.width);
        WriteNumber(jobFile, TEXT("Size.y"), answer.height);
    }
    WriteNumber(jobFile, TEXT("Result"), answer.result);
}

}  // namespace velmora
