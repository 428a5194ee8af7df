#include "tools/xpic/source_document.h"

#include <algorithm>

namespace velmora {
namespace {

constexpr size_t kDeepestNesting = 32;

bool IsPlainKey(std::string_view key) {
    return !key.empty() && std::all_of(key.begin(), key.end(), [](unsigned char c) {
        return c == '$' || c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    });
}

// Walks a text that is already known to be JSON (or to be JSON up to a byte) and counts lines and characters.
class PositionScanner {
  public:
    PositionScanner(std::string_view text, SourceDocument& document, std::vector<Diagnostic>& diagnostics)
        : text_(text), document_(document), diagnostics_(diagnostics) {}

    // Enters the place of every value into the document. False when a key stands twice or the nesting is too deep.
    bool Scan() {
        bool good = true;
        SkipBlanks();
        if (!Value(std::string(kRootPath), at_)) {
            return false;
        }
        while (!open_.empty()) {
            SkipBlanks();
            Level& level = open_.back();
            if (text_[next_] == '}' || text_[next_] == ']') {
                Advance();
                open_.pop_back();
                continue;
            }
            if (text_[next_] == ',') {
                Advance();
                continue;
            }
            const Position start = at_;
            std::string path;
            if (level.isObject) {
                path = MemberPath(level.path, Key());
                if (document_.places.count(path) != 0) {
                    diagnostics_.push_back({document_.files.back().string(), start, path, "the key a second time",
                                            "each key once in an object"});
                    good = false;
                }
            } else {
                path = ElementPath(level.path, level.count++);
            }
            if (!Value(path, start)) {
                return false;
            }
        }
        return good;
    }

    // The place of a byte offset.
    Position PlaceOf(size_t offset) {
        while (next_ < std::min(offset, text_.size())) {
            Advance();
        }
        return at_;
    }

  private:
    struct Level {
        std::string path;
        bool isObject;
        size_t count = 0;
    };

    void Advance() {
        const unsigned char c = static_cast<unsigned char>(text_[next_++]);
        if (c == '\n') {
            ++at_.line;
            at_.column = 1;
        } else if ((c & 0xC0) != 0x80) {
            ++at_.column;
        }
    }

    void SkipBlanks() {
        constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
        if (next_ == 0 && text_.starts_with(kByteOrderMark)) {
            next_ = kByteOrderMark.size();
        }
        while (next_ < text_.size()) {
            const std::string_view rest = text_.substr(next_);
            if (rest.starts_with("//")) {
                while (next_ < text_.size() && text_[next_] != '\n') {
                    Advance();
                }
            } else if (rest.starts_with("/*")) {
                PlaceOf(text_.find("*/", next_ + 2) + 2);
            } else if (rest[0] == ' ' || rest[0] == '\t' || rest[0] == '\r' || rest[0] == '\n') {
                Advance();
            } else {
                return;
            }
        }
    }

    // Steps over a string and returns it as written, quotes included.
    std::string_view String() {
        const size_t start = next_;
        do {
            if (text_[next_] == '\\') {
                Advance();
            }
            Advance();
        } while (text_[next_] != '"');
        Advance();
        return text_.substr(start, next_ - start);
    }

    std::string Key() {
        const std::string key = Json::parse(String()).get<std::string>();
        SkipBlanks();
        Advance();  // the colon
        SkipBlanks();
        return key;
    }

    bool Value(std::string path, Position start) {
        document_.places.emplace(path, SourcePlace{document_.files.size() - 1, start, path});
        const char first = text_[next_];
        if (first == '{' || first == '[') {
            if (open_.size() == kDeepestNesting) {
                diagnostics_.push_back({document_.files.back().string(), start, path, "another level of nesting",
                                        "at most " + std::to_string(kDeepestNesting) + " levels"});
                return false;
            }
            Advance();
            open_.push_back({std::move(path), first == '{'});
        } else if (first == '"') {
            String();
        } else {
            while (next_ < text_.size() &&
                   std::string_view(",]} \t\r\n/").find(text_[next_]) == std::string_view::npos) {
                Advance();
            }
        }
        return true;
    }

    std::string_view text_;
    SourceDocument& document_;
    std::vector<Diagnostic>& diagnostics_;
    size_t next_ = 0;
    Position at_{1, 1};
    std::vector<Level> open_;
};

// What stands behind `mark`, up to `end`; empty without the mark.
std::string Behind(std::string_view text, std::string_view mark, std::string_view end) {
    const size_t start = text.find(mark);
    return start == std::string_view::npos
               ? std::string()
               : std::string(text.substr(start + mark.size(), text.find(end, start) - start - mark.size()));
}

// The parser says "… parse error at line 3, column 5: syntax error while parsing object key - unexpected '}'; expected
// string literal", in terms of its grammar; `before` is the text in front of the place.
Diagnostic DescribeSyntaxFault(std::string_view what, std::string_view before) {
    const std::string part = Behind(what, "while parsing ", " - ");
    std::string found = Behind(what, "unexpected ", ";");
    std::string expected = Behind(what, "; expected ", "\n");
    if (found.empty() || expected.empty()) {
        const std::string reason = Behind(what, part + " - ", "; expected ");
        return {{},
                {},
                std::string(kRootPath),
                "no JSON: " + (reason.empty() ? std::string(what) : reason),
                "a JSON document"};
    }
    if (part == "object key") {
        expected = "a key in double quotes";
    } else if (part == "value") {
        expected = "a value";
    } else if (expected == "'}'" || expected == "']'") {
        expected = "a comma or " + expected;
    }
    constexpr std::string_view kWords[][2] = {
        {"string literal", "a text"}, {"number literal", "a number"}, {"end of input", "the end of the file"}};
    for (const auto& [grammar, plain] : kWords) {
        found = found == grammar ? plain : found;
    }
    const size_t last = before.find_last_not_of(" \t\r\n");
    if ((found == "'}'" || found == "']'") && last != std::string_view::npos && before[last] == ',') {
        found += " behind a comma";
        expected += ", or no comma";
    }
    return {{}, {}, std::string(kRootPath), found, expected};
}

}  // namespace

std::string MemberPath(const std::string& parent, std::string_view key) {
    if (IsPlainKey(key)) {
        return parent + "." + std::string(key);
    }
    return parent + "[" + Json(key).dump(-1, ' ', false, Json::error_handler_t::replace) + "]";
}

std::string ElementPath(const std::string& parent, size_t index) {
    return parent + "[" + std::to_string(index) + "]";
}

SourcePlace SourceDocument::Locate(const std::string& path) const {
    std::string nearest = path;
    while (!nearest.empty()) {
        if (const auto it = places.find(nearest); it != places.end()) {
            SourcePlace place = it->second;
            place.path += path.substr(nearest.size());
            return place;
        }
        const size_t cut = nearest.find_last_of(".[");
        nearest.resize(cut == std::string::npos ? 0 : cut);
    }
    return {0, {}, path};
}

bool ParseSource(std::string_view text, SourceDocument& document, std::vector<Diagnostic>& diagnostics) {
    const bool isBinary = text.substr(0, 256).find('\0') != std::string_view::npos;
    if (text.empty() || isBinary) {
        diagnostics.push_back(
            {document.files.back().string(),
             {1, 1},
             std::string(kRootPath),
             isBinary ? "bytes that are no text in UTF-8" : "an empty file",
             isBinary ? "a model source (\"xpic dump\" makes one of a description file)" : "a model source"});
        return false;
    }
    PositionScanner scanner(text, document, diagnostics);
    try {
        document.root = Json::parse(text, nullptr, true, true);
    } catch (const Json::parse_error& error) {
        const size_t offset = error.byte == 0 ? 0 : error.byte - 1;
        diagnostics.push_back(DescribeSyntaxFault(error.what(), text.substr(0, offset)));
        diagnostics.back().file = document.files.back().string();
        diagnostics.back().position = scanner.PlaceOf(offset);
        return false;
    }
    return scanner.Scan();
}

}  // namespace velmora
