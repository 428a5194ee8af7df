// The elements that the Print Schema is made of.
#include "driver/ptprovider/schema_document.h"

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/qualified_name.h"

namespace velmora {
namespace {

constexpr size_t kNumberCapacity = 16;

void Sanitise(WCHAR* name) {
    for (; *name != 0; ++name) {
        if (*name == TEXT(' ')) {
            *name = TEXT('_');
        } else if (*name == TEXT('(') || *name == TEXT(')')) {
            *name = TEXT('-');
        }
    }
}

}  // namespace

// Gives an element its "name", in the namespace that the attribute is in, as it is written at `scope`.
HRESULT SchemaDocument::SetName(IXMLDOMElement* element, const WCHAR* attributeUri, IXMLDOMNode* scope,
                                const WCHAR* uri, const WCHAR* localName) {
    OwnedBstr name;
    const HRESULT result = MakeQName(scope, uri, localName, &name);
    return SUCCEEDED(result) ? PutAttribute(element, attribute_name::kName, attributeUri, name) : result;
}

// Appends an element of the framework with a name that is written as at the element itself.
HRESULT SchemaDocument::AppendNamed(IXMLDOMNode* parent, const WCHAR* kind, const WCHAR* attributeUri, const WCHAR* uri,
                                    const WCHAR* localName, ElementReference* element) {
    HRESULT result = MakeElement(parent, kFrameworkNamespace, kind, element);
    if (SUCCEEDED(result)) {
        result = SetName(element->Get(), attributeUri, element->Get(), uri, localName);
    }
    if (FAILED(result)) {
        element->Reset();
    } else {
        Index(parent, kind, uri, localName, element->Get());
    }
    return result;
}

HRESULT SchemaDocument::AddFeature(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                   ElementReference* feature) {
    Wanted<ElementReference> made(feature);
    return AppendNamed(parent, element_name::kFeature, kFrameworkNamespace, uri, localName, made.Get());
}

HRESULT SchemaDocument::AppendOption(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                     const WCHAR* constraint, ElementReference* option) {
    Wanted<ElementReference> made(option);
    made->Reset();
    if (!parent) {
        return E_INVALIDARG;
    }
    HRESULT result = MakeElement(parent, kFrameworkNamespace, element_name::kOption, made.Get());
    if (SUCCEEDED(result) && !IsEmpty(uri) && !IsEmpty(localName)) {
        result = SetName(made->Get(), kFrameworkNamespace, made->Get(), uri, localName);
    }
    if (SUCCEEDED(result) && !IsEmpty(constraint)) {
        // With this prefix whatever stands for the keywords here: that is how the print system reads it.
        OwnedBstr value;
        result = JoinName(kKeywordsPrefix, TextLength(kKeywordsPrefix), constraint, TextLength(constraint), &value);
        if (SUCCEEDED(result)) {
            result = PutAttribute(made->Get(), attribute_name::kConstrained, TEXT(""), value);
        }
    }
    if (FAILED(result)) {
        made->Reset();
    }
    return result;
}

HRESULT SchemaDocument::AddOption(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                  const WCHAR* constraint, ElementReference* option) {
    return AppendOption(parent, uri, localName, constraint, option);
}

HRESULT SchemaDocument::AddSanitisedOption(IXMLDOMNode* parent, const WCHAR* uri, WCHAR* localName,
                                           const WCHAR* constraint, ElementReference* option) {
    if (!IsEmpty(uri) && localName) {
        Sanitise(localName);
    }
    return AppendOption(parent, uri, localName, constraint, option);
}

// The name is tried where the element couldn't be made, too, and fails then.
HRESULT SchemaDocument::AddPropertyOf(IXMLDOMNode* parent, const WCHAR* kind, const WCHAR* uri, const WCHAR* localName,
                                      ElementReference* property) {
    Wanted<ElementReference> made(property);
    MakeElement(parent, kFrameworkNamespace, kind, made.Get());
    const HRESULT result = SetName(made->Get(), TEXT(""), ParentOrRoot(parent), uri, localName);
    if (FAILED(result)) {
        made->Reset();
    } else {
        Index(parent, kind, uri, localName, made->Get());
    }
    return result;
}

HRESULT SchemaDocument::AddProperty(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                    ElementReference* property) {
    return AddPropertyOf(parent, element_name::kProperty, uri, localName, property);
}

HRESULT SchemaDocument::AddScoredProperty(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                          ElementReference* property) {
    if (!parent) {
        Wanted<ElementReference>(property)->Reset();
        return E_INVALIDARG;
    }
    return AddPropertyOf(parent, element_name::kScoredProperty, uri, localName, property);
}

HRESULT SchemaDocument::AddTypedValue(IXMLDOMNode* parent, const WCHAR* type, const OwnedBstr& text) {
    if (!parent) {
        return E_INVALIDARG;
    }
    ElementReference value;
    HRESULT result = MakeElement(parent, kFrameworkNamespace, element_name::kValue, &value);
    OwnedBstr made;
    OwnedBstr* const typeName = TypeName(type, &made);
    if (SUCCEEDED(result) && !*typeName) {
        result = MakeQName(parent, kSchemaNamespace, type, typeName);
    }
    if (SUCCEEDED(result)) {
        result = PutAttribute(value.Get(), attribute_name::kType, kInstanceNamespace, *typeName);
    }
    if (SUCCEEDED(result)) {
        result = text ? value->put_text(text.Get()) : E_OUTOFMEMORY;
    }
    return result;
}

HRESULT SchemaDocument::AddValueQName(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName) {
    OwnedBstr text;
    const HRESULT result = MakeQName(parent, uri, localName, &text);
    return SUCCEEDED(result) ? AddTypedValue(parent, schema_type::kQName, text) : result;
}

HRESULT SchemaDocument::AddValueString(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* text) {
    if (IsEmpty(uri)) {
        return text ? AddTypedValue(parent, schema_type::kString, OwnedBstr(text)) : E_INVALIDARG;
    }
    OwnedBstr name;
    const HRESULT result = MakeQName(parent, uri, text, &name);
    return SUCCEEDED(result) ? AddTypedValue(parent, schema_type::kString, name) : result;
}

HRESULT SchemaDocument::AddValueInteger(IXMLDOMNode* parent, LONG value) {
    WCHAR text[kNumberCapacity];
    FormatWide(text, kNumberCapacity, TEXT("%d"), value);
    return AddTypedValue(parent, schema_type::kInteger, OwnedBstr(text));
}

HRESULT SchemaDocument::AddValueUnsigned(IXMLDOMNode* parent, ULONG value) {
    WCHAR text[kNumberCapacity];
    FormatWide(text, kNumberCapacity, TEXT("%lu"), value);
    return AddTypedValue(parent, schema_type::kInteger, OwnedBstr(text));
}

HRESULT SchemaDocument::AddDisplayName(IXMLDOMNode* parent, const WCHAR* text) {
    ElementReference property;
    const HRESULT result = AddProperty(parent, kKeywordsNamespace, keyword_name::kDisplayName, &property);
    return SUCCEEDED(result) ? AddValueString(property.Get(), nullptr, text) : result;
}

HRESULT SchemaDocument::AddQNameProperty(IXMLDOMNode* parent, const WCHAR* property, const WCHAR* uri,
                                         const WCHAR* localName) {
    ElementReference made;
    const HRESULT result = AddProperty(parent, kFrameworkNamespace, property, &made);
    return SUCCEEDED(result) ? AddValueQName(made.Get(), uri, localName) : result;
}

HRESULT SchemaDocument::AddStringProperty(IXMLDOMNode* parent, const WCHAR* property, const WCHAR* uri,
                                          const WCHAR* text) {
    ElementReference made;
    const HRESULT result = AddProperty(parent, kFrameworkNamespace, property, &made);
    return SUCCEEDED(result) ? AddValueString(made.Get(), uri, text) : result;
}

HRESULT SchemaDocument::AddNumberProperty(IXMLDOMNode* parent, const WCHAR* property, LONG value) {
    ElementReference made;
    const HRESULT result = AddProperty(parent, kFrameworkNamespace, property, &made);
    return SUCCEEDED(result) ? AddValueInteger(made.Get(), value) : result;
}

HRESULT SchemaDocument::AddNumberProperty(IXMLDOMNode* parent, const WCHAR* property, ULONG value) {
    ElementReference made;
    const HRESULT result = AddProperty(parent, kFrameworkNamespace, property, &made);
    return SUCCEEDED(result) ? AddValueUnsigned(made.Get(), value) : result;
}

HRESULT SchemaDocument::AddSelectionTypePickOne(IXMLDOMNode* feature) {
    return feature
               ? AddQNameProperty(feature, property_name::kSelectionType, kKeywordsNamespace, keyword_name::kPickOne)
               : E_INVALIDARG;
}

HRESULT SchemaDocument::AddParameterRef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName) {
    ElementReference reference;
    return parent ? AppendNamed(parent, element_name::kParameterRef, TEXT(""), uri, localName, &reference)
                  : E_INVALIDARG;
}

HRESULT SchemaDocument::AddParameterInit(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, LONG value) {
    ElementReference init;
    const HRESULT result =
        AppendNamed(parent, element_name::kParameterInit, kFrameworkNamespace, uri, localName, &init);
    return SUCCEEDED(result) ? AddValueInteger(init.Get(), value) : result;
}

HRESULT SchemaDocument::AddParameterInit(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, ULONG value) {
    ElementReference init;
    const HRESULT result =
        AppendNamed(parent, element_name::kParameterInit, kFrameworkNamespace, uri, localName, &init);
    return SUCCEEDED(result) ? AddValueUnsigned(init.Get(), value) : result;
}

HRESULT SchemaDocument::AddParameterInit(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                         const WCHAR* valueUri, const WCHAR* value) {
    ElementReference init;
    const HRESULT result =
        AppendNamed(parent, element_name::kParameterInit, kFrameworkNamespace, uri, localName, &init);
    return SUCCEEDED(result) ? AddValueString(init.Get(), valueUri, value) : result;
}

// A definition with its display name, where it has one, and its data type.
HRESULT SchemaDocument::BeginParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                          const WCHAR* displayName, const WCHAR* type, ElementReference* definition) {
    HRESULT result = AppendNamed(parent, element_name::kParameterDef, kFrameworkNamespace, uri, localName, definition);
    if (SUCCEEDED(result) && !IsEmpty(displayName)) {
        result = AddDisplayName(definition->Get(), displayName);
    }
    return SUCCEEDED(result) ? AddQNameProperty(definition->Get(), property_name::kDataType, kSchemaNamespace, type)
                             : result;
}

template <class Number>
HRESULT SchemaDocument::AddNumberParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                              const ParameterRange<Number>& range, const ParameterTraits& traits) {
    ElementReference definition;
    HRESULT result = BeginParameterDef(parent, uri, localName, traits.displayName, schema_type::kInteger, &definition);
    const struct {
        const WCHAR* property;
        Number value;
    } numbers[] = {{property_name::kDefaultValue, range.defaultValue},
                   {property_name::kMinValue, range.min},
                   {property_name::kMaxValue, range.max},
                   {property_name::kMultiple, range.multiple}};
    for (const auto& number : numbers) {
        if (SUCCEEDED(result)) {
            result = AddNumberProperty(definition.Get(), number.property, number.value);
        }
    }
    if (SUCCEEDED(result) && traits.unit) {
        result = AddStringProperty(definition.Get(), property_name::kUnitType, traits.unitUri, traits.unit);
    }
    return SUCCEEDED(result)
               ? AddQNameProperty(definition.Get(), property_name::kMandatory, kKeywordsNamespace, traits.mandatory)
               : result;
}

HRESULT SchemaDocument::AddIntegerParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                               const ParameterRange<LONG>& range, const ParameterTraits& traits) {
    return AddNumberParameterDef(parent, uri, localName, range, traits);
}

HRESULT SchemaDocument::AddIntegerParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                               const ParameterRange<ULONG>& range, const ParameterTraits& traits) {
    return AddNumberParameterDef(parent, uri, localName, range, traits);
}

HRESULT SchemaDocument::AddStringParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                              const TextParameterTraits& traits) {
    ElementReference definition;
    HRESULT result = BeginParameterDef(parent, uri, localName, traits.displayName, schema_type::kString, &definition);
    if (SUCCEEDED(result)) {
        result =
            AddStringProperty(definition.Get(), property_name::kDefaultValue, traits.defaultUri, traits.defaultValue);
    }
    if (SUCCEEDED(result) && traits.minLength > 0) {
        result = AddNumberProperty(definition.Get(), property_name::kMinLength, traits.minLength);
    }
    if (SUCCEEDED(result) && traits.maxLength > 0) {
        result = AddNumberProperty(definition.Get(), property_name::kMaxLength, traits.maxLength);
    }
    if (SUCCEEDED(result)) {
        const WCHAR* const unit = traits.unitType ? traits.unitType : TEXT("characters");
        ElementReference property;
        result = *unit != 0 ? AddStringProperty(definition.Get(), property_name::kUnitType, nullptr, unit)
                            : AddProperty(definition.Get(), kFrameworkNamespace, property_name::kUnitType, &property);
    }
    return SUCCEEDED(result)
               ? AddQNameProperty(definition.Get(), property_name::kMandatory, kKeywordsNamespace, traits.mandatory)
               : result;
}

HRESULT SchemaDocument::AddStringParameterDef(const WCHAR* uri, const WCHAR* localName, const WCHAR* displayName,
                                              const WCHAR* defaultUri, const WCHAR* defaultValue,
                                              const WCHAR* mandatory) {
    return AddStringParameterDef(nullptr, uri, localName,
                                 {displayName, defaultUri, defaultValue, 1, -1, nullptr, mandatory});
}

}  // namespace velmora
