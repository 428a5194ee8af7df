// Device capabilities and jobs of one printer on eight threads at once.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "driver/devmode/default_devmode.h"
#include "driver/entry/driver_interface.h"
#include "driver/job/job_hooks.h"
#include "platform/host.h"
#include "tests/driver/job_model.h"
#include "tests/driver/package.h"
#include "tests/threads/on_threads.h"
#include "tools/velmora/capability_formats.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

// Every answer and every list, one behind the other.
std::string AskCapabilities(int /*number*/) {
    const OwnedPrinter printer = OpenWithAllAccess(kPrinterName);
    WideText name = kPrinterName;
    std::string answers;
    for (const CapabilityFormat& format : kCapabilityFormats) {
        const DWORD count = DrvDeviceCapabilities(printer.Get(), name.data(), format.index, nullptr, nullptr);
        std::string list(static_cast<LONG>(count) < 0 ? 0 : EntrySize(format) * count, '\0');
        const DWORD answer = DrvDeviceCapabilities(printer.Get(), name.data(), format.index,
                                                   list.empty() ? nullptr : list.data(), nullptr);
        answers += std::string(format.name) + ' ' + std::to_string(answer) + ' ' + list + '\n';
    }
    return answers;
}

// A whole job of this many copies: its blocks, one behind the other.
std::string PrintJob(int number) {
    VelmoraDevMode devMode;
    {
        const OwnedPrinter printer = OpenWithAllAccess(kPrinterName);
        BuildDefaultDevMode(printer.Get(), kPrinterName, &devMode);
    }
    devMode.publicPart.dmCopies = static_cast<short>(number);
    const WideText jobName = u"Job " + WideText(1, static_cast<WCHAR>(u'0' + number));
    JobHookRecord record = {};
    record.printerName = kPrinterName;
    record.jobName = jobName.c_str();
    std::string blocks;
    std::string block(8192, '\0');
    DWORD size = static_cast<DWORD>(block.size());
    EXPECT_EQ(GuiStartJob(&devMode.publicPart, block.data(), &size, &record), kJobDone);
    blocks += block.substr(0, size);
    block.assign(block.size(), '\0');
    record.sheetBuffer = block.data();
    record.sheetSize = static_cast<uint32_t>(block.size());
    EXPECT_EQ(GuiStartSheet(&devMode.publicPart, &record), kJobDone);
    blocks += block.substr(0, record.sheetSize);
    block.assign(block.size(), '\0');
    size = static_cast<DWORD>(block.size());
    EXPECT_EQ(GuiEndJob(&devMode.publicPart, block.data(), &size, &record), kJobDone);
    return blocks + block.substr(0, size) + std::string(reinterpret_cast<const char*>(&devMode), sizeof(devMode));
}

struct Kind {
    const char* name;
    uint16_t pdlType;
    uint8_t descriptionFlags;
};

// For each kind of job.
class PrinterThreads : public testing::TestWithParam<Kind> {
  protected:
    PrinterThreads() {
        DescriptionBuilder builder = JobModel(GetParam().pdlType, kColor);
        builder.fields.descriptionFlags = GetParam().descriptionFlags;
        InstallPrinter(PackageOf(builder.Build()));
    }
    void TearDown() override { EXPECT_EQ(host::StillOpen(), std::vector<std::string>()); }

    host::Machine machine_;
};

TEST_P(PrinterThreads, Capabilities) {
    CompareOnThreads(AskCapabilities, AskCapabilities);
}

TEST_P(PrinterThreads, Jobs) {
    CompareOnThreads(PrintJob, PrintJob);
}

INSTANTIATE_TEST_SUITE_P(Kinds, PrinterThreads,
                         testing::Values(Kind{"Lines", kPdlPcl6, 0}, Kind{"PostScript", kPdlPostScript, 0},
                                         Kind{"Records", kPdlImage, 0}, Kind{"Text", kPdlImage, kDescriptionsAreText}),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace velmora
