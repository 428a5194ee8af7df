// A model source as a JSON document that knows where each of its values stands, with what it includes from other files.
#pragma once

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/xpic/diagnostic.h"

namespace velmora {

// Keeps the members of an object in the order of the source.
using Json = nlohmann::ordered_json;

// Where a value stands: a member of an object at its key.
struct SourcePlace {
    size_t file = 0;  // SourceDocument.files
    Position position;
    std::string path;  // in that file, which differs from the document's where files were joined
};

// The keys that its reader knows of each object, by the object's path.
using KnownKeys = std::map<std::string, std::set<std::string, std::less<>>, std::less<>>;

struct SourceDocument {
    // As named in messages, the source itself first. A file's folder is the base of the file names in it.
    std::vector<std::filesystem::path> files;
    Json root;
    std::unordered_map<std::string, SourcePlace> places;  // by path

    // A missing value stands where the nearest one around it does.
    SourcePlace Locate(const std::string& path) const;
    std::string FileName(const SourcePlace& place) const { return files[place.file].string(); }
};

// The paths of an object's member and of an array's element.
std::string MemberPath(const std::string& parent, std::string_view key);
std::string ElementPath(const std::string& parent, size_t index);
inline constexpr std::string_view kRootPath = "$";

// Parses the text of the document's last file: JSON with // and /* */ comments. False, with what is wrong added to
// `diagnostics`, for text that is no JSON, names a key twice in one object or nests deeper than any source does.
bool ParseSource(std::string_view text, SourceDocument& document, std::vector<Diagnostic>& diagnostics);

}  // namespace velmora
