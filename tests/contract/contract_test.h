#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "driver/devmode/private_devmode.h"
#include "tests/contract/environment.h"
#include "tests/contract/package.h"

namespace contract {

// A test with a fresh machine.
class ContractTest : public testing::Test {
  protected:
    const std::unique_ptr<ContractEnvironment> environment_ = MakeEnvironment();
};

// A whole device mode of the driver, filled with a pattern that shows what a call wrote.
struct DevModeBuffer {
    DevModeBuffer();

    DEVMODEW* Get() { return &content->publicPart; }
    const velmora::PrivateDevMode& PrivatePart() const { return content->privatePart; }
    bool Untouched() const;

    std::unique_ptr<velmora::VelmoraDevMode> content;
};

// The printer's default device mode, by DrvConvertDevMode without an input. A test failure where the driver gives none.
DevModeBuffer DefaultDevMode(const InstalledPrinter& printer, const WideText& printerName);

// Texts of a device mode, which may lie unaligned there.
template <class Character, size_t capacity>
std::basic_string<Character> TextOf(const Character (&field)[capacity]) {
    std::basic_string<Character> text;
    for (size_t i = 0; i < capacity && field[i] != 0; ++i) {
        text += field[i];
    }
    return text;
}

// What follows the last backslash.
WideText FileName(const WideText& path);

// A variable of the environment; empty where there is none.
WideText Variable(const WCHAR* name);
WideText ComputerName();

// A file's bytes, none where it can't be read.
std::string ContentOf(const std::filesystem::path& file);

}  // namespace contract
