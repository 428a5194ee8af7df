// The project's compiled models, each as the model of an installed printer.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "driver/devdesc/description_file.h"
#include "tests/driver/machine.h"

namespace driver_test {

// For tests that run on every model: INSTANTIATE_TEST_SUITE_P(Models, ..., testing::ValuesIn(CompiledModels()),
// ModelName)
class ProjectModelTest : public testing::TestWithParam<std::filesystem::path> {
  protected:
    void SetUp() override;
    // Nothing may be open then.
    void TearDown() override;

    host::Machine machine_;
    velmora::OwnedPrinter printer_;
    velmora::OwnedFile file_;
    velmora::HeapOwner<velmora::DeviceModel> model_;
};

// The driver package with a compiled model, as PackageOf makes it.
DriverPackage PackageOfModel(const std::filesystem::path& path);

// Their description files, in the order of their names.
std::vector<std::filesystem::path> CompiledModels();
std::string ModelName(const testing::TestParamInfo<std::filesystem::path>& info);

}  // namespace driver_test
