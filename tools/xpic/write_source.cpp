#include "tools/xpic/write_source.h"

#include <algorithm>

#include "tools/xpic/json_printer.h"
#include "tools/xpic/model_fields.h"
#include "tools/xpic/source_writer.h"

namespace velmora {
namespace {

// The root's members in the order in which people look for them.
// clang-format off
constexpr std::string_view kRootOrder[] = {
    "modelName", "languages", "pdl", "modelCode", "color", "pagesPerMinute", "duplexUnit", "jobName",
    "jobSetsDataMode", "jobDescription", "imageMode", "optionFlags", "icmIntents", "defaultIcmIntent",
    "primaryFont", "secondaryFont", "defaultFontSize", "pageLabel", "link", "namespace", "customSizes",
    "extraOption", "memory", "defaultTray", "defaultMedium", "defaultResolution", "defaultColorMode", "papers",
    "trayOptions", "installed", "installedMask", "trays", "media", "resolutions", "deviceOptions", "features",
    "extraKeywordJobKey", "extraKeywords", "photoIntents", "signatureOptions", "mediaColors", "extraListA",
    "extraListB", "extraListC", "fontSubstitutions", "patterns", "fonts", "images", "margins", "constraints",
    "commandBlob", "commands", "colorFeatures", "colorModes", "texts", "layout",
};
// clang-format on

constexpr int kMaskBits = 32;

void WriteScalars(Json& object, std::span<const ScalarField> fields, const DeviceModel& device) {
    for (const ScalarField& field : fields) {
        const int64_t value = ScalarOf(device, field);
        if (value == field.fallback) {
            continue;
        }
        Json& member = object[std::string(field.key)];
        switch (field.kind) {
            case ScalarKind::kInteger:
                member = value;
                break;
            case ScalarKind::kMillimetres:
                member = InMillimetres(value);
                break;
            case ScalarKind::kWord:
                member = WordOrNumber(value, field.words);
                break;
            case ScalarKind::kFlag:
                member = value != 0;
                break;
        }
    }
}

void WriteOptionFlags(SourceWriter& writer) {
    const uint32_t flags = writer.model.device.defaultOptionFlags;
    for (int bit = 0; bit < kMaskBits; ++bit) {
        if (const uint32_t value = flags & uint32_t{1} << bit; value != 0) {
            writer.root["optionFlags"].push_back(WordOrNumber(value, kOptionFlagWords));
        }
    }
}

void WriteGroups(SourceWriter& writer) {
    const ModelSource& model = writer.model;
    const DeviceModel& device = model.device;
    Json& root = writer.root;
    const auto put = [&](Json& object, const char* key, const std::string& text) {
        if (!text.empty()) {
            object[key] = writer.texts.Fixed(text);
        }
    };
    put(root, "primaryFont", model.primaryFont);
    put(root, "secondaryFont", model.secondaryFont);
    for (const auto& [key, text] : {std::pair("pageLabel", &model.pageLabel), std::pair("link", &model.link)}) {
        if (!text->Absent()) {
            root[key] = writer.texts.Localized(*text);
        }
    }
    Json names = Json::object();
    put(names, "uri", model.namespaceUri);
    put(names, "prefix", model.namespacePrefix);
    Json extra = Json::object();
    put(extra, "text", model.extraText);
    WriteScalars(extra, kExtraOptionFields, device);
    Json memory = Json::object();
    WriteScalars(memory, kMemoryFields, device);
    for (const MemoryRecord& record : model.memory) {
        memory["sizes"].push_back({{"key", uint16_t{record.key}}, {"megabytes", uint16_t{record.megabytes}}});
    }
    Json sizes = Json::object();
    WriteScalars(sizes, kCustomSizeFields, device);
    const bool anySize = std::any_of(sizes.begin(), sizes.end(), [](const Json& size) { return size != 0; });
    for (auto& [key, group] : {std::pair("namespace", &names), std::pair("extraOption", &extra),
                               std::pair("memory", &memory), std::pair("customSizes", &sizes)}) {
        if (!group->empty() && (group != &sizes || anySize)) {
            root[key] = std::move(*group);
        }
    }
}

// The defaults that are other than what they would be without being said. By the name of the record, unless there is
// none.
void WriteDefaults(SourceWriter& writer) {
    const ModelSource& model = writer.model;
    ModelSource unsaid;
    unsaid.trays = model.trays;
    unsaid.media = model.media;
    unsaid.resolutions = model.resolutions;
    SetDefaults(unsaid);
    const auto put = [&](const char* key, int64_t value, int64_t fallback, const auto& records, auto numberOf) {
        if (value == fallback) {
            return;
        }
        writer.root[key] = value;
        for (size_t i = 0; i < records.size(); ++i) {
            if (numberOf(i) == value) {
                writer.root[key] = records[i].name;
                return;
            }
        }
    };
    const auto position = [](size_t i) { return static_cast<int64_t>(i); };
    put("defaultTray", model.device.defaultBin, unsaid.device.defaultBin, model.trays,
        [&](size_t i) { return int64_t{model.trays[i].binId}; });
    put("defaultMedium", model.device.defaultMedia, unsaid.device.defaultMedia, model.media,
        [&](size_t i) { return position(i) + 1; });
    put("defaultResolution", model.device.defaultResolution, unsaid.device.defaultResolution, model.resolutions,
        position);
    put("defaultColorMode", model.device.defaultColorMode, unsaid.device.defaultColorMode, model.colorModes, position);
}

std::string MadeName(int bit) {
    return "option " + std::to_string(bit);
}

// The bits that are said by the names of tray options.
uint32_t NamedTrayBits(const ModelSource& model, const WrittenMasks& trays) {
    uint32_t bits = IsInstalledNamed(model) ? model.device.defaultOptionMask : 0;
    for (uint32_t mask : trays.records) {
        bits |= IsTrayMaskNamed(mask) ? mask : 0;
    }
    return bits & ~kAlwaysInstalled;
}

uint32_t NamedDeviceBits(const ModelSource& model) {
    uint32_t bits = 0;
    for (const FeatureSource& feature : model.features) {
        bits |= feature.mask;
    }
    for (const ConstraintSource& constraint : model.constraints) {
        bits |= constraint.record.flags & ~kOnlyOnBothSides;
    }
    return bits;
}

Json InRootOrder(Json root) {
    Json ordered = Json::object();
    for (std::string_view key : kRootOrder) {
        if (const auto member = root.find(std::string(key)); member != root.end()) {
            ordered[std::string(key)] = std::move(*member);
        }
    }
    return ordered;
}

}  // namespace

OptionNames::OptionNames(Words known, uint32_t bits) : known_(known), bits_(bits) {}

Json OptionNames::Of(uint32_t bits) const {
    Json names = Json::array();
    for (int bit = 0; bit < kMaskBits; ++bit) {
        if ((bits >> bit & 1) != 0) {
            const Json known = WordOrNumber(bit, known_);
            names.push_back(known.is_string() ? known : Json(MadeName(bit)));
        }
    }
    return names;
}

Json OptionNames::Made() const {
    Json made = Json::object();
    for (int bit = 0; bit < kMaskBits; ++bit) {
        if ((bits_ >> bit & 1) != 0 && WordOrNumber(bit, known_).is_number()) {
            made[MadeName(bit)] = bit;
        }
    }
    return made;
}

SourceWriter::SourceWriter(const ModelSource& written, const SourceStyle& writtenStyle)
    : model(written),
      style(writtenStyle),
      texts(written),
      trays(ChooseTrayMasks(written)),
      media(ChooseMediaMasks(written)),
      extraKeywords(ChooseExtraKeywordMasks(written)),
      trayOptions(kTrayOptionWords, NamedTrayBits(written, trays)),
      deviceOptions(kDeviceOptionWords, NamedDeviceBits(written)) {}

void WriteModelFields(SourceWriter& writer) {
    const ModelSource& model = writer.model;
    Json& root = writer.root;
    if (!model.modelName.empty()) {
        root["modelName"] = model.modelName;
    }
    if (model.languages.size() != 1 || model.languages.front() != FindLanguage("en")) {
        for (const Language* language : model.languages) {
            root["languages"].push_back(language->code);
        }
    }
    WriteScalars(root, kModelFields, model.device);
    if (HasDuplexUnit(model.device)) {
        root["duplexUnit"] = true;
    }
    WriteOptionFlags(writer);
    WriteGroups(writer);
    WriteDefaults(writer);
}

Json InMillimetres(int64_t tenths) {
    return tenths % 10 == 0 ? Json(tenths / 10) : Json(static_cast<double>(tenths) / 10);
}

Json WordOrNumber(int64_t value, Words words) {
    const auto word = std::find_if(words.begin(), words.end(), [&](const Word& known) { return known.value == value; });
    return word != words.end() ? Json(word->name) : Json(value);
}

WrittenSource WriteSource(const ModelSource& model, const SourceStyle& style) {
    SourceWriter writer(model, style);
    WriteModelFields(writer);
    WriteTables(writer);
    WritePatterns(writer);
    WriteFonts(writer);
    WriteImages(writer);
    WriteMargins(writer);
    WriteConstraints(writer);
    WriteColors(writer);
    if (Json texts = writer.texts.Table(); !texts.empty()) {
        writer.root["texts"] = std::move(texts);
    }
    if (style.layout != nullptr) {
        writer.root["layout"] = WriteLayout(*style.layout);
    }
    return {PrintSource(InRootOrder(std::move(writer.root)), style.comment), std::move(writer.files)};
}

}  // namespace velmora
