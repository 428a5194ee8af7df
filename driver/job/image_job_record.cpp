#include "driver/job/image_job_record.h"

#include <cstring>
#include <type_traits>

#include "driver/base/text.h"

namespace velmora {
namespace {

// A field of the record and the one of the device mode that it takes its value from.
struct FieldPair {
    uint16_t target;      // offset in the record
    uint16_t source;      // offset in the whole device mode
    uint8_t targetWidth;  // bytes of an element, as the next
    uint8_t sourceWidth;
    uint8_t count;  // elements
    bool isSigned;  // numbers are sign-extended
    bool isText;    // the last element is the terminator
};

enum class Extension { kOfType, kSigned };

template <class Target, class Source>
consteval FieldPair MakePair(size_t target, size_t source, Extension extension = Extension::kOfType) {
    using TargetElement = std::remove_all_extents_t<Target>;
    using SourceElement = std::remove_all_extents_t<Source>;
    constexpr size_t kCount = std::is_array_v<Target> ? std::extent_v<Target> : 1;
    static_assert(kCount == (std::is_array_v<Source> ? std::extent_v<Source> : 1));
    return {static_cast<uint16_t>(target),
            static_cast<uint16_t>(source),
            sizeof(TargetElement),
            sizeof(SourceElement),
            kCount,
            extension == Extension::kSigned || std::is_signed_v<SourceElement>,
            std::is_same_v<TargetElement, char>};
}

#define PUBLIC_PAIR(target, member)                                         \
    MakePair<decltype(ImageJobRecord::target), decltype(DEVMODEW::member)>( \
        offsetof(ImageJobRecord, target), offsetof(VelmoraDevMode, publicPart) + offsetof(DEVMODEW, member))
#define PAIR_AS(target, member, ...)                                                                                \
    MakePair<decltype(ImageJobRecord::target), decltype(PrivateDevMode::member)>(                                   \
        offsetof(ImageJobRecord, target), offsetof(VelmoraDevMode, privatePart) + offsetof(PrivateDevMode, member), \
        __VA_ARGS__)
#define PAIR(member) PAIR_AS(member, member, Extension::kOfType)
#define OBJECT_PAIR(index, member)                                                                             \
    MakePair<decltype(ObjectColor::member), decltype(ObjectColor::member)>(                                    \
        offsetof(ImageJobRecord, objectColor) + (index) * sizeof(ObjectColor) + offsetof(ObjectColor, member), \
        offsetof(VelmoraDevMode, privatePart) + offsetof(PrivateDevMode, objectColor) +                        \
            (index) * sizeof(ObjectColor) + offsetof(ObjectColor, member))
#define OBJECT_PAIRS(index) OBJECT_PAIR(index, mode), OBJECT_PAIR(index, flag), OBJECT_PAIR(index, values)

constexpr FieldPair kFieldPairs[] = {
    PAIR(imageMode),
    PUBLIC_PAIR(paper, dmPaperSize),
    PUBLIC_PAIR(paperWidth, dmPaperWidth),
    PUBLIC_PAIR(paperLength, dmPaperLength),
    PAIR(scaleValue),
    PAIR(uiMediaValue),
    PAIR(uiFlagA),
    PUBLIC_PAIR(collate, dmCollate),
    PAIR(scaleMode),
    PUBLIC_PAIR(orientation, dmOrientation),
    PAIR(rotate180),
    PAIR(uiDuplex),
    PAIR(uiFlagB),
    PAIR(uiLabel),
    PAIR(uiFlagC),
    PAIR(uiPageLayout),
    PAIR(uiBinding),
    PAIR(uiShiftX),
    PAIR(uiShiftY),
    PAIR(uiPageOrder),
    PAIR(uiFlagE),
    PAIR(uiChoice),
    PAIR(colorPreset),
    PAIR(colorRendering),
    PAIR(colorAuto),
    PAIR(colorAdjust),
    PAIR(colorChoiceA),
    PAIR(colorChoiceB),
    PAIR(colorBalance),
    PAIR(colorFlagA),
    PAIR(colorLevels),
    PAIR(colorFlagB),
    OBJECT_PAIRS(0),
    OBJECT_PAIRS(1),
    OBJECT_PAIRS(2),
    PAIR(resolutionIndex),
    PAIR(resolutionFlag),
    PAIR(outputFlag),
    PAIR_AS(finishSide, finishSide, Extension::kSigned),
    PAIR_AS(finishFlagB, finishFlagB, Extension::kSigned),
    PAIR(outputText),
    PAIR_AS(finishFlags, finishFlags, Extension::kSigned),
    PAIR_AS(finishFlagC, finishFlagC, Extension::kSigned),
};

void CopyNumber(const char* source, size_t sourceWidth, bool isSigned, char* target, size_t targetWidth) {
    uint64_t number = 0;
    memcpy(&number, source, sourceWidth);
    const uint64_t sign = uint64_t{1} << (8 * sourceWidth - 1);
    if (isSigned && (number & sign) != 0) {
        number |= ~uint64_t{0} << (8 * sourceWidth - 1);
    }
    memcpy(target, &number, targetWidth);
}

void CopyPair(const FieldPair& pair, const VelmoraDevMode& devMode, ImageJobRecord* record) {
    const char* source = reinterpret_cast<const char*>(&devMode) + pair.source;
    char* target = reinterpret_cast<char*>(record) + pair.target;
    if (pair.isText) {
        memcpy(target, source, TextLength(source, size_t{pair.count} - 1));
        return;
    }
    for (size_t i = 0; i < pair.count; ++i) {
        CopyNumber(source + i * pair.sourceWidth, pair.sourceWidth, pair.isSigned, target + i * pair.targetWidth,
                   pair.targetWidth);
    }
}

constexpr uint16_t kNoPaper = 65535;
constexpr SHORT kLastListedPaper = 256;  // greater ids tell no size
constexpr uint16_t kOwnIntentPreset = 6;

// The paper that a paper is fed as.
struct FedPaper {
    uint16_t paper;
    uint16_t fedAs;
};
constexpr FedPaper kFedPapers[] = {
    {8, 9}, {9, 9}, {11, 11}, {70, 11}, {12, 13}, {13, 13}, {88, 13}, {1, 1},
    {6, 6}, {7, 7}, {5, 5},   {34, 34}, {43, 43}, {20, 20}, {27, 27},
};

// A paper that isn't in the table is fed as it is, a size typed in for one job (258) too.
uint16_t FedAs(uint16_t paper) {
    for (const FedPaper& fed : kFedPapers) {
        if (fed.paper == paper) {
            return fed.fedAs;
        }
    }
    return paper;
}

bool PaperMatches(const VelmoraDevMode& devMode) {
    const PrivateDevMode& settings = devMode.privatePart;
    const auto paper = static_cast<uint16_t>(devMode.publicPart.dmPaperSize);
    if (settings.uiZoomOn == 0) {
        return true;
    }
    if (settings.uiFitToPaper != kNoPaper) {
        return paper == settings.uiFitToPaper;
    }
    return paper == FedAs(paper);
}

void FillTargetPaper(const VelmoraDevMode& devMode, ImageJobRecord* record) {
    const PrivateDevMode& settings = devMode.privatePart;
    if (settings.uiFitToPaper != kNoPaper) {
        record->targetPaper = settings.uiFitToPaper;
    } else if (devMode.publicPart.dmPaperSize > kLastListedPaper) {
        record->targetPaper = static_cast<uint16_t>(settings.scaleValue);
        record->targetWidth = static_cast<uint16_t>(settings.scaleWidth);
        record->targetLength = static_cast<uint16_t>(settings.scaleLength);
    } else {
        record->targetPaper = kNoPaper;
    }
}

}  // namespace

void FillImageJobRecord(const char* driverName, const char* descriptionPath, VelmoraDevMode* devMode,
                        ImageJobRecord* record) {
    for (const FieldPair& pair : kFieldPairs) {
        CopyPair(pair, *devMode, record);
    }
    const PrivateDevMode& settings = devMode->privatePart;
    StoreAnsiText(record->driverName, sizeof(record->driverName), driverName);
    StoreAnsiText(record->descriptionPath, sizeof(record->descriptionPath), descriptionPath);
    FillTargetPaper(*devMode, record);
    if (settings.uiFlagA != 0) {
        memcpy(record->uiCode, settings.uiCode, TextLength(settings.uiCode, sizeof(record->uiCode) - 1));
    }
    record->paperMatches = PaperMatches(*devMode) ? 1 : 0;
    devMode->privatePart.uiFlagD = record->paperMatches;
    if (settings.colorPreset == kOwnIntentPreset) {
        record->icmIntent = static_cast<uint16_t>(devMode->publicPart.dmICMIntent);
    }
    if (settings.finishFlagA != 0 && settings.finishChoice <= 2) {
        record->finishing = static_cast<uint16_t>(settings.finishChoice + 1);
    }
}

}  // namespace velmora
