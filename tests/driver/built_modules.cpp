#include "tests/driver/built_modules.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace driver_test {
namespace {

constexpr const char* kLanguageModules[] = {VELMORA_LANGUAGE_MODULES};

PackageFile ReadModule(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("can't read " + file.string());
    }
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return {file.filename().u16string(), bytes.str()};
}

}  // namespace

std::vector<PackageFile> BuiltLanguageModules() {
    std::vector<PackageFile> modules;
    for (const char* file : kLanguageModules) {
        modules.push_back(ReadModule(file));
    }
    return modules;
}

void UseBuiltModules(DriverPackage& package) {
    std::erase_if(package.dependent, [](const PackageFile& file) { return file.name.ends_with(TEXT(".DLL")); });
    for (PackageFile& module : BuiltLanguageModules()) {
        package.dependent.push_back(std::move(module));
    }
    // Its name without an INI file, and with one.
    for (const WCHAR* library : {TEXT("KVIME.DLL"), TEXT("KV62E.DLL")}) {
        package.dependent.push_back({library, "no library"});
    }
    package.dependent.push_back(ReadModule(VELMORA_IMAGE_MODULE));
    package.dependent.push_back({TEXT("KV62WM.EXE"), "no program"});
}

}  // namespace driver_test
