// What a machine keeps beyond its drive: each folder of the layer keeps its own section (printers, registry, settings,
// …) as JSON. A machine that is kept in a folder writes it whole and atomically after every change, so that a command
// that is killed loses nothing that an earlier call stored.
#pragma once

#include <filesystem>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace host {

// A section of the machine's store. Registered once, at static initialisation or before the first machine.
struct StoreSection {
    std::string name;
    std::function<void()> clear;           // back to a fresh machine's state
    std::function<nlohmann::json()> save;  // the section's whole state
    std::function<void(const nlohmann::json& saved)>
        load;  // throws std::exception where the JSON isn't what save writes
};

void RegisterSection(StoreSection section);

// To be called after a published call changed a section's state. Does nothing on a machine that isn't kept. Throws
// nothing; false (last error ERROR_WRITE_FAULT) where the store could not be written.
bool StoreChanged();

// For the machine. Every section goes back to a fresh machine's state and nothing is kept from here on.
void ClearSections();
// Loads the sections from `file` where there is one and keeps them there from here on. Throws std::runtime_error,
// naming the file, where it can't be read; nothing is kept then.
void KeepSections(const std::filesystem::path& file);

// The file with these bytes, or as it was: written beside it and renamed over it. False where that failed.
bool ReplaceFile(const std::filesystem::path& file, std::string_view bytes);

}  // namespace host
