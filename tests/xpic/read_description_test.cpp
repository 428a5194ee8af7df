// Description files read back: what the compiler wrote, what other compilers may write, and damage.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/xpic/description.h"
#include "tools/xpic/block_builder.h"
#include "tools/xpic/container.h"
#include "tools/xpic/read_description.h"

namespace velmora {
namespace {

std::string Printed(const Findings& findings) {
    std::string text;
    for (const Finding& finding : findings) {
        text += FormatFinding(finding, "X.XPI") + "\n";
    }
    return text;
}

std::vector<std::byte> Recompiled(const ModelSource& model) {
    TextPools pools{LocalizedPool(model.languages)};
    LimitFaults faults;
    const Bytes block = BuildDeviceBlock(model, pools, faults);
    EXPECT_TRUE(faults.empty());
    return BuildContainer(model, block, pools);
}

// Compiling what was read gives the file again.
void ExpectReadsBack(const std::vector<std::byte>& file) {
    const DescriptionReading reading = ReadDescription(file);
    EXPECT_EQ(Printed(reading.findings), "");
    ASSERT_TRUE(reading.model);
    EXPECT_TRUE(Recompiled(*reading.model) == file);
}

TEST(ReadDescription, GivesTheProjectsModels) {
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_MODELS_SOURCE_DIR)) {
        if (entry.path().filename().string().starts_with("velmora-")) {
            SCOPED_TRACE(entry.path().string());
            ExpectReadsBack(CompileModel(entry.path()).bytes);
        }
    }
}

}  // namespace
}  // namespace velmora
