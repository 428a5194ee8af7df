#include "tools/xpic/source_texts.h"

#include <algorithm>

namespace velmora {

SourceTexts::SourceTexts(const ModelSource& model) : model_(model) {
    std::map<std::string, std::map<ByLanguage, size_t>> uses;  // by the text in the first language
    ForEachText(model, [&](const LocalizedText& text) {
        if (!text.byLanguage.empty()) {
            const ByLanguage decoded = Decoded(text);
            ++uses[decoded.front()][decoded];
        }
    });
    for (const auto& [first, meanings] : uses) {
        const auto& [meaning, count] = *std::max_element(
            meanings.begin(), meanings.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
        const bool same =
            std::all_of(meaning.begin(), meaning.end(), [&first = first](const auto& text) { return text == first; });
        if (count > 1 && !same) {
            table_.emplace(first, meaning);
        }
    }
}

Json SourceTexts::Localized(const LocalizedText& text) {
    if (text.resourceId != 0) {
        return {{"resource", text.resourceId}};
    }
    const ByLanguage decoded = Decoded(text);
    return IsPlain(text, decoded.front()) ? Json(decoded.front()) : Translations(decoded, 0);
}

bool SourceTexts::IsPlain(const LocalizedText& text, std::string_view plain) {
    if (text.byLanguage.empty()) {
        return false;
    }
    const ByLanguage decoded = Decoded(text);
    if (const auto entry = table_.find(plain); entry != table_.end()) {
        return decoded == entry->second;
    }
    return std::all_of(decoded.begin(), decoded.end(), [&](const std::string& own) { return own == plain; });
}

Json SourceTexts::Table() const {
    Json table = Json::object();
    for (const auto& [first, meaning] : table_) {
        table[first] = Translations(meaning, 1);
    }
    return table;
}

SourceTexts::ByLanguage SourceTexts::Decoded(const LocalizedText& text) {
    ByLanguage decoded;
    for (size_t i = 0; i < text.byLanguage.size(); ++i) {
        decoded.push_back(encoder_.Decode(text.byLanguage[i], model_.languages[i]->ansiEncoding).value());
    }
    return decoded;
}

Json SourceTexts::Translations(const ByLanguage& texts, size_t firstLanguage) const {
    Json translations = Json::object();
    for (size_t i = firstLanguage; i < texts.size(); ++i) {
        translations[std::string(model_.languages[i]->code)] = texts[i];
    }
    return translations;
}

}  // namespace velmora
