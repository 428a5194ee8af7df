// What an input of the ticket target says: a header and steps.
#pragma once

#include <cstdint>

namespace fuzz {

#pragma pack(push, 1)
struct Header {
    uint8_t printer;
    uint8_t flags;
};
struct Step {
    uint8_t kind;
    uint8_t feature;  // of kFeatures
    uint8_t word;     // of the feature's options or properties
    uint8_t space;    // from kAnySpace on: another namespace than the word's own
    uint8_t value;    // ValueKind; from kPrivateProperty on: a property is the driver's own
    int32_t number;
};
#pragma pack(pop)

constexpr uint8_t kCallsProvider = 0x0F;  // flags up to this: the provider is called too, which takes most of the time
constexpr uint8_t kExchangedPrefixes = 0x20;  // a bit: the usual prefixes stand for other namespaces
constexpr uint8_t kAnySpace = 0xC0;
constexpr uint8_t kPrivateProperty = 0x80;

enum StepKind : uint8_t {
    kFeature,        // with an option, on the root, or in the feature before where it is a part
    kWholeFeature,   // with an option that has every property that the feature's options may have
    kBareFeature,    // without the option
    kScoredValue,    // of the option before; the property is one of the feature's, as in the next
    kScoredRef,      // the same by a parameter on the root
    kParameter,      // on the root
    kProperty,       // with a value, on the root
    kOptionName,     // the property that names the option before
    kNested,         // elements in the one before
    kValue,          // in the element before
    kText,           // the same
    kCopy,           // of the feature before, with all that is in it
    kDeclaration,    // of a prefix, at the element before
    kDevModeEdit,    // an edit of the device mode
    kDevModeNumber,  // the same, near the fields' limits
    kStepKinds       // their count
};

enum ValueKind : uint8_t {
    kNumberValue,
    kSmallValue,
    kExtremeValue,
    kPaperWidth,  // micrometres, as the next
    kPaperLength,
    kWordValue,
    kNameValue,
    kListValue,
    kPaddedValue,
    kHugeValue,
    kLongValue,
    kEmptyValue,
    kNoValue,
    kValueKinds
};

}  // namespace fuzz
