// A machine for each test, which at the test's end must have nothing open.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host.h"

namespace host {

class KernelTest : public testing::Test {
  protected:
    void TearDown() override {
        EXPECT_EQ(StillOpen(), std::vector<std::string>());
        machine_.reset();
    }

    Machine& TheMachine() { return *machine_; }

    // Writes and reads a file of the drive by the host; `path` uses "/" and has no letter. Folders are made.
    void Put(const std::filesystem::path& path, std::string_view bytes) {
        const std::filesystem::path file = machine_->Drive() / path;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
    }
    std::string Get(const std::filesystem::path& path) {
        std::ifstream stream(machine_->Drive() / path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    bool Exists(const std::filesystem::path& path) { return std::filesystem::exists(machine_->Drive() / path); }

    std::optional<Machine> machine_{std::in_place};
};

// What a call returned and the last error that it left; kNoError stands for an untouched one.
inline constexpr DWORD kNoError = 0xCDCDCDCD;

template <class Call>
DWORD ErrorOf(Call call) {
    SetLastError(kNoError);
    call();
    return GetLastError();
}

// The error of a call that must fail; ERROR_SUCCESS where it succeeds.
template <class Call>
DWORD FailureOf(Call call) {
    SetLastError(kNoError);
    return call() ? ERROR_SUCCESS : GetLastError();
}

inline std::string Shown(std::u16string_view text) {
    std::string shown;
    for (const char16_t c : text) {
        shown += c < 0x80 ? static_cast<char>(c) : '#';
    }
    return shown;
}

}  // namespace host
