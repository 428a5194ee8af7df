#include "platform/kernel/store.h"

#include <windows.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <vector>

#include "platform/kernel/objects.h"

namespace host {
namespace {

std::vector<StoreSection>& Sections() {
    static auto& sections = *new std::vector<StoreSection>;
    return sections;
}

// Empty: the machine isn't kept.
std::filesystem::path& KeptFile() {
    static auto& file = *new std::filesystem::path;
    return file;
}

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

}  // namespace

void RegisterSection(StoreSection section) {
    Sections().push_back(std::move(section));
}

bool ReplaceFile(const std::filesystem::path& file, std::string_view bytes) {
    struct stat old {};
    const mode_t mode = stat(file.c_str(), &old) == 0 ? old.st_mode & 07777 : 0666;
    const std::string beside = file.string() + ".new";
    const int made = open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode);
    if (made < 0) {
        return false;
    }
    const bool written = WriteAll(made, bytes);
    if (close(made) != 0 || !written || rename(beside.c_str(), file.c_str()) != 0) {
        unlink(beside.c_str());
        return false;
    }
    return true;
}

bool StoreChanged() {
    MachineLock lock;
    if (KeptFile().empty()) {
        return true;
    }
    try {
        nlohmann::json store = nlohmann::json::object();
        for (const StoreSection& section : Sections()) {
            store[section.name] = section.save();
        }
        if (ReplaceFile(KeptFile(), store.dump(1) + "\n")) {
            return true;
        }
    } catch (const std::exception&) {
    }
    SetLastError(ERROR_WRITE_FAULT);
    return false;
}

void ClearSections() {
    MachineLock lock;
    KeptFile().clear();
    for (const StoreSection& section : Sections()) {
        section.clear();
    }
}

void KeepSections(const std::filesystem::path& file) {
    MachineLock lock;
    if (std::filesystem::exists(file)) {
        try {
            std::ifstream in(file);
            const nlohmann::json store = nlohmann::json::parse(in);
            // A section that the file doesn't have was not there when it was written: it stays fresh.
            for (const StoreSection& section : Sections()) {
                if (store.contains(section.name)) {
                    section.load(store.at(section.name));
                }
            }
        } catch (const std::exception& error) {
            ClearSections();
            throw std::runtime_error(file.string() + ": not a machine's store: " + error.what());
        }
    }
    KeptFile() = file;
}

}  // namespace host
