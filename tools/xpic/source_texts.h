// How a source writes the texts of a model.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/xpic/model_source.h"
#include "tools/xpic/source_document.h"
#include "tools/xpic/text_encoding.h"

namespace velmora {

// Calls `visit` with each localised text of the model, absent ones too.
template <class Model, class Visit>
void ForEachText(Model& model, Visit visit) {
    const auto labels = [&](auto& records) {
        for (auto& record : records) {
            visit(record.label);
        }
    };
    visit(model.pageLabel);
    visit(model.link);
    labels(model.papers);
    labels(model.trays);
    labels(model.extraKeywords);
    labels(model.media);
    labels(model.resolutions);
    labels(model.features);
    for (auto& feature : model.features) {
        labels(feature.options);
    }
    labels(model.colorModes);
    for (auto& list : model.keywordLists) {
        labels(list);
    }
    for (auto& constraint : model.constraints) {
        visit(constraint.message);
    }
    for (auto& features : model.colorFeatures) {
        labels(features);
        for (auto& feature : features) {
            labels(feature.values);
        }
    }
}

// The texts of a model in UTF-8. Throws std::bad_optional_access for bytes that the code page of their language has no
// characters for.
class SourceTexts {
  public:
    // Keeps a reference to the model.
    explicit SourceTexts(const ModelSource& model);

    // A text that isn't localised.
    std::string Fixed(const std::string& bytes) { return encoder_.Decode(bytes, kFixedTextEncoding).value(); }
    // A text that isn't absent: plain where that says it, else by language.
    Json Localized(const LocalizedText& text);
    // Whether a plain text says it.
    bool IsPlain(const LocalizedText& text, std::string_view plain);
    // The root's "texts": what plain texts mean in the other languages of the model. Texts that are used more than once
    // stand there.
    Json Table() const;

  private:
    using ByLanguage = std::vector<std::string>;  // UTF-8

    ByLanguage Decoded(const LocalizedText& text);
    Json Translations(const ByLanguage& texts, size_t firstLanguage) const;

    const ModelSource& model_;
    TextEncoder encoder_;
    std::map<std::string, ByLanguage, std::less<>> table_;  // by the text in the first language
};

}  // namespace velmora
