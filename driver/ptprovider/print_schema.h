// The namespaces of print tickets and print capabilities, and the names that the Print Schema gives their elements,
// attributes and values. A name is a pair of namespace and local name; prefixes only stand for namespaces.
#pragma once

#include <windows.h>

namespace velmora {

// XML Schema, as published.
inline constexpr const WCHAR* kSchemaNamespace = TEXT("http://www.w3.org/2001/XMLSchema");
inline constexpr const WCHAR* kInstanceNamespace = TEXT("http://www.w3.org/2001/XMLSchema-instance");

// The Print Schema's framework (elements, attributes, properties) and keywords (features, options, values), as
// published.
inline constexpr const WCHAR* kFrameworkNamespace =
    TEXT("http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework");
inline constexpr const WCHAR* kKeywordsNamespace =
    TEXT("http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords");

// The keywords of the system's XPS document writer, as published.
inline constexpr const WCHAR* kXpsWriterNamespace =
    TEXT("http://schemas.microsoft.com/windows/2006/06/printing/printschemakeywords/microsoftxpsdocumentwriter");

// The driver's own keywords, and those of a model that names no namespace for them.
inline constexpr const WCHAR* kPrivateNamespace = TEXT("http://www.kestranix.com/ptpc/2006/1");
inline constexpr const WCHAR* kOemNamespace = TEXT("http://www.kestranix.com/ptpc/oem/2006/1");

// Prefixes that namespaces are given where they are free.
inline constexpr const WCHAR* kKeywordsPrefix = TEXT("psk");
inline constexpr const WCHAR* kPrivatePrefix = TEXT("kxp");
inline constexpr const WCHAR* kOemPrefix = TEXT("oem");
inline constexpr const WCHAR* kXpsWriterPrefix = TEXT("ns0000");

// The namespaces that every document declares, in the order of their declarations.
struct StandardNamespace {
    const WCHAR* uri;
    const WCHAR* prefix;
};
inline constexpr StandardNamespace kStandardNamespaces[] = {
    {kSchemaNamespace, TEXT("xsd")},       {kInstanceNamespace, TEXT("xsi")},   {kFrameworkNamespace, TEXT("psf")},
    {kKeywordsNamespace, kKeywordsPrefix}, {kPrivateNamespace, kPrivatePrefix}, {kOemNamespace, kOemPrefix},
};

// A name: a namespace and a local name in it.
struct Keyword {
    const WCHAR* uri;
    const WCHAR* name;
};
// A published keyword; one of the driver's own; one of those that a model's namespace holds by default; one of the
// system's XPS document writer.
constexpr Keyword PublicKeyword(const WCHAR* name) {
    return {kKeywordsNamespace, name};
}
constexpr Keyword PrivateKeyword(const WCHAR* name) {
    return {kPrivateNamespace, name};
}
constexpr Keyword OemKeyword(const WCHAR* name) {
    return {kOemNamespace, name};
}
constexpr Keyword XpsWriterKeyword(const WCHAR* name) {
    return {kXpsWriterNamespace, name};
}

// Names of the framework namespace: elements.
namespace element_name {
inline constexpr const WCHAR* kFeature = TEXT("Feature");
inline constexpr const WCHAR* kOption = TEXT("Option");
inline constexpr const WCHAR* kProperty = TEXT("Property");
inline constexpr const WCHAR* kScoredProperty = TEXT("ScoredProperty");
inline constexpr const WCHAR* kValue = TEXT("Value");
inline constexpr const WCHAR* kParameterDef = TEXT("ParameterDef");
inline constexpr const WCHAR* kParameterRef = TEXT("ParameterRef");
inline constexpr const WCHAR* kParameterInit = TEXT("ParameterInit");
}  // namespace element_name
inline constexpr const WCHAR* kElementNames[] = {
    element_name::kFeature, element_name::kOption,       element_name::kProperty,     element_name::kScoredProperty,
    element_name::kValue,   element_name::kParameterDef, element_name::kParameterRef, element_name::kParameterInit};

// Names of the framework namespace: properties.
namespace property_name {
inline constexpr const WCHAR* kSelectionType = TEXT("SelectionType");
inline constexpr const WCHAR* kDataType = TEXT("DataType");
inline constexpr const WCHAR* kDefaultValue = TEXT("DefaultValue");
inline constexpr const WCHAR* kMinValue = TEXT("MinValue");
inline constexpr const WCHAR* kMaxValue = TEXT("MaxValue");
inline constexpr const WCHAR* kMinLength = TEXT("MinLength");
inline constexpr const WCHAR* kMaxLength = TEXT("MaxLength");
inline constexpr const WCHAR* kMultiple = TEXT("Multiple");
inline constexpr const WCHAR* kUnitType = TEXT("UnitType");
inline constexpr const WCHAR* kMandatory = TEXT("Mandatory");
}  // namespace property_name

// Names of attributes; kType is one of the XML Schema instance namespace.
namespace attribute_name {
inline constexpr const WCHAR* kName = TEXT("name");
inline constexpr const WCHAR* kVersion = TEXT("version");
inline constexpr const WCHAR* kConstrained = TEXT("constrained");
inline constexpr const WCHAR* kType = TEXT("type");
}  // namespace attribute_name

// Names of the keywords namespace that belong to no feature.
namespace keyword_name {
inline constexpr const WCHAR* kDisplayName = TEXT("DisplayName");
inline constexpr const WCHAR* kPickOne = TEXT("PickOne");
inline constexpr const WCHAR* kOptionName = TEXT("OptionName");
// Whether a parameter needs a value: only where what refers to it is selected, or always.
inline constexpr const WCHAR* kConditional = TEXT("Conditional");
inline constexpr const WCHAR* kUnconditional = TEXT("Unconditional");
// What keeps an option from being chosen: nothing, or what is installed.
inline constexpr const WCHAR* kNone = TEXT("None");
inline constexpr const WCHAR* kDeviceSettings = TEXT("DeviceSettings");
}  // namespace keyword_name

// Units of parameters that several have.
namespace unit_name {
inline constexpr const WCHAR* kMicrons = TEXT("microns");
inline constexpr const WCHAR* kDegrees = TEXT("degrees");
inline constexpr const WCHAR* kPercent = TEXT("percent");
inline constexpr const WCHAR* kColor = TEXT("sRGB");
inline constexpr const WCHAR* kBoolean = TEXT("boolean");
}  // namespace unit_name

// Types of values: names of the XML Schema namespace.
namespace schema_type {
inline constexpr const WCHAR* kQName = TEXT("QName");
inline constexpr const WCHAR* kString = TEXT("string");
inline constexpr const WCHAR* kInteger = TEXT("integer");
}  // namespace schema_type
inline constexpr const WCHAR* kSchemaTypes[] = {schema_type::kQName, schema_type::kString, schema_type::kInteger};

}  // namespace velmora
