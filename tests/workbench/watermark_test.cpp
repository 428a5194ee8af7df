// Rendered watermarks in files.
#include <filesystem>
#include <fstream>

#include "tests/workbench/workbench_fixture.h"
#include "tools/wm/watermark_file.h"

namespace velmora {
namespace {

TEST_F(WorkbenchTest, ARenderedWatermark) {
    const WatermarkHeader header = {kWatermarkMagic, sizeof(header), kPackBits, 300, 2, 600, kInkOrPaper, 0, 0x0070FF};
    std::vector<uint8_t> bytes(sizeof(header));
    memcpy(bytes.data(), &header, sizeof(header));
    for (int row = 0; row < 2; ++row) {
        PackRow(std::vector<uint8_t>(RowBytes(header), 0xAA), &bytes);
    }
    Succeed({"printers"});  // makes the machine
    std::filesystem::create_directories(MachineFolder() / "drive_c");
    std::ofstream(MachineFolder() / "drive_c" / "one.WM", std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));

    const std::filesystem::path png = Folder() / "one.png";
    EXPECT_EQ(Json({"watermark", "C:\\one.WM", "-o", png.string()}), nlohmann::json::parse(R"({
        "width": 300, "height": 2, "resolution": 600, "widthMillimeters": 12.7, "heightMillimeters": 0.08466666666666667,
        "dots": "ink", "ink": "#FF7000"})"));
    std::string signature(4, '\0');
    std::ifstream(png, std::ios::binary).read(signature.data(), 4);
    EXPECT_EQ(signature, "\x89PNG");

    const std::string file = (MachineFolder() / "drive_c" / "one.WM").string();
    EXPECT_NE(Fail({"watermark", file, "-o", file}).find("would be written over"), std::string::npos);
    EXPECT_NE(Fail({"watermark", WriteSource()}).find("isn't a rendered watermark"), std::string::npos);
    EXPECT_NE(Fail({"watermark", "D:\\one.WM"}).find("isn't on the machine's drive"), std::string::npos);
    EXPECT_NE(Fail({"watermark", "C:\\none.WM"}).find("can't be read"), std::string::npos);
}

}  // namespace
}  // namespace velmora
