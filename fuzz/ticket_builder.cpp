#include "fuzz/ticket_builder.h"

#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <tuple>

#include "driver/ptprovider/print_schema.h"
#include "platform/kernel/text.h"

namespace fuzz {

using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test

namespace {

constexpr int32_t kExtremes[] = {0,      1,      -1,       50,        51,        -50,      100,    256,
                                 6000,   3600,   32767,    32768,     65535,     65536,    -32768, 148000,
                                 210000, 297000, 215900,   279400,    25400,     100000,   150000, 500000,
                                 359,    360,    16777215, -16777216, INT32_MAX, INT32_MIN};

ComReference<IXMLDOMDocument2> NewDocument() {
    void* made = nullptr;
    CoCreateInstance(kDomDocument60, nullptr, CLSCTX_INPROC_SERVER, kIidDomDocument2, &made);
    return ComReference<IXMLDOMDocument2>(static_cast<IXMLDOMDocument2*>(made));
}

}  // namespace

TicketBuilder::TicketBuilder(const TicketPrinter& printer, bool areExchanged)
    : printer_(printer), document_(NewDocument()) {
    const Text prefixes[] = {u"psk", u"kxp", u"oem", u"xsd", u"psf", u"ns0000", u"xsi", u"un"};
    const size_t count = std::size(prefixes);
    for (size_t i = 0; i < count; ++i) {
        prefixes_[kSpaces[i]] = prefixes[areExchanged ? (i + 1) % count : i];
    }
    root_ = Add(nullptr, u"PrintTicket");
    for (const auto& [uri, prefix] : prefixes_) {
        SetAttribute(root_, u"xmlns:" + prefix, uri);
    }
    SetAttribute(root_, u"version", u"1");
    for (Node* const place : {&feature_, &option_, &last_}) {
        *place = Node::Share(root_.Get());
    }
}

void TicketBuilder::SetAttribute(const Node& element, const Text& name, const Text& value) {
    VARIANT variant;
    VariantInit(&variant);
    const OwnedBstr text(value.c_str());
    variant.vt = VT_BSTR;
    variant.bstrVal = text.Get();
    static_cast<IXMLDOMElement*>(element.Get())->setAttribute(OwnedBstr(name.c_str()).Get(), variant);
}

Node TicketBuilder::Add(IXMLDOMNode* parent, const Text& name) {
    VARIANT type;
    VariantInit(&type);
    type.vt = VT_I4;
    type.lVal = NODE_ELEMENT;
    Node made;
    document_->createNode(type, OwnedBstr((prefixes_[kFrameworkNamespace] + u":" + name).c_str()).Get(),
                          OwnedBstr(kFrameworkNamespace).Get(), made.Receive());
    (parent ? parent : document_.Get())->appendChild(made.Get(), nullptr);
    return made;
}

Text TicketBuilder::Written(const Name& name) const {
    const auto found = prefixes_.find(name.first);
    return name.first.empty() ? name.second : (found == prefixes_.end() ? u"none" : found->second) + u":" + name.second;
}

Node TicketBuilder::AddNamed(const Node& parent, const Text& kind, const Name& name) {
    Node made = Add(parent.Get(), kind);
    SetAttribute(made, u"name", Written(name));
    return made;
}

Name TicketBuilder::WithSpace(const Step& step, const WCHAR* uri, const Text& word) {
    return {step.space < kAnySpace ? uri : kSpaces[step.space % std::size(kSpaces)], word};
}

std::vector<Name> TicketBuilder::OptionsOf(const Step& step, const FeatureWords& feature) const {
    const auto listed = printer_.options.find(feature.list);
    std::vector<Name> names = listed == printer_.options.end() ? std::vector<Name>() : listed->second;
    for (size_t i = 0; i <= 8; ++i) {
        const Text word = WordOf(feature.options, i, step.number);
        names.push_back(WithSpace(step, feature.space, word));
        names.push_back(WithSpace(step, kPrivateNamespace, word));
    }
    return names;
}

void TicketBuilder::AddFeature(const Step& step) {
    const size_t index = step.feature % (std::size(kFeatures) + printer_.features.size());
    Name name;
    std::vector<Name> options;
    bool isPart = false;
    if (index < std::size(kFeatures)) {
        const FeatureWords& words = kFeatures[index];
        words_ = &words;
        name = {words.space, WordOf(words.name, 0, step.number)};
        options = OptionsOf(step, words);
        isPart = words.isPart;
    } else {
        std::tie(name, options) = printer_.features[index - std::size(kFeatures)];
    }
    // Parts of groups lie in groups, which have no options.
    const bool isInPart = isPart && step.value % 2 != 0;
    const Node& parent = isInPart ? last_ : isPart ? feature_ : root_;
    Node made = AddNamed(parent, u"Feature", name);
    if (!isPart) {
        feature_ = Node::Share(made.Get());
    }
    last_ = Node::Share(made.Get());
    if (step.kind % kStepKinds != kBareFeature) {
        const Name option = options.empty() ? Name() : options[step.word % options.size()];
        option_ = option.second.empty() ? Add(made.Get(), u"Option") : AddNamed(made, u"Option", option);
        last_ = Node::Share((isPart ? made : option_).Get());
    }
}

Text TicketBuilder::ValueOf(const Step& step) const {
    const auto number = static_cast<uint32_t>(step.number);
    const Text digits = host::ToWide(std::to_string(step.number));
    const auto& sizes = printer_.paperSizes;
    switch (step.value % kValueKinds) {
        case kSmallValue:
            return host::ToWide(std::to_string(number % 64));
        case kExtremeValue:
            return host::ToWide(std::to_string(kExtremes[number % std::size(kExtremes)]));
        case kPaperWidth:
            return host::ToWide(std::to_string(sizes.empty() ? 0 : sizes[number % sizes.size()].first));
        case kPaperLength:
            return host::ToWide(std::to_string(sizes.empty() ? 0 : sizes[number % sizes.size()].second));
        case kWordValue:
            return printer_.overlays[number % printer_.overlays.size()];
        case kNameValue:
            return Written({kKeywordsNamespace,
                            WordOf(kFeatures[step.feature % std::size(kFeatures)].options, number, step.number)});
        case kListValue:
            return digits + u",3," + digits + u",,5;6 7,0,8,9,10,11,12,13";
        case kPaddedValue:
            return u" \t+" + digits + u" x";
        case kHugeValue:
            return digits + Text(number % 64, u'9');
        case kLongValue:
            return Text(number % 600,
                        static_cast<char16_t>(number >> 16) > u' ' ? static_cast<char16_t>(number >> 16) : u'x');
        case kEmptyValue:
            return {};
        default:
            return digits;
    }
}

void TicketBuilder::AddValue(const Node& parent, const Step& step) {
    if (step.value % kValueKinds == kNoValue) {
        return;
    }
    const Node value = Add(parent.Get(), u"Value");
    const Text type = step.value % kValueKinds < kWordValue ? u"integer" : u"string";
    SetAttribute(value, prefixes_[kInstanceNamespace] + u":type", Written({kSchemaNamespace, type}));
    value->put_text(OwnedBstr(ValueOf(step).c_str()).Get());
}

// With its value, or by a parameter on the root that has it.
void TicketBuilder::AddScored(const Name& property, const Step& step, bool isByParameter) {
    last_ = AddNamed(option_, u"ScoredProperty", property);
    if (!isByParameter) {
        AddValue(last_, step);
        return;
    }
    const Name parameter = {property.first, WordOf(words_->name, 0, step.number) + property.second};
    AddNamed(last_, u"ParameterRef", parameter);
    AddValue(AddNamed(root_, u"ParameterInit", parameter), step);
}

void TicketBuilder::AddProperties(const Step& step) {
    const Node feature = Node::Share(last_.Get());
    const auto count = std::count(words_->properties, words_->properties + strlen(words_->properties), ' ') + 1;
    for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
        for (const WCHAR* const uri : {words_->space, kPrivateNamespace}) {
            AddScored({uri, WordOf(words_->properties, i, 0)}, step, step.value < kPrivateProperty);
        }
    }
    last_ = Node::Share(feature.Get());
}

void TicketBuilder::AddNested(const Step& step) {
    constexpr uint32_t kMostDepth = 300;
    const Text element = WordOf(kElementWords, step.word, 0);
    for (uint32_t depth = 0; depth <= static_cast<uint32_t>(step.number) % kMostDepth; ++depth) {
        const FeatureWords& words = kFeatures[(step.feature + depth) % std::size(kFeatures)];
        last_ = AddNamed(last_, element, WithSpace(step, words.space, WordOf(words.name, 0, step.number)));
    }
}

void TicketBuilder::Take(const Step& step) {
    const FeatureWords& words = *words_;
    const Name property = WithSpace(step, step.value < kPrivateProperty ? words.space : kPrivateNamespace,
                                    WordOf(words.properties, step.word, 0));
    switch (step.kind % kStepKinds) {
        case kFeature:
        case kBareFeature:
            AddFeature(step);
            break;
        case kWholeFeature:
            AddFeature(step);
            AddProperties(step);
            break;
        case kScoredValue:
            AddScored(property, step, false);
            break;
        case kScoredRef:
            AddScored(property, step, true);
            break;
        case kParameter: {
            const WCHAR* const uri = step.word % 2 == 0 ? kKeywordsNamespace : kPrivateNamespace;
            last_ = AddNamed(root_, u"ParameterInit",
                             WithSpace(step, uri, WordOf(kParameterWords, step.feature, step.number)));
            AddValue(last_, step);
            break;
        }
        case kProperty:
            last_ = AddNamed(root_, u"Property",
                             WithSpace(step, kPrivateNamespace, WordOf(kPropertyWords, step.feature, 0)));
            AddValue(last_, step);
            break;
        case kOptionName: {
            const std::vector<Name> options = OptionsOf(step, words);
            const Node value = Add(AddNamed(option_, u"Property", {kKeywordsNamespace, u"OptionName"}).Get(), u"Value");
            value->put_text(OwnedBstr(Written(options[step.word % options.size()]).c_str()).Get());
            break;
        }
        case kNested:
            AddNested(step);
            break;
        case kValue:
            AddValue(last_, step);
            break;
        case kText: {
            ComReference<IXMLDOMText> text;
            document_->createTextNode(OwnedBstr(ValueOf(step).c_str()).Get(), text.Receive());
            last_->appendChild(text.Get(), nullptr);
            break;
        }
        case kCopy: {
            Node copy;
            feature_->cloneNode(VARIANT_TRUE, copy.Receive());
            (step.word % 2 == 0 ? root_ : last_)->appendChild(copy.Get(), nullptr);
            break;
        }
        case kDeclaration:
            if (last_.Get() != root_.Get()) {
                SetAttribute(last_, u"xmlns:" + std::next(prefixes_.begin(), step.word % prefixes_.size())->second,
                             kSpaces[step.feature % (std::size(kSpaces) - 1)]);
            }
            break;
        default:
            break;
    }
}

}  // namespace fuzz
