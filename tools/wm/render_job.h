// What the driver asks the rendering program for, and what the program answers: keys of a job's INI file.
#pragma once

#include <windows.h>

#include <cstdint>

namespace velmora {

// The job's "Result". What has gone wrong is below 0, and none of it is -1, which stands for no answer.
enum RenderResult : int32_t {
    kRendered = 1,
    kBadJob = -2,          // a key is missing, or its value is none that can be rendered
    kNoPicture = -3,       // the picture file can't be read
    kUnknownPicture = -4,  // it isn't a bitmap file of a known kind, or is damaged
    kTooLarge = -5,        // a side or the whole is beyond what a file may hold, or the letters what can be drawn
    kNothingToDraw = -6,   // a text without ink
    kDrawingFailed = -7,   // the system doesn't draw, or memory runs out
    kNoOutput = -8,        // the output file can't be written
};

struct RenderJob {
    WCHAR outputFile[MAX_PATH];
    uint32_t resolution;  // dpi
    uint32_t angle;       // 0.1 degree, counter-clockwise, 0 to 3599
    bool isColor;         // else grey
    bool isText;          // else a picture

    struct {
        WCHAR file[MAX_PATH];
        uint32_t scaleX;  // percent
        uint32_t scaleY;
    } picture;

    struct {
        WCHAR string[256];
        WCHAR face[32];
        uint8_t charSet;
        uint32_t size;  // points
        COLORREF color;
        bool isOutline;
        bool isBold;
        bool isItalic;
        bool isRightToLeft;
    } text;
};

// The job of an INI file; false where it can't be rendered.
bool ReadRenderJob(const WCHAR* jobFile, RenderJob* job);

struct RenderAnswer {
    RenderResult result;
    uint32_t width;  // dots; only of what was rendered, as the next two
    uint32_t height;
    bool isOtherFont;  // of a text: drawn in another face than the job's
};

// Does nothing where the INI file is gone: nobody waits any more.
void WriteRenderAnswer(const WCHAR* jobFile, const RenderJob& job, const RenderAnswer& answer);

}  // namespace velmora
