// Watermarks that the driver package's program has rendered, for people to look at.
#pragma once

#include <filesystem>

#include "tools/velmora/table.h"
#include "tools/wm/watermark_file.h"

namespace velmora {

// Throws a CommandError where the file can't be read or isn't a whole rendered watermark.
WatermarkPicture ReadWatermark(const std::filesystem::path& file);

// One row: size in dots and millimetres, resolution, kind of dots, ink.
Table ReportWatermark(const WatermarkPicture& picture);

// Writes it as a PNG file, a dot a pixel. Throws a CommandError where that can't be written or is `input`.
void WriteWatermarkPng(const WatermarkPicture& picture, const std::filesystem::path& png,
                       const std::filesystem::path& input);

}  // namespace velmora
