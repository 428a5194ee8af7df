// Model sources under their JSON Schema, as an editor sees them.
#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// By file name; the places are written as in the compiler's messages: "$.papers[2].widthMm". Files without faults are
// absent.
using PlacesByFile = std::map<std::string, std::set<std::string>>;

// Where the sources break a schema of the models folder ("model.schema.json"). Throws std::runtime_error when the
// validator can't run.
PlacesByFile SchemaFaults(std::string_view schema, const std::vector<std::filesystem::path>& sources);
// The same for texts, each under its position: "0", "1", ….
PlacesByFile SchemaFaultsOfTexts(std::string_view schema, const std::vector<std::string>& sources);

}  // namespace velmora
