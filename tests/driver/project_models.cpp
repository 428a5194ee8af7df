#include "tests/driver/project_models.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace driver_test {

void ProjectModelTest::SetUp() {
    InstallPrinter(PackageOfModel(GetParam()));
    printer_ = OpenWithAllAccess(kPrinterName);
    file_ = velmora::OpenDescriptionFile(printer_.Get());
    model_ = velmora::LoadDeviceModel(file_.Get());
    ASSERT_TRUE(model_);
}

void ProjectModelTest::TearDown() {
    model_.Reset(nullptr);
    file_.Close();
    printer_.Close();
    EXPECT_EQ(WhatIsOpen().value_or(Texts()), Texts());
}

DriverPackage PackageOfModel(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return PackageOf({std::istreambuf_iterator<char>(stream), {}});
}

std::vector<std::filesystem::path> CompiledModels() {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_COMPILED_MODELS)) {
        if (entry.path().extension() == ".XPI") {
            paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string ModelName(const testing::TestParamInfo<std::filesystem::path>& info) {
    std::string name = info.param.stem().string();
    std::ranges::replace(name, '-', '_');
    return name;
}

}  // namespace driver_test
