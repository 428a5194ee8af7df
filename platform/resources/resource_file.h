// Compiled resources: the .res files that windres writes.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// A type or name: a number, or a text compared without regard to case.
struct ResourceKey {
    uint16_t id = 0;
    std::u16string text;  // empty: the id counts

    // From an argument of the published calls: an id in the pointer's low word, "#123", or a text.
    static ResourceKey FromArgument(LPCWSTR argument);
    bool operator==(const ResourceKey& other) const;
};

struct ResourceEntry {
    ResourceKey type;
    ResourceKey name;
    LANGID language = 0;
    std::vector<uint8_t> data;
};

class ResourceFile {
  public:
    ResourceFile() = default;
    explicit ResourceFile(std::vector<ResourceEntry> entries) : entries_(std::move(entries)) {}

    // In the file's order.
    const std::vector<ResourceEntry>& Entries() const { return entries_; }

    // The entry of the wanted language or, by the published order, of its primary language, of no language, of U.S.
    // English, or else the first. Null: no entry of that type and name; the last error says which is missing.
    const ResourceEntry* Find(const ResourceKey& type, const ResourceKey& name, LANGID language) const;

    // The entry whose address a resource handle is. Null (last error ERROR_INVALID_HANDLE) where it is none of these.
    const ResourceEntry* FromHandle(HRSRC handle) const;

  private:
    std::vector<ResourceEntry> entries_;
};

// Null where the bytes aren't a whole .res file.
std::shared_ptr<const ResourceFile> ParseResourceFile(std::string_view bytes);

}  // namespace host
