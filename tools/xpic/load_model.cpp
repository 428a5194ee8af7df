#include "tools/xpic/load_model.h"

#include <algorithm>

#include "tools/xpic/include_sources.h"
#include "tools/xpic/model_reader.h"

namespace velmora {
namespace {

enum class ScalarKind { kInteger, kMillimetres, kWord, kFlag };

// A plain number of the device block. Its value is added bit by bit, so several rows may share a byte of flags.
struct ScalarField {
    std::string_view key;
    ScalarKind kind;
    size_t offset;  // in DeviceModel
    size_t width;
    std::optional<Range> range;       // of numbers; millimetres in 0.1 mm; a flag's bit value
    std::optional<int64_t> fallback;  // none: the key is required
    Words words;
};

#define DEVICE_FIELD(member) offsetof(DeviceModel, member), sizeof(DeviceModel::member)

constexpr Range kAnyU16 = {0, UINT16_MAX};
constexpr Range kAnyU32 = {0, UINT32_MAX};
constexpr Range kCountI16 = {0, INT16_MAX};
constexpr Range kAnyI16 = {INT16_MIN, INT16_MAX};
constexpr Range kOwnPdls = {kPdlOwn + 1, UINT16_MAX};
constexpr Range kDataModeBit = {kJobSetsDataMode, kJobSetsDataMode};

const ScalarField kModelFields[] = {
    {"pdl", ScalarKind::kWord, DEVICE_FIELD(pdlType), kOwnPdls, {}, kPdlWords},
    {"modelCode", ScalarKind::kInteger, DEVICE_FIELD(modelCode), kAnyU16, 0, {}},
    {"color", ScalarKind::kWord, DEVICE_FIELD(colorCapability), kAnyU16, kColorNone, kColorWords},
    {"pagesPerMinute", ScalarKind::kInteger, DEVICE_FIELD(pagesPerMinute), kCountI16, 0, {}},
    {"defaultFontSize", ScalarKind::kInteger, DEVICE_FIELD(defaultFontSize), kCountI16, 10, {}},
    {"imageMode", ScalarKind::kWord, DEVICE_FIELD(imageModeDefault), kAnyU32, 0, kImageModeWords},
    {"defaultIcmIntent", ScalarKind::kWord, DEVICE_FIELD(defaultIcmIntent), kAnyU32, 0, kIcmIntentWords},
    {"icmIntents", ScalarKind::kWord, DEVICE_FIELD(icmIntentFlags), kAnyU16, 0, kIcmOfferWords},
    {"jobName", ScalarKind::kWord, DEVICE_FIELD(jobNameFlags), {}, 0, kJobNameWords},
    {"jobSetsDataMode", ScalarKind::kFlag, DEVICE_FIELD(descriptionFlags), kDataModeBit, 0, {}},
    {"jobDescription", ScalarKind::kWord, DEVICE_FIELD(descriptionFlags), {}, 0, kDescriptionWords},
};

const ScalarField kCustomSizeFields[] = {
    {"minWidthMm", ScalarKind::kMillimetres, DEVICE_FIELD(customMinWidth), kCountI16, {}, {}},
    {"maxWidthMm", ScalarKind::kMillimetres, DEVICE_FIELD(customMaxWidth), kAnyU16, {}, {}},
    {"minLengthMm", ScalarKind::kMillimetres, DEVICE_FIELD(customMinLength), kCountI16, {}, {}},
    {"maxLengthMm", ScalarKind::kMillimetres, DEVICE_FIELD(customMaxLength), kAnyU16, {}, {}},
};

const ScalarField kExtraOptionFields[] = {
    {"memoryMb", ScalarKind::kInteger, DEVICE_FIELD(extraMemory), kCountI16, 0, {}},
};

const ScalarField kMemoryFields[] = {
    {"keyBase", ScalarKind::kInteger, DEVICE_FIELD(memoryKeyBase), kAnyI16, 0, {}},
    {"keyStep", ScalarKind::kInteger, DEVICE_FIELD(memoryKeyStep), kAnyI16, 0, {}},
};

#undef DEVICE_FIELD

int64_t ReadScalar(ObjectReader& object, const ScalarField& field) {
    switch (field.kind) {
        case ScalarKind::kInteger:
            return object.Integer(field.key, *field.range, field.fallback);
        case ScalarKind::kMillimetres:
            return object.Millimetres(field.key, *field.range, field.fallback);
        case ScalarKind::kWord:
            return object.Choice(field.key, field.words, field.range, field.fallback);
        case ScalarKind::kFlag:
            return object.Flag(field.key, *field.fallback != 0) ? field.range->max : 0;
    }
    return 0;
}

void ReadScalars(ObjectReader& object, std::span<const ScalarField> fields, DeviceModel& device) {
    auto* bytes = reinterpret_cast<unsigned char*>(&device);
    for (const ScalarField& field : fields) {
        const int64_t value = ReadScalar(object, field);
        for (size_t i = 0; i < field.width; ++i) {
            bytes[field.offset + i] |= static_cast<unsigned char>(value >> (8 * i));
        }
    }
}

void ReadLanguages(SourceContext& context, ObjectReader& root) {
    for (const SourceValue& element : root.Elements("languages")) {
        const std::optional<std::string> code = ReadString(context, element);
        const Language* language = code ? FindLanguage(*code) : nullptr;
        if (code && language == nullptr) {
            context.Report(element.path, Quote(*code), "a two-letter language code such as \"en\", \"de\", \"ja\"");
        } else if (language != nullptr) {
            if (std::find(context.languages.begin(), context.languages.end(), language) != context.languages.end()) {
                context.Report(element.path, Quote(*code) + " a second time", "each language once");
            }
            context.languages.push_back(language);
        }
    }
    if (context.languages.empty()) {
        context.languages.push_back(FindLanguage("en"));
    }
}

void ReadTexts(SourceContext& context, ObjectReader& root) {
    for (const auto& [text, meanings] : root.Members("texts")) {
        for (const auto& [code, meaning] : ReadMembers(context, meanings)) {
            if (FindLanguage(code) == nullptr) {
                context.Report(meaning.path, Quote(code), "a two-letter language code such as \"en\", \"de\", \"ja\"");
            }
            ReadString(context, meaning);
        }
        if (meanings.json->is_object()) {
            context.texts.emplace(text, meanings);
        }
    }
}

// Plain numbers and texts that a row of a table can't say.
void ReadGroups(ModelReader& reader) {
    ObjectReader& root = reader.root;
    ModelSource& model = reader.model;
    if (const std::optional<SourceValue> value = root.Find("customSizes")) {
        ObjectReader object(reader.context, *value);
        ReadScalars(object, kCustomSizeFields, model.device);
    }
    if (const std::optional<SourceValue> value = root.Find("extraOption")) {
        ObjectReader object(reader.context, *value);
        ReadScalars(object, kExtraOptionFields, model.device);
        model.extraText = object.FixedText("text", TextLimit::kExtraText);
    }
    if (const std::optional<SourceValue> value = root.Find("memory")) {
        ObjectReader object(reader.context, *value);
        ReadScalars(object, kMemoryFields, model.device);
        ReadMemory(reader, object);
    }
    if (const std::optional<SourceValue> value = root.Find("namespace")) {
        ObjectReader object(reader.context, *value);
        model.namespaceUri = object.FixedText("uri", TextLimit::kNamespace);
        model.namespacePrefix = object.FixedText("prefix", TextLimit::kLabel);
    }
    if (root.Flag("duplexUnit", false)) {
        constexpr uint8_t kHasDuplexUnit = 1;  // bit 0 of each of the three
        model.device.jobNameFlags |= kHasDuplexUnit;
        model.device.duplexFlagsA |= kHasDuplexUnit;
        model.device.duplexFlagsB |= kHasDuplexUnit;
    }
    model.pageLabel = root.Localized("pageLabel", TextLimit::kLabel);
    model.link = root.Localized("link", TextLimit::kLink);
    model.primaryFont = root.FixedText("primaryFont", TextLimit::kFontFace);
    model.secondaryFont = root.FixedText("secondaryFont", TextLimit::kFontFace);
    model.device.defaultOptionFlags = root.WordBits("optionFlags", kOptionFlagWords, 0, kAnyU32);
}

// A default: the number that the device model holds, given as it is or by the name of a record, whose position `number`
// turns into it. Without the member it is the number of the record at `fallback`.
template <class Number>
int64_t ReadDefault(ModelReader& reader, std::string_view key, const NameIndex& names, size_t fallback, Range numbers,
                    Number number) {
    const std::optional<SourceValue> member = reader.root.Find(key);
    if (member && member->json->is_number()) {
        return ReadInteger(reader.context, *member, numbers).value_or(0);
    }
    return number(member ? names.Resolve(reader.context, *member).value_or(fallback) : fallback);
}

// What a new device mode begins with; a record that isn't named is the first of its table.
void ReadDefaults(ModelReader& reader) {
    ObjectReader& root = reader.root;
    ModelSource& model = reader.model;
    ModelNames& names = reader.names;
    DeviceModel& device = model.device;
    constexpr uint16_t kAutomaticBin = 7;  // DMBIN_AUTO (wingdi.h)
    const auto binOf = [&](size_t tray) { return tray < model.trays.size() ? model.trays[tray].binId : kAutomaticBin; };
    const auto ordinalOf = [&](size_t medium) { return model.media.empty() ? size_t{0} : medium + 1; };
    const auto same = [](size_t position) { return position; };
    const size_t second = model.resolutions.size() > 1 ? 1 : 0;
    device.defaultBin = static_cast<uint16_t>(ReadDefault(reader, "defaultTray", names.trays, 0, kAnyU16, binOf));
    device.defaultMedia =
        static_cast<uint16_t>(ReadDefault(reader, "defaultMedium", names.media, 0, kAnyU16, ordinalOf));
    device.defaultResolution =
        static_cast<int16_t>(ReadDefault(reader, "defaultResolution", names.resolutions, second, kAnyI16, same));
    device.defaultColorMode =
        static_cast<uint16_t>(ReadDefault(reader, "defaultColorMode", names.colorModes, 0, kAnyU16, same));
    // Bits 0 and 1 stand for what every printer has; the printer properties set them whatever is installed.
    constexpr uint32_t kAlwaysInstalled = 3;
    device.defaultOptionMask = kAlwaysInstalled | root.WordBits("installed", names.trayOptions, 0);
    if (const std::optional<SourceValue> mask = root.Find("installedMask")) {
        if (root.Has("installed")) {
            reader.context.Report(mask->path, "a mask beside \"installed\"", "one of the two");
        }
        device.defaultOptionMask =
            static_cast<uint32_t>(ReadInteger(reader.context, *mask, kAnyU32).value_or(kAlwaysInstalled));
    }
}

}  // namespace

std::optional<ModelSource> LoadModelSource(std::string_view text, const std::filesystem::path& file,
                                           SourceDocument& document, std::vector<Diagnostic>& diagnostics,
                                           KnownKeys* knownKeys) {
    const size_t before = diagnostics.size();
    if (!ReadSource(text, file, document, diagnostics)) {
        return std::nullopt;
    }
    ModelSource model;
    SourceContext context{document, diagnostics, {}, {}, {}, {}};
    context.knownKeys = knownKeys;
    {
        ObjectReader root(context, {&document.root, std::string(kRootPath)});
        ModelNames names;
        ModelReader reader{context, root, model, names};
        root.Has("$schema");  // for editors
        root.Has("include");  // done
        ReadLanguages(context, root);
        ReadTexts(context, root);
        model.languages = context.languages;
        if (const std::optional<SourceValue> name = root.Find("modelName")) {
            model.modelName = ReadString(context, *name).value_or("");
        }
        ReadScalars(root, kModelFields, model.device);
        ReadGroups(reader);
        ReadOptionNames(reader);
        ReadPatterns(reader);
        ReadFonts(reader);
        ReadImages(reader);
        ReadCommands(reader);
        ReadPapers(reader);
        ReadTrays(reader);
        ReadExtraKeywords(reader);
        ReadMedia(reader);
        ReadResolutions(reader);
        ReadFeatures(reader);
        ReadFontSubstitutions(reader);
        ReadKeywordLists(reader);
        ReadColorFeatures(reader);
        ReadColorModes(reader);
        ReadMargins(reader);
        ReadConstraints(reader);
        ReadDefaults(reader);
        model.missingTexts = std::move(context.missingTexts);
    }
    return diagnostics.size() == before ? std::optional(std::move(model)) : std::nullopt;
}

}  // namespace velmora
