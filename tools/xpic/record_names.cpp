#include "tools/xpic/record_names.h"

#include <initializer_list>
#include <map>
#include <set>
#include <string_view>

#include "tools/xpic/pattern_generator.h"
#include "tools/xpic/standard_papers.h"
#include "tools/xpic/text_encoding.h"

namespace velmora {
namespace {

// The names of one list.
class NameList {
  public:
    // `noun` names what has nothing else to be named by: "tray 3".
    explicit NameList(std::string_view noun) : noun_(noun) {}

    void Reserve(const std::string& name) { taken_.insert(name); }

    // The first of the candidates that isn't empty, made different from the names before it.
    std::string Make(size_t position, std::initializer_list<std::string> candidates) {
        std::string base;
        for (const std::string& candidate : candidates) {
            base = base.empty() ? candidate : base;
        }
        if (base.empty()) {
            base = noun_ + " " + std::to_string(position + 1);
        }
        std::string name = base;
        size_t& count = counts_[base];
        while (!taken_.insert(name).second) {
            name = base + " " + std::to_string(++count + 1);
        }
        return name;
    }

  private:
    std::string noun_;
    std::set<std::string> taken_;
    std::map<std::string, size_t> counts_;  // of the names that were made of one base
};

class NameMaker {
  public:
    explicit NameMaker(ModelSource& model) : model_(model) {}

    void Make() {
        NamePapers();
        NameAll(model_.trays, "tray");
        NameAll(model_.extraKeywords, "extra keyword");
        NameAll(model_.media, "medium");
        NameAll(model_.resolutions, "resolution");
        NameAll(model_.features, "feature");
        for (FeatureSource& feature : model_.features) {
            NameAll(feature.options, "option");
        }
        for (std::vector<ColorFeatureSource>& features : model_.colorFeatures) {
            NameAll(features, "color feature");
            for (ColorFeatureSource& feature : features) {
                NameAll(feature.values, "value");
            }
        }
        for (std::vector<KeywordSource>& list : model_.keywordLists) {
            NameAll(list, "entry");
        }
        NameList modes("color mode");
        NameEach(model_.colorModes, modes, [&](size_t i) {
            const ColorModeSource& mode = model_.colorModes[i];
            const char* kind = (mode.kind & kColorModeSystem) != 0   ? "System"
                               : (mode.kind & kColorModeManual) != 0 ? "Manual"
                                                                     : "";
            return modes.Make(i, {LabelName(mode.label), kind});
        });
        NameList patterns("pattern");
        NameEach(model_.patterns, patterns, [&](size_t i) {
            const PatternSource& pattern = model_.patterns[i];
            const Word* shape = FindPatternShape(pattern.size, pattern.block);
            const std::string made =
                shape != nullptr ? std::string(shape->name) + " " + std::to_string(pattern.size) : std::string();
            return patterns.Make(i, {made});
        });
    }

  private:
    std::string Decoded(const std::string& bytes, const char* encoding) {
        return encoder_.Decode(bytes, encoding).value_or("");
    }

    std::string LabelName(const LocalizedText& label) {
        return label.byLanguage.empty() ? std::string()
                                        : Decoded(label.byLanguage.front(), model_.languages.front()->ansiEncoding);
    }

    // The keyword without its prefix.
    template <class Record>
    std::string KeywordName(const Record& record) {
        if constexpr (requires { record.keyword; }) {
            const std::string keyword = Decoded(record.keyword, kFixedTextEncoding);
            return keyword.substr(keyword.find(':') + 1);
        } else {
            return {};
        }
    }

    // `make` gives the name of the record at a position.
    template <class Record, class MakeName>
    void NameEach(std::vector<Record>& records, NameList& names, MakeName make) {
        for (const Record& record : records) {
            names.Reserve(record.name);
        }
        for (size_t i = 0; i < records.size(); ++i) {
            if (records[i].name.empty()) {
                records[i].name = make(i);
            }
        }
    }

    template <class Record>
    void NameAll(std::vector<Record>& records, std::string_view noun) {
        NameList names(noun);
        NameEach(records, names, [&](size_t i) {
            return names.Make(i, {LabelName(records[i].label), KeywordName(records[i])});
        });
    }

    void NamePapers() {
        NameList names("paper");
        names.Reserve("custom");
        names.Reserve("all");
        std::vector<PaperSource>& papers = model_.papers;
        // Standard papers come first, so that no other takes their names.
        for (const StandardPaper& standard : kStandardPapers) {
            names.Reserve(std::string(standard.name));
        }
        std::set<int16_t> named;
        for (const PaperSource& paper : papers) {
            const StandardPaper* standard = FindStandardPaper(std::string_view(paper.name));
            named.insert(standard != nullptr ? standard->id : int16_t{0});
        }
        NameEach(papers, names, [&](size_t i) {
            const StandardPaper* standard = FindStandardPaper(int64_t{papers[i].id});
            if (standard == nullptr) {
                return names.Make(i, {LabelName(papers[i].label), KeywordName(papers[i])});
            }
            const std::string name(standard->name);
            return named.insert(standard->id).second ? name : names.Make(i, {name});
        });
    }

    ModelSource& model_;
    TextEncoder encoder_;
};

}  // namespace

void MakeNames(ModelSource& model) {
    NameMaker(model).Make();
}

}  // namespace velmora
