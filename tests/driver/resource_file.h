// Compiled resource files (.res) made in memory, to be put on a machine's drive under a library's name.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace driver_test {

// The strings of a resource module by their ids.
std::string StringModule(const std::map<unsigned, WideText>& strings);

// A version resource: its translations, and a text "FileVersion" for each of some tables, which need not be the same.
struct Translation {
    uint16_t language;
    uint16_t codePage;
};
struct VersionTable {
    WideText key;  // "040904E4": language and code page
    WideText fileVersion;
};
std::string VersionedFile(const std::vector<Translation>& translations, const std::vector<VersionTable>& tables);

// One translation, 1033 and 1252, with this text.
std::string VersionedFile(WideView fileVersion);

}  // namespace driver_test
