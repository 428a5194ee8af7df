#include "tools/velmora/driver_library.h"

#include <algorithm>
#include <functional>
#include <iterator>

#include "driver/entry/driver_interface.h"
#include "driver/job/job_hooks.h"
#include "platform/host.h"
#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"

namespace velmora {
namespace {

// DrvConvertDevMode's modes CDM_CONVERT and CDM_DRIVER_DEFAULT (winddiui.h).
constexpr DWORD kConvert = 1;
constexpr DWORD kDriverDefault = 4;

using JobHook = std::function<int(char* buffer, DWORD* size)>;

// Asks for the size of a block, then for the block.
JobBlock AskForBlock(const char* hookName, unsigned sheet, const JobHook& hook) {
    JobBlock block = {hookName, sheet, 0, {}};
    int result = hook(nullptr, &block.toldBytes);
    if (result == kJobBlockTooLarge) {
        DWORD size = block.toldBytes;
        block.bytes.resize(size);
        result = hook(reinterpret_cast<char*>(block.bytes.data()), &size);
        if (result == kJobBlockTooLarge || size > block.bytes.size()) {
            throw CommandError(std::string(hookName) + " asked for " + std::to_string(block.toldBytes) +
                               " bytes and, given them, asks for " + std::to_string(size));
        }
        block.bytes.resize(size);
    }
    if (result == kJobImpossible) {
        throw CommandError(std::string(hookName) +
                           " gave 0: the driver can't read the printer's description file, or has no memory; install "
                           "the model again");
    }
    if (result != kJobDone) {
        throw CommandError(std::string(hookName) + " gave " + std::to_string(result) +
                           ", expected 1 (done) or 2 (the "
                           "block doesn't fit)");
    }
    return block;
}

}  // namespace

OwnedModule LoadDriverOf(HANDLE printer, const std::string& printerName) {
    OwnedModule driver(LoadLibraryW(DriverOf(printer).configFile.c_str()));
    if (!driver) {
        ThrowRefused("LoadLibraryW of the driver of \"" + printerName + "\"");
    }
    return driver;
}

std::vector<std::string> OpenedSince(std::vector<std::string> openBefore) {
    std::vector<std::string> openAfter = host::StillOpen();
    std::ranges::sort(openBefore);
    std::ranges::sort(openAfter);
    std::vector<std::string> opened;
    std::ranges::set_difference(openAfter, openBefore, std::back_inserter(opened));
    return opened;
}

Conversion ConvertByDriver(HANDLE printer, const std::string& printerName, const VelmoraDevMode* input) {
    const OwnedModule driver = LoadDriverOf(printer, printerName);
    const auto convert = DriverExport<decltype(&DrvConvertDevMode)>(driver, "DrvConvertDevMode");
    std::u16string name = host::ToWide(printerName);
    VelmoraDevMode given = input ? *input : VelmoraDevMode{};  // the driver may repair it in place
    DEVMODEW* const in = input ? &given.publicPart : nullptr;
    const DWORD mode = input ? kConvert : kDriverDefault;
    LONG size = 0;
    if (convert(name.data(), in, nullptr, &size, mode) || GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        ThrowRefused("DrvConvertDevMode, asked for the size");
    }
    if (size != static_cast<LONG>(sizeof(VelmoraDevMode))) {
        throw CommandError("the driver of \"" + printerName + "\" has device modes of " + std::to_string(size) +
                           " bytes; this workbench knows those of " + std::to_string(sizeof(VelmoraDevMode)));
    }
    Conversion conversion = {};
    conversion.isDone = convert(name.data(), in, &conversion.output.publicPart, &size, mode) != FALSE;
    conversion.lastError = GetLastError();
    conversion.neededBytes = size;
    return conversion;
}

VelmoraDevMode DefaultByDriver(HANDLE printer, const std::string& printerName) {
    const Conversion conversion = ConvertByDriver(printer, printerName, nullptr);
    if (!conversion.isDone) {
        ThrowRefused("DrvConvertDevMode", conversion.lastError);
    }
    return conversion.output;
}

PrintedJob PrintByDriver(HANDLE printer, const std::string& printerName, const std::string& jobName, unsigned sheets,
                         VelmoraDevMode* devMode) {
    const OwnedModule driver = LoadDriverOf(printer, printerName);
    const auto startJob = DriverExport<decltype(&GuiStartJob)>(driver, "GuiStartJob");
    const auto startSheet = DriverExport<decltype(&GuiStartSheet)>(driver, "GuiStartSheet");
    const auto endJob = DriverExport<decltype(&GuiEndJob)>(driver, "GuiEndJob");
    const std::u16string widePrinterName = host::ToWide(printerName);
    const std::u16string wideJobName = host::ToWide(jobName);
    DEVMODEW* const publicPart = devMode ? &devMode->publicPart : nullptr;
    JobHookRecord record = {};
    record.printerName = widePrinterName.c_str();
    record.jobName = wideJobName.c_str();
    const std::vector<std::string> openBefore = host::StillOpen();

    PrintedJob job;
    job.blocks.push_back(AskForBlock(
        "GuiStartJob", 0, [&](char* buffer, DWORD* size) { return startJob(publicPart, buffer, size, &record); }));
    for (unsigned sheet = 1; sheet <= sheets; ++sheet) {
        job.blocks.push_back(AskForBlock("GuiStartSheet", sheet, [&](char* buffer, DWORD* size) {
            record.sheetBuffer = buffer;
            record.sheetSize = *size;
            const int result = startSheet(publicPart, &record);
            *size = record.sheetSize;
            return result;
        }));
    }
    job.blocks.push_back(AskForBlock(
        "GuiEndJob", 0, [&](char* buffer, DWORD* size) { return endJob(publicPart, buffer, size, &record); }));

    job.leftOpen = OpenedSince(openBefore);
    return job;
}

}  // namespace velmora
