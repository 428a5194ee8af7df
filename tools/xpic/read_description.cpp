#include "tools/xpic/read_description.h"

#include <map>

#include "tools/xpic/block_builder.h"
#include "tools/xpic/description_reader.h"
#include "tools/xpic/model_fields.h"
#include "tools/xpic/source_reader.h"

namespace velmora {
namespace {

std::string CodePageOf(const char* encoding) {
    return std::string("code page ") + (encoding + 2);
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// What the header says, by its members' names.
struct SectionName {
    uint32_t DescriptionFileHeader::*offset;
    std::string_view name;
};
constexpr SectionName kSections[] = {
    {&DescriptionFileHeader::deviceBlockOffset, "device block"},
    {&DescriptionFileHeader::languageTableOffset, "language table"},
    {&DescriptionFileHeader::stringIndexOffset, "string index"},
    {&DescriptionFileHeader::stringPoolOffset, "string pool"},
    {&DescriptionFileHeader::textIndexOffset, "text index"},
    {&DescriptionFileHeader::textPoolOffset, "text pool"},
    {&DescriptionFileHeader::fontIndexOffset, "font index"},
    {&DescriptionFileHeader::fontPoolOffset, "font pool"},
    {&DescriptionFileHeader::imageIndexOffset, "image index"},
    {&DescriptionFileHeader::imagePoolOffset, "image pool"},
    {&DescriptionFileHeader::patternIndexOffset, "pattern index"},
    {&DescriptionFileHeader::patternPoolOffset, "pattern pool"},
    {&DescriptionFileHeader::nameIndexOffset, "name index"},
    {&DescriptionFileHeader::namePoolOffset, "name pool"},
};

void CheckSections(const DescriptionView& view, Findings& findings) {
    for (const SectionName& section : kSections) {
        uint32_t offset = 0;
        std::memcpy(&offset, &(view.Header().*section.offset), sizeof offset);
        if (offset > view.FileSize()) {
            AddFinding(findings, "section-outside", std::string(kRootPath),
                       "the " + std::string(section.name) + " begins at " + std::to_string(offset) + " of a file of " +
                           std::to_string(view.FileSize()) + " bytes");
        }
    }
}

// The device block, if there is one that holds the record of plain numbers.
std::optional<std::span<const std::byte>> FindBlock(const DescriptionView& view, Findings& findings) {
    const int64_t start = view.Header().deviceBlockOffset;
    const int64_t size = int64_t{view.Header().languageTableOffset} - start;
    if (size < static_cast<int64_t>(sizeof(DeviceModel)) || size > UINT16_MAX) {
        AddFinding(findings, "block-size", std::string(kRootPath),
                   "the device block has " + std::to_string(size) + " bytes, not " +
                       std::to_string(sizeof(DeviceModel)) + " to " + std::to_string(UINT16_MAX));
        return std::nullopt;
    }
    const auto block = view.BytesAt(static_cast<uint64_t>(start), static_cast<uint64_t>(size));
    if (!block) {
        AddFinding(findings, "section-outside", std::string(kRootPath), "the device block ends behind the file's end");
    }
    return block;
}

}  // namespace

DescriptionReader::DescriptionReader(const DescriptionView& view, std::span<const std::byte> block, Findings& findings)
    : view_(view), block_(block.begin(), block.end()), findings_(findings) {
    std::memcpy(&record_, block_.data(), sizeof record_);
}

bool DescriptionReader::Read() {
    ReadLanguageTable();
    ReadFonts();
    std::memcpy(&record_, block_.data(), sizeof record_);  // the font groups may stand anywhere
    ReadNumbers();
    ReadTexts();
    ReadBlob();
    ReadPapers();
    ReadTrays();
    ReadExtraKeywords();
    ReadMedia();
    ReadResolutions();
    ReadMemory();
    ReadFontNames();
    ReadConstraints();
    ReadMargins();
    ReadFeatures();
    ReadColorModes();
    ReadColorFeatures();
    ReadKeywordLists();
    ReadImages();
    ReportForeignReferences();
    ChooseFirstLanguage();
    CheckLocalizedTexts();
    return !tooLarge_;
}

void DescriptionReader::CheckRange(const std::string& path, int64_t value, int64_t min, int64_t max) {
    if (value < min || value > max) {
        Report("number-out-of-range", path,
               std::to_string(value) + " isn't from " + std::to_string(min) + " to " + std::to_string(max));
    }
}

void DescriptionReader::ReadLanguageTable() {
    const uint32_t table = view_.Header().languageTableOffset;
    std::vector<uint16_t> bases;
    while (bases.size() < kPrimaryLanguages) {
        const auto base = view_.Entry<uint16_t>(table, bases.size());
        if (!base) {
            break;
        }
        bases.push_back(*base);
    }
    const Language* english = FindLanguage("en");
    if (bases.empty()) {
        Report("section-outside", "$.languages", "the language table has no entries");
        bases.push_back(0);
    }
    std::map<uint16_t, size_t> counts;
    for (uint16_t base : bases) {
        ++counts[base];
    }
    const auto servesMore = [](const auto& a, const auto& b) { return a.second < b.second; };
    uint16_t fallback = std::max_element(counts.begin(), counts.end(), servesMore)->first;
    const bool hasEnglish = english->primaryId < bases.size();
    if (hasEnglish && counts[bases[english->primaryId]] == counts[fallback]) {
        fallback = bases[english->primaryId];
    }

    std::vector<std::pair<uint16_t, const Language*>> others;
    std::string unknown;
    std::vector<bool> known(bases.size());
    for (const Language& language : kLanguages) {
        if (language.primaryId >= bases.size()) {
            continue;
        }
        known[language.primaryId] = true;
        if (bases[language.primaryId] == fallback) {
            firstCandidates_.push_back(&language);
        } else {
            others.emplace_back(bases[language.primaryId], &language);
        }
    }
    size_t unknownCount = 0;
    constexpr size_t kMostListed = 5;
    for (size_t id = 0; id < bases.size(); ++id) {
        if (!known[id] && bases[id] != fallback && ++unknownCount <= kMostListed) {
            unknown.append(unknown.empty() ? "" : ", ").append(std::to_string(id));
        }
    }
    if (unknownCount > 0) {
        Report("unknown-language", "$.languages",
               std::to_string(unknownCount) + " primary languages that no source can name have strings of their own (" +
                   unknown + (unknownCount > kMostListed ? ", …)" : ")"));
    }
    // The compiler numbers the languages' strings in the order of the languages.
    std::stable_sort(others.begin(), others.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    model_.languages.push_back(english);  // until ChooseFirstLanguage
    uses_.push_back({fallback, UINT32_MAX, 0, {}});
    for (const auto& [base, language] : others) {
        model_.languages.push_back(language);
        uses_.push_back({base, UINT32_MAX, 0, {}});
    }
    for (LanguageUse& use : uses_) {
        for (const LanguageUse& other : uses_) {
            if (other.base > use.base) {
                use.strings = std::min<uint32_t>(use.strings, other.base - use.base);
            }
        }
    }
}

void DescriptionReader::ChooseFirstLanguage() {
    // Where the fallback's texts aren't English, the first language in whose code page they are text; the more a code
    // page refuses, the more it says.
    constexpr std::string_view kTelling[] = {"CP1252", "CP932", "CP949", "CP936"};
    const auto rank = [&](const Language* language) {
        if (language->code == "en") {
            return std::begin(kTelling) - 1;
        }
        return std::find(std::begin(kTelling), std::end(kTelling), language->ansiEncoding);
    };
    std::stable_sort(firstCandidates_.begin(), firstCandidates_.end(),
                     [&](const Language* a, const Language* b) { return rank(a) < rank(b); });
    std::map<std::string_view, bool> allText;  // by code page
    const auto fits = [&](const char* encoding) {
        const auto [entry, isNew] = allText.emplace(encoding, true);
        if (isNew) {
            entry->second = std::all_of(strings_.begin(), strings_.end(), [&](const StringUse& use) {
                return use.language != 0 || IsAscii(use.text) || encoder_.Decode(use.text, encoding);
            });
        }
        return entry->second;
    };
    const auto first = std::find_if(firstCandidates_.begin(), firstCandidates_.end(),
                                    [&](const Language* language) { return fits(language->ansiEncoding); });
    if (first != firstCandidates_.end()) {
        model_.languages[0] = *first;
    } else if (!firstCandidates_.empty()) {
        model_.languages[0] = firstCandidates_.front();
    }
}

void DescriptionReader::CheckLocalizedTexts() {
    Findings all;
    size_t placed = 0;
    for (const StringUse& use : strings_) {
        const Language& language = *model_.languages[use.language];
        if (IsAscii(use.text) || encoder_.Decode(use.text, language.ansiEncoding)) {
            continue;
        }
        all.insert(all.end(), findings_.begin() + static_cast<ptrdiff_t>(placed),
                   findings_.begin() + static_cast<ptrdiff_t>(use.findingsBefore));
        placed = use.findingsBefore;
        AddFinding(
            all, "text-not-in-code-page", use.path,
            Quote(use.text) + " in " + Quote(language.code) + " isn't text of " + CodePageOf(language.ansiEncoding));
    }
    all.insert(all.end(), findings_.begin() + static_cast<ptrdiff_t>(placed), findings_.end());
    findings_ = std::move(all);
}

void DescriptionReader::ReportForeignReferences() {
    for (size_t i = 0; i < uses_.size(); ++i) {
        if (uses_[i].foreign > 0) {
            Report("references-cross-languages", ElementPath("$.languages", i),
                   std::to_string(uses_[i].foreign) +
                       " references reach into the strings of another language, first at " + uses_[i].firstForeign);
        }
    }
}

LocalizedText DescriptionReader::Localized(uint16_t reference, const std::string& path, size_t limit) {
    LocalizedText text;
    const auto number = static_cast<int16_t>(reference);
    if (number < 0) {
        CheckRange(path + ".resource", -int{number}, 1, INT16_MAX);
        text.resourceId = static_cast<int16_t>(-std::max<int>(number, -INT16_MAX));
        return text;
    }
    if (number == 0) {
        return text;
    }
    const FindingKind* fault = nullptr;
    for (size_t i = 0; i < uses_.size(); ++i) {
        const PoolText string = view_.String(uses_[i].base, reference, limit);
        if (string.fault != nullptr && fault == nullptr) {
            fault = string.fault;
            const std::string language = i == 0 ? "the first language" : Quote(model_.languages[i]->code);
            ReportText(*fault, path, "reference " + std::to_string(number) + " in " + language, limit);
        }
        if (string.fault == nullptr && reference > uses_[i].strings && uses_[i].foreign++ == 0) {
            uses_[i].firstForeign = path;
        }
        strings_.push_back({findings_.size(), path, i, string.text});
        text.byLanguage.emplace_back(string.text);
    }
    return text;
}

LocalizedText DescriptionReader::Label(uint16_t reference, const std::string& record, size_t limit) {
    const std::string path = MemberPath(record, "label");
    const size_t before = findings_.size();
    LocalizedText label = Localized(reference, path, limit);
    const bool empty = label.resourceId == 0 && std::all_of(label.byLanguage.begin(), label.byLanguage.end(),
                                                            [](const std::string& text) { return text.empty(); });
    if (empty && findings_.size() == before) {
        Report("label-missing", path, "reference " + std::to_string(reference) + " is an empty text");
    }
    return label;
}

void DescriptionReader::ReportText(const FindingKind& kind, const std::string& path, const std::string& which,
                                   size_t limit) {
    const std::string_view code = kind.code;
    findings_.push_back({kind.severity,
                         code,
                         path,
                         which + (code == "text-too-long"    ? " has more than " + std::to_string(limit) + " bytes"
                                  : code == "text-not-ended" ? " has no end in its pool"
                                                             : " has no entry in its index"),
                         kind.why,
                         {},
                         {}});
}

std::string DescriptionReader::FixedText(const PoolText& text, const std::string& path, size_t limit) {
    if (text.fault != nullptr) {
        ReportText(*text.fault, path, "its text", limit);
    } else if (!IsAscii(text.text) && !encoder_.Decode(text.text, kFixedTextEncoding)) {
        Report("text-not-in-code-page", path, Quote(text.text) + " isn't text of " + CodePageOf(kFixedTextEncoding));
    }
    return std::string(text.text);
}

std::string DescriptionReader::NeverEmpty(uint16_t reference, const PoolText& text, const std::string& path,
                                          size_t limit) {
    if (reference != 0 && text.fault == nullptr && text.text.empty()) {
        Report("text-empty", path, "reference " + std::to_string(reference) + " is an empty text");
    }
    return FixedText(text, path, limit);
}

std::string DescriptionReader::Keyword(uint16_t reference, const std::string& record) {
    const std::string path = MemberPath(record, "keyword");
    std::string keyword = Name(reference, path, TextLimit::kKeyword);
    const size_t colon = keyword.find(':');
    const size_t name = keyword.size() - (colon == std::string::npos ? 0 : colon + 1);
    if (name > TextLimit::kKeywordName) {
        Report(
            "text-too-long", path,
            std::to_string(name) + " bytes behind the colon, not at most " + std::to_string(TextLimit::kKeywordName));
    }
    return keyword;
}

std::optional<size_t> DescriptionReader::Table(size_t slot, const std::string& path) {
    uint32_t offset = 0;
    std::memcpy(&offset, block_.data() + slot, sizeof offset);
    if (offset == 0) {
        return std::nullopt;
    }
    if (offset < sizeof(DeviceModel) || offset >= block_.size()) {
        Report("table-outside", path,
               "its table begins at " + std::to_string(offset) + " of a device block of " +
                   std::to_string(block_.size()) + " bytes");
        return std::nullopt;
    }
    return offset;
}

void DescriptionReader::ReadNumbers() {
    constexpr uint8_t kDuplexUnit = 1;
    DeviceModel& device = model_.device;
    device.pdlType = record_.pdlType;
    device.modelCode = record_.modelCode;
    device.customMinWidth = record_.customMinWidth;
    device.customMaxWidth = record_.customMaxWidth;
    device.customMinLength = record_.customMinLength;
    device.customMaxLength = record_.customMaxLength;
    device.defaultOptionMask = record_.defaultOptionMask;
    device.jobNameFlags = record_.jobNameFlags & (kDuplexUnit | kJobNamedByDisplay);
    device.duplexFlagsA = record_.duplexFlagsA & kDuplexUnit;
    device.duplexFlagsB = record_.duplexFlagsB & kDuplexUnit;
    device.memoryKeyBase = record_.memoryKeyBase;
    device.memoryKeyStep = record_.memoryKeyStep;
    device.defaultBin = record_.defaultBin;
    device.defaultResolution = record_.defaultResolution;
    device.defaultFontSize = record_.defaultFontSize;
    device.extraMemory = record_.extraMemory;
    device.defaultOptionFlags = record_.defaultOptionFlags;
    device.icmIntentFlags = record_.icmIntentFlags;
    device.defaultColorMode = record_.defaultColorMode;
    device.imageModeDefault = record_.imageModeDefault;
    device.colorCapability = record_.colorCapability;
    device.pagesPerMinute = record_.pagesPerMinute;
    device.defaultIcmIntent = record_.defaultIcmIntent;
    device.defaultMedia = record_.defaultMedia;
    device.descriptionFlags = record_.descriptionFlags & (kJobSetsDataMode | kDescriptionsAreText);
    CheckRange("$.pagesPerMinute", device.pagesPerMinute, 0, INT16_MAX);
    CheckRange("$.defaultFontSize", device.defaultFontSize, 0, INT16_MAX);
    CheckRange("$.extraOption.memoryMb", device.extraMemory, 0, INT16_MAX);
    CheckRange("$.customSizes.minWidthMm", device.customMinWidth, 0, INT16_MAX);
    CheckRange("$.customSizes.minLengthMm", device.customMinLength, 0, INT16_MAX);
    const auto checkMaximum = [&](const char* path, int min, int max) {
        if (max != 0 && min > max) {
            Report("size-range", path,
                   "from " + std::to_string(min) + " to " + std::to_string(max) + " tenths of a millimetre");
        }
    };
    checkMaximum("$.customSizes.minWidthMm", device.customMinWidth, device.customMaxWidth);
    checkMaximum("$.customSizes.minLengthMm", device.customMinLength, device.customMaxLength);
    // One of the three flags is enough.
    if (((device.jobNameFlags | device.duplexFlagsA | device.duplexFlagsB) & kDuplexUnit) != 0) {
        SetDuplexUnit(device);
    }
}

void DescriptionReader::ReadTexts() {
    model_.pageLabel = Localized(record_.pageLabelRef, "$.pageLabel", TextLimit::kLabel);
    model_.link = Localized(record_.linkRef, "$.link", TextLimit::kLink);
    model_.extraKeywordJobKey = JobTextOrNone(record_.jobTextRef, "$.extraKeywordJobKey", TextLimit::kJobWord);
    model_.extraText = JobTextOrNone(record_.extraTextRef, "$.extraOption.text", TextLimit::kExtraText);
    model_.namespaceUri = NameOrNone(record_.oemNamespaceRef, "$.namespace.uri", TextLimit::kNamespace);
    model_.namespacePrefix = NameOrNone(record_.oemPrefixRef, "$.namespace.prefix", TextLimit::kLabel);
}

DescriptionReading ReadDescription(std::span<const std::byte> file) {
    DescriptionReading reading;
    const DescriptionView view(file);
    if (file.size() < sizeof(DescriptionFileHeader)) {
        AddFinding(reading.findings, "file-too-short", std::string(kRootPath),
                   "the file has " + std::to_string(file.size()) + " bytes, its header " +
                       std::to_string(sizeof(DescriptionFileHeader)));
        return reading;
    }
    CheckSections(view, reading.findings);
    const auto block = FindBlock(view, reading.findings);
    if (!block) {
        return reading;
    }
    DescriptionReader reader(view, *block, reading.findings);
    if (!reader.Read()) {
        return reading;
    }
    reading.model = reader.TakeModel();
    if (!HasErrors(reading.findings)) {
        TextPools pools{LocalizedPool(reading.model->languages)};
        LimitFaults faults;
        BuildDeviceBlock(*reading.model, pools, faults);
        for (const LimitFault& fault : faults) {
            AddFinding(reading.findings, "format-limit", fault.path, fault.found + ", " + fault.expected);
        }
    }
    return reading;
}

}  // namespace velmora
