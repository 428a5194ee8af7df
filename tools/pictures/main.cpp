// pictures, the build's step that draws the modules' pictures: each as a file of its name, and resource scripts that
// list them, pictures.rc for the image module and logo.rc for the language modules.
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/pictures/image_files.h"
#include "tools/pictures/picture.h"

namespace {

constexpr struct {
    const char* file;
    std::vector<velmora::Picture> (*pictures[5])();
} kScripts[] = {
    {"pictures.rc",
     {velmora::PrinterPictures, velmora::PagePictures, velmora::PageIcons, velmora::ColorPictures,
      velmora::SamplePictures}},
    {"logo.rc", {velmora::LogoPictures}},
};

void Write(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << bytes;
    if (!stream.flush()) {
        throw std::runtime_error("can't write " + file.string());
    }
}

// Returns the picture's line in a resource script.
std::string WritePicture(const std::filesystem::path& folder, const velmora::Picture& picture) {
    velmora::Canvas canvas(picture.width, picture.height);
    const bool isIcon = picture.kind == velmora::PictureKind::kIcon;
    if (!isIcon) {
        canvas.Fill(velmora::kDialogFace);
    }
    picture.draw(canvas);
    if (picture.kind == velmora::PictureKind::kTransparentBitmap) {
        canvas.ReplaceColor(velmora::kDialogFace, velmora::FromRgb(0xFFFFFF));
    }
    const std::string file = picture.name + (isIcon ? ".ico" : ".bmp");
    Write(folder / file, isIcon ? velmora::EncodeIcon(canvas) : velmora::EncodeBitmap(canvas));
    return picture.name + (isIcon ? " ICON \"" : " BITMAP \"") + file + "\"\n";
}

void WritePictures(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    for (const auto& script : kScripts) {
        std::string lines;
        for (const auto& pictures : script.pictures) {
            for (const velmora::Picture& picture : pictures ? pictures() : std::vector<velmora::Picture>()) {
                lines += WritePicture(folder, picture);
            }
        }
        Write(folder / script.file, lines);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "Usage: pictures FOLDER\n";
        return 2;
    }
    try {
        WritePictures(argv[1]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "pictures: " << error.what() << "\n";
        return 1;
    }
}
