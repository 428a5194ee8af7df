#include "tools/velmora/watermark_report.h"

#include <cstdio>
#include <optional>
#include <string>

#include "platform/gdi/surfaces.h"
#include "tools/velmora/command_error.h"
#include "tools/xpic/file_content.h"

namespace velmora {
namespace {

constexpr double kMillimetersPerInch = 25.4;

double Millimeters(uint32_t dots, uint32_t resolution) {
    return resolution == 0 ? 0 : dots * kMillimetersPerInch / resolution;
}

Cell DescribeDots(const WatermarkHeader& header) {
    return TextCell(header.dotBits == kInkOrPaper ? "ink" : header.dotBits == kGray ? "grey" : "colour");
}

// As colours are written on web pages.
Cell DescribeInk(const WatermarkHeader& header) {
    if (header.dotBits != kInkOrPaper) {
        return EmptyCell();
    }
    char text[8];
    snprintf(text, sizeof(text), "#%02X%02X%02X", GetRValue(header.inkColor), GetGValue(header.inkColor),
             GetBValue(header.inkColor));
    return TextCell(text);
}

}  // namespace

WatermarkPicture ReadWatermark(const std::filesystem::path& file) {
    const std::optional<std::string> content = ReadFileContent(file);
    if (!content) {
        throw CommandError(file.string() + " can't be read");
    }
    const char* fault = nullptr;
    std::optional<WatermarkPicture> picture =
        ReadWatermarkFile({reinterpret_cast<const uint8_t*>(content->data()), content->size()}, &fault);
    if (!picture) {
        throw CommandError(file.string() + ": " + fault);
    }
    return std::move(*picture);
}

Table ReportWatermark(const WatermarkPicture& picture) {
    const WatermarkHeader& header = picture.header;
    Table table = {"",
                   "",
                   {{"Width", "width"},
                    {"Height", "height"},
                    {"Resolution (dpi)", "resolution"},
                    {"Width (mm)", "widthMillimeters"},
                    {"Height (mm)", "heightMillimeters"},
                    {"Dots", "dots"},
                    {"Ink", "ink"}}};
    table.rows.push_back({NumberCell(header.width), NumberCell(header.height), NumberCell(header.resolution),
                          DecimalCell(Millimeters(header.width, header.resolution), 1),
                          DecimalCell(Millimeters(header.height, header.resolution), 1), DescribeDots(header),
                          DescribeInk(header)});
    return table;
}

void WriteWatermarkPng(const WatermarkPicture& picture, const std::filesystem::path& png,
                       const std::filesystem::path& input) {
    if (const std::optional<std::string> fault = OutputFault(png, {input})) {
        throw CommandError(*fault);
    }
    host::Surface surface(static_cast<int>(picture.header.width), static_cast<int>(picture.header.height));
    for (uint32_t y = 0; y < picture.header.height; ++y) {
        uint32_t* pixel = surface.Row(static_cast<int>(y));
        for (uint32_t x = 0; x < picture.header.width; ++x) {
            const COLORREF color = picture.ColorAt(x, y);
            *pixel++ = static_cast<uint32_t>(GetRValue(color)) << 16 | static_cast<uint32_t>(GetGValue(color)) << 8 |
                       GetBValue(color);
        }
    }
    if (!host::WritePng(surface, png)) {
        throw CommandError("the picture " + png.string() + " can't be written");
    }
}

}  // namespace velmora
