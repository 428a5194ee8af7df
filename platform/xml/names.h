// Names of elements, attributes and processing instructions, each kept once for a document.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace host {

inline constexpr std::u16string_view kXmlUri = u"http://www.w3.org/XML/1998/namespace";
inline constexpr std::u16string_view kXmlnsUri = u"http://www.w3.org/2000/xmlns/";

// As ==, which compares texts of 16-bit characters one by one.
inline bool SameText(std::u16string_view a, std::u16string_view b) {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0);
}

struct Name {
    std::u16string written;     // with prefix
    size_t prefixChars;         // 0: no prefix
    const std::u16string* uri;  // empty: no namespace. Equal texts have equal addresses within a table

    std::u16string_view Prefix() const { return std::u16string_view(written).substr(0, prefixChars); }
    std::u16string_view Base() const {
        return std::u16string_view(written).substr(prefixChars == 0 ? 0 : prefixChars + 1);
    }
};

// Whether it is a name with one colon at most, within it, and no character that names don't have.
bool IsQualifiedName(std::u16string_view written);
// The part before the colon; empty without one.
std::u16string_view PrefixOf(std::u16string_view written);
// "xmlns" or "xmlns:…".
bool IsDeclarationName(std::u16string_view written);

class NameTable {
  public:
    NameTable();
    NameTable(const NameTable&) = delete;
    NameTable& operator=(const NameTable&) = delete;

    // Valid as long as the table.
    const Name* Intern(std::u16string_view written, std::u16string_view uri);
    // The name where it is in the table; else null.
    const Name* Find(std::u16string_view written, std::u16string_view uri) const;
    // The namespace of declarations.
    const std::u16string* XmlnsUri() const { return xmlnsUri_; }

  private:
    struct Key {
        std::u16string_view written;
        std::u16string_view uri;
        bool operator==(const Key& other) const { return SameText(written, other.written) && SameText(uri, other.uri); }
    };
    struct KeyHash {
        size_t operator()(const Key& key) const;
    };

    std::unordered_set<std::u16string> uris_;
    std::unordered_map<Key, std::unique_ptr<Name>, KeyHash> names_;
    const std::u16string* xmlnsUri_;
};

}  // namespace host
