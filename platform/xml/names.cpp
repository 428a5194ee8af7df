#include "platform/xml/names.h"

#include <algorithm>
#include <iterator>

namespace host {
namespace {

struct CharacterRange {
    char32_t first;
    char32_t last;
    bool canStart;  // may be a name's first character
};

// Characters of names as XML 1.0 has them, without the colon; sorted.
constexpr CharacterRange kNameCharacters[] = {
    {'-', '.', false},      {'0', '9', false},       {'A', 'Z', true},       {'_', '_', true},
    {'a', 'z', true},       {0xB7, 0xB7, false},     {0xC0, 0xD6, true},     {0xD8, 0xF6, true},
    {0xF8, 0x2FF, true},    {0x300, 0x36F, false},   {0x370, 0x37D, true},   {0x37F, 0x1FFF, true},
    {0x200C, 0x200D, true}, {0x203F, 0x2040, false}, {0x2070, 0x218F, true}, {0x2C00, 0x2FEF, true},
    {0x3001, 0xD7FF, true}, {0xF900, 0xFDCF, true},  {0xFDF0, 0xFFFD, true}, {0x10000, 0xEFFFF, true},
};

bool IsNameCharacter(char32_t c, bool atStart) {
    const auto* range = std::lower_bound(std::begin(kNameCharacters), std::end(kNameCharacters), c,
                                         [](const CharacterRange& r, char32_t value) { return r.last < value; });
    return range != std::end(kNameCharacters) && c >= range->first && (range->canStart || !atStart);
}

// A name without colon.
bool IsSimpleName(std::u16string_view name) {
    for (size_t i = 0; i < name.size(); ++i) {
        const bool atStart = i == 0;
        char32_t c = name[i];
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < name.size() && (name[i + 1] & 0xFC00) == 0xDC00) {
            ++i;
            c = 0x10000 + ((c & 0x3FF) << 10) + (name[i] & 0x3FF);
        }
        if (!IsNameCharacter(c, atStart)) {
            return false;
        }
    }
    return !name.empty();
}

}  // namespace

bool IsQualifiedName(std::u16string_view written) {
    const size_t colon = written.find(u':');
    return colon == std::u16string_view::npos
               ? IsSimpleName(written)
               : IsSimpleName(written.substr(0, colon)) && IsSimpleName(written.substr(colon + 1));
}

std::u16string_view PrefixOf(std::u16string_view written) {
    const size_t colon = written.find(u':');
    return colon == std::u16string_view::npos ? std::u16string_view() : written.substr(0, colon);
}

bool IsDeclarationName(std::u16string_view written) {
    return written.starts_with(u"xmlns") && (written.size() == 5 || written[5] == u':');
}

size_t NameTable::KeyHash::operator()(const Key& key) const {
    // Namespaces are long, and few names are in several.
    return std::hash<std::u16string_view>()(key.written) * 31 + key.uri.size();
}

NameTable::NameTable() : xmlnsUri_(&*uris_.emplace(kXmlnsUri).first) {}

const Name* NameTable::Intern(std::u16string_view written, std::u16string_view uri) {
    if (const Name* known = Find(written, uri)) {
        return known;
    }
    auto made =
        std::make_unique<Name>(Name{std::u16string(written), PrefixOf(written).size(), &*uris_.emplace(uri).first});
    const Key key{made->written, *made->uri};
    return names_.emplace(key, std::move(made)).first->second.get();
}

const Name* NameTable::Find(std::u16string_view written, std::u16string_view uri) const {
    const auto found = names_.find(Key{written, uri});
    return found == names_.end() ? nullptr : found->second.get();
}

}  // namespace host
