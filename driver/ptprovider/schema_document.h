// A print ticket or print capabilities as the conversions see it: elements, names, values and parameters of the Print
// Schema over the platform's XML document (msxml2.h). Names are pairs of namespace and local name; prefixes are only
// resolved, never compared.
//
// Operations give S_OK, S_FALSE where nothing is found, E_INVALIDARG where a needed argument is null or empty,
// E_OUTOFMEMORY, E_FAIL where the prefixes have run out, and the errors of the object model as they are. On failure
// what they give is empty. A null parent stands for the document's root, whose named children are looked up in an
// index: they aren't changed but by this object. What is built stays built where a later step of the same operation
// fails. Elements that are given, and a prefix that is declared, may be null where they aren't wanted.
#pragma once

#include <msxml2.h>
#include <windows.h>

#include <cstdint>

#include "driver/base/com.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/qualified_name.h"
#include "driver/ptprovider/root_index.h"

namespace velmora {

using ElementReference = ComReference<IXMLDOMElement>;

// The values of a numeric parameter.
template <class Number>
struct ParameterRange {
    Number defaultValue;
    Number min;
    Number max;
    Number multiple;
};

// What defines a numeric parameter besides its name and range. displayName null or empty: none. unit null: none;
// unitUri null or empty: a text instead of a name. mandatory: a keyword.
struct ParameterTraits {
    const WCHAR* displayName;
    const WCHAR* unitUri;
    const WCHAR* unit;
    const WCHAR* mandatory;
};

// What defines a text parameter besides its name. Lengths in characters, 0 or less: not said. unitType null:
// "characters"; empty: none.
struct TextParameterTraits {
    const WCHAR* displayName;
    const WCHAR* defaultUri;
    const WCHAR* defaultValue;
    LONG minLength;
    LONG maxLength;
    const WCHAR* unitType;
    const WCHAR* mandatory;
};

class SchemaDocument {
  public:
    SchemaDocument();
    SchemaDocument(const SchemaDocument&) = delete;
    SchemaDocument& operator=(const SchemaDocument&) = delete;

    // --- The document

    // A new document with its XML declaration and without root; the standard namespaces are known afterwards.
    HRESULT CreateDocument();
    // A caller's document, of which a reference is taken; S_FALSE for one that has no root yet. Not attached where the
    // root can't be had. The standard namespaces are known afterwards in any case.
    HRESULT AttachDocument(IXMLDOMDocument2* document);
    IXMLDOMDocument2* Document() const { return document_.Get(); }
    // Gives the document to the caller; the root stays.
    IXMLDOMDocument2* DetachDocument() { return document_.Detach(); }
    IXMLDOMElement* Root() const { return root_.Get(); }
    // For the builder of a new document.
    void SetRoot(ElementReference root) {
        rootIndex_.Clear();
        root_ = static_cast<ElementReference&&>(root);
    }
    // Drops root and document.
    void Release();

    // --- Namespaces

    void DeclareStandardNamespaces();
    // Binds a prefix to the namespace on the root, where there is one, and for what is looked up later: the preferred
    // one (null: none) where it is free at the node, else a new one.
    HRESULT DeclareNamespace(IXMLDOMNode* node, const WCHAR* uri, const WCHAR* preferredPrefix, OwnedBstr* prefix);
    HRESULT AddNamespaceAttribute(const WCHAR* uri, const WCHAR* prefix);
    // Binds the prefix to the namespace on the root, unless it stands for another one there: what is written with it
    // keeps its meaning. The namespace is bound to a new prefix then, where it has none.
    HRESULT DeclareOnRoot(const WCHAR* uri, const WCHAR* prefix);
    // A prefix that stands for the namespace at the node; empty for the default namespace.
    HRESULT LookupPrefix(IXMLDOMNode* node, const WCHAR* uri, OwnedBstr* prefix);
    // The name as it is written at the node; binds a prefix where the namespace has none.
    HRESULT MakeQName(IXMLDOMNode* node, const WCHAR* uri, const WCHAR* localName, OwnedBstr* text);
    // From here on whatever is built is written with the prefixes that stand for namespaces at the root: all of it is
    // built into elements that this object has made, which declare none. Namespaces are constants from here on, or
    // texts that live as long as this object.
    void WriteNamesAsAtRoot() { writesAsAtRoot_ = true; }
    // What a written name stands for at the node. S_FALSE where its prefix stands for nothing; a name without prefix
    // is in no namespace where there is no default one.
    HRESULT SplitQName(IXMLDOMNode* node, const WCHAR* text, QualifiedName* name);

    // --- Building: at the end of the parent's children

    // Sets an attribute, in the place of one of the same written name; the empty namespace is none. E_INVALIDARG where
    // the written name doesn't fit 63 characters.
    HRESULT SetAttribute(IXMLDOMElement* element, const WCHAR* name, const WCHAR* uri, const WCHAR* value);
    HRESULT SetVersionAttribute(IXMLDOMElement* element, LONG version);  // from 1
    HRESULT AppendElement(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, ElementReference* element);
    // Without parent behind the document's other children.
    HRESULT AppendComment(IXMLDOMNode* parent, const WCHAR* text);
    // Three comments on the root, the middle one with the text, that head what follows.
    HRESULT AppendBanner(const WCHAR* text);

    HRESULT AddFeature(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, ElementReference* feature);
    HRESULT AddFeature(const WCHAR* uri, const WCHAR* localName, ElementReference* feature) {
        return AddFeature(nullptr, uri, localName, feature);
    }
    // An option, without name where `uri` or `localName` is null or empty. `constraint`: the keyword of its
    // "constrained" attribute; null or empty: none.
    HRESULT AddOption(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, const WCHAR* constraint,
                      ElementReference* option = nullptr);
    // The same; `localName` is first rewritten in place so that it can be a name: blanks to '_', parentheses to '-'.
    HRESULT AddSanitisedOption(IXMLDOMNode* parent, const WCHAR* uri, WCHAR* localName, const WCHAR* constraint,
                               ElementReference* option = nullptr);
    HRESULT AddProperty(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, ElementReference* property);
    HRESULT AddProperty(const WCHAR* uri, const WCHAR* localName, ElementReference* property) {
        return AddProperty(nullptr, uri, localName, property);
    }
    HRESULT AddScoredProperty(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                              ElementReference* property);

    HRESULT AddValueQName(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName);
    HRESULT AddValueString(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* text);  // uri null or empty: the text
    HRESULT AddValueInteger(IXMLDOMNode* parent, LONG value);
    HRESULT AddValueUnsigned(IXMLDOMNode* parent, ULONG value);

    HRESULT AddDisplayName(IXMLDOMNode* parent, const WCHAR* text);
    HRESULT AddSelectionTypePickOne(IXMLDOMNode* feature);
    HRESULT AddParameterRef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName);

    HRESULT AddParameterInit(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, LONG value);
    HRESULT AddParameterInit(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, ULONG value);
    HRESULT AddParameterInit(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, const WCHAR* valueUri,
                             const WCHAR* value);
    HRESULT AddParameterInit(const WCHAR* uri, const WCHAR* localName, LONG value) {
        return AddParameterInit(nullptr, uri, localName, value);
    }
    HRESULT AddParameterInit(const WCHAR* uri, const WCHAR* localName, ULONG value) {
        return AddParameterInit(nullptr, uri, localName, value);
    }
    HRESULT AddParameterInit(const WCHAR* uri, const WCHAR* localName, const WCHAR* valueUri, const WCHAR* value) {
        return AddParameterInit(nullptr, uri, localName, valueUri, value);
    }

    // The numbers are written signed or unsigned, as they are.
    HRESULT AddIntegerParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                   const ParameterRange<LONG>& range, const ParameterTraits& traits);
    HRESULT AddIntegerParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                   const ParameterRange<ULONG>& range, const ParameterTraits& traits);
    HRESULT AddStringParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                  const TextParameterTraits& traits);
    // On the root, of at least one character.
    HRESULT AddStringParameterDef(const WCHAR* uri, const WCHAR* localName, const WCHAR* displayName,
                                  const WCHAR* defaultUri, const WCHAR* defaultValue, const WCHAR* mandatory);

    HRESULT SetText(IXMLDOMNode* node, const WCHAR* text);
    HRESULT RemoveChild(IXMLDOMNode* parent, IXMLDOMNode* child);

    // --- Reading: first matches in document order

    HRESULT FindChildElement(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, ElementReference* element);
    // By the element's kind and its "name". Errors on the way are S_FALSE.
    HRESULT FindNamedChild(IXMLDOMNode* parent, const WCHAR* elementUri, const WCHAR* elementName, const WCHAR* nameUri,
                           const WCHAR* nameLocalName, ElementReference* element);
    HRESULT FindFeature(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, ElementReference* feature);
    HRESULT FindProperty(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, ElementReference* property);
    HRESULT FindFirstOption(IXMLDOMNode* feature, ElementReference* option);
    HRESULT ReadNameAttribute(IXMLDOMElement* element, QualifiedName* name);

    // Of the parent's Value. Numbers are decimal, 0 without digits, and end at the bounds of 32 bits. Without a Value
    // the output is left as it was.
    HRESULT ReadValueInteger(IXMLDOMNode* parent, LONG* value);
    HRESULT ReadValueUnsigned(IXMLDOMNode* parent, ULONG* value);
    HRESULT ReadValueQName(IXMLDOMNode* parent, QualifiedName* value);
    HRESULT ReadScoredPropertyInteger(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, LONG* value);
    HRESULT ReadScoredPropertyQName(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                    QualifiedName* value);
    HRESULT ReadScoredPropertyString(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, OwnedBstr* text);

    // The name of the parameter that a scored property refers to.
    HRESULT FindParameterRef(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName, QualifiedName* name);
    HRESULT FindParameterInit(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, ElementReference* init);
    // The value on the root of the parameter that a scored property refers to: S_OK, or S_FALSE where any step fails.
    HRESULT ReadScoredParameterInteger(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName,
                                       LONG* value);
    HRESULT ReadScoredParameterUnsigned(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName,
                                        ULONG* value);
    HRESULT ReadScoredParameterQName(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName,
                                     QualifiedName* value);
    HRESULT ReadScoredParameterString(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName,
                                      OwnedBstr* text);
    HRESULT ReadParameterInitInteger(const WCHAR* uri, const WCHAR* localName, LONG* value);

    // The feature, its first option and that option's name, by its attribute or else its property "OptionName". Where
    // the name is wanted and there is none, nothing is given.
    HRESULT FindFeatureOption(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, ElementReference* feature,
                              ElementReference* option, QualifiedName* optionName);
    HRESULT FindFeatureOption(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                              QualifiedName* optionName) {
        return FindFeatureOption(parent, uri, localName, nullptr, nullptr, optionName);
    }
    HRESULT FindFeatureOption(const WCHAR* uri, const WCHAR* localName, QualifiedName* optionName) {
        return FindFeatureOption(nullptr, uri, localName, optionName);
    }

  private:
    IXMLDOMNode* ParentOrRoot(IXMLDOMNode* parent) const { return parent ? parent : root_.Get(); }
    IXMLDOMNode* ScopeOf(IXMLDOMNode* node) const;
    const WCHAR* PrefixAtRoot(const WCHAR* uri);
    BSTR ElementNameAtRoot(const WCHAR* uri, const WCHAR* localName);
    HRESULT AppendComment(IXMLDOMNode* parent, const OwnedBstr& content);
    HRESULT ResolvePrefix(IXMLDOMNode* node, const WCHAR* prefix, OwnedBstr* uri);
    bool IsPrefixFree(IXMLDOMNode* node, const WCHAR* prefix, bool ifUnknown);
    HRESULT GeneratePrefix(IXMLDOMNode* node, OwnedBstr* prefix);
    BSTR NamespaceText(const WCHAR* uri, OwnedBstr* made);
    OwnedBstr* TypeName(const WCHAR* type, OwnedBstr* made);
    OwnedBstr* AttributeName(const WCHAR* name, const WCHAR* uri, OwnedBstr* made);
    HRESULT PutAttribute(IXMLDOMElement* element, const WCHAR* name, const WCHAR* uri, const OwnedBstr& value);
    HRESULT SetName(IXMLDOMElement* element, const WCHAR* attributeUri, IXMLDOMNode* scope, const WCHAR* uri,
                    const WCHAR* localName);
    HRESULT MakeElement(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, ElementReference* element);
    bool PrepareIndex();
    void Index(IXMLDOMNode* parent, const WCHAR* kind, const WCHAR* uri, const WCHAR* localName,
               IXMLDOMElement* element);
    HRESULT AppendNamed(IXMLDOMNode* parent, const WCHAR* kind, const WCHAR* attributeUri, const WCHAR* uri,
                        const WCHAR* localName, ElementReference* element);
    HRESULT AppendOption(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, const WCHAR* constraint,
                         ElementReference* option);
    HRESULT AddPropertyOf(IXMLDOMNode* parent, const WCHAR* kind, const WCHAR* uri, const WCHAR* localName,
                          ElementReference* property);
    HRESULT AddTypedValue(IXMLDOMNode* parent, const WCHAR* type, const OwnedBstr& text);
    HRESULT AddQNameProperty(IXMLDOMNode* parent, const WCHAR* property, const WCHAR* uri, const WCHAR* localName);
    HRESULT AddStringProperty(IXMLDOMNode* parent, const WCHAR* property, const WCHAR* uri, const WCHAR* text);
    HRESULT AddNumberProperty(IXMLDOMNode* parent, const WCHAR* property, LONG value);
    HRESULT AddNumberProperty(IXMLDOMNode* parent, const WCHAR* property, ULONG value);
    HRESULT BeginParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, const WCHAR* displayName,
                              const WCHAR* type, ElementReference* definition);
    template <class Number>
    HRESULT AddNumberParameterDef(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName,
                                  const ParameterRange<Number>& range, const ParameterTraits& traits);
    HRESULT ReadValue(IXMLDOMNode* parent, LONG* value);
    HRESULT ReadValue(IXMLDOMNode* parent, ULONG* value);
    HRESULT ReadValue(IXMLDOMNode* parent, QualifiedName* value);
    HRESULT ReadValue(IXMLDOMNode* parent, OwnedBstr* text);
    template <class Value>
    HRESULT ReadScoredProperty(IXMLDOMNode* parent, const WCHAR* uri, const WCHAR* localName, Value* value);
    template <class Value>
    HRESULT ReadScoredParameter(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName, Value* value);
    HRESULT FindScoredParameter(IXMLDOMNode* parent, const WCHAR* scoredUri, const WCHAR* scoredName,
                                ElementReference* init);

    ComReference<IXMLDOMDocument2> document_;
    ElementReference root_;
    ComReference<IMXNamespaceManager> manager_;
    // Texts that most calls pass: the framework's namespace, the attribute of names, and a banner's outer lines.
    const OwnedBstr framework_;
    const OwnedBstr nameAttribute_;
    const OwnedBstr bannerEdge_;
    RootIndex rootIndex_;

    // Prefixes at the root that have been looked up, where writesAsAtRoot_.
    struct KnownPrefix {
        const WCHAR* uri = nullptr;  // a constant, or a text that lives as long as the conversion
        OwnedBstr prefix;
        OwnedBstr space;  // the namespace as the object model takes it; made when it is first needed
    };
    static constexpr size_t kKnownPrefixes = 8;
    KnownPrefix knownPrefixes_[kKnownPrefixes];
    // The framework's elements as they are written at the root then, in the order of kElementNames.
    OwnedBstr elementNames_[ARRAYSIZE(kElementNames)];
    // The schema's types, in the order of kSchemaTypes, and the attribute that names them.
    OwnedBstr typeNames_[ARRAYSIZE(kSchemaTypes)];
    OwnedBstr typeAttribute_;
    bool writesAsAtRoot_ = false;
    uint32_t prefixCounter_ = 0;
};

}  // namespace velmora
