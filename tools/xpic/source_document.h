// A model source as a JSON document that knows where each of its values stands.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/xpic/diagnostic.h"

namespace velmora {

// Keeps the members of an object in the order of the source.
using Json = nlohmann::ordered_json;

struct SourceDocument {
    std::filesystem::path file;  // as named in messages; its folder is the base of the file names in the source
    Json root;
    // Where each value begins, by its path; for a member of an object, where its key begins.
    std::unordered_map<std::string, Position> positions;
};

// The paths of an object's member and of an array's element.
std::string MemberPath(const std::string& parent, std::string_view key);
std::string ElementPath(const std::string& parent, size_t index);
inline constexpr std::string_view kRootPath = "$";

// Parses JSON with // and /* */ comments. False, with what is wrong added to `diagnostics`, for text that is no JSON,
// names a key twice in one object or nests deeper than any source does.
bool ParseSource(std::string_view text, SourceDocument& document, std::vector<Diagnostic>& diagnostics);

}  // namespace velmora
