#include "tests/driver/sheet_package.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/driver/description_builder.h"

namespace driver_test {
namespace {

PackageFile BuiltFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {path.filename().u16string(), std::string(std::istreambuf_iterator<char>(stream), {})};
}

}  // namespace

DriverPackage SheetPackage() {
    DescriptionBuilder builder = SmallModel(velmora::kPdlPcl6);
    velmora::ConstraintRecord constraint = {};
    constraint.mark = 1;
    constraint.papers.bytes[kConflictPaper / 8] = static_cast<uint8_t>(0x80 >> (kConflictPaper % 8));
    constraint.messageRef = builder.AddString(kConflictMessage);
    builder.Table(offsetof(velmora::DeviceModel, constraintTable), std::vector{constraint});
    DriverPackage package = PackageOf(builder.Build());
    package.dependent.clear();
    for (const char* const module : {VELMORA_SHEET_MODULES}) {
        package.dependent.push_back(BuiltFile(module));
    }
    return package;
}

}  // namespace driver_test
