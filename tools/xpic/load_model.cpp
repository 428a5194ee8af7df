#include "tools/xpic/load_model.h"

#include <algorithm>

#include "tools/xpic/include_sources.h"
#include "tools/xpic/layout.h"
#include "tools/xpic/model_fields.h"
#include "tools/xpic/model_reader.h"
#include "tools/xpic/rule_records.h"

namespace velmora {
namespace {

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
    for (const ScalarField& field : fields) {
        AddScalar(device, field, ReadScalar(object, field));
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
        const auto checkMaximum = [&](const char* minKey, int min, const char* maxKey, int max) {
            if (max != 0 && min > max) {
                reader.context.Report(object.PathOf(minKey), "a smallest size above the largest",
                                      std::string("at most ") + Quote(maxKey));
            }
        };
        checkMaximum("minWidthMm", model.device.customMinWidth, "maxWidthMm", model.device.customMaxWidth);
        checkMaximum("minLengthMm", model.device.customMinLength, "maxLengthMm", model.device.customMaxLength);
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
        SetDuplexUnit(model.device);
    }
    model.pageLabel = root.Localized("pageLabel", TextLimit::kLabel);
    model.link = root.Localized("link", TextLimit::kLink);
    model.primaryFont = root.FixedText("primaryFont", TextLimit::kFontFace);
    model.secondaryFont = root.FixedText("secondaryFont", TextLimit::kFontFace);
    model.device.defaultOptionFlags = root.WordBits("optionFlags", kOptionFlagWords, 0, Range{0, UINT32_MAX});
}

// A default: the number that the device model holds, given as it is or by the name of a record, whose position `number`
// turns into it. Without the member it stays what it is.
template <class Field, class Number>
void ReadDefault(ModelReader& reader, std::string_view key, const NameIndex& names, Range numbers, Field& field,
                 Number number) {
    const std::optional<SourceValue> member = reader.root.Find(key);
    if (member && member->json->is_number()) {
        field = static_cast<Field>(ReadInteger(reader.context, *member, numbers).value_or(0));
    } else if (member) {
        if (const std::optional<size_t> position = names.Resolve(reader.context, *member)) {
            field = static_cast<Field>(number(*position));
        }
    }
}

// What a new device mode begins with.
void ReadDefaults(ModelReader& reader) {
    constexpr Range kAnyI16 = {INT16_MIN, INT16_MAX};
    constexpr Range kAnyU16 = {0, UINT16_MAX};
    constexpr Range kAnyU32 = {0, UINT32_MAX};
    ObjectReader& root = reader.root;
    ModelSource& model = reader.model;
    ModelNames& names = reader.names;
    DeviceModel& device = model.device;
    const auto same = [](size_t position) { return position; };
    SetDefaults(model);
    uint16_t bin = device.defaultBin;
    ReadDefault(reader, "defaultTray", names.trays, kAnyU16, bin, [&](size_t tray) { return model.trays[tray].binId; });
    uint16_t medium = device.defaultMedia;
    ReadDefault(reader, "defaultMedium", names.media, kAnyU16, medium, [](size_t position) { return position + 1; });
    int16_t resolution = device.defaultResolution;
    ReadDefault(reader, "defaultResolution", names.resolutions, kAnyI16, resolution, same);
    uint16_t colorMode = device.defaultColorMode;
    ReadDefault(reader, "defaultColorMode", names.colorModes, kAnyU16, colorMode, same);
    device.defaultBin = bin;
    device.defaultMedia = medium;
    device.defaultResolution = resolution;
    device.defaultColorMode = colorMode;
    // Bits 0 and 1 stand for what every printer has; the printer properties set them whatever is installed.
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
    SourceContext context{document, diagnostics, {}, {}, {}, {}, {}, {}};
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
        if (const std::optional<SourceValue> layout = root.Find("layout")) {
            model.layout = ReadLayout(context, *layout);
        }
        model.missingTexts = std::move(context.missingTexts);
        model.dataFiles = std::move(context.dataFiles);
        for (const auto& [text, meanings] : context.texts) {
            if (context.usedTexts.count(text) == 0 && document.Locate(meanings.path).file == 0) {
                model.unusedTexts.push_back(meanings.path);
            }
        }
    }
    return diagnostics.size() == before ? std::optional(std::move(model)) : std::nullopt;
}

}  // namespace velmora
