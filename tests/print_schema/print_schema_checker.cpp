#include "tests/print_schema/print_schema_checker.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "driver/ptprovider/print_schema.h"
#include "tests/print_schema/print_schema_tables.h"
#include "tests/print_schema/xml_tree.h"

namespace print_schema {
namespace {

using velmora::kFrameworkNamespace;
using velmora::kInstanceNamespace;
using velmora::kKeywordsNamespace;
using velmora::kSchemaNamespace;

struct Name {
    WideText uri;
    WideText local;

    bool Is(const WCHAR* ofUri, WideView ofLocal) const { return uri == ofUri && local == ofLocal; }
    auto operator<=>(const Name&) const = default;
};

// What an element says as far as it could be read; what couldn't was found.
struct Element {
    size_t place = 0;                   // among the tree's nodes
    const Element* parent = nullptr;    // null for the root
    std::vector<Element*> children;     // elements
    WideText kind;                      // the local name; empty outside of the framework
    std::optional<WideText> written;    // the attribute "name"
    std::optional<Name> name;           // what it stands for
    WideText text;                      // of a Value
    ValueType type = ValueType::kNone;  // of a Value
    int64_t number = 0;                 // of an integer Value
    Name qualified;                     // of a QName Value
};

std::string Quoted(const WideText& text) {
    return '"' + Printable(text) + '"';
}

// The name of a type in the XML Schema namespace; empty for kNone.
const WCHAR* SchemaName(ValueType type) {
    for (const ValueTypeName& row : kValueTypes) {
        if (row.type == type) {
            return row.name;
        }
    }
    return TEXT("");
}

std::string TypeText(ValueType type) {
    return type == ValueType::kNone ? "nothing" : "xsd:" + Printable(SchemaName(type));
}

bool IsNameStart(WCHAR character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') || character == '_' ||
           character >= 0x80;
}

// Whether a text is an XML name without colon; every letter beyond ASCII is taken for one of a name.
bool IsUncolonizedName(const WideText& text) {
    return !text.empty() && IsNameStart(text[0]) && std::all_of(text.begin(), text.end(), [](WCHAR character) {
        return IsNameStart(character) || (character >= '0' && character <= '9') || character == '-' || character == '.';
    });
}

bool IsBlank(const WideText& text) {
    return text.find_first_not_of(TEXT(" \t\r\n")) == WideText::npos;
}

// 32 bits are what Print Schema integers have.
std::optional<int64_t> Integer(const WideText& text) {
    std::string digits = Printable(text);
    if (digits.starts_with('+')) {
        digits.erase(0, 1);
    }
    int32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return number;
}

class Checker {
  public:
    explicit Checker(IXMLDOMDocument2* document) : tree_(document) { elements_.resize(tree_.Nodes().size()); }

    std::vector<Finding> Check() {
        Gather();
        if (root_ == nullptr) {
            findings_.push_back({"", "there is no root"});
            return std::move(findings_);
        }
        isTicket_ = root_->kind == TEXT("PrintTicket");
        if (!isTicket_ && root_->kind != TEXT("PrintCapabilities")) {
            Report(*root_, "the root is neither PrintTicket nor PrintCapabilities of the framework");
            return std::move(findings_);
        }
        ForEach(&Checker::CheckFrame);
        ForEach(&Checker::CheckAttributes);
        ForEach(&Checker::ReadContent);
        ForEach(&Checker::CheckSiblings);
        ForEach(&Checker::CheckRequiredProperties);
        ForEach(&Checker::CheckByKind);
        return std::move(findings_);
    }

  private:
    void ForEach(void (Checker::*check)(Element&)) {
        for (Element& element : elements_) {
            if (tree_.Nodes()[element.place].type == NODE_ELEMENT) {
                (this->*check)(element);
            }
        }
    }

    void Gather() {
        const std::vector<XmlNode>& nodes = tree_.Nodes();
        for (size_t place = 0; place < nodes.size(); ++place) {
            Element& element = elements_[place];
            element.place = place;
            Element* const parent =
                nodes[place].parent == XmlNode::kDocument ? nullptr : &elements_[nodes[place].parent];
            if (nodes[place].type == NODE_TEXT && parent != nullptr) {
                parent->text += nodes[place].value;
            }
            if (nodes[place].type != NODE_ELEMENT) {
                continue;
            }
            element.parent = parent;
            (parent == nullptr ? topElements_ : parent->children).push_back(&element);
            if (nodes[place].uri == kFrameworkNamespace) {
                element.kind = nodes[place].name;
            }
            for (const XmlAttribute& attribute : nodes[place].attributes) {
                if (attribute.name == TEXT("name")) {
                    element.written = attribute.value;
                }
            }
        }
        root_ = topElements_.empty() ? nullptr : topElements_[0];
    }

    std::string Step(const Element& element) const {
        const std::string kind = Printable(tree_.Nodes()[element.place].name);
        if (element.written) {
            return kind + ' ' + Printable(*element.written);
        }
        if (element.parent == nullptr) {
            return kind;
        }
        size_t number = 1;
        for (const Element* sibling : element.parent->children) {
            if (sibling == &element) {
                break;
            }
            number += tree_.Nodes()[sibling->place].name == tree_.Nodes()[element.place].name ? 1 : 0;
        }
        return kind + '[' + std::to_string(number) + ']';
    }

    void Report(const Element& element, const std::string& fault) {
        std::string place = Step(element);
        for (const Element* outer = element.parent; outer != nullptr; outer = outer->parent) {
            place = Step(*outer) + '/' + place;
        }
        findings_.push_back({place, fault});
    }

    // What a written name stands for; a finding and nothing where it isn't one.
    std::optional<Name> Resolve(const Element& element, const WideText& written, const std::string& what) {
        const size_t colon = written.find(TEXT(':'));
        const WideText prefix = colon == WideText::npos ? WideText() : written.substr(0, colon);
        const WideText local = colon == WideText::npos ? written : written.substr(colon + 1);
        if (!IsUncolonizedName(local) || (colon != WideText::npos && !IsUncolonizedName(prefix))) {
            Report(element, what + ' ' + Quoted(written) + " is no qualified name");
            return std::nullopt;
        }
        const std::optional<WideText> uri = tree_.Resolve(element.place, prefix);
        if (!uri || uri->empty()) {
            Report(element, what + ' ' + Quoted(written) + ": nothing binds its prefix");
            return std::nullopt;
        }
        return Name{*uri, local};
    }

    void CheckFrame(Element& element) {
        if (element.kind.empty()) {
            Report(element, "isn't of the framework namespace");
            return;
        }
        if (FindElement(element.kind) == nullptr) {
            Report(element, "the framework has no such element");
            return;
        }
        const ElementRow* const outer = element.parent ? FindElement(element.parent->kind) : nullptr;
        if (outer != nullptr && !Lists(outer->children, element.kind)) {
            Report(element, "doesn't belong in " + Printable(outer->name));
        } else if (element.parent == nullptr && &element != root_) {
            Report(element, "is a second root");
        }
        if (element.kind != TEXT("Value") && !IsBlank(element.text)) {
            Report(element, "has the text " + Quoted(element.text));
        }
    }

    void CheckAttributes(Element& element) {
        const XmlNode& node = tree_.Nodes()[element.place];
        // Some DOMs list a declaration that was read beside the same one that was set later.
        std::map<WideText, WideText> bindings;
        for (const XmlBinding& binding : node.bindings) {
            if (bindings.emplace(binding.prefix, binding.uri).first->second != binding.uri) {
                Report(element, "binds the prefix " + Quoted(binding.prefix) + " to two namespaces");
            } else if (!binding.prefix.empty() && binding.uri.empty()) {
                Report(element, "binds the prefix " + Quoted(binding.prefix) + " to no namespace");
            }
        }
        const ElementRow* const row = FindElement(element.kind);
        std::set<Name> names;
        for (const XmlAttribute& attribute : node.attributes) {
            const bool hasPrefix = attribute.name.find(TEXT(':')) != WideText::npos;
            const std::optional<Name> name =
                hasPrefix ? Resolve(element, attribute.name, "the attribute") : Name{{}, attribute.name};
            if (!name) {
                continue;
            }
            if (!names.insert(*name).second) {
                Report(element, "has the attribute " + Quoted(attribute.name) + " twice");
            }
            const bool isType = element.kind == TEXT("Value") && name->Is(kInstanceNamespace, TEXT("type"));
            if (row != nullptr && !isType && (hasPrefix || !Lists(row->attributes, name->local))) {
                Report(element, "has the attribute " + Quoted(attribute.name));
            }
        }
        if (&element == root_ && Attribute(element, TEXT("version")) != TEXT("1")) {
            Report(element, "the version isn't \"1\"");
        }
    }

    std::optional<WideText> Attribute(const Element& element, WideView name) const {
        for (const XmlAttribute& attribute : tree_.Nodes()[element.place].attributes) {
            if (attribute.name == name) {
                return attribute.value;
            }
        }
        return std::nullopt;
    }

    void ReadContent(Element& element) {
        const ElementRow* const row = FindElement(element.kind);
        if (row == nullptr) {
            return;
        }
        if (element.written) {
            element.name = Resolve(element, *element.written, "the name");
        } else if (row->needsName) {
            Report(element, "has no name");
        }
        if (element.kind == TEXT("Value")) {
            ReadValue(element);
        }
    }

    void ReadValue(Element& value) {
        std::optional<WideText> written;
        for (const XmlAttribute& attribute : tree_.Nodes()[value.place].attributes) {
            const size_t colon = attribute.name.find(TEXT(':'));
            if (colon != WideText::npos && attribute.name.substr(colon + 1) == TEXT("type") &&
                tree_.Resolve(value.place, attribute.name.substr(0, colon)) == kInstanceNamespace) {
                written = attribute.value;
            }
        }
        if (!written) {
            Report(value, "has no type");
            return;
        }
        const std::optional<Name> name = Resolve(value, *written, "the type");
        if (!name) {
            return;
        }
        const auto type = std::find_if(kValueTypes.begin(), kValueTypes.end(), [&name](const ValueTypeName& row) {
            return name->Is(kSchemaNamespace, row.name);
        });
        if (type == kValueTypes.end()) {
            Report(value, "the type " + Quoted(*written) + " isn't one of the Print Schema");
            return;
        }
        bool isRead = true;
        if (type->type == ValueType::kInteger) {
            const std::optional<int64_t> number = Integer(value.text);
            isRead = number.has_value();
            value.number = number.value_or(0);
        } else if (type->type == ValueType::kQName) {
            const std::optional<Name> qualified = Resolve(value, value.text, "the value");
            if (!qualified) {
                return;
            }
            value.qualified = *qualified;
        }
        if (!isRead) {
            Report(value, Quoted(value.text) + " is no " + TypeText(type->type));
            return;
        }
        value.type = type->type;
    }

    template <class Visit>
    static void ForChildren(const Element& element, WideView kind, Visit visit) {
        for (const Element* child : element.children) {
            if (child->kind == kind) {
                visit(*child);
            }
        }
    }

    static size_t Count(const Element& element, WideView kind) {
        size_t count = 0;
        ForChildren(element, kind, [&count](const Element&) { ++count; });
        return count;
    }

    static const Element* First(const Element& element, WideView kind) {
        const Element* first = nullptr;
        ForChildren(element, kind, [&first](const Element& child) { first = first ? first : &child; });
        return first;
    }

    // The child of a kind and name; null where there is none.
    static const Element* Named(const Element& element, WideView kind, const WCHAR* uri, WideView local) {
        const Element* found = nullptr;
        ForChildren(element, kind, [&](const Element& child) {
            found = !found && child.name && child.name->Is(uri, local) ? &child : found;
        });
        return found;
    }

    // The value of a property of the framework; null where it has none of that type.
    static const Element* ValueOf(const Element& element, WideView property, ValueType type) {
        const Element* const found = Named(element, TEXT("Property"), kFrameworkNamespace, property);
        const Element* const value = found ? First(*found, TEXT("Value")) : nullptr;
        return value && value->type == type ? value : nullptr;
    }

    // What tells an option without name from others: its scored properties.
    static std::set<std::pair<Name, WideText>> Content(const Element& option) {
        std::set<std::pair<Name, WideText>> content;
        ForChildren(option, TEXT("ScoredProperty"), [&content](const Element& scored) {
            WideText told;
            for (const Element* child : scored.children) {
                told += child->kind + TEXT(' ') + (child->name ? child->name->uri + child->name->local : child->text);
            }
            content.emplace(scored.name.value_or(Name{}), told);
        });
        return content;
    }

    void CheckSiblings(Element& element) {
        std::set<std::pair<WideText, Name>> names;
        std::set<std::set<std::pair<Name, WideText>>> unnamed;
        for (const Element* child : element.children) {
            if (child->name && !names.emplace(child->kind, *child->name).second) {
                Report(*child, "its name is taken by another " + Printable(child->kind));
            } else if (child->kind == TEXT("Option") && !child->written && !unnamed.insert(Content(*child)).second) {
                Report(*child, "has no name, and is like another option");
            }
        }
    }

    int Kind() const { return isTicket_ ? kTickets : kCapabilities; }

    // Whether the element is excepted from a rule, by its own name or, a feature, by its options' scored properties'.
    bool IsExcepted(Rule rule, const Element& element, WideView property = {}) const {
        const auto isNamedSo = [&](const Element& named) {
            return named.name && print_schema::IsExcepted(rule, Kind(), named.name->uri, named.name->local, property);
        };
        bool isExcepted = isNamedSo(element);
        ForChildren(element, TEXT("Option"), [&](const Element& option) {
            ForChildren(option, TEXT("ScoredProperty"),
                        [&](const Element& scored) { isExcepted = isExcepted || isNamedSo(scored); });
        });
        return isExcepted;
    }

    // As the rows of properties tell places.
    static WideText PlaceName(const Element& element) {
        return element.kind == TEXT("Property") && element.name ? element.name->local : element.kind;
    }

    // What a parameter's definition says; kNone where it says no type that a parameter may have.
    static ValueType DataType(const Element& definition) {
        const Element* const dataType = ValueOf(definition, TEXT("DataType"), ValueType::kQName);
        for (const ValueType type : {ValueType::kString, ValueType::kInteger}) {
            if (dataType && dataType->qualified.Is(kSchemaNamespace, SchemaName(type))) {
                return type;
            }
        }
        return ValueType::kNone;
    }

    // Whether a row's property may be in an element; where that defines a parameter of no readable type, any may.
    static bool FitsDataType(const PropertyRow& row, const Element& element) {
        const ValueType dataType = DataType(element);
        return row.forType == ValueType::kNone || dataType == ValueType::kNone || dataType == row.forType;
    }

    void CheckRequiredProperties(Element& element) {
        for (const PropertyRow& row : kProperties) {
            if (row.isRequired && !isTicket_ && Lists(row.places, PlaceName(element)) && FitsDataType(row, element) &&
                !Named(element, TEXT("Property"), row.uri, row.name) &&
                !IsExcepted(Rule::kRequiredProperty, element, row.name)) {
                Report(element, "has no property " + Printable(row.name));
            }
        }
    }

    void CheckProperty(const Element& property) {
        const size_t values = Count(property, TEXT("Value"));
        if (values > 1 && !IsExcepted(Rule::kOneValue, property)) {
            Report(property, "has " + std::to_string(values) + " values");
        } else if (property.children.empty()) {
            Report(property, "is empty");
        }
        if (!property.name || (property.name->uri != kFrameworkNamespace && property.name->uri != kKeywordsNamespace)) {
            return;
        }
        const Element& outer = *property.parent;
        const PropertyRow* known = nullptr;
        const PropertyRow* fitting = nullptr;
        for (const PropertyRow& row : kProperties) {
            if (property.name->Is(row.uri, row.name)) {
                known = &row;
                fitting = Lists(row.places, PlaceName(outer)) ? &row : fitting;
            }
        }
        if (fitting == nullptr) {
            Report(property, known ? "doesn't belong in " + Printable(PlaceName(outer)) : "isn't a known property");
            return;
        }
        if (isTicket_) {
            Report(property, "doesn't belong in print tickets");
            return;
        }
        if (!FitsDataType(*fitting, outer)) {
            Report(property, "doesn't belong in a parameter of this data type");
        }
        CheckPropertyValue(property, *fitting);
    }

    void CheckPropertyValue(const Element& property, const PropertyRow& row) {
        ValueType type = row.type;
        if (row.name == WideView(TEXT("DefaultValue"))) {
            type = DataType(*property.parent);
            if (type == ValueType::kNone) {
                return;
            }
        }
        CheckValueOf(property, type, row.least);
        const Element* const value = First(property, TEXT("Value"));
        if (value == nullptr) {
            return;
        }
        if (value->type == ValueType::kQName && row.names != nullptr &&
            !(value->qualified.uri == row.nameUri && Lists(row.names, value->qualified.local))) {
            Report(property, Quoted(value->text) + " is none of its values");
        } else if (value->type == ValueType::kString && value->text.empty() &&
                   row.name != WideView(TEXT("DefaultValue"))) {
            Report(property, "is an empty text");
        }
    }

    // Whether an element's value is of a type, and an integer no less than `least`; a value that couldn't be read was
    // found before.
    void CheckValueOf(const Element& element, ValueType type, int64_t least) {
        const Element* const value = First(element, TEXT("Value"));
        const ValueType actual = value ? value->type : ValueType::kNone;
        if (value == nullptr && type != ValueType::kNone && !element.children.empty()) {
            Report(element, "has no value, expected is " + TypeText(type));
        } else if (actual != ValueType::kNone && actual != type) {
            Report(element, "its value is " + TypeText(actual) + ", expected is " + TypeText(type));
        } else if (actual == ValueType::kInteger && value->number < least) {
            Report(element, Quoted(value->text) + " is less than " + std::to_string(least));
        }
    }

    void CheckFeature(const Element& feature) {
        const size_t options = Count(feature, TEXT("Option"));
        if (options == 0 && Count(feature, TEXT("Feature")) == 0 && !IsExcepted(Rule::kSomeOption, feature)) {
            Report(feature, "has no option");
        } else if (isTicket_ && options > 1) {
            Report(feature, "has " + std::to_string(options) + " options");
        }
        if (!feature.name) {
            return;
        }
        if (feature.name->uri == kFrameworkNamespace ||
            (feature.name->uri == kKeywordsNamespace && FindFeature(feature) == nullptr)) {
            const bool isKnown = feature.name->uri == kKeywordsNamespace &&
                                 std::any_of(kFeatures.begin(), kFeatures.end(), [&feature](const FeatureRow& row) {
                                     return feature.name->local == row.name;
                                 });
            Report(feature, isKnown ? "doesn't belong there" : "isn't a known feature");
        }
    }

    // A public feature where it may be; null for others.
    static const FeatureRow* FindFeature(const Element& feature) {
        if (!feature.name || feature.name->uri != kKeywordsNamespace) {
            return nullptr;
        }
        const auto found = std::find_if(kFeatures.begin(), kFeatures.end(), [&feature](const FeatureRow& row) {
            const bool isThere = row.parent == nullptr
                                     ? feature.parent->kind != TEXT("Feature")
                                     : feature.parent->name && feature.parent->name->Is(kKeywordsNamespace, row.parent);
            return isThere && feature.name->local == row.name;
        });
        return found == kFeatures.end() ? nullptr : &*found;
    }

    void CheckOption(const Element& option) {
        if (!option.written && Count(option, TEXT("ScoredProperty")) == 0) {
            Report(option, "has neither name nor scored properties");
        }
        const std::optional<WideText> constrained = Attribute(option, TEXT("constrained"));
        if (isTicket_ && constrained) {
            Report(option, "is constrained, in a print ticket");
        } else if (!isTicket_ && option.written && !constrained) {
            Report(option, "doesn't say how it is constrained");
        } else if (constrained) {
            const std::optional<Name> name = Resolve(option, *constrained, "the constraint");
            if (name && !(name->uri == kKeywordsNamespace &&
                          Lists(TEXT("None DeviceSettings PrintTicketSettings AdminSettings"), name->local))) {
                Report(option, "the constraint " + Quoted(*constrained) + " isn't a known one");
            }
        }
        const FeatureRow* const feature = FindFeature(*option.parent);
        if (option.name && option.name->uri == kKeywordsNamespace) {
            // The features of other namespaces may borrow public options.
            const bool isKnown = std::any_of(kFeatures.begin(), kFeatures.end(), [&](const FeatureRow& row) {
                return (feature == nullptr || feature == &row) && Lists(row.options, option.name->local);
            });
            if (!isKnown) {
                Report(option, "isn't a known option");
            }
        } else if (option.name && option.name->uri == kFrameworkNamespace) {
            Report(option, "isn't a known option");
        }
        CheckScoredPropertiesOf(option, feature);
    }

    void CheckScoredPropertiesOf(const Element& option, const FeatureRow* feature) {
        for (const ScoredPropertyRow& row : kScoredProperties) {
            if (row.isRequired && feature && IsOf(row, option, *feature, false) &&
                !Named(option, TEXT("ScoredProperty"), kKeywordsNamespace, row.name)) {
                Report(option, "has no scored property " + Printable(row.name));
            }
        }
        ForChildren(option, TEXT("ScoredProperty"), [&](const Element& scored) {
            if (!scored.name || (scored.name->uri != kKeywordsNamespace && scored.name->uri != kFrameworkNamespace)) {
                return;
            }
            const auto row = std::find_if(
                kScoredProperties.begin(), kScoredProperties.end(), [&](const ScoredPropertyRow& candidate) {
                    return scored.name->Is(kKeywordsNamespace, candidate.name) &&
                           (candidate.feature == nullptr || (feature && IsOf(candidate, option, *feature, true)));
                });
            if (row == kScoredProperties.end()) {
                Report(scored, "isn't a known scored property of the option");
            } else {
                CheckScoredValue(scored, *row);
            }
        });
    }

    // Whether an option of a feature has a row's scored property. `mayBorrow`: options of other namespaces count too.
    static bool IsOf(const ScoredPropertyRow& row, const Element& option, const FeatureRow& feature, bool mayBorrow) {
        if (row.feature == nullptr || feature.name != WideView(row.feature)) {
            return false;
        }
        const bool isPublic = option.name && option.name->uri == kKeywordsNamespace;
        return row.options == nullptr || (isPublic ? Lists(row.options, option.name->local) : mayBorrow);
    }

    void CheckScoredValue(const Element& scored, const ScoredPropertyRow& row) {
        const Element* const reference = First(scored, TEXT("ParameterRef"));
        if (reference == nullptr) {
            CheckValueOf(scored, row.type, row.least);
            const Element* const value = First(scored, TEXT("Value"));
            if (value && value->type == ValueType::kQName && row.names != nullptr &&
                !(value->qualified.uri == kKeywordsNamespace && Lists(row.names, value->qualified.local))) {
                Report(scored, Quoted(value->text) + " is none of its values");
            }
            return;
        }
        const Element* const parameter = reference->name ? Parameter(*reference->name) : nullptr;
        const ValueType type = parameter ? TypeOfParameter(*parameter) : ValueType::kNone;
        if (type != ValueType::kNone && type != row.type) {
            Report(scored, "its parameter is " + TypeText(type) + ", expected is " + TypeText(row.type));
        }
    }

    void CheckScoredProperty(const Element& scored) {
        const size_t contents = Count(scored, TEXT("Value")) + Count(scored, TEXT("ParameterRef"));
        if (contents > 1) {
            Report(scored, "has more than one value or parameter");
        } else if (scored.children.empty()) {
            Report(scored, "is empty");
        }
    }

    // The definition or setting of a parameter; null where there is none.
    const Element* Parameter(const Name& name) const {
        return Named(*root_, isTicket_ ? TEXT("ParameterInit") : TEXT("ParameterDef"), name.uri.c_str(), name.local);
    }

    // kNone where it isn't told.
    static ValueType TypeOfParameter(const Element& parameter) {
        if (parameter.kind == TEXT("ParameterInit")) {
            const Element* const value = First(parameter, TEXT("Value"));
            return value ? value->type : ValueType::kNone;
        }
        return DataType(parameter);
    }

    void CheckParameterRef(const Element& reference) {
        if (reference.name && !Parameter(*reference.name) && !IsExcepted(Rule::kKnownParameter, reference)) {
            Report(reference, isTicket_ ? "the ticket sets no such parameter" : "no such parameter is defined");
        }
    }

    void CheckParameter(const Element& parameter) {
        if (parameter.kind == TEXT("ParameterInit") && Count(parameter, TEXT("Value")) != 1) {
            Report(parameter, "has " + std::to_string(Count(parameter, TEXT("Value"))) + " values");
        }
        CheckLimits(parameter);
        if (!parameter.name ||
            (parameter.name->uri != kKeywordsNamespace && parameter.name->uri != kFrameworkNamespace)) {
            return;
        }
        const auto row = std::find_if(kParameters.begin(), kParameters.end(), [&parameter](const ParameterRow& known) {
            return parameter.name->Is(kKeywordsNamespace, known.name);
        });
        if (row == kParameters.end()) {
            Report(parameter, "isn't a known parameter");
            return;
        }
        const ValueType type = TypeOfParameter(parameter);
        if (type != ValueType::kNone && type != row->type) {
            Report(parameter, "is " + TypeText(type) + ", expected is " + TypeText(row->type));
        }
        const Element* const least = parameter.kind == TEXT("ParameterInit")
                                         ? First(parameter, TEXT("Value"))
                                         : ValueOf(parameter, TEXT("MinValue"), ValueType::kInteger);
        if (least && least->type == ValueType::kInteger && least->number < row->least) {
            Report(parameter, Quoted(least->text) + " is less than " + std::to_string(row->least));
        }
    }

    void CheckLimits(const Element& parameter) {
        const auto number = [&parameter](WideView property, int64_t otherwise) {
            const Element* const value = ValueOf(parameter, property, ValueType::kInteger);
            return value ? value->number : otherwise;
        };
        const bool isInteger = TypeOfParameter(parameter) == ValueType::kInteger;
        const int64_t least = isInteger ? number(TEXT("MinValue"), INT64_MIN) : number(TEXT("MinLength"), 0);
        const int64_t most = isInteger ? number(TEXT("MaxValue"), INT64_MAX) : number(TEXT("MaxLength"), INT64_MAX);
        if (least > most) {
            Report(parameter, "the least is " + std::to_string(least) + ", the most " + std::to_string(most));
            return;
        }
        const Element* const preset =
            ValueOf(parameter, TEXT("DefaultValue"), isInteger ? ValueType::kInteger : ValueType::kString);
        if (preset == nullptr || IsExcepted(Rule::kDefaultWithinRange, parameter)) {
            return;
        }
        const int64_t size = isInteger ? preset->number : static_cast<int64_t>(preset->text.size());
        if (size < least || size > most) {
            Report(parameter, "the default " + Quoted(preset->text) + " isn't from " + std::to_string(least) + " to " +
                                  std::to_string(most));
        }
        // Multiples count from 0.
        const int64_t multiple = number(TEXT("Multiple"), 1);
        if (isInteger && multiple > 0 && size % multiple != 0) {
            Report(parameter, "the default " + Quoted(preset->text) + " is no multiple of " + std::to_string(multiple));
        }
    }

    void CheckByKind(Element& element) {
        static constexpr struct {
            WideView kind;
            void (Checker::*check)(const Element&);
        } kChecks[] = {
            {TEXT("Feature"), &Checker::CheckFeature},
            {TEXT("Option"), &Checker::CheckOption},
            {TEXT("Property"), &Checker::CheckProperty},
            {TEXT("ScoredProperty"), &Checker::CheckScoredProperty},
            {TEXT("ParameterRef"), &Checker::CheckParameterRef},
            {TEXT("ParameterDef"), &Checker::CheckParameter},
            {TEXT("ParameterInit"), &Checker::CheckParameter},
        };
        for (const auto& row : kChecks) {
            // Without a place where it may be, it was found before.
            const ElementRow* const outer = element.parent ? FindElement(element.parent->kind) : nullptr;
            if (row.kind == element.kind && outer != nullptr && Lists(outer->children, element.kind)) {
                (this->*row.check)(element);
            }
        }
    }

    const XmlTree tree_;
    std::vector<Element> elements_;  // one for each node of the tree; those of other nodes are unused
    std::vector<Element*> topElements_;
    Element* root_ = nullptr;
    bool isTicket_ = false;
    std::vector<Finding> findings_;
};

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Finding& finding) {
    return stream << finding.place << ": " << finding.fault;
}

std::vector<Finding> CheckPrintSchema(IXMLDOMDocument2* document) {
    return Checker(document).Check();
}

}  // namespace print_schema
