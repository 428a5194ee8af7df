#include "driver/ui/watermark_maker.h"

#include "driver/base/format.h"
#include "driver/base/handles.h"
#include "driver/base/heap.h"
#include "driver/base/text.h"
#include "driver/devmode/default_devmode.h"
#include "driver/entry/printer_access.h"
#include "driver/settings/ini_keys.h"
#include "driver/settings/settings_folder.h"

namespace velmora {
namespace {

constexpr const WCHAR* kSection = TEXT("MAKEWM");
constexpr const WCHAR* kWidthKey = TEXT("Size.x");
constexpr const WCHAR* kHeightKey = TEXT("Size.y");
constexpr const WCHAR* kResultKey = TEXT("Result");
constexpr const WCHAR* kFontChangeKey = TEXT("text.FontChange");

constexpr DWORD kLongestWait = 10000;  // milliseconds
constexpr int kMostReads = 100;        // of an answer that no event tells of
constexpr int kNoAnswer = -1;
constexpr UINT kFirstStarted = 32;  // WinExec: what is below is an error

// What the program is to do, as its keys say it.
struct RenderJob {
    const WCHAR* printerName;
    const WatermarkRecord& watermark;
    const WCHAR* outputFile;
    bool isImageModel;
    bool isInTrueColor;
};

int64_t ColorOf(const RenderJob& job) {
    const COLORREF color = job.watermark.style.color;
    if (job.isInTrueColor) {
        return color;
    }
    const uint8_t gray = GrayOf(color);
    return RGB(gray, gray, gray);
}

// Bits: whose key it is, and for which of the two files it is written.
constexpr unsigned kText = 1;
constexpr unsigned kPicture = 2;
constexpr unsigned kAny = kText | kPicture;
constexpr unsigned kFirst = 1;
constexpr unsigned kColorFile = 2;
constexpr unsigned kBoth = kFirst | kColorFile;

// A key of the job, whose value is a text or a number.
struct JobKey {
    const WCHAR* name;
    unsigned types;
    unsigned files;
    const WCHAR* (*text)(const RenderJob& job);
    int64_t (*number)(const RenderJob& job) = nullptr;
    size_t capacity = MAX_PATH;  // of the text where it stands, in characters
};

#define TEXT_OF(value) [](const RenderJob& job) -> const WCHAR* { return job.value; }
#define NUMBER_OF(value) nullptr, [](const RenderJob& job) -> int64_t { return job.value; }
#define NUMBER(value) nullptr, [](const RenderJob&) -> int64_t { return value; }

// In the order in which they are written.
constexpr JobKey kJobKeys[] = {
    {TEXT("Printer"), kAny, kFirst, TEXT_OF(printerName)},
    {TEXT("OutputFile"), kAny, kBoth, TEXT_OF(outputFile)},
    {TEXT("Type"), kAny, kFirst, NUMBER_OF(watermark.type)},
    {TEXT("Resolution"), kAny, kFirst, NUMBER_OF(watermark.resolution)},
    {TEXT("ImageDriver"), kAny, kFirst, NUMBER_OF(isImageModel)},
    {TEXT("Angle"), kAny, kFirst, NUMBER_OF(watermark.angle)},
    {TEXT("image.File"), kPicture, kFirst, TEXT_OF(watermark.imageName)},
    {TEXT("image.Scale.x"), kPicture, kFirst, NUMBER_OF(watermark.scaleX)},
    {TEXT("image.Scale.y"), kPicture, kFirst, NUMBER_OF(watermark.scaleY)},
    {TEXT("text.String"), kText, kFirst, TEXT_OF(watermark.text), nullptr, ARRAYSIZE(WatermarkRecord::text)},
    {TEXT("text.Face"), kText, kBoth, TEXT_OF(watermark.style.face), nullptr, ARRAYSIZE(WatermarkStyle::face)},
    {TEXT("text.CharSet"), kText, kBoth, NUMBER_OF(watermark.style.charSet)},
    {TEXT("text.Outline"), kText, kFirst, NUMBER_OF(watermark.style.outline)},
    {TEXT("text.PtSize"), kText, kFirst, NUMBER_OF(watermark.style.size)},
    {TEXT("text.Color"), kText, kBoth, nullptr, ColorOf},
    {TEXT("text.Bold"), kText, kFirst, NUMBER_OF(watermark.style.bold)},
    {TEXT("text.Italic"), kText, kFirst, NUMBER_OF(watermark.style.italic)},
    {TEXT("text.AutoFontChange"), kText, kFirst, NUMBER(0)},
    {TEXT("text.RightToLeft"), kText, kFirst, NUMBER_OF(watermark.style.rightToLeft)},
    {kFontChangeKey, kText, kColorFile, NUMBER(0)},
    {kWidthKey, kAny, kBoth, NUMBER(kNoAnswer)},
    {kHeightKey, kAny, kBoth, NUMBER(kNoAnswer)},
    {kResultKey, kAny, kBoth, NUMBER(kNoAnswer)},
};

#undef TEXT_OF
#undef NUMBER_OF
#undef NUMBER

void WriteJob(const RenderJob& job, unsigned file, const WCHAR* jobFile) {
    const unsigned type = job.watermark.type == kImageWatermark ? kPicture : kText;
    for (const JobKey& key : kJobKeys) {
        if ((key.types & type) == 0 || (key.files & file) == 0) {
            continue;
        }
        if (key.text) {
            WriteTextKey(kSection, key.name, key.text(job), key.capacity, jobFile);
        } else {
            WCHAR number[24];
            FormatWide(number, ARRAYSIZE(number), TEXT("%d"), key.number(job));
            WritePrivateProfileStringW(kSection, key.name, number, jobFile);
        }
    }
}

struct Answer {
    int32_t width;
    int32_t height;
    int32_t result;

    bool IsWhole() const { return width != kNoAnswer && height != kNoAnswer && result != kNoAnswer; }
};

int32_t ReadNumberKey(const WCHAR* key, int fallback, const WCHAR* jobFile) {
    return static_cast<int32_t>(GetPrivateProfileIntW(kSection, key, fallback, jobFile));
}

Answer ReadAnswer(const WCHAR* jobFile) {
    return {ReadNumberKey(kWidthKey, kNoAnswer, jobFile), ReadNumberKey(kHeightKey, kNoAnswer, jobFile),
            ReadNumberKey(kResultKey, kNoAnswer, jobFile)};
}

// Runs the program on the job; false where it can't be started.
bool Render(const char* commandLine, const WCHAR* jobFile, Answer* answer) {
    OwnedEvent done(CreateEventW(nullptr, FALSE, FALSE, FileNamePart(jobFile)));
    if (WinExec(commandLine, SW_HIDE) < kFirstStarted) {
        return false;
    }
    int reads = kMostReads;
    if (done) {
        WaitForSingleObject(done.Get(), kLongestWait);
        done.Close();
        reads = 1;
    }
    do {
        *answer = ReadAnswer(jobFile);
    } while (--reads > 0 && !answer->IsWhole());
    return true;
}

// Whether a file that is there already would be written over: settings files are numbered in the same way.
bool IsTaken(const WCHAR* folder, DWORD number) {
    for (const WCHAR* const extension : {TEXT("INI"), TEXT("WM"), TEXT("CWM")}) {
        WCHAR path[MAX_PATH];
        if (FormNumberedPath(folder, number, extension, path) && GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES) {
            return true;
        }
    }
    return false;
}

// The path of a rendered file in a record's field, as a short path; zero behind it, as the store's texts are. False,
// and empty, where it has no room.
bool FormShortPath(const WCHAR* folder, DWORD number, const WCHAR* extension, WCHAR (&field)[MAX_PATH]) {
    WCHAR path[MAX_PATH];
    ZeroMemory(field, sizeof(field));
    if (!FormNumberedPath(folder, number, extension, path)) {
        return false;
    }
    GetShortPath(path, ARRAYSIZE(path));
    CopyText<WCHAR>(field, ARRAYSIZE(field), path);
    return true;
}

// The command line that starts the printer's program on a job; empty where it has none or there is no memory.
HeapOwner<char> FormCommandLine(HANDLE printer, const WCHAR* jobFile) {
    WCHAR program[MAX_PATH];
    if (!FindDriverFile(printer, TEXT("MakeWM"), TEXT("WM.EXE"), program)) {
        return HeapOwner<char>();
    }
    WCHAR line[2 * MAX_PATH];
    FormatWide(line, ARRAYSIZE(line), TEXT("%s %s"), static_cast<const WCHAR*>(program), jobFile);
    return Narrow(line);
}

// The job's file, which goes with the call.
class JobFile {
  public:
    JobFile() = default;
    ~JobFile() { DeleteFileW(path); }
    JobFile(const JobFile&) = delete;
    JobFile& operator=(const JobFile&) = delete;

    WCHAR path[MAX_PATH] = {};
};

bool ReadDefaultResolution(const SheetContext& context, uint32_t* resolution) {
    const auto devMode = HeapOwner<VelmoraDevMode>::Allocate();
    if (!devMode) {
        return false;
    }
    BuildDefaultDevMode(context.printer, context.printerName, devMode.Get());
    *resolution = static_cast<uint32_t>(devMode->privatePart.resolutionId);
    return true;
}

}  // namespace

int32_t MakeWatermarkFile(const SheetContext& context, WatermarkRecord* record, bool isMonochromeOnly) {
    const WCHAR* const folder = context.settingsFolder;
    DWORD number = GetTickCount();
    while (IsTaken(folder, number)) {
        ++number;
    }
    const DeviceModel* const model = context.model.Get();
    const bool isImageModel = model && model->pdlType == kPdlImage;
    JobFile job;
    if (folder[0] == 0 || !ReadDefaultResolution(context, &record->resolution) ||
        !FormNumberedPath(folder, number, TEXT("INI"), job.path) ||
        !FormShortPath(folder, number, TEXT("WM"), record->fileName)) {
        return 0;
    }
    const HeapOwner<char> commandLine = FormCommandLine(context.printer, job.path);
    WriteJob({context.printerName, *record, record->fileName, isImageModel, isImageModel}, kFirst, job.path);
    Answer answer;
    if (!commandLine || !Render(commandLine.Get(), job.path, &answer)) {
        return 0;
    }
    record->width = static_cast<uint32_t>(answer.width);
    record->height = static_cast<uint32_t>(answer.height);
    if (record->type == kTextWatermark) {
        record->needsRemake = static_cast<uint32_t>(ReadNumberKey(kFontChangeKey, 0, job.path));
    }

    ZeroMemory(record->colorFileName, sizeof(record->colorFileName));
    if (isImageModel) {
        CopyText<WCHAR>(record->colorFileName, ARRAYSIZE(record->colorFileName), record->fileName);
    } else if (!isMonochromeOnly && model && !IsMonochrome(model->colorCapability)) {
        Answer ofColorFile;
        if (!FormShortPath(folder, number, TEXT("CWM"), record->colorFileName)) {
            return 0;
        }
        WriteJob({context.printerName, *record, record->colorFileName, isImageModel, true}, kColorFile, job.path);
        if (!Render(commandLine.Get(), job.path, &ofColorFile)) {
            return 0;
        }
    }
    return answer.result;
}

}  // namespace velmora
