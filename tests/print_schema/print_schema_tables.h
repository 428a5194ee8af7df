// What the Print Schema, version 1, has: elements, properties and the public keywords that the driver writes.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string_view>

namespace print_schema {

using WideView = std::basic_string_view<WCHAR>;

// Lists of names are texts, the names apart by one blank. A * in a name, one at most, stands for any text.
bool Lists(WideView list, WideView name);

// A kind of documents; in rows, the sum of those where they count.
constexpr int kTickets = 1;
constexpr int kCapabilities = 2;
constexpr int kBoth = 3;

enum class ValueType { kNone, kString, kInteger, kQName };

struct ValueTypeName {
    ValueType type;
    const WCHAR* name;  // of the XML Schema namespace
};
extern const std::span<const ValueTypeName> kValueTypes;

constexpr int64_t kNoLeast = INT64_MIN;

// An element of the framework namespace. The attributes are those without prefix.
struct ElementRow {
    const WCHAR* name;
    const WCHAR* children;
    const WCHAR* attributes;
    bool needsName;
};
extern const std::span<const ElementRow> kElements;
const ElementRow* FindElement(WideView name);

// A property of the framework or keywords namespace, in print capabilities.
struct PropertyRow {
    const WCHAR* uri;
    const WCHAR* name;
    const WCHAR* places;       // the elements that may hold it, properties by their own names
    bool isRequired;           // in each of its places
    ValueType type;            // of its value; kNone: it has none, or, DefaultValue, one of the parameter's type
    int64_t least = kNoLeast;  // of an integer
    ValueType forType = ValueType::kNone;  // of the parameters whose definitions have it; kNone: of all, or elsewhere
    const WCHAR* nameUri = nullptr;        // a QName's namespace
    const WCHAR* names = nullptr;          // and local names; null: any
};
extern const std::span<const PropertyRow> kProperties;

// A feature of the keywords namespace.
struct FeatureRow {
    const WCHAR* name;
    const WCHAR* parent;   // the feature that holds it; null: the root
    const WCHAR* options;  // those of the keywords namespace
};
extern const std::span<const FeatureRow> kFeatures;

// A scored property of the keywords namespace in the options of such a feature.
struct ScoredPropertyRow {
    const WCHAR* feature;  // null: every one
    const WCHAR* options;  // null: all, those of other namespaces and those without name too
    const WCHAR* name;
    bool isRequired;
    ValueType type;                // of its value, or of its parameter
    int64_t least = kNoLeast;      // of an integer
    const WCHAR* names = nullptr;  // local names of a QName of the keywords namespace; null: any
};
extern const std::span<const ScoredPropertyRow> kScoredProperties;

// A parameter of the keywords namespace.
struct ParameterRow {
    const WCHAR* name;
    ValueType type;
    int64_t least = kNoLeast;
};
extern const std::span<const ParameterRow> kParameters;

// Rules that have exceptions.
enum class Rule {
    kSomeOption,         // a feature has an option or a feature
    kRequiredProperty,   // what must have a property has it
    kOneValue,           // a property has one value
    kKnownParameter,     // what a ParameterRef names is on the root
    kDefaultWithinRange  // a parameter's default is one that may be set
};

// Whether the driver's documents of a kind are excepted from a rule where something is named so. `property`: for
// kRequiredProperty, the one that it lacks.
bool IsExcepted(Rule rule, int kind, WideView uri, WideView name, WideView property = {});

}  // namespace print_schema
