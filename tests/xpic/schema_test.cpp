// The JSON Schema of model sources says the same as the compiler: keys, words and limits. Each is taken from the schema
// and tried on the compiler.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "tests/xpic/schema_faults.h"
#include "tools/xpic/load_model.h"
#include "tools/xpic/standard_papers.h"
#include "tools/xpic/vocabulary.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using Pointer = Json::json_pointer;
using Names = std::set<std::string, std::less<>>;

// A value of a source, with the schemas one of which it must meet.
struct Place {
    std::string path;
    Pointer pointer;
    std::vector<Json> alternatives;
};

// Long ones are keywords, of which no more than 79 bytes may stand behind the colon.
std::string TextOf(size_t size) {
    std::string text(size, 'x');
    if (size > 80) {
        text[size - 80] = ':';
    }
    return text;
}

class Schema : public testing::Test {
  protected:
    Schema()
        : schema_(Json::parse(std::ifstream(fs::path(VELMORA_MODELS_SOURCE_DIR) / "model.schema.json"))),
          sample_(Sample(schema_["$defs"]["source"], std::string(kRootPath), Pointer())) {}

    std::vector<Json> Alternatives(Json schema) const {
        while (schema.contains("$ref")) {
            const Json target = schema_.at(Pointer(schema["$ref"].get<std::string>().substr(1)));
            schema.erase("$ref");
            schema.insert(target.begin(), target.end());
        }
        if (!schema.contains("anyOf")) {
            return {schema};
        }
        std::vector<Json> alternatives;
        for (const Json& alternative : schema["anyOf"]) {
            const std::vector<Json> inner = Alternatives(alternative);
            alternatives.insert(alternatives.end(), inner.begin(), inner.end());
        }
        return alternatives;
    }

    static bool HasParts(const Json& schema) {
        return schema.contains("properties") || schema.contains("items") ||
               (schema.contains("additionalProperties") && schema["additionalProperties"].is_object());
    }

    // A value with all keys that there can be and one element in each list. Not every such source has a meaning, but
    // the compiler finds the faults of each value.
    Json Sample(const Json& schema, const std::string& path, const Pointer& pointer) {
        places_.push_back({path, pointer, Alternatives(schema)});
        const std::vector<Json> alternatives = places_.back().alternatives;
        const auto withParts = std::find_if(alternatives.begin(), alternatives.end(), HasParts);
        const Json& own = withParts != alternatives.end() ? *withParts : alternatives.front();
        if (own.contains("items")) {
            const Json element = Sample(own["items"], ElementPath(path, 0), pointer / 0);
            return Json(own.value("minItems", size_t{1}), element);
        }
        if (HasParts(own)) {
            return SampleObject(own, path, pointer);
        }
        for (const char* key : {"examples", "enum"}) {
            if (own.contains(key)) {
                return own[key][0];
            }
        }
        if (own.contains("const")) {
            return own["const"];
        }
        if (own.contains("minimum")) {
            return own["minimum"];
        }
        return own.value("type", "") == "boolean" ? Json(true) : Json(own.contains("pattern") ? "" : "x");
    }

    Json SampleObject(const Json& schema, const std::string& path, const Pointer& pointer) {
        static const Names kTakenBeforeReading = {"$schema", "include", "omit"};
        Json object = Json::object();
        Json members = schema.value("properties", Json::object());
        for (const std::string& key : kTakenBeforeReading) {
            members.erase(key);
        }
        if (schema.contains("additionalProperties") && schema["additionalProperties"].is_object()) {
            const Names names = KeyNames(schema);
            members[names.empty() ? "x" : *names.begin()] = schema["additionalProperties"];
        }
        for (const auto& [key, member] : members.items()) {
            object[key] = Sample(member, MemberPath(path, key), pointer / key);
        }
        return object;
    }

    // The keys that an object may have beside its properties.
    Names KeyNames(const Json& schema) const {
        Names names;
        if (schema.contains("propertyNames")) {
            for (const auto& name : Alternatives(schema["propertyNames"]).front().value("enum", Json::array())) {
                names.insert(name.get<std::string>());
            }
            std::erase_if(names, [&](const std::string& name) {
                return schema.contains("properties") && schema["properties"].contains(name);
            });
        }
        return names;
    }

    // The sources in which a value is tried: with what it stands in and nothing else, and with everything, each as a
    // model of both kinds. A key may exclude others, or need them.
    std::vector<Json> Hosts(const Pointer& pointer) const {
        std::vector<Json> hosts;
        for (const Json& host : {Alone(pointer), sample_}) {
            for (const char* pdl : {"pcl6", "image"}) {
                hosts.push_back(host);
                hosts.back()["pdl"] = pdl;
                hosts.back()["languages"] = sample_["languages"];
            }
        }
        return hosts;
    }

    Json Alone(Pointer pointer) const {
        Json value = sample_.at(pointer);
        for (; !pointer.empty(); pointer.pop_back()) {
            const Json& around = sample_.at(pointer.parent_pointer());
            Json host = around.is_array() ? around : Json::object();
            host[Pointer() / pointer.back()] = std::move(value);
            value = std::move(host);
        }
        return value;
    }

    // What the compiler says about the place when the value stands there; null: nothing.
    const Diagnostic* FaultAt(Json host, const Place& place, const Json& value) {
        host[place.pointer] = value;
        diagnostics_.clear();
        SourceDocument document;
        LoadModelSource(host.dump(), "model.json", document, diagnostics_, &knownKeys_);
        const auto fault = std::find_if(diagnostics_.begin(), diagnostics_.end(),
                                        [&](const Diagnostic& diagnostic) { return diagnostic.path == place.path; });
        return fault == diagnostics_.end() ? nullptr : &*fault;
    }

    Json schema_;
    std::vector<Place> places_;
    Json sample_;
    std::vector<Diagnostic> diagnostics_;
    KnownKeys knownKeys_;
};

// What the schema just allows and what it just doesn't.
struct Probes {
    std::vector<Json> allowed;
    std::vector<Json> forbidden;
    Names words;  // empty where they are no closed list
};

bool IsAllowed(const std::vector<Json>& alternatives, const Json& number) {
    return std::any_of(alternatives.begin(), alternatives.end(), [&](const Json& schema) {
        return schema.contains("minimum") && number >= schema["minimum"] && number <= schema.value("maximum", number);
    });
}

Probes ProbesOf(const Place& place, const Json& sample) {
    static const std::pair<std::string, Json> kValues[] = {{"null", nullptr},        {"boolean", true},
                                                           {"number", 0.55},         {"string", "zzzzzzzz"},
                                                           {"array", Json::array()}, {"object", Json::object()}};
    Probes probes;
    Names types;
    std::vector<Json> beyond;
    bool anyText = false;
    for (const Json& schema : place.alternatives) {
        const Json type = schema.value("type", Json::array());
        for (const Json& name : type.is_array() ? type : Json::array({type})) {
            types.insert(name.get<std::string>());
        }
        anyText |= type == "string" && !schema.contains("examples");
        if (schema.contains("const")) {
            probes.allowed.push_back(schema["const"]);
        }
        for (const char* key : {"enum", "examples"}) {
            for (const Json& word : schema.value(key, Json::array())) {
                probes.allowed.push_back(word);
                if (word.is_string()) {
                    probes.words.insert(word.get<std::string>());
                }
            }
        }
        for (const auto& [key, direction] : {std::pair("minimum", -1), std::pair("maximum", 1)}) {
            if (schema.contains(key)) {
                probes.allowed.push_back(schema[key]);
                beyond.push_back(type == "integer" ? Json(schema[key].get<int64_t>() + direction)
                                                   : Json(schema[key].get<double>() + direction * 0.1));
            }
        }
        if (schema.contains("maxLength")) {
            probes.allowed.emplace_back(TextOf(schema["maxLength"].get<size_t>()));
            probes.forbidden.emplace_back(TextOf(schema["maxLength"].get<size_t>() + 1));
        }
        if (schema.contains("minLength")) {
            probes.forbidden.emplace_back("");
        }
        if (schema.contains("maxItems")) {
            probes.allowed.emplace_back(Json(schema["maxItems"].get<size_t>(), sample[0]));
            probes.forbidden.emplace_back(Json(schema["maxItems"].get<size_t>() + 1, sample[0]));
        }
        if (schema.contains("minItems")) {
            probes.forbidden.emplace_back(Json(schema["minItems"].get<size_t>() - 1, sample[0]));
        }
    }
    if (anyText) {
        probes.words.clear();
    }
    std::copy_if(beyond.begin(), beyond.end(), std::back_inserter(probes.forbidden),
                 [&](const Json& number) { return !IsAllowed(place.alternatives, number); });
    for (const auto& [type, value] : kValues) {
        if (!types.contains(type)) {
            probes.forbidden.push_back(value);
        }
    }
    return probes;
}

Names LanguageCodes() {
    Names codes;
    for (const Language& language : kLanguages) {
        codes.emplace(language.code);
    }
    return codes;
}

// The words that the compiler would have taken at the place of a fault.
Names WordsOf(const Diagnostic& fault) {
    Names words;
    if (fault.expected.find("standard paper") != std::string::npos) {
        for (const StandardPaper& paper : kStandardPapers) {
            words.emplace(paper.name);
        }
    } else if (fault.expected.find("language code") != std::string::npos) {
        words = LanguageCodes();
    } else if (fault.expected.starts_with("a word: ")) {
        std::istringstream expected(fault.expected);
        std::string text;
        for (bool quoted = false; std::getline(expected, text, '"'); quoted = !quoted) {
            if (quoted) {
                words.insert(text);
            }
        }
    }
    return words;
}

TEST_F(Schema, SaysWhatTheCompilerSays) {
    for (const Place& place : places_) {
        const Probes probes = ProbesOf(place, sample_.at(place.pointer));
        std::vector<Json> hosts = Hosts(place.pointer);
        if (!probes.allowed.empty()) {
            const auto host = std::find_if(hosts.begin(), hosts.end(), [&](const Json& candidate) {
                return FaultAt(candidate, place, probes.allowed.front()) == nullptr;
            });
            ASSERT_NE(host, hosts.end()) << place.path << " can't be " << probes.allowed.front();
            hosts = {*host};
        }
        for (const Json& value : probes.allowed) {
            const Diagnostic* fault = FaultAt(hosts.front(), place, value);
            EXPECT_EQ(fault, nullptr) << FormatDiagnostic(*fault);
        }
        for (const Json& value : probes.forbidden) {
            EXPECT_TRUE(std::any_of(hosts.begin(), hosts.end(),
                                    [&](const Json& host) {
                                        const Diagnostic* fault = FaultAt(host, place, value);
                                        return fault != nullptr && fault->found != "an unknown key";
                                    }))
                << place.path << " can be " << value;
        }
        if (!probes.words.empty()) {
            const Diagnostic* fault = FaultAt(hosts.front(), place, "zzzzzzzz");
            ASSERT_NE(fault, nullptr) << place.path;
            EXPECT_EQ(probes.words, WordsOf(*fault)) << place.path << ": " << fault->expected;
        }
    }
    for (const Place& place : places_) {
        for (const Json& schema : place.alternatives) {
            const Names names = KeyNames(schema);
            EXPECT_TRUE(names.empty() || names == LanguageCodes()) << place.path;
            if (!schema.contains("properties")) {
                continue;
            }
            Names keys;
            for (const auto& [key, member] : schema["properties"].items()) {
                keys.insert(key);
            }
            keys.erase("omit");
            Names known = knownKeys_[place.path];
            std::erase_if(known, [&](const std::string& key) { return names.contains(key); });
            EXPECT_EQ(known, keys) << place.path;
        }
    }
}

TEST_F(Schema, TakesTheProjectsSources) {
    std::vector<fs::path> models;
    std::vector<fs::path> families;
    for (const auto& entry : fs::recursive_directory_iterator(VELMORA_MODELS_SOURCE_DIR)) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with(".json") && !name.ends_with("schema.json")) {
            (entry.path().parent_path() == VELMORA_MODELS_SOURCE_DIR ? models : families).push_back(entry.path());
        }
    }
    EXPECT_EQ(SchemaFaults("model.schema.json", models), PlacesByFile());
    EXPECT_EQ(SchemaFaults("family.schema.json", families), PlacesByFile());
    const std::vector<std::string> texts = {
        R"({"include": "a.json", "trays": [{"name": "a"}, {"name": "b", "omit": true}], "papers": ["Card"],
            "customSizes": {"maxWidthMm": 300}, "margins": [{"allMm": 4}, null], "patterns": {"p": {"size": 8}}})",
        R"({"trays": [{"name": "a"}]})",
    };
    EXPECT_EQ(SchemaFaultsOfTexts("model.schema.json", texts), (PlacesByFile{{"1", {"$.pdl", "$.trays[0].bin"}}}))
        << "only what includes others may be incomplete";
}

}  // namespace
}  // namespace velmora
