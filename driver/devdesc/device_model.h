// The device model: what a printer model can do, as it lies in a description file's device block and, once loaded, in
// memory. One flat byte-packed record whose pointer slots lead to tables inside the same allocation. Read-only.
//
// Units: lengths are 0.1 mm unless a field says otherwise. "Reference" is an index into one of the file's string
// tables: a localised string (negative: a string of the language resource module), a name (fixed, not localised) or a
// text (8-bit block, not localised); 0 is always "none".
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmora {

#pragma pack(push, 1)

// A 16-bit value that may stand at any address.
struct PackedU16 {
    uint16_t value;
};

// A paper. A record whose nameRef is 0 ends the list.
struct PaperRecord {
    uint16_t nameRef;     // localised display name
    int16_t paperId;      // DMPAPER_ value (wingdi.h) or a driver-defined id, positive
    uint16_t keywordRef;  // name: prefix, colon, PrintTicket keyword
    int16_t width;        // 0.1 mm
    int16_t length;       // 0.1 mm
    int16_t isMetric;     // 1 where the size is a metric one
    uint8_t reserved12[2];
    int16_t pclSizeCode;       // negative marks a driver-defined size
    int16_t fitPaperId;        // nonzero: the paper onto which documents of this paper are scaled
    uint16_t rendererNameRef;  // name: the paper's name for the PCL 6 renderer
    uint32_t ticketValues[3];  // sources, destinations and options that must be installed
};

// A tray. A record whose optionMask is 0 ends the list.
struct BinRecord {
    uint32_t optionMask;  // offered only where it shares a bit with DeviceInfo.installedOptions
    uint16_t binId;       // dmDefaultSource value: 1 to 15, or 256 and above
    int16_t nameRef;      // localised display name
    uint16_t keywordRef;  // name: prefix, colon, PrintTicket keyword
};

// An entry of the list that the device mode's extraKeywordIndex selects from. A record whose optionMask is 0 ends it.
struct ExtraKeywordRecord {
    uint32_t optionMask;
    uint16_t id;          // what extraKeywordIndex holds: an id, not a position
    uint16_t nameRef;     // localised display name
    uint16_t keywordRef;  // name
};

// A medium. A record whose mark is 0 ends the list.
struct MediaRecord {
    uint32_t mark;             // nonzero; also the media mask of the constraint check
    int16_t nameRef;           // localised display name
    uint16_t jobTextRef;       // text: the job command that selects the medium, 0 for none
    int16_t rendererNameRef;   // name: the medium's name for the renderer
    uint16_t keywordRef;       // name: prefix, colon, PrintTicket keyword
    uint32_t mediaId;          // dmMediaType value
    uint32_t ticketValues[3];  // sources, destinations and options that must be installed
};

// The dmDefaultSource value of medium i (0-based) from any tray is this plus i, except on image models.
inline constexpr uint16_t kFirstMediumSource = 2000;
// One that every model takes, with paper of any size.
inline constexpr uint16_t kAnySizeSource = 1028;
// The printer's own choice, where no tray of a model can be named.
inline constexpr uint16_t kAutomaticSource = 1025;

// A resolution. A record whose mark is 0 ends the list.
struct ResolutionRecord {
    uint32_t mark;         // nonzero
    int16_t resolutionId;  // dots per inch, the unit of the device mode's dot-based fields
    uint16_t jobTextRef;   // text: the job command that selects the resolution, 0 for none
    uint16_t nameRef;      // localised display name
    uint16_t xDpi;
    uint16_t yDpi;
    int16_t patternSize;       // k: the pattern block is 32*k*k bytes; 0 for none
    int16_t patternIndex;      // pattern block of the file
    uint16_t keywordRef;       // name: prefix, colon, PrintTicket keyword
    uint32_t ticketValues[3];  // sources, destinations and options that must be installed
};

// 256 paper ids: id p is in the set when byte p/8 has bit 0x80 >> (p mod 8). Id 0 stands for custom sizes.
struct PaperSet {
    uint8_t bytes[32];
};

// Margins of some papers. A record whose mark is 0 ends the list.
struct MarginRecord {
    uint16_t mark;  // nonzero
    PaperSet papers;
    int16_t minWidth;  // 0.1 mm, custom sizes only, as the next three
    int16_t maxWidth;
    int16_t minLength;
    int16_t maxLength;
    uint16_t orientationMask;  // bit 0: valid for portrait use, bit 1: for landscape use
    int16_t unit;              // margins are in 1/unit inch
    int16_t leftMargin;
    int16_t topMargin;
    int16_t rightMargin;
    int16_t bottomMargin;
};

// A combination that the device can't print. A record whose mark is 0 ends the list.
struct ConstraintRecord {
    uint16_t mark;  // nonzero
    uint8_t reserved2[2];
    PaperSet papers;    // empty: any paper
    uint16_t minWidth;  // 0.1 mm, custom sizes only, as the next three
    uint16_t maxWidth;
    uint16_t minLength;
    uint16_t maxLength;
    uint32_t binMask;           // against the bin's optionMask; 0: any, as the next two
    uint32_t extraKeywordMask;  // against the extra keyword's optionMask
    uint32_t mediaMask;         // against the medium's mark
    uint32_t flags;             // bit 0: only when printing on both sides; the other bits: an option mask
    uint16_t messageRef;        // localised message
    uint8_t reserved62[2];
};

// An installable or selectable feature. A record whose nameRef is 0 ends the list.
struct FeatureRecord {
    uint16_t nameRef;      // localised display name
    uint16_t jobKeyRef;    // text: key of the feature's job line
    uint32_t featureMask;  // all its bits must be set in DeviceInfo.optionFlags; 0: no requirement
    int16_t firstOption;   // index of its first option record in optionTable
    uint16_t keywordRef;   // name: prefix, colon, PrintTicket keyword
};

// A feature's option. A record whose nameRef is 0 ends the feature's run. Image models (pdlType 3) store each record in
// 8 bytes, the last two of them 0, all others in these 6: see OptionStride.
struct OptionRecord {
    uint16_t nameRef;      // localised display name
    uint16_t jobValueRef;  // text: value of the feature's job line, 0 writes no line
    uint16_t keywordRef;   // name: prefix, colon, PrintTicket keyword
};

// A colour mode (colour-correction preset). A record whose kind is 0 ends the list.
struct ColorModeRecord {
    uint32_t kind;         // flags: 2 system colour management, 4 manual settings, 8 carries option defaults
    uint16_t nameRef;      // localised display name; 0: a resource string by kind
    int16_t firstSetting;  // first entry in presetSettings, negative for none
};

// A colour-correction feature. An entry whose nameRef is 0 ends the list; a list has at most 4.
struct ColorFeatureRecord {
    uint16_t nameRef;    // localised display name; the feature's id
    int16_t firstValue;  // index of its first record in colorOptionValues
};

// The bits of a slice's length that count bytes; the others are flags.
inline constexpr uint16_t kSliceLengthMask = 0x1FFF;

// A value of a colour-correction feature. A record whose nameRef is 0 ends the feature's run. The two pairs are start
// and length of slices of the file's command blob.
struct ColorValueRecord {
    uint16_t nameRef;  // localised display name
    uint16_t firstStart;
    uint16_t firstLength;  // low 13 bits length, top 3 bits flags
    uint16_t secondStart;
    uint16_t secondLength;  // nonzero: the value fills its group's two blobRefs pairs
};

// A selection that a colour mode makes. An entry whose group is 0 ends the mode's run.
struct PresetSettingRecord {
    int16_t group;    // 1 text, 2 image, 3 graphics, 4 general
    int16_t feature;  // position in that group's colour feature list
    uint16_t option;  // value to select
};

// An entry of one of the lists that only the PrintTicket provider reads. A record whose mark is 0 ends the list.
struct KeywordRecord {
    uint16_t mark;
    uint16_t reserved2;
    uint16_t nameRef;     // localised display name
    uint16_t keywordRef;  // name: prefix, colon, PrintTicket keyword
    uint8_t reserved8[2];
    uint32_t ticketValues[3];
};

// Memory fitted for a memory key. A pair whose key is 0 ends the list.
struct MemoryRecord {
    uint16_t key;
    uint16_t megabytes;
};

// The device block. Offsets and widths are the file's; a pointer slot holds an offset from the block's start in the
// file (0: absent) and a pointer, or null, once loaded.
struct DeviceModel {
    uint8_t reserved0[2];
    uint16_t pdlType;    // a PdlType
    uint16_t modelCode;  // copied into new device modes
    uint8_t reserved6[2];
    const PaperRecord* paperTable;
    int16_t customMinWidth;   // custom paper limits, 0.1 mm
    uint16_t customMaxWidth;  // 0: no custom sizes
    int16_t customMinLength;
    uint16_t customMaxLength;  // 0: no custom sizes
    const BinRecord* binTable;
    const ExtraKeywordRecord* extraKeywordTable;
    const void* reserved40;
    const MediaRecord* mediaTable;
    uint32_t defaultOptionMask;  // default DeviceInfo.installedOptions
    uint8_t reserved60[4];
    uint8_t jobNameFlags;  // bit 0: duplex unit, as duplexFlagsA and duplexFlagsB; bit 2: the job is
                           // named with "@PJL JOB DISPLAY"
    uint8_t reserved65[11];
    uint8_t duplexFlagsA;  // bit 0: the model can have a duplex unit
    uint8_t reserved77[11];
    uint8_t duplexFlagsB;  // bit 0: the model can have a duplex unit
    uint8_t reserved89[3];
    int16_t memoryKeyBase;  // default memory key: memoryKeyBase + memoryKeyStep
    int16_t memoryKeyStep;
    const MemoryRecord* memoryTable;
    const void* reserved104;
    uint8_t reserved112[4];
    uint16_t defaultBin;  // default dmDefaultSource
    uint8_t reserved118[2];
    int16_t defaultResolution;  // index into resolutionTable, for device modes whose own is out of range
    int16_t defaultFontSize;
    const char* defaultFontA;  // NUL-terminated, ANSI code page
    const char* defaultFontB;
    PackedU16* fontGroups;        // group starts (1-based record indexes), filled at load
    const char* defaultFontSubs;  // pairs of 8-bit texts (system face, printer font), ended by an empty one
    int16_t fontCount;            // font records in the file
    const ConstraintRecord* constraintTable;
    const MarginRecord* marginTable;
    const ResolutionRecord* resolutionTable;
    uint16_t jobTextRef;    // text: key of the extra keyword's job line
    uint16_t extraTextRef;  // text that the device mode's extraText receives with the extra option
    int16_t extraMemory;    // megabytes added with the extra option
    const FeatureRecord* featureTable;
    const OptionRecord* optionTable;  // options of all features
    uint8_t reserved204[12];
    uint32_t defaultOptionFlags;  // see ModelOptionFlag
    const ColorModeRecord* colorModeTable;
    const ColorFeatureRecord* textColorFeatures;
    const ColorFeatureRecord* imageColorFeatures;
    const ColorFeatureRecord* graphicsColorFeatures;
    const ColorFeatureRecord* generalColorFeatures;
    const ColorValueRecord* colorOptionValues;  // values of all colour features
    const PresetSettingRecord* presetSettings;  // selections of all colour modes
    uint16_t icmIntentFlags;                    // nonzero: rendering intents are offered; bit 0: with their options
    uint16_t pageLabelRef;                      // localised string
    uint16_t defaultColorMode;                  // index into colorModeTable
    uint8_t reserved282[2];
    const void* reserved284;
    uint8_t reserved292[6];
    uint32_t imageModeDefault;  // default of the device mode's imageMode
    uint16_t colorCapability;   // a ColorCapability
    int16_t pagesPerMinute;
    uint32_t defaultIcmIntent;  // default dmICMIntent
    uint8_t reserved310[2];
    uint16_t defaultMedia;     // 1-based index into mediaTable
    uint8_t descriptionFlags;  // bit 1: the job sets the data mode; bit 3: descriptions are lines of text
    uint8_t reserved315;
    uint16_t linkRef;          // localised string: the model's web address
    uint16_t oemNamespaceRef;  // name: the model's private namespace URI, 0 for the built-in one
    uint16_t oemPrefixRef;     // name: its prefix, 0 for "oem"
    const KeywordRecord* photoIntentList;
    const KeywordRecord* signatureOptionList;
    const KeywordRecord* extraListA;
    const KeywordRecord* extraListB;
    const KeywordRecord* mediaColorList;
    const KeywordRecord* extraListC;
};

#pragma pack(pop)

// Values of DeviceModel.pdlType. Every other value is the maker's own language too.
enum PdlType : uint16_t {
    kPdlPcl6 = 0,
    kPdlPcl5 = 1,
    kPdlPostScript = 2,
    kPdlImage = 3,  // raster rendered on the host
    kPdlXps = 4,
    kPdlOwn = 5,
};

// Values of DeviceModel.colorCapability.
enum ColorCapability : uint16_t {
    kColorNone = 0,
    kColor = 1,
    kColorSecondKind = 42,
};

// Every capability but the two is monochrome.
constexpr bool IsMonochrome(uint16_t colorCapability) {
    return colorCapability != kColor && colorCapability != kColorSecondKind;
}

// Bit values of DeviceModel.defaultOptionFlags.
enum ModelOptionFlag : uint32_t {
    kModelPlainPcl5 = 1u << 2,           // PCL 5, not PCL 5e
    kModelColorSlicesPerPage = 1u << 4,  // PCL 6: colour-correction slices are page commands
    kModelNoPostScriptJobName = 1u << 6,
};

// Bit values of DeviceModel.jobNameFlags, descriptionFlags and ColorModeRecord.kind.
inline constexpr uint8_t kJobNamedByDisplay = 1u << 2;
inline constexpr uint8_t kJobSetsDataMode = 1u << 1;
inline constexpr uint8_t kDescriptionsAreText = 1u << 3;
inline constexpr uint32_t kColorModeSystem = 1u << 1;
inline constexpr uint32_t kColorModeManual = 1u << 2;
inline constexpr uint32_t kColorModeHasDefaults = 1u << 3;

// Bytes from one option record to the next on models of this page description language. Every reader of optionTable
// steps by this.
constexpr size_t OptionStride(uint16_t pdlType) {
    return pdlType == kPdlImage ? 8 : sizeof(OptionRecord);
}

static_assert(offsetof(PaperRecord, nameRef) == 0);
static_assert(offsetof(PaperRecord, paperId) == 2);
static_assert(offsetof(PaperRecord, keywordRef) == 4);
static_assert(offsetof(PaperRecord, width) == 6);
static_assert(offsetof(PaperRecord, length) == 8);
static_assert(offsetof(PaperRecord, isMetric) == 10);
static_assert(offsetof(PaperRecord, pclSizeCode) == 14);
static_assert(offsetof(PaperRecord, fitPaperId) == 16);
static_assert(offsetof(PaperRecord, rendererNameRef) == 18);
static_assert(offsetof(PaperRecord, ticketValues) == 20);
static_assert(sizeof(PaperRecord) == 32);

static_assert(offsetof(BinRecord, optionMask) == 0);
static_assert(offsetof(BinRecord, binId) == 4);
static_assert(offsetof(BinRecord, nameRef) == 6);
static_assert(offsetof(BinRecord, keywordRef) == 8);
static_assert(sizeof(BinRecord) == 10);

static_assert(offsetof(ExtraKeywordRecord, optionMask) == 0);
static_assert(offsetof(ExtraKeywordRecord, id) == 4);
static_assert(offsetof(ExtraKeywordRecord, nameRef) == 6);
static_assert(offsetof(ExtraKeywordRecord, keywordRef) == 8);
static_assert(sizeof(ExtraKeywordRecord) == 10);

static_assert(offsetof(MediaRecord, mark) == 0);
static_assert(offsetof(MediaRecord, nameRef) == 4);
static_assert(offsetof(MediaRecord, jobTextRef) == 6);
static_assert(offsetof(MediaRecord, rendererNameRef) == 8);
static_assert(offsetof(MediaRecord, keywordRef) == 10);
static_assert(offsetof(MediaRecord, mediaId) == 12);
static_assert(offsetof(MediaRecord, ticketValues) == 16);
static_assert(sizeof(MediaRecord) == 28);

static_assert(offsetof(ResolutionRecord, mark) == 0);
static_assert(offsetof(ResolutionRecord, resolutionId) == 4);
static_assert(offsetof(ResolutionRecord, jobTextRef) == 6);
static_assert(offsetof(ResolutionRecord, nameRef) == 8);
static_assert(offsetof(ResolutionRecord, xDpi) == 10);
static_assert(offsetof(ResolutionRecord, yDpi) == 12);
static_assert(offsetof(ResolutionRecord, patternSize) == 14);
static_assert(offsetof(ResolutionRecord, patternIndex) == 16);
static_assert(offsetof(ResolutionRecord, keywordRef) == 18);
static_assert(offsetof(ResolutionRecord, ticketValues) == 20);
static_assert(sizeof(ResolutionRecord) == 32);

static_assert(offsetof(MarginRecord, mark) == 0);
static_assert(offsetof(MarginRecord, papers) == 2);
static_assert(offsetof(MarginRecord, minWidth) == 34);
static_assert(offsetof(MarginRecord, maxWidth) == 36);
static_assert(offsetof(MarginRecord, minLength) == 38);
static_assert(offsetof(MarginRecord, maxLength) == 40);
static_assert(offsetof(MarginRecord, orientationMask) == 42);
static_assert(offsetof(MarginRecord, unit) == 44);
static_assert(offsetof(MarginRecord, leftMargin) == 46);
static_assert(offsetof(MarginRecord, topMargin) == 48);
static_assert(offsetof(MarginRecord, rightMargin) == 50);
static_assert(offsetof(MarginRecord, bottomMargin) == 52);
static_assert(sizeof(MarginRecord) == 54);

static_assert(offsetof(ConstraintRecord, mark) == 0);
static_assert(offsetof(ConstraintRecord, papers) == 4);
static_assert(offsetof(ConstraintRecord, minWidth) == 36);
static_assert(offsetof(ConstraintRecord, maxWidth) == 38);
static_assert(offsetof(ConstraintRecord, minLength) == 40);
static_assert(offsetof(ConstraintRecord, maxLength) == 42);
static_assert(offsetof(ConstraintRecord, binMask) == 44);
static_assert(offsetof(ConstraintRecord, extraKeywordMask) == 48);
static_assert(offsetof(ConstraintRecord, mediaMask) == 52);
static_assert(offsetof(ConstraintRecord, flags) == 56);
static_assert(offsetof(ConstraintRecord, messageRef) == 60);
static_assert(sizeof(ConstraintRecord) == 64);

static_assert(offsetof(FeatureRecord, nameRef) == 0);
static_assert(offsetof(FeatureRecord, jobKeyRef) == 2);
static_assert(offsetof(FeatureRecord, featureMask) == 4);
static_assert(offsetof(FeatureRecord, firstOption) == 8);
static_assert(offsetof(FeatureRecord, keywordRef) == 10);
static_assert(sizeof(FeatureRecord) == 12);

static_assert(offsetof(OptionRecord, nameRef) == 0);
static_assert(offsetof(OptionRecord, jobValueRef) == 2);
static_assert(offsetof(OptionRecord, keywordRef) == 4);
static_assert(sizeof(OptionRecord) == 6);

static_assert(offsetof(ColorModeRecord, kind) == 0);
static_assert(offsetof(ColorModeRecord, nameRef) == 4);
static_assert(offsetof(ColorModeRecord, firstSetting) == 6);
static_assert(sizeof(ColorModeRecord) == 8);

static_assert(offsetof(ColorFeatureRecord, nameRef) == 0);
static_assert(offsetof(ColorFeatureRecord, firstValue) == 2);
static_assert(sizeof(ColorFeatureRecord) == 4);

static_assert(offsetof(ColorValueRecord, nameRef) == 0);
static_assert(offsetof(ColorValueRecord, firstStart) == 2);
static_assert(offsetof(ColorValueRecord, firstLength) == 4);
static_assert(offsetof(ColorValueRecord, secondStart) == 6);
static_assert(offsetof(ColorValueRecord, secondLength) == 8);
static_assert(sizeof(ColorValueRecord) == 10);

static_assert(offsetof(PresetSettingRecord, group) == 0);
static_assert(offsetof(PresetSettingRecord, feature) == 2);
static_assert(offsetof(PresetSettingRecord, option) == 4);
static_assert(sizeof(PresetSettingRecord) == 6);

static_assert(offsetof(KeywordRecord, mark) == 0);
static_assert(offsetof(KeywordRecord, nameRef) == 4);
static_assert(offsetof(KeywordRecord, keywordRef) == 6);
static_assert(offsetof(KeywordRecord, ticketValues) == 10);
static_assert(sizeof(KeywordRecord) == 22);

static_assert(offsetof(MemoryRecord, key) == 0);
static_assert(offsetof(MemoryRecord, megabytes) == 2);
static_assert(sizeof(MemoryRecord) == 4);

static_assert(offsetof(DeviceModel, pdlType) == 2);
static_assert(offsetof(DeviceModel, modelCode) == 4);
static_assert(offsetof(DeviceModel, paperTable) == 8);
static_assert(offsetof(DeviceModel, customMinWidth) == 16);
static_assert(offsetof(DeviceModel, customMaxWidth) == 18);
static_assert(offsetof(DeviceModel, customMinLength) == 20);
static_assert(offsetof(DeviceModel, customMaxLength) == 22);
static_assert(offsetof(DeviceModel, binTable) == 24);
static_assert(offsetof(DeviceModel, extraKeywordTable) == 32);
static_assert(offsetof(DeviceModel, reserved40) == 40);
static_assert(offsetof(DeviceModel, mediaTable) == 48);
static_assert(offsetof(DeviceModel, defaultOptionMask) == 56);
static_assert(offsetof(DeviceModel, jobNameFlags) == 64);
static_assert(offsetof(DeviceModel, duplexFlagsA) == 76);
static_assert(offsetof(DeviceModel, duplexFlagsB) == 88);
static_assert(offsetof(DeviceModel, memoryKeyBase) == 92);
static_assert(offsetof(DeviceModel, memoryKeyStep) == 94);
static_assert(offsetof(DeviceModel, memoryTable) == 96);
static_assert(offsetof(DeviceModel, reserved104) == 104);
static_assert(offsetof(DeviceModel, defaultBin) == 116);
static_assert(offsetof(DeviceModel, defaultResolution) == 120);
static_assert(offsetof(DeviceModel, defaultFontSize) == 122);
static_assert(offsetof(DeviceModel, defaultFontA) == 124);
static_assert(offsetof(DeviceModel, defaultFontB) == 132);
static_assert(offsetof(DeviceModel, fontGroups) == 140);
static_assert(offsetof(DeviceModel, defaultFontSubs) == 148);
static_assert(offsetof(DeviceModel, fontCount) == 156);
static_assert(offsetof(DeviceModel, constraintTable) == 158);
static_assert(offsetof(DeviceModel, marginTable) == 166);
static_assert(offsetof(DeviceModel, resolutionTable) == 174);
static_assert(offsetof(DeviceModel, jobTextRef) == 182);
static_assert(offsetof(DeviceModel, extraTextRef) == 184);
static_assert(offsetof(DeviceModel, extraMemory) == 186);
static_assert(offsetof(DeviceModel, featureTable) == 188);
static_assert(offsetof(DeviceModel, optionTable) == 196);
static_assert(offsetof(DeviceModel, defaultOptionFlags) == 216);
static_assert(offsetof(DeviceModel, colorModeTable) == 220);
static_assert(offsetof(DeviceModel, textColorFeatures) == 228);
static_assert(offsetof(DeviceModel, imageColorFeatures) == 236);
static_assert(offsetof(DeviceModel, graphicsColorFeatures) == 244);
static_assert(offsetof(DeviceModel, generalColorFeatures) == 252);
static_assert(offsetof(DeviceModel, colorOptionValues) == 260);
static_assert(offsetof(DeviceModel, presetSettings) == 268);
static_assert(offsetof(DeviceModel, icmIntentFlags) == 276);
static_assert(offsetof(DeviceModel, pageLabelRef) == 278);
static_assert(offsetof(DeviceModel, defaultColorMode) == 280);
static_assert(offsetof(DeviceModel, reserved284) == 284);
static_assert(offsetof(DeviceModel, imageModeDefault) == 298);
static_assert(offsetof(DeviceModel, colorCapability) == 302);
static_assert(offsetof(DeviceModel, pagesPerMinute) == 304);
static_assert(offsetof(DeviceModel, defaultIcmIntent) == 306);
static_assert(offsetof(DeviceModel, defaultMedia) == 312);
static_assert(offsetof(DeviceModel, descriptionFlags) == 314);
static_assert(offsetof(DeviceModel, linkRef) == 316);
static_assert(offsetof(DeviceModel, oemNamespaceRef) == 318);
static_assert(offsetof(DeviceModel, oemPrefixRef) == 320);
static_assert(offsetof(DeviceModel, photoIntentList) == 322);
static_assert(offsetof(DeviceModel, signatureOptionList) == 330);
static_assert(offsetof(DeviceModel, extraListA) == 338);
static_assert(offsetof(DeviceModel, extraListB) == 346);
static_assert(offsetof(DeviceModel, mediaColorList) == 354);
static_assert(offsetof(DeviceModel, extraListC) == 362);
static_assert(sizeof(DeviceModel) == 370);

}  // namespace velmora
