// A model as its source describes it: checked, references resolved to positions, texts in their code pages. What is
// left for the compiler is to number texts and to lay out tables.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "driver/devdesc/device_model.h"
#include "tools/xpic/vocabulary.h"

namespace velmora {

using Bytes = std::vector<std::byte>;
using TicketValues = std::array<uint32_t, 3>;

// A text in every language of the model (ModelSource.languages, same order and number), or a string of the language
// resource module. Neither: no text.
struct LocalizedText {
    int16_t resourceId = 0;  // 0: the text is given here
    std::vector<std::string> byLanguage;

    bool Absent() const { return resourceId == 0 && byLanguage.empty(); }
    bool operator==(const LocalizedText&) const = default;
};

// Every record has the name by which the source refers to it (UTF-8). A model that was read from a description file has
// none until names are made for it.

struct PaperSource {
    std::string name;
    LocalizedText label;
    int16_t id = 0;
    std::string keyword;
    int16_t width = 0;   // 0.1 mm
    int16_t length = 0;  // 0.1 mm
    bool isMetric = true;
    int16_t pclSizeCode = 0;
    int16_t fitPaperId = 0;
    std::string rendererName;
    TicketValues ticketValues{};
};

struct TraySource {
    std::string name;
    uint32_t mask = 0;
    uint16_t binId = 0;
    LocalizedText label;
    std::string keyword;
};

// Its id in the device mode is the text reference of its job value.
struct ExtraKeywordSource {
    std::string name;
    uint32_t mask = 0;
    LocalizedText label;
    std::string keyword;
    std::string jobValue;
};

struct MediumSource {
    std::string name;
    uint32_t mark = 0;
    LocalizedText label;
    std::string jobText;
    std::string rendererName;
    std::string keyword;
    uint32_t mediaId = 0;
    TicketValues ticketValues{};
};

struct ResolutionSource {
    std::string name;
    int16_t resolutionId = 0;
    std::string jobText;
    LocalizedText label;
    uint16_t xDpi = 0;
    uint16_t yDpi = 0;
    std::optional<size_t> pattern;
    std::string keyword;
    TicketValues ticketValues{};
};

struct ConstraintSource {
    ConstraintRecord record{};  // but for messageRef
    LocalizedText message;
};

struct OptionSource {
    std::string name;
    LocalizedText label;
    std::string jobValue;
    std::string keyword;
};

struct FeatureSource {
    std::string name;
    LocalizedText label;
    std::string jobKey;
    uint32_t mask = 0;
    std::string keyword;
    std::vector<OptionSource> options;
};

struct CommandSlice {
    uint16_t start = 0;
    uint16_t length = 0;
};

struct ColorValueSource {
    std::string name;
    LocalizedText label;
    CommandSlice first;
    CommandSlice second;
    std::string jobValue;  // image models, in place of the slices
};

struct ColorFeatureSource {
    std::string name;
    LocalizedText label;
    std::vector<ColorValueSource> values;
};

struct ColorModeSource {
    std::string name;
    uint32_t kind = 0;
    LocalizedText label;
    std::vector<PresetSettingRecord> settings;
};

struct KeywordSource {
    std::string name;
    LocalizedText label;
    std::string keyword;
    TicketValues ticketValues{};
};

struct FontSubstitution {
    std::string face;
    std::string printerFont;
};

struct PatternSource {
    std::string name;
    int16_t size = 0;  // k: the block is 32*k*k bytes
    Bytes block;
};

// The colour groups in the order of the preset settings' group numbers, which begin with 1.
enum ColorGroupIndex { kTextGroup, kImageGroup, kGraphicsGroup, kGeneralGroup, kColorGroupCount };

// The lists that only the PrintTicket provider reads.
enum KeywordList {
    kPhotoIntents,
    kSignatureOptions,
    kExtraListA,
    kExtraListB,
    kMediaColors,
    kExtraListC,
    kKeywordLists
};

// Their members of a source.
inline constexpr std::string_view kKeywordListKeys[kKeywordLists] = {"photoIntents", "signatureOptions", "extraListA",
                                                                     "extraListB",   "mediaColors",      "extraListC"};

// A localised text that the source gives in some of the model's languages only.
struct MissingText {
    std::string path;  // of the text
    const Language* language;
};

// Another arrangement of the model's description file (layout.h).

// A part of the file: bytes of the compiler's own output, or given ones.
struct LayoutPiece {
    size_t start = 0;   // in the compiler's output
    size_t length = 0;  // bytes taken from there
    Bytes given;        // where `length` is 0
};

struct FileLayout {
    // The compiler's own output that the pieces were cut from.
    size_t ofSize = 0;
    uint32_t ofCrc32 = 0;
    size_t size = 0;                  // of the file, the sum of the pieces
    std::vector<LayoutPiece> pieces;  // in the order of the file
};

struct ModelSource {
    std::string modelName;                   // UTF-8; not part of the description file
    std::vector<const Language*> languages;  // at least one; the first serves every language that isn't listed

    DeviceModel device{};  // its plain numbers; pointers and references are null
    LocalizedText pageLabel;
    LocalizedText link;
    std::string extraKeywordJobKey;
    std::string extraText;
    std::string namespaceUri;
    std::string namespacePrefix;
    std::string primaryFont;
    std::string secondaryFont;

    std::vector<PaperSource> papers;
    std::vector<TraySource> trays;
    std::vector<ExtraKeywordSource> extraKeywords;
    std::vector<MediumSource> media;
    std::vector<MemoryRecord> memory;
    std::vector<FontSubstitution> fontSubstitutions;
    std::vector<ConstraintSource> constraints;
    std::vector<MarginRecord> margins;
    std::vector<ResolutionSource> resolutions;
    std::vector<FeatureSource> features;
    std::vector<ColorModeSource> colorModes;
    std::array<std::vector<ColorFeatureSource>, kColorGroupCount> colorFeatures;
    std::array<std::vector<KeywordSource>, kKeywordLists> keywordLists;

    std::vector<Bytes> fonts;
    std::vector<Bytes> images;
    std::vector<PatternSource> patterns;
    Bytes blob;

    // What only a model from a source has.
    std::vector<size_t> marginElements;      // by margin record: the element of "margins" that it was made of
    std::vector<size_t> constraintElements;  // by constraint record: the element of "constraints"
    std::vector<MissingText> missingTexts;
    std::vector<std::string> unusedTexts;  // paths of what the source itself says in "texts" for nothing
    std::vector<std::filesystem::path> dataFiles;
    std::optional<FileLayout> layout;
};

}  // namespace velmora
