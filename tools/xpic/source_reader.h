// Typed reading of a source's values. Whatever is wrong becomes a diagnostic at its place and reading goes on with a
// harmless value, so that one run finds all faults.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/xpic/model_limits.h"
#include "tools/xpic/model_source.h"
#include "tools/xpic/source_document.h"
#include "tools/xpic/text_encoding.h"

namespace velmora {

// A value and its place.
struct SourceValue {
    const Json* json = nullptr;
    std::string path;
};

// What all readers of one source share.
struct SourceContext {
    const SourceDocument& document;
    std::vector<Diagnostic>& diagnostics;
    std::vector<const Language*> languages;
    std::map<std::string, SourceValue, std::less<>> texts;  // the root's "texts": objects of texts by language code
    std::set<std::string, std::less<>> usedTexts;           // keys of texts
    std::vector<MissingText> missingTexts;
    std::vector<std::filesystem::path> dataFiles;  // named in the source
    TextEncoder encoder;
    KnownKeys* knownKeys = nullptr;  // null: nobody wants to know

    void Report(const std::string& path, std::string found, std::string expected);
    // "first on line 12" for an earlier value, seen from one that repeats it.
    std::string Where(const std::string& earlier, const std::string& path) const;
};

struct Range {
    int64_t min;
    int64_t max;
};

// As a message shows them: "12.34", "\"Leter\"", "an object".
std::string Describe(const Json& json);
std::string Quote(std::string_view text);
// "\"Letter\"" for a near name; else all of them, or no more than the noun when they are many.
std::string ExpectOneOf(std::string_view noun, std::string_view name, const std::vector<std::string_view>& known);

std::string ExpectInteger(Range range);
// `given` is what stands there, empty when it is no word.
std::string ExpectWord(Words words, std::optional<Range> numbers, std::string_view given);

// The names of a table's records.
class NameIndex {
  public:
    // `noun` stands in messages: "a tray".
    explicit NameIndex(std::string_view noun) : noun_(noun) {}

    // Names must not be empty or given twice. Records are numbered in the order of the calls, faulty ones too.
    void Add(SourceContext& context, const std::string& path, const std::string& name);
    // Reports an unknown name.
    std::optional<size_t> Resolve(SourceContext& context, const SourceValue& value) const;
    size_t Count() const { return count_; }

  private:
    std::string noun_;
    struct Entry {
        size_t position;
        std::string path;
    };
    std::map<std::string, Entry, std::less<>> byName_;
    size_t count_ = 0;
};

// The element readers behind ObjectReader's member readers; a fault gives nothing.
std::optional<int64_t> ReadInteger(SourceContext& context, const SourceValue& value, Range range);
// Millimetres in the source, 0.1 mm in `range` and in the result.
std::optional<int64_t> ReadMillimetres(SourceContext& context, const SourceValue& value, Range range);
// A word, or a number where `numbers` allows it.
std::optional<int64_t> ReadWord(SourceContext& context, const SourceValue& value, Words words,
                                std::optional<Range> numbers);
std::optional<std::string> ReadString(SourceContext& context, const SourceValue& value);
// In kFixedTextEncoding.
std::optional<std::string> ReadFixedText(SourceContext& context, const SourceValue& value, size_t maxBytes);
std::optional<LocalizedText> ReadLocalizedText(SourceContext& context, const SourceValue& value, size_t maxBytes);
// A text (its bytes in kFixedTextEncoding) or an object with one of "file", "hex", "base64".
std::optional<Bytes> ReadBytes(SourceContext& context, const SourceValue& value);
std::vector<SourceValue> ReadElements(SourceContext& context, const SourceValue& value);
std::vector<std::pair<std::string, SourceValue>> ReadMembers(SourceContext& context, const SourceValue& value);

// Reads the members of an object, each by its key; without a fallback the member must be there. Keys that nobody asked
// for are reported at the end of the reader's life.
class ObjectReader {
  public:
    // Reports a value that is no object; it is read as an empty one, of which nothing more is reported.
    ObjectReader(SourceContext& context, SourceValue value);
    ~ObjectReader();
    ObjectReader(const ObjectReader&) = delete;
    ObjectReader& operator=(const ObjectReader&) = delete;

    bool Has(std::string_view key);
    std::optional<SourceValue> Find(std::string_view key);
    // Reports an absent member.
    std::optional<SourceValue> Require(std::string_view key, std::string_view expected);
    const std::string& Path() const { return value_.path; }
    std::string PathOf(std::string_view key) const { return MemberPath(value_.path, key); }

    int64_t Integer(std::string_view key, Range range, std::optional<int64_t> fallback);
    int64_t Millimetres(std::string_view key, Range range, std::optional<int64_t> fallback);
    int64_t Choice(std::string_view key, Words words, std::optional<Range> numbers, std::optional<int64_t> fallback);
    bool Flag(std::string_view key, bool fallback);
    std::string FixedText(std::string_view key, size_t maxBytes, std::string_view fallback = {});
    // A Print Schema keyword, "prefix:keyword".
    std::string Keyword(std::string_view key, std::string_view fallback = {});
    LocalizedText Localized(std::string_view key, size_t maxBytes);
    // The record's name (required, UTF-8) and its display text, which is the name where no "label" is given.
    std::string Name();
    LocalizedText Label(const std::string& name, size_t maxBytes, std::string_view fallback = {});
    // The same, but for a label of null there is no text.
    LocalizedText LabelOrNone(const std::string& name, size_t maxBytes);
    TicketValues Ticket();
    // Empty for an absent member.
    std::vector<SourceValue> Elements(std::string_view key);
    std::vector<std::pair<std::string, SourceValue>> Members(std::string_view key);
    // The sum (as bits) of an array of words, or of numbers where `numbers` allows them.
    uint32_t WordBits(std::string_view key, Words words, uint32_t fallback, std::optional<Range> numbers = {});
    // Positions of the named records, in the order given, none twice.
    std::vector<size_t> References(std::string_view key, const NameIndex& names);
    // The position of the named record.
    size_t Reference(std::string_view key, const NameIndex& names, size_t fallback);

  private:
    SourceContext& context_;
    SourceValue value_;
    bool isObject_;
    std::vector<std::string_view> known_;
};

}  // namespace velmora
