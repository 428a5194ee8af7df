// pictures, the build's step that draws the image module's pictures: each as a file of its name, and a resource script
// that lists them.
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include "tools/pictures/bitmap_file.h"
#include "tools/pictures/picture.h"

namespace {

constexpr const char* kScript = "pictures.rc";

void Write(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << bytes;
    if (!stream.flush()) {
        throw std::runtime_error("can't write " + file.string());
    }
}

void WritePictures(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    std::string script;
    for (const velmora::Picture& picture : velmora::PrinterPictures()) {
        velmora::Canvas canvas(picture.width, picture.height, picture.background);
        picture.draw(canvas);
        const std::string file = picture.name + ".bmp";
        Write(folder / file, velmora::EncodeBitmap(canvas));
        script += picture.name + " BITMAP \"" + file + "\"\n";
    }
    Write(folder / kScript, script);
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
