// The tables of what a printer has: papers, trays, media, resolutions, features and the lists beside them.
#include <algorithm>

#include "tools/xpic/model_reader.h"
#include "tools/xpic/standard_papers.h"

namespace velmora {
namespace {

std::vector<std::string_view> StandardPaperNames() {
    std::vector<std::string_view> names;
    for (const StandardPaper& paper : kStandardPapers) {
        names.push_back(paper.name);
    }
    return names;
}

// The published paper that "id" or, without one, the paper's name refers to; null for a paper of the model's own.
const StandardPaper* StandardOf(ModelReader& reader, ObjectReader& object, const std::string& name, int16_t& id) {
    const std::optional<SourceValue> given = object.Find("id");
    if (!given) {
        return FindStandardPaper(name);
    }
    if (given->json->is_string()) {
        const std::string word = given->json->get<std::string>();
        const StandardPaper* standard = FindStandardPaper(word);
        if (standard == nullptr) {
            reader.context.Report(given->path, Quote(word),
                                  ExpectOneOf("the name of a standard paper", word, StandardPaperNames()));
        }
        return standard;
    }
    const int64_t number = ReadInteger(reader.context, *given, {1, INT16_MAX}).value_or(0);
    if (number > kLastStandardPaperId && number < kFirstOwnPaperId) {
        reader.context.Report(given->path, std::to_string(number),
                              "a paper id, 1 to " + std::to_string(kLastStandardPaperId) + " or from " +
                                  std::to_string(kFirstOwnPaperId));
    }
    id = static_cast<int16_t>(number);
    return FindStandardPaper(number);
}

PaperSource ReadPaper(ModelReader& reader, const SourceValue& value, size_t cardsBefore) {
    ModelNames& names = reader.names;
    if (value.json->is_string()) {
        const std::string name = value.json->get<std::string>();
        names.papers.Add(reader.context, value.path, name);
        const StandardPaper* standard = FindStandardPaper(name);
        if (standard == nullptr) {
            reader.context.Report(value.path, Quote(name),
                                  ExpectOneOf("the name of a standard paper", name, StandardPaperNames()));
            return {};
        }
        PaperSource paper = PaperOf(*standard, reader.model.device.pdlType);
        paper.name = name;
        const Json label = std::string(standard->label);
        paper.label = *ReadLocalizedText(reader.context, {&label, value.path}, TextLimit::kPaperLabel);
        return paper;
    }
    ObjectReader object(reader.context, value);
    const std::string name = object.Name();
    names.papers.Add(reader.context, value.path, name);
    int16_t id = 0;
    const StandardPaper* standard = StandardOf(reader, object, name, id);
    PaperSource paper = standard != nullptr ? PaperOf(*standard, reader.model.device.pdlType) : PaperSource{};
    paper.name = name;
    const bool misspelt = standard == nullptr && object.Has("id") && id == 0;  // reported already
    const auto own = [&](int64_t known) {
        return standard != nullptr || misspelt ? std::optional(known) : std::nullopt;
    };
    paper.label = object.Label(name, TextLimit::kPaperLabel, standard != nullptr ? standard->label : "");
    paper.pclSizeCode = static_cast<int16_t>(object.Integer("pclSizeCode", {INT16_MIN, INT16_MAX}, paper.pclSizeCode));
    if (id != 0) {
        paper.id = id;
    } else if (standard == nullptr && IsPcl(reader.model.device.pdlType) && paper.pclSizeCode < 0) {
        paper.id = CardPaperId(cardsBefore);
    } else if (standard == nullptr && !misspelt) {
        object.Require("id", "a paper id, as the name isn't a standard paper's");
    }
    paper.width = static_cast<int16_t>(object.Millimetres("widthMm", {1, INT16_MAX}, own(paper.width)));
    paper.length = static_cast<int16_t>(object.Millimetres("lengthMm", {1, INT16_MAX}, own(paper.length)));
    paper.isMetric = object.Flag("metric", paper.isMetric);
    paper.keyword = object.Keyword("keyword", paper.keyword);
    paper.rendererName = object.FixedText("rendererName", TextLimit::kRendererPaper, paper.rendererName);
    paper.ticketValues = object.Ticket();
    object.Has("fit");
    return paper;
}

// Adds a source's own option names to the known ones and turns bit numbers into bit values.
std::vector<Word> OptionWords(ModelReader& reader, std::string_view key, Words known, Range bits) {
    std::vector<Word> words;
    for (const Word& word : known) {
        words.push_back({word.name, int64_t{1} << word.value});
    }
    const std::optional<SourceValue> member = reader.root.Find(key);
    if (!member) {
        return words;
    }
    for (const auto& [name, value] : ReadMembers(reader.context, *member)) {
        const std::optional<int64_t> bit = ReadInteger(reader.context, value, bits);
        const auto same = [&name = name](const Word& word) { return word.name == name; };
        const auto sameBit = [&](const Word& word) { return bit && word.value == int64_t{1} << *bit; };
        const auto taken = std::find_if(words.begin(), words.end(), sameBit);
        if (std::any_of(words.begin(), words.end(), same)) {
            reader.context.Report(value.path, Quote(name) + " a second time", "a name of its own");
        } else if (taken != words.end()) {
            reader.context.Report(value.path, "the bit of " + Quote(taken->name), "a bit of its own");
        } else if (bit) {
            // The document's own copy of the name outlives the words.
            words.push_back({member->json->find(name).key(), int64_t{1} << *bit});
        }
    }
    return words;
}

// A record's whole mask, for what names can't say.
uint32_t ReadMask(ObjectReader& object, uint32_t fallback) {
    return static_cast<uint32_t>(object.Integer("mask", {1, UINT32_MAX}, fallback));
}

void ReadKeywordEntry(ModelReader& reader, std::vector<KeywordSource>& list, const SourceValue& value) {
    ObjectReader object(reader.context, value);
    KeywordSource entry;
    entry.name = object.Name();
    entry.label = object.LabelOrNone(entry.name, TextLimit::kLabel);
    entry.keyword = object.Keyword("keyword");
    entry.ticketValues = object.Ticket();
    list.push_back(std::move(entry));
}

}  // namespace

void ReadOptionNames(ModelReader& reader) {
    reader.names.trayOptions = OptionWords(reader, "trayOptions", kTrayOptionWords, {3, 31});
    reader.names.deviceOptions = OptionWords(reader, "deviceOptions", kDeviceOptionWords, {2, 31});
}

void ReadPapers(ModelReader& reader) {
    std::vector<PaperSource>& papers = reader.model.papers;
    const std::vector<SourceValue> elements = reader.root.Elements("papers");
    size_t cards = 0;
    for (const SourceValue& element : elements) {
        papers.push_back(ReadPaper(reader, element, cards));
        cards += papers.back().pclSizeCode < 0 ? 1 : 0;
        const bool hasName = element.json->is_object() && element.json->contains("name");
        const SourceValue name =
            hasName ? SourceValue{&(*element.json)["name"], MemberPath(element.path, "name")} : element;
        if (*name.json == "custom" || *name.json == "all") {
            reader.context.Report(name.path, Describe(*name.json), "another name: this one stands for other papers");
        }
    }
    // A paper may be scaled onto one that comes later.
    for (size_t i = 0; i < elements.size(); ++i) {
        if (elements[i].json->is_object() && elements[i].json->contains("fit")) {
            const SourceValue target{&(*elements[i].json)["fit"], MemberPath(elements[i].path, "fit")};
            if (target.json->is_number()) {
                papers[i].fitPaperId =
                    static_cast<int16_t>(ReadInteger(reader.context, target, {1, INT16_MAX}).value_or(0));
            } else if (const std::optional<size_t> position = reader.names.papers.Resolve(reader.context, target)) {
                papers[i].fitPaperId = papers[*position].id;
            }
        }
    }
}

void ReadTrays(ModelReader& reader) {
    for (const SourceValue& element : reader.root.Elements("trays")) {
        ObjectReader object(reader.context, element);
        const std::string name = object.Name();
        reader.names.trays.Add(reader.context, element.path, name);
        TraySource tray;
        tray.name = name;
        tray.label = object.LabelOrNone(name, TextLimit::kTrayLabel);
        const int64_t bin = object.Choice("bin", kBinWords, Range{1, UINT16_MAX}, {});
        if (bin > kLastStandardBin && bin < kFirstOwnBin) {
            reader.context.Report(object.PathOf("bin"), std::to_string(bin), "a bin, 1 to 15 or from 256");
        }
        tray.binId = static_cast<uint16_t>(bin);
        tray.keyword = object.Keyword("keyword");
        const uint32_t needs = object.WordBits("needs", reader.names.trayOptions, 0);
        if (object.Has("needs") && object.Has("mask")) {
            reader.context.Report(object.PathOf("mask"), "a mask beside \"needs\"", "one of the two");
        }
        tray.mask = ReadMask(object, needs != 0 ? needs : kPlainMask);
        reader.model.trays.push_back(std::move(tray));
    }
}

void ReadExtraKeywords(ModelReader& reader) {
    reader.model.extraKeywordJobKey = reader.root.FixedText("extraKeywordJobKey", TextLimit::kJobWord);
    for (const SourceValue& element : reader.root.Elements("extraKeywords")) {
        ObjectReader object(reader.context, element);
        const std::string name = object.Name();
        reader.names.extraKeywords.Add(reader.context, element.path, name);
        ExtraKeywordSource keyword;
        keyword.name = name;
        keyword.mask = ReadMask(object, kPlainMask);
        keyword.label = object.LabelOrNone(name, TextLimit::kLabel);
        keyword.keyword = object.Keyword("keyword");
        keyword.jobValue = object.FixedText("jobValue", TextLimit::kJobWord);
        for (const ExtraKeywordSource& earlier : reader.model.extraKeywords) {
            if (earlier.jobValue == keyword.jobValue) {
                reader.context.Report(object.PathOf("jobValue"),
                                      keyword.jobValue.empty() ? "a second one without a job value"
                                                               : Quote(keyword.jobValue) + " a second time",
                                      "a job value of its own, which tells the extra keywords apart");
                break;
            }
        }
        reader.model.extraKeywords.push_back(std::move(keyword));
    }
}

void ReadMedia(ModelReader& reader) {
    for (const SourceValue& element : reader.root.Elements("media")) {
        ObjectReader object(reader.context, element);
        const std::string name = object.Name();
        reader.names.media.Add(reader.context, element.path, name);
        MediumSource medium;
        medium.name = name;
        medium.mark = ReadMask(object, kPlainMask);
        medium.label = object.LabelOrNone(name, TextLimit::kPaperLabel);
        medium.mediaId = static_cast<uint32_t>(
            object.Choice("mediaId", kMediaWords, Range{0, UINT32_MAX}, kFirstOwnMedium + reader.model.media.size()));
        medium.keyword = object.Keyword("keyword");
        medium.rendererName = object.FixedText("rendererName", TextLimit::kRendererMedium);
        medium.jobText = object.FixedText("jobText", TextLimit::kJobText);
        medium.ticketValues = object.Ticket();
        reader.model.media.push_back(std::move(medium));
    }
}

void ReadResolutions(ModelReader& reader) {
    constexpr Range kDots = {1, INT16_MAX};
    for (const SourceValue& element : reader.root.Elements("resolutions")) {
        ObjectReader object(reader.context, element);
        const std::string name = object.Name();
        reader.names.resolutions.Add(reader.context, element.path, name);
        ResolutionSource resolution;
        resolution.name = name;
        resolution.label = object.LabelOrNone(name, TextLimit::kLabel);
        resolution.xDpi = static_cast<uint16_t>(object.Integer("dpi", kDots, std::nullopt));
        resolution.yDpi = static_cast<uint16_t>(object.Integer("verticalDpi", kDots, resolution.xDpi));
        resolution.resolutionId = static_cast<int16_t>(object.Integer("resolutionId", kDots, resolution.xDpi));
        resolution.keyword = object.Keyword("keyword");
        resolution.jobText = object.FixedText("jobText", TextLimit::kJobText);
        if (const std::optional<SourceValue> pattern = object.Find("pattern")) {
            resolution.pattern = reader.names.patterns.Resolve(reader.context, *pattern);
        }
        resolution.ticketValues = object.Ticket();
        reader.model.resolutions.push_back(std::move(resolution));
    }
}

void ReadFeatures(ModelReader& reader) {
    const std::vector<SourceValue> elements = reader.root.Elements("features");
    if (elements.size() > kMostFeatures) {
        reader.context.Report(reader.root.PathOf("features"), std::to_string(elements.size()) + " features",
                              "at most " + std::to_string(kMostFeatures));
    }
    NameIndex names("a feature");
    for (const SourceValue& element : elements) {
        ObjectReader object(reader.context, element);
        const std::string name = object.Name();
        names.Add(reader.context, element.path, name);
        FeatureSource feature;
        feature.name = name;
        feature.label = object.Label(name, TextLimit::kLabel);
        feature.jobKey = object.FixedText("jobKey", TextLimit::kJobWord);
        feature.keyword = object.Keyword("keyword");
        feature.mask = object.WordBits("needs", reader.names.deviceOptions, 0);
        NameIndex optionNames("an option");
        for (const SourceValue& optionElement : object.Elements("options")) {
            ObjectReader optionObject(reader.context, optionElement);
            const std::string optionName = optionObject.Name();
            optionNames.Add(reader.context, optionElement.path, optionName);
            OptionSource option;
            option.name = optionName;
            option.label = optionObject.Label(optionName, TextLimit::kLabel);
            option.jobValue = optionObject.FixedText("jobValue", TextLimit::kJobWord);
            option.keyword = optionObject.Keyword("keyword");
            feature.options.push_back(std::move(option));
        }
        reader.model.features.push_back(std::move(feature));
    }
}

void ReadMemory(ModelReader& reader, ObjectReader& memory) {
    for (const SourceValue& element : memory.Elements("sizes")) {
        ObjectReader object(reader.context, element);
        MemoryRecord record{};
        record.key = static_cast<uint16_t>(object.Integer("key", {1, UINT16_MAX}, std::nullopt));
        record.megabytes = static_cast<uint16_t>(object.Integer("megabytes", {0, UINT16_MAX}, std::nullopt));
        reader.model.memory.push_back(record);
    }
}

void ReadFontSubstitutions(ModelReader& reader) {
    for (const SourceValue& element : reader.root.Elements("fontSubstitutions")) {
        ObjectReader object(reader.context, element);
        FontSubstitution pair;
        for (auto [key, text] : {std::pair("face", &pair.face), std::pair("printerFont", &pair.printerFont)}) {
            *text = object.FixedText(key, TextLimit::kSubstitution);
            if (text->empty()) {
                reader.context.Report(object.PathOf(key), "nothing", "a font name");
            }
        }
        reader.model.fontSubstitutions.push_back(std::move(pair));
    }
}

void ReadKeywordLists(ModelReader& reader) {
    for (size_t list = 0; list < kKeywordLists; ++list) {
        for (const SourceValue& element : reader.root.Elements(kKeywordListKeys[list])) {
            ReadKeywordEntry(reader, reader.model.keywordLists[list], element);
        }
    }
}

}  // namespace velmora
