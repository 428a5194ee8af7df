// A machine for each test, which at the test's end must have nothing open, and tables of calls.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
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

using Lines = std::vector<std::string>;

class KernelTest : public testing::Test {
  protected:
    void TearDown() override {
        EXPECT_EQ(StillOpen(), Lines());
        machine_.reset();
    }

    // Writes and reads a file of the drive by the host; `path` uses "/" and has no letter. Folders are made.
    void Put(const std::filesystem::path& path, std::string_view bytes) {
        const std::filesystem::path file = machine_->Drive() / path;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
    }
    std::string Get(const std::filesystem::path& path) { return ReadHostFile(machine_->Drive() / path); }
    bool Exists(const std::filesystem::path& path) { return std::filesystem::exists(machine_->Drive() / path); }
    static std::string ReadHostFile(const std::filesystem::path& path) {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    std::optional<Machine> machine_{std::in_place};
};

// The machine is kept in a folder, which goes with the test.
class KeptTest : public KernelTest {
  protected:
    KeptTest() {
        std::string name = (std::filesystem::temp_directory_path() / "velmora-kept-XXXXXX").string();
        folder_ = mkdtemp(name.data());
        Start();
    }
    ~KeptTest() override { std::filesystem::remove_all(folder_); }

    // Ends the machine and makes it again from its folder.
    void Start() {
        machine_.reset();
        machine_.emplace(folder_);
    }

    // A store with this content is refused with a message that names it, and left as it is.
    void ExpectRefused(const std::filesystem::path& store, const std::string& text) {
        machine_.reset();
        std::ofstream(store, std::ios::binary) << text;
        try {
            Start();
            ADD_FAILURE() << "loaded: " << text.substr(0, 200);
        } catch (const std::runtime_error& error) {
            EXPECT_NE(std::string(error.what()).find(store.string()), std::string::npos) << error.what();
        }
        EXPECT_EQ(ReadHostFile(store), text);
    }

    std::filesystem::path folder_;
};

// Last errors are compared with the ERROR_ constants, which are signed.
inline constexpr LONG kNoError = 0x0DCDCDCD;  // left untouched

// The last error that a call leaves, whatever it returns.
template <class Call>
LONG ErrorOf(Call call) {
    SetLastError(kNoError);
    call();
    return static_cast<LONG>(GetLastError());
}

// The error of a call that must fail; ERROR_SUCCESS where it succeeds.
template <class Call>
LONG FailureOf(Call call) {
    SetLastError(kNoError);
    return call() ? ERROR_SUCCESS : static_cast<LONG>(GetLastError());
}

struct CallRow {
    const char* what;
    std::function<bool()> call;
    LONG error = ERROR_SUCCESS;  // that it fails with
};

inline void ExpectErrors(const std::vector<CallRow>& rows) {
    for (const CallRow& row : rows) {
        EXPECT_EQ(FailureOf(row.call), row.error) << row.what;
    }
}

inline std::string Shown(std::u16string_view text) {
    std::string shown;
    for (const char16_t c : text) {
        shown += c < 0x80 ? static_cast<char>(c) : '#';
    }
    return shown;
}

}  // namespace host
