// Trays, media, resolutions, features and the lists beside them.
#include <algorithm>

#include "tools/xpic/model_checker.h"
#include "tools/xpic/model_limits.h"
#include "tools/xpic/source_reader.h"

namespace velmora {
namespace {

size_t CountCharacters(std::string_view utf8) {
    return static_cast<size_t>(
        std::count_if(utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

void ModelChecker::CheckTrays() {
    if (model_.trays.empty()) {
        Report("no-trays", "$.trays", "there are no trays");
    }
    constexpr uint32_t kInstallable = 7;  // what the printer properties can install
    constexpr size_t kShownCharacters = 23;
    List list;
    std::set<uint16_t> bins;
    for (size_t i = 0; i < model_.trays.size(); ++i) {
        const TraySource& tray = model_.trays[i];
        const std::string path = ElementPath("$.trays", i);
        CheckRecord(tray, path, list, Ticket::kNeedsKeyword);
        for (size_t language = 0; language < tray.label.byLanguage.size(); ++language) {
            const auto label =
                encoder_.Decode(tray.label.byLanguage[language], model_.languages[language]->ansiEncoding);
            if (label && CountCharacters(*label) > kShownCharacters) {
                Report("tray-label-cut", path + ".label",
                       Quote(*label) + " has " + std::to_string(CountCharacters(*label)) + " characters");
            }
        }
        if (!bins.insert(tray.binId).second) {
            Report("tray-bin-twice", path + ".bin",
                   Called(tray) + " has the bin " + std::to_string(tray.binId) + " of an earlier tray");
        }
        if ((tray.mask & (model_.device.defaultOptionMask | kInstallable)) == 0) {
            Report("tray-not-offered", path, Called(tray) + " isn't installed in a new printer");
        }
    }
}

void ModelChecker::CheckJobCommand(const std::string& command, const std::string& record) {
    const std::string path = record + ".jobText";
    if (command.empty()) {
        return;
    }
    if (IsImage()) {
        Report("setting-unused", path, "a job command, which no image model sends");
    } else if (!command.starts_with("@PJL") || !command.ends_with("\r\n")) {
        Report("job-command", path, Quote(command) + " isn't a whole line that begins with \"@PJL\"");
    }
}

void ModelChecker::CheckMedia() {
    if (model_.media.empty() && !IsImage()) {
        Report("no-media", "$.media", "there are no media");
    }
    List list;
    std::set<uint32_t> ids;
    for (size_t i = 0; i < model_.media.size(); ++i) {
        const MediumSource& medium = model_.media[i];
        const std::string path = ElementPath("$.media", i);
        CheckRecord(medium, path, list, Ticket::kNeedsKeyword);
        CheckJobCommand(medium.jobText, path);
        if (!IsDeviceModeValue(medium.mediaId, kLastPublishedMedium)) {
            Report("value-repaired", path + ".mediaId",
                   Called(medium) + " has the id " + std::to_string(medium.mediaId));
        }
        if (!ids.insert(medium.mediaId).second) {
            Report("medium-id-twice", path + ".mediaId",
                   Called(medium) + " has the id " + std::to_string(medium.mediaId) + " of an earlier medium");
        }
    }
}

void ModelChecker::CheckResolutions() {
    if (model_.resolutions.empty()) {
        Report("no-resolutions", "$.resolutions", "there are no resolutions");
    } else if (model_.resolutions.size() == 1) {
        Report("one-resolution", "$.resolutions", "there is a single resolution");
    }
    const bool usesPatterns = model_.device.pdlType == kPdlPcl5 && model_.device.colorCapability == kColorNone;
    List list;
    for (size_t i = 0; i < model_.resolutions.size(); ++i) {
        const ResolutionSource& resolution = model_.resolutions[i];
        const std::string path = ElementPath("$.resolutions", i);
        CheckRecord(resolution, path, list, Ticket::kNeedsKeyword);
        CheckJobCommand(resolution.jobText, path);
        if (resolution.pattern && !usesPatterns) {
            Report("pattern-unused", path + ".pattern", Called(resolution) + " has a pattern");
        }
    }
}

void ModelChecker::CheckMemory() {
    std::set<uint16_t> keys;
    for (size_t i = 0; i < model_.memory.size(); ++i) {
        const uint16_t key = model_.memory[i].key;
        if (!keys.insert(key).second) {
            Report("memory-key-twice", ElementPath("$.memory.sizes", i),
                   "an earlier memory size has the key " + std::to_string(key));
        }
    }
}

void ModelChecker::CheckFonts() {
    constexpr size_t kRoom = 31;  // of a substitution table's texts
    std::set<std::string> faces;
    for (size_t i = 0; i < model_.fontSubstitutions.size(); ++i) {
        const FontSubstitution& pair = model_.fontSubstitutions[i];
        const std::string path = ElementPath("$.fontSubstitutions", i);
        for (const std::string& name : {pair.face, pair.printerFont}) {
            if (name.size() > kRoom) {
                Report("substitution-too-long", path,
                       Quote(name) + " has " + std::to_string(name.size()) + " characters");
            }
        }
        if (!faces.insert(pair.face).second) {
            Report("substitution-twice", path, "an earlier substitution is for " + Quote(pair.face));
        }
    }
}

void ModelChecker::CheckFeatures() {
    constexpr uint32_t kBorderless = 8;
    List list;
    for (size_t i = 0; i < model_.features.size(); ++i) {
        const FeatureSource& feature = model_.features[i];
        const std::string path = ElementPath("$.features", i);
        CheckRecord(feature, path, list, Ticket::kNeedsKeyword);
        if (feature.options.empty()) {
            Report("feature-without-options", path, Called(feature) + " has no options");
        }
        if (!IsImage() && feature.mask == kBorderless && feature.options.size() < 2) {
            Report("borderless-options", path,
                   Called(feature) + " has " + std::to_string(feature.options.size()) + " options");
        }
        const bool hasValue = std::any_of(feature.options.begin(), feature.options.end(),
                                          [](const OptionSource& option) { return !option.jobValue.empty(); });
        if (hasValue && feature.jobKey.empty()) {
            Report("feature-without-job-key", path, Called(feature) + " has options with job values and no job key");
        } else if (!hasValue && !feature.options.empty()) {
            Report("feature-never-sent", path, Called(feature) + " has no job values");
        }
        List options;
        for (size_t j = 0; j < feature.options.size(); ++j) {
            CheckRecord(feature.options[j], ElementPath(path + ".options", j), options, Ticket::kNeedsKeyword);
        }
    }
}

void ModelChecker::CheckExtraKeywords() {
    const auto hasValue = [](const ExtraKeywordSource& keyword) { return !keyword.jobValue.empty(); };
    const auto begin = model_.extraKeywords.begin();
    const auto end = model_.extraKeywords.end();
    if (model_.extraKeywordJobKey.empty() && std::any_of(begin, end, hasValue)) {
        Report("extra-keyword-key", "$.extraKeywordJobKey", "extra keywords have job values, and there is no job key");
    }
    if (begin != end && std::all_of(begin, end, hasValue)) {
        Report("extra-keyword-default", "$.extraKeywords", "every extra keyword has a job value");
    }
    List list;
    for (size_t i = 0; i < model_.extraKeywords.size(); ++i) {
        const ExtraKeywordSource& keyword = model_.extraKeywords[i];
        const std::string path = ElementPath("$.extraKeywords", i);
        CheckRecord(keyword, path, list, Ticket::kMayLackKeyword);
        const bool isNamed =
            std::any_of(model_.constraints.begin(), model_.constraints.end(), [&](const ConstraintSource& constraint) {
                return (constraint.record.extraKeywordMask & keyword.mask) != 0;
            });
        if (i >= kSearchedExtraKeywords && isNamed) {
            Report("extra-keyword-unsearched", path,
                   Called(keyword) + " is number " + std::to_string(i + 1) + ", and a constraint names it");
        }
    }
}

void ModelChecker::CheckKeywordLists() {
    for (size_t number = 0; number < kKeywordLists; ++number) {
        const bool isFeature = number == kPhotoIntents || number == kSignatureOptions || number == kMediaColors;
        const std::string listPath = MemberPath(std::string(kRootPath), kKeywordListKeys[number]);
        List list;
        for (size_t i = 0; i < model_.keywordLists[number].size(); ++i) {
            CheckRecord(model_.keywordLists[number][i], ElementPath(listPath, i), list,
                        isFeature ? Ticket::kNeedsKeyword : Ticket::kMayLackKeyword);
        }
    }
}

}  // namespace velmora
