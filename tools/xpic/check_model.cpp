#include "tools/xpic/check_model.h"

#include <algorithm>

#include "driver/devdesc/model_tables.h"
#include "tools/xpic/model_checker.h"
#include "tools/xpic/model_limits.h"
#include "tools/xpic/source_reader.h"

namespace velmora {
namespace {

// Prefixes of keywords that stand for published namespaces and the driver's own.
constexpr std::string_view kKeywordPrefixes[] = {"psk", "kxp"};
// Prefixes that print tickets declare beside the model's.
constexpr std::string_view kTicketPrefixes[] = {"psk", "kxp", "psf", "xsd", "xsi", "ns0000", "xml", "xmlns"};
constexpr std::string_view kDefaultPrefix = "oem";

bool IsIn(std::span<const std::string_view> words, std::string_view word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

// A name without colon, as XML has it; letters beyond ASCII aren't looked at.
bool IsXmlName(std::string_view name) {
    const auto isLetter = [](unsigned char c) {
        return c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80;
    };
    return !name.empty() && isLetter(static_cast<unsigned char>(name[0])) &&
           std::all_of(name.begin(), name.end(), [&](char c) {
               return isLetter(static_cast<unsigned char>(c)) || (c >= '0' && c <= '9') || c == '.' || c == '-';
           });
}

}  // namespace

std::string ModelChecker::Called(const std::string& name, const LocalizedText& label) {
    if (!name.empty()) {
        return Quote(name);
    }
    if (label.resourceId != 0) {
        return "the record with string " + std::to_string(label.resourceId);
    }
    const std::string& text = label.byLanguage.empty() ? std::string() : label.byLanguage.front();
    return text.empty() ? "this record"
                        : Quote(encoder_.Decode(text, model_.languages.front()->ansiEncoding).value_or(text));
}

void ModelChecker::CheckText(const LocalizedText& text, const std::string& path) {
    const auto isEmpty = [](const std::string& own) { return own.empty(); };
    if (std::all_of(text.byLanguage.begin(), text.byLanguage.end(), isEmpty)) {
        return;
    }
    for (size_t i = 0; i < text.byLanguage.size(); ++i) {
        if (text.byLanguage[i].empty()) {
            Report("missing-text", path, "has no text in " + Quote(model_.languages[i]->code));
        }
    }
}

void ModelChecker::CheckLabel(const std::string& name, const LocalizedText& label, const std::string& record,
                              List& list) {
    const std::string path = record + ".label";
    if (label.resourceId == 0 && std::all_of(label.byLanguage.begin(), label.byLanguage.end(),
                                             [](const std::string& text) { return text.empty(); })) {
        Report("no-display-text", path, Called(name, {}) + " has no display text");
        return;
    }
    CheckText(label, path);
    if (!list.labels.emplace(label.resourceId, label.byLanguage).second) {
        Report("label-twice", path, "an earlier record has the display text of " + Called(name, label));
    }
}

void ModelChecker::CheckKeyword(const std::string& keyword, const std::string& record, List& list, Ticket ticket) {
    const std::string path = record + ".keyword";
    if (keyword.empty()) {
        if (ticket == Ticket::kNeedsKeyword) {
            Report("keyword-missing", path, "there is no keyword");
        }
        return;
    }
    const size_t colon = keyword.find(':');
    const std::string prefix = colon == std::string::npos ? std::string() : keyword.substr(0, colon);
    const std::string name = colon == std::string::npos ? keyword : keyword.substr(colon + 1);
    const std::string_view own = model_.namespacePrefix.empty() ? kDefaultPrefix : model_.namespacePrefix;
    const bool isPublished = IsIn(kKeywordPrefixes, prefix);
    if (colon == std::string::npos) {
        Report("keyword-without-prefix", path, Quote(keyword) + " has no prefix");
    } else if (!isPublished && prefix != own) {
        Report("keyword-prefix", path,
               Quote(keyword) + " has the prefix " + Quote(prefix) + ", known are \"psk\", \"kxp\" and " + Quote(own));
    }
    if (name.empty()) {
        Report("keyword-empty", path, Quote(keyword) + " has nothing behind the colon");
    } else if (!IsXmlName(name)) {
        Report("keyword-syntax", path, Quote(name) + " has characters that no keyword has");
    }
    if (!list.keywords.insert((isPublished ? prefix : std::string()) + ":" + name).second) {
        Report("keyword-twice", path, "an earlier record has the keyword " + Quote(keyword));
    }
}

void ModelChecker::CheckTexts() {
    std::map<std::string, std::string> languagesByPath;
    for (const MissingText& missing : model_.missingTexts) {
        std::string& languages = languagesByPath[missing.path];
        languages.append(languages.empty() ? "" : ", ").append(Quote(missing.language->code));
    }
    for (const auto& [path, languages] : languagesByPath) {
        Report("missing-text", path, "has no text in " + languages);
    }
    for (const std::string& path : model_.unusedTexts) {
        Report("text-unused", path, "no text of the model is this one");
    }
    CheckText(model_.pageLabel, "$.pageLabel");
    CheckText(model_.link, "$.link");
    constexpr size_t kLinkRoom = 127;
    for (const std::string& link : model_.link.byLanguage) {
        if (link.size() > kLinkRoom) {
            Report("link-too-long", "$.link", "a web address of " + std::to_string(link.size()) + " bytes");
            break;
        }
    }
    const std::string& prefix = model_.namespacePrefix;
    if (!prefix.empty() && (IsIn(kTicketPrefixes, prefix) || !IsXmlName(prefix))) {
        Report("namespace-prefix", "$.namespace.prefix", Quote(prefix) + " is no prefix for the model's namespace");
    }
}

void ModelChecker::CheckSettings() {
    const DeviceModel& device = model_.device;
    if (device.pagesPerMinute == 0) {
        Report("no-print-speed", "$.pagesPerMinute", "the print speed is 0");
    }
    struct Unused {
        bool isUnused;
        const char* path;
        const char* what;
    };
    const auto hasFlag = [&](uint32_t flag) { return (device.defaultOptionFlags & flag) != 0; };
    const Unused kUnused[] = {
        {!IsImage() && device.imageModeDefault != 0, "$.imageMode", "a raster format, which only image models have"},
        {!IsImage() && (device.descriptionFlags & kDescriptionsAreText) != 0, "$.jobDescription",
         "a job description, which only image models have"},
        {(device.descriptionFlags & kJobSetsDataMode) != 0 && (IsImage() || device.colorCapability != kColor),
         "$.jobSetsDataMode", "a data mode, which only the jobs of colour printers set"},
        {device.pdlType != kPdlPcl5 && hasFlag(kModelPlainPcl5), "$.optionFlags", "plainPcl5 without PCL 5"},
        {device.pdlType != kPdlPcl6 && hasFlag(kModelColorSlicesPerPage), "$.optionFlags",
         "colorSlicesPerPage without PCL 6"},
        {device.pdlType != kPdlPostScript && hasFlag(kModelNoPostScriptJobName), "$.optionFlags",
         "noPostScriptJobName without PostScript"},
        {IsImage() && !model_.fonts.empty(), "$.fonts", "fonts, which no image model sends"},
    };
    for (const Unused& setting : kUnused) {
        if (setting.isUnused) {
            Report("setting-unused", setting.path, setting.what);
        }
    }
    if (!IsColorValid()) {
        Report("value-repaired", "$.color", "the color capability " + std::to_string(device.colorCapability));
    }
    const bool isKnownMode = std::any_of(kImageModeWords.begin(), kImageModeWords.end(),
                                         [&](const Word& word) { return word.value == device.imageModeDefault; });
    if (IsImage() && device.colorCapability == kColor && (!isKnownMode || device.imageModeDefault == 0)) {
        Report("image-mode", "$.imageMode", std::to_string(device.imageModeDefault) + " is no raster format");
    }
}

bool ModelChecker::IsDefaultTrayValid() const {
    const int bin = model_.device.defaultBin;
    return bin == kAnySizeSource ||
           (bin >= kFirstMediumSource && bin - kFirstMediumSource < static_cast<int>(model_.media.size())) ||
           std::any_of(model_.trays.begin(), model_.trays.end(),
                       [&](const TraySource& record) { return record.binId == bin; });
}

bool ModelChecker::IsDefaultMediumValid() const {
    const size_t medium = model_.device.defaultMedia;
    return medium <= model_.media.size() && (medium != 0 || model_.media.empty());
}

bool ModelChecker::IsDefaultColorModeValid() const {
    return model_.device.colorCapability != kColor ||
           model_.device.defaultColorMode < std::max<size_t>(model_.colorModes.size(), 1);
}

bool ModelChecker::IsDefaultIntentValid() const {
    return model_.device.colorCapability != kColor || IsImage() ||
           IsDeviceModeValue(model_.device.defaultIcmIntent, kLastPublishedIntent);
}

bool ModelChecker::IsColorValid() const {
    return std::any_of(kColorWords.begin(), kColorWords.end(),
                       [&](const Word& word) { return word.value == model_.device.colorCapability; });
}

// The public and the private part of a device mode are checked one after the other, each with a count of its own. What
// a new device mode takes from the model can be at fault here; the rest of it is valid.
void ModelChecker::CheckRepairs() {
    constexpr ptrdiff_t kRejects = 3;
    const DeviceModel& device = model_.device;
    const bool takesMedium = device.colorCapability == kColor && !IsImage();
    const size_t medium = device.defaultMedia;
    const bool isMediaTypeValid = !takesMedium || medium == 0 || medium > model_.media.size() ||
                                  IsDeviceModeValue(model_.media[medium - 1].mediaId, kLastPublishedMedium);
    const auto hasNoResolutions = static_cast<ptrdiff_t>(model_.resolutions.empty());
    const ptrdiff_t ofPublicPart =
        !IsDefaultTrayValid() + !IsDefaultIntentValid() + !isMediaTypeValid + hasNoResolutions;
    ptrdiff_t ofPrivatePart = !IsDefaultMediumValid() + !IsDefaultColorModeValid() + !IsColorValid() + hasNoResolutions;
    ofPrivatePart += std::count_if(model_.features.begin(), model_.features.end(),
                                   [](const FeatureSource& feature) { return feature.options.empty(); });
    for (const auto& [part, repairs] : {std::pair("public", ofPublicPart), std::pair("private", ofPrivatePart)}) {
        if (repairs >= kRejects) {
            Report("device-mode-rejected", std::string(kRootPath),
                   "the " + std::string(part) + " part of a new device mode needs " + std::to_string(repairs) +
                       " repairs");
        }
    }
}

void ModelChecker::CheckDefaults() {
    const DeviceModel& device = model_.device;
    const auto tray = std::find_if(model_.trays.begin(), model_.trays.end(),
                                   [&](const TraySource& record) { return record.binId == device.defaultBin; });
    if (!IsDefaultTrayValid() && !model_.trays.empty()) {
        Report("default-tray", "$.defaultTray", "no tray has the bin " + std::to_string(device.defaultBin));
    } else if (tray != model_.trays.end() && (tray->mask & device.defaultOptionMask) == 0) {
        Report("default-tray-not-offered", "$.defaultTray", Called(*tray) + " isn't installed in a new printer");
    }
    if (!IsDefaultMediumValid()) {
        Report(
            "default-medium", "$.defaultMedium",
            "the medium number " + std::to_string(device.defaultMedia) + " of " + std::to_string(model_.media.size()));
    }
    if (!IsDefaultIntentValid()) {
        Report("value-repaired", "$.defaultIcmIntent",
               "the rendering intent " + std::to_string(device.defaultIcmIntent));
    }
    if (!model_.resolutions.empty()) {
        const auto count = static_cast<int>(model_.resolutions.size());
        if (device.defaultResolution < 0 || device.defaultResolution >= count) {
            Report("default-resolution", "$.defaultResolution",
                   "position " + std::to_string(device.defaultResolution) + " of " + std::to_string(count) +
                       " resolutions, counted from 0");
        } else if (count > 1 && device.defaultResolution != 1) {
            Report("default-resolution-unused", "$.defaultResolution",
                   Called(model_.resolutions[static_cast<size_t>(device.defaultResolution)]) +
                       " isn't the second resolution");
        }
    }
    if (!IsDefaultColorModeValid()) {
        Report("default-color-mode", "$.defaultColorMode",
               "position " + std::to_string(device.defaultColorMode) + " of " +
                   std::to_string(model_.colorModes.size()) + " colour modes, counted from 0");
    }
    const int key = device.memoryKeyBase + device.memoryKeyStep;
    if (!model_.memory.empty() && std::none_of(model_.memory.begin(), model_.memory.end(),
                                               [&](const MemoryRecord& record) { return record.key == key; })) {
        Report("default-memory", "$.memory", "no memory size has the key " + std::to_string(key));
    }
    uint32_t unused = device.defaultOptionMask & ~kAlwaysInstalled;
    for (const TraySource& record : model_.trays) {
        unused &= ~record.mask;
    }
    if (unused != 0) {
        Report("installed-unused", "$.installed", "a new printer has the tray options " + std::to_string(unused));
    }
}

Findings CheckModel(const ModelSource& model) {
    Findings findings;
    ModelChecker checker(model, findings);
    checker.CheckTexts();
    checker.CheckSettings();
    checker.CheckCustomSizes();
    checker.CheckPapers();
    checker.CheckTrays();
    checker.CheckMedia();
    checker.CheckResolutions();
    checker.CheckMargins();
    checker.CheckMemory();
    checker.CheckFonts();
    checker.CheckExtraKeywords();
    checker.CheckFeatures();
    checker.CheckCommands();
    checker.CheckColorFeatures();
    checker.CheckColorModes();
    checker.CheckConstraints();
    checker.CheckKeywordLists();
    checker.CheckDefaults();
    checker.CheckRepairs();
    return findings;
}

}  // namespace velmora
