#include "tools/xpic/include_sources.h"

#include <algorithm>
#include <optional>
#include <string>

#include "tools/xpic/file_content.h"
#include "tools/xpic/source_reader.h"

namespace velmora {
namespace {

// A value of one of the two files that are joined. Null: the file doesn't say it.
struct Side {
    const SourceDocument* document;
    const Json* value;
    std::string path;

    Side Member(const std::string& key) const {
        const auto member = value->find(key);
        return {document, member == value->end() ? nullptr : &*member, MemberPath(path, key)};
    }
    Side Element(size_t index) const { return {document, &(*value)[index], ElementPath(path, index)}; }
};

// Joins the document of an including file and that of an included one, which lists the same files.
class Joiner {
  public:
    Joiner(const SourceDocument& own, const SourceDocument& included, std::vector<Diagnostic>& diagnostics)
        : own_(own), included_(included), diagnostics_(diagnostics) {
        joined_.files = own.files;
    }

    SourceDocument Join() {
        joined_.root = Values({&own_, &own_.root, std::string(kRootPath)},
                              {&included_, &included_.root, std::string(kRootPath)}, std::string(kRootPath));
        return std::move(joined_);
    }

  private:
    void Place(const Side& side, const std::string& path) {
        joined_.places[path] = side.document->places.at(side.path);
    }

    Json Copy(const Side& side, const std::string& path) {
        Place(side, path);
        if (side.value->is_object()) {
            for (const auto& [key, member] : side.value->items()) {
                Copy(side.Member(key), MemberPath(path, key));
            }
        } else if (side.value->is_array()) {
            for (size_t i = 0; i < side.value->size(); ++i) {
                Copy(side.Element(i), ElementPath(path, i));
            }
        }
        return *side.value;
    }

    Json Values(const Side& own, const Side& included, const std::string& path) {
        const bool areRules = path == "$.margins" || path == "$.constraints";
        if (areRules && own.value != nullptr && own.value->is_array() &&
            (included.value == nullptr || included.value->is_array())) {
            return Rules(own, included, path);
        }
        if (own.value == nullptr || included.value == nullptr) {
            return Copy(own.value != nullptr ? own : included, path);
        }
        if (own.value->is_object() && included.value->is_object()) {
            return Objects(own, included, path);
        }
        if (own.value->is_array() && included.value->is_array()) {
            if (AreRecords(own, path) || AreRecords(included, path)) {
                return Records(own, included, path);
            }
        }
        return Copy(own, path);
    }

    Json Objects(const Side& own, const Side& included, const std::string& path) {
        Place(own, path);
        Json joined = Json::object();
        for (const Side* side : {&included, &own}) {
            for (const auto& [key, member] : side->value->items()) {
                if (!joined.contains(key) && !IsOfOneFile(path, key, *side)) {
                    joined[key] = Values(own.Member(key), included.Member(key), MemberPath(path, key));
                }
            }
        }
        return joined;
    }

    // What a file says about itself isn't taken over.
    bool IsOfOneFile(const std::string& path, const std::string& key, const Side& side) const {
        return path == kRootPath && (key == "include" || key == "$schema") && side.document == &included_;
    }

    static std::optional<std::string> NameOf(const Json& element, const std::string& listPath) {
        if (element.is_string() && listPath == "$.papers") {
            return element.get<std::string>();
        }
        if (element.is_object() && element.contains("name") && element["name"].is_string()) {
            return element["name"].get<std::string>();
        }
        return std::nullopt;
    }

    static bool AreRecords(const Side& side, const std::string& path) {
        return std::any_of(side.value->begin(), side.value->end(),
                           [&](const Json& element) { return NameOf(element, path).has_value(); });
    }

    static bool IsOmission(const Json& element) {
        return element.is_object() && element.contains("omit") && element["omit"] == true;
    }

    Json Records(const Side& own, const Side& included, const std::string& path) {
        Place(own, path);
        Json joined = Json::array();
        std::vector<bool> used(own.value->size());
        for (size_t i = 0; i < included.value->size(); ++i) {
            const Side record = included.Element(i);
            const std::optional<std::string> name = NameOf(*record.value, path);
            size_t over = 0;
            while (over < used.size() && !(name && NameOf((*own.value)[over], path) == name)) {
                ++over;
            }
            if (over == used.size()) {
                joined.push_back(Copy(record, ElementPath(path, joined.size())));
                continue;
            }
            used[over] = true;
            const Side change = own.Element(over);
            if (IsOmission(*change.value)) {
                continue;
            }
            const std::string place = ElementPath(path, joined.size());
            if (change.value->is_string() || record.value->is_string()) {
                // A plain text says no more than the name.
                joined.push_back(Copy(change.value->is_string() ? record : change, place));
            } else {
                joined.push_back(Objects(change, record, place));
            }
        }
        for (size_t i = 0; i < used.size(); ++i) {
            const Side record = own.Element(i);
            if (used[i]) {
                continue;
            }
            if (IsOmission(*record.value)) {
                const SourcePlace place = own_.Locate(record.path);
                diagnostics_.push_back(
                    {own_.FileName(place), place.position, place.path,
                     "nothing to leave out by the name " + Quote(NameOf(*record.value, path).value_or("")),
                     "the name of an included record"});
                continue;
            }
            joined.push_back(Copy(record, ElementPath(path, joined.size())));
        }
        return joined;
    }

    Json Rules(const Side& own, const Side& included, const std::string& path) {
        Place(own, path);
        Json joined = Json::array();
        for (const Side* side : {&own, &included}) {
            for (size_t i = 0; side->value != nullptr && i < side->value->size(); ++i) {
                if (side == &own && (*side->value)[i].is_null()) {
                    return joined;
                }
                joined.push_back(Copy(side->Element(i), ElementPath(path, joined.size())));
            }
        }
        return joined;
    }

    const SourceDocument& own_;
    const SourceDocument& included_;
    std::vector<Diagnostic>& diagnostics_;
    SourceDocument joined_;
};

class SourceFiles {
  public:
    explicit SourceFiles(std::vector<Diagnostic>& diagnostics) : diagnostics_(diagnostics) {}

    // `document` lists the files read before it and gets those that this one includes.
    bool Read(std::string_view text, const std::filesystem::path& file, SourceDocument& document) {
        document.files.push_back(file);
        open_.push_back(Canonical(file));
        const bool good = ParseSource(text, document, diagnostics_) && Include(file, document);
        open_.pop_back();
        return good;
    }

  private:
    static std::filesystem::path Canonical(const std::filesystem::path& file) {
        std::error_code error;
        const std::filesystem::path canonical = std::filesystem::weakly_canonical(file, error);
        return error ? file : canonical;
    }

    void Report(const SourceDocument& document, const std::string& path, std::string found, std::string expected) {
        const SourcePlace place = document.Locate(path);
        diagnostics_.push_back(
            {document.FileName(place), place.position, place.path, std::move(found), std::move(expected)});
    }

    // Several included files are joined one on top of the other, in their order; the including one goes on top of all.
    bool Include(const std::filesystem::path& file, SourceDocument& document) {
        if (!document.root.is_object() || !document.root.contains("include")) {
            return true;
        }
        const Json include = document.root["include"];
        const std::string path = MemberPath(std::string(kRootPath), "include");
        if (!include.is_string() && !include.is_array()) {
            Report(document, path, Describe(include), "the name of a file, or an array of names");
            return false;
        }
        bool good = true;
        std::optional<SourceDocument> below;
        for (size_t i = 0; i < (include.is_array() ? include.size() : 1); ++i) {
            const Json& name = include.is_array() ? include[i] : include;
            SourceDocument next;
            next.files = below ? below->files : document.files;
            if (!Read(document, include.is_array() ? ElementPath(path, i) : path, name, file, next)) {
                good = false;
            } else if (below) {
                below->files = next.files;
                below = Joiner(next, *below, diagnostics_).Join();
            } else {
                below = std::move(next);
            }
        }
        if (good && below) {
            document.files = below->files;
            const size_t before = diagnostics_.size();
            document = Joiner(document, *below, diagnostics_).Join();
            good = diagnostics_.size() == before;
        }
        return good;
    }

    bool Read(const SourceDocument& from, const std::string& path, const Json& name, const std::filesystem::path& file,
              SourceDocument& included) {
        if (!name.is_string()) {
            Report(from, path, Describe(name), "the name of a file");
            return false;
        }
        const std::filesystem::path next = (file.parent_path() / name.get<std::string>()).lexically_normal();
        if (std::find(open_.begin(), open_.end(), Canonical(next)) != open_.end()) {
            Report(from, path, Quote(name.get<std::string>()) + ", which includes this file in turn",
                   "files that don't include each other in a circle");
            return false;
        }
        const std::optional<std::string> text = ReadFileContent(next);
        if (!text) {
            Report(from, path, Quote(name.get<std::string>()), "a readable file, named from the source's folder");
            return false;
        }
        const size_t before = diagnostics_.size();
        if (!Read(*text, next, included)) {
            return false;
        }
        if (!included.root.is_object()) {
            const SourcePlace place = included.Locate(std::string(kRootPath));
            diagnostics_.push_back(
                {included.FileName(place), place.position, place.path, Describe(included.root), "an object"});
        }
        return diagnostics_.size() == before;
    }

    std::vector<Diagnostic>& diagnostics_;
    std::vector<std::filesystem::path> open_;  // from the source to the file that is being read
};

}  // namespace

bool ReadSource(std::string_view text, const std::filesystem::path& file, SourceDocument& document,
                std::vector<Diagnostic>& diagnostics) {
    document = {};
    return SourceFiles(diagnostics).Read(text, file, document);
}

}  // namespace velmora
