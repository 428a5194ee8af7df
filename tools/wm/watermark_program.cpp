#include "tools/wm/watermark_program.h"

#include <windows.h>

#include <new>
#include <vector>

#include "driver/base/handles.h"
#include "driver/base/text.h"
#include "tools/wm/drawing.h"
#include "tools/wm/render_job.h"
#include "tools/wm/watermark_file.h"

namespace velmora {
namespace {

constexpr char kProgramEnding[] = ".exe";

// Whether the text begins with this, whatever the case of its letters.
bool BeginsWith(const char* text, const char* lowerCase) {
    for (; *lowerCase != 0; ++text, ++lowerCase) {
        const char lower = *text >= 'A' && *text <= 'Z' ? static_cast<char>(*text | 0x20) : *text;
        if (lower != *lowerCase) {
            return false;
        }
    }
    return true;
}

// What lies behind the program and the blanks and quotation marks after it, without those at its end.
void ReadJobFile(const char* commandLine, WCHAR (&jobFile)[MAX_PATH]) {
    const auto isAround = [](auto c) { return c == ' ' || c == '"'; };
    const char* at = commandLine;
    while (*at != 0 && !(BeginsWith(at, kProgramEnding) && isAround(at[sizeof(kProgramEnding) - 1]))) {
        ++at;
    }
    at += *at != 0 ? sizeof(kProgramEnding) - 1 : 0;
    while (isAround(*at)) {
        ++at;
    }
    WidenText(jobFile, ARRAYSIZE(jobFile), at, TextLength(at));
    for (size_t end = TextLength(jobFile); end > 0 && isAround(jobFile[end - 1]); --end) {
        jobFile[end - 1] = 0;
    }
}

RenderResult WriteDrawing(Drawing* drawing, const WCHAR* path) {
    WatermarkFileWriter writer(path);
    if (!writer.Begin(drawing->Header())) {
        return kNoOutput;
    }
    std::vector<uint8_t> row(RowBytes(drawing->Header()));
    for (uint32_t y = 0; y < drawing->Header().height; ++y) {
        if (!drawing->FillRow(y, row.data())) {
            return kDrawingFailed;
        }
        if (!writer.Add(row)) {
            return kNoOutput;
        }
    }
    return writer.Finish() ? kRendered : kNoOutput;
}

RenderAnswer Render(const RenderJob& job) {
    RenderAnswer answer = {};
    try {
        const auto drawing = job.isText ? MakeTextDrawing(job, &answer) : MakePictureDrawing(job, &answer);
        if (drawing) {
            answer.result = WriteDrawing(drawing.get(), job.outputFile);
            answer.width = drawing->Header().width;
            answer.height = drawing->Header().height;
        }
    } catch (const std::bad_alloc&) {
        answer.result = kDrawingFailed;
    }
    return answer;
}

}  // namespace

void RunWatermarkProgram(const char* commandLine) {
    WCHAR jobFile[MAX_PATH];
    ReadJobFile(commandLine, jobFile);
    RenderJob job;
    const RenderAnswer answer = ReadRenderJob(jobFile, &job) ? Render(job) : RenderAnswer{kBadJob, 0, 0, false};
    WriteRenderAnswer(jobFile, job, answer);
    const OwnedEvent done(OpenEventW(EVENT_MODIFY_STATE, FALSE, FileNamePart(jobFile)));
    if (done) {
        SetEvent(done.Get());
    }
}

}  // namespace velmora
