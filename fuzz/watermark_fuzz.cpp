// What renders watermarks, and what reads them back: no access outside what was read; a job is answered; nothing is
// left open and no unfinished file stays.
//
// An input that begins with "[" is a job's INI file, one that begins with "BM" the picture of a job, and any other a
// rendered watermark. Jobs whose drawing would be large aren't drawn.
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <span>
#include <string>
#include <vector>

#include "fuzz/stop.h"
#include "platform/host.h"
#include "tools/wm/render_job.h"
#include "tools/wm/watermark_file.h"
#include "tools/wm/watermark_program.h"

namespace {

using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test
using fuzz::Stop;

constexpr char16_t kJobFile[] = u"C:\\job.INI";
constexpr uint32_t kMostResolution = 150;  // dpi, of what is drawn, as the next two
constexpr uint32_t kMostSize = 100;        // points
constexpr uint32_t kMostScale = 200;       // percent

// A black pixel and a white one.
const std::string kPicture =
    std::string("BM\x42\0\0\0\0\0\0\0\x3E\0\0\0\x28\0\0\0\x02\0\0\0\x01\0\0\0\x01\0\x01\0", 30) +
    std::string(24, '\0') + std::string("\0\0\0\0\xFF\xFF\xFF\0\x40\0\0\0", 12);

struct Target {
    host::Machine machine;

    void Write(const char* name, const std::string& bytes) const {
        std::ofstream(machine.Drive() / name, std::ios::binary | std::ios::trunc) << bytes;
    }
};

void CheckRenderedFile(std::span<const uint8_t> bytes) {
    const char* fault = nullptr;
    const auto picture = ReadWatermarkFile(bytes, &fault);
    if (static_cast<bool>(picture) == (fault != nullptr)) {
        Stop("a watermark and a fault, or neither");
    }
    if (picture) {
        picture->ColorAt(0, 0);
        picture->ColorAt(picture->header.width - 1, picture->header.height - 1);
        // Packed again, each row is the same.
        const size_t rowBytes = RowBytes(picture->header);
        for (std::span<const uint8_t> rows(picture->rows); !rows.empty(); rows = rows.subspan(rowBytes)) {
            std::vector<uint8_t> packed;
            PackRow(rows.first(rowBytes), &packed);
            std::span<const uint8_t> rest(packed);
            std::vector<uint8_t> row(rowBytes);
            if (!UnpackRow(&rest, row) || !rest.empty() || !std::equal(row.begin(), row.end(), rows.begin())) {
                Stop("a row isn't unpacked as it was packed");
            }
        }
    }
}

int Answer(const char16_t* key) {
    return static_cast<int>(GetPrivateProfileIntW(u"MAKEWM", key, 0, kJobFile));
}

// Runs the job of the job's file, whose output is to be `output`.
void Render(const std::u16string& output) {
    RunWatermarkProgram("C:\\KV62WM.EXE \"C:\\job.INI\"");
    if (Answer(u"Result") == 0 || Answer(u"Result") == -1) {
        Stop("a job without an answer");
    }
    DeleteFileW(output.c_str());
    if (GetFileAttributesW((output + u"~").c_str()) != INVALID_FILE_ATTRIBUTES) {
        Stop("an unfinished file stays");
    }
}

void RenderPicture(const Target& target, const std::string& bytes) {
    target.Write("input.bmp", bytes);
    // By a byte that no reader looks at, of those that every picture has.
    const uint8_t choice = bytes.size() > 6 ? static_cast<uint8_t>(bytes[6]) : 0;
    target.Write("job.INI",
                 "[MAKEWM]\r\nType=2\r\nResolution=48\r\nimage.File=C:\\input.bmp\r\nimage.Scale.x=50\r\n"
                 "image.Scale.y=100\r\nOutputFile=C:\\out.WM\r\nAngle=" +
                     std::to_string(choice % 4 * 450) + "\r\nImageDriver=" + std::to_string(choice / 4 % 2) + "\r\n");
    Render(u"C:\\out.WM");
}

void RenderJobFile(const Target& target, const std::string& bytes) {
    // A job may name any file as its output.
    target.Write("picture.bmp", kPicture);
    target.Write("job.INI", bytes);
    RenderJob job;
    const bool isJob = ReadRenderJob(kJobFile, &job);
    if (!isJob || (job.resolution <= kMostResolution &&
                   (job.isText ? job.text.size <= kMostSize
                               : job.picture.scaleX <= kMostScale && job.picture.scaleY <= kMostScale))) {
        Render(job.outputFile);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Target target;
    const std::string input(reinterpret_cast<const char*>(data), size);
    const fuzz::OpenCheck open;
    if (input.starts_with('[')) {
        RenderJobFile(target, input);
    } else if (input.starts_with("BM")) {
        RenderPicture(target, input);
    } else {
        CheckRenderedFile({data, size});
    }
    return 0;
}
