#include "bench/ticket_bench.h"

#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "bench/call_tables.h"
#include "bench/plain_document.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/schema_document.h"
#include "platform/kernel/text.h"

namespace velmora {
namespace {

constexpr double kMostBuildRatio = 3;
constexpr double kMostFindRatio = 5;
constexpr double kMostLookupGrowth = 1.5;
constexpr double kMostDeepRatio = 3.0;

// A document of 2,000 elements: one of the root, 45 a feature, 17 a parameter, 2 a property.
constexpr int kElements = 2000;
constexpr int kFeatures = 40;
constexpr int kOptions = 8;
constexpr int kParameters = 11;
constexpr int kProperties = 6;

constexpr int kChildren = 400;  // of the root of the document that is searched
constexpr int kWanted = 40;

constexpr int kSizes[] = {100, 100000};  // elements of the documents that prefixes are looked up in
constexpr int kDepth = 10000;

constexpr const char* kBuild = "capabilities built";
constexpr const char* kPlainBuild = "capabilities built by libxml2";
constexpr const char* kFind = "features found";
constexpr const char* kPlainFind = "features found by libxml2";
constexpr const char* kDeep = "deep document";
constexpr const char* kFlat = "flat document";

std::string LookupName(int elements) {
    return "prefix looked up, " + std::to_string(elements);
}

// A name as the driver and as libxml2 take it.
struct Name {
    explicit Name(const std::string& text) : plain(text), wide(host::ToWide(text)) {}
    const xmlChar* Plain() const { return reinterpret_cast<const xmlChar*>(plain.c_str()); }

    std::string plain;
    std::u16string wide;
};

const std::vector<Name>& Names() {
    static const std::vector<Name> names = [] {
        std::vector<Name> made;
        for (int i = 0; i < kChildren; ++i) {
            made.emplace_back("Item" + std::to_string(i));
        }
        return made;
    }();
    return names;
}

// --- By the driver

void BeginDocument(SchemaDocument* document) {
    bool holds = document->CreateDocument() == S_OK;
    ElementReference root;
    holds &= document->AppendElement(document->Document(), kFrameworkNamespace, u"PrintCapabilities", &root) == S_OK;
    document->SetRoot(std::move(root));
    for (const StandardNamespace& standard : kStandardNamespaces) {
        holds &= document->AddNamespaceAttribute(standard.uri, standard.prefix) == S_OK;
    }
    Require(holds, "a document can't be begun");
}

void BuildCapabilities(SchemaDocument* document) {
    BeginDocument(document);
    bool holds = true;
    for (int i = 0; i < kProperties; ++i) {
        ElementReference property;
        holds &= document->AddProperty(kKeywordsNamespace, Names()[i].wide.c_str(), &property) == S_OK;
        holds &= document->AddValueInteger(property.Get(), 20) == S_OK;
    }
    for (int i = 0; i < kFeatures; ++i) {
        ElementReference feature;
        holds &= document->AddFeature(kKeywordsNamespace, Names()[i].wide.c_str(), &feature) == S_OK;
        holds &= document->AddSelectionTypePickOne(feature.Get()) == S_OK;
        holds &= document->AddDisplayName(feature.Get(), u"Two sides") == S_OK;
        for (int j = 0; j < kOptions; ++j) {
            ElementReference option;
            holds &= document->AddOption(feature.Get(), kPrivateNamespace, Names()[j].wide.c_str(), u"None", &option) ==
                     S_OK;
            holds &= document->AddDisplayName(option.Get(), u"Short edge") == S_OK;
            ElementReference width;
            holds &= document->AddScoredProperty(option.Get(), kKeywordsNamespace, u"MediaSizeWidth", &width) == S_OK;
            holds &= document->AddValueInteger(width.Get(), 210000) == S_OK;
        }
    }
    for (int i = 0; i < kParameters; ++i) {
        holds &= document->AddIntegerParameterDef(nullptr, kKeywordsNamespace, Names()[i].wide.c_str(),
                                                  ParameterRange<LONG>{1, 1, 999, 1},
                                                  {u"Copies", nullptr, u"copies", u"Unconditional"}) == S_OK;
    }
    Require(holds, "the capabilities can't be built");
}

// Elements in each other, and the last one found.
void BuildDeep() {
    SchemaDocument document;
    BeginDocument(&document);
    ComReference<IXMLDOMNode> parent;
    ElementReference made;
    for (int i = 1; i < kDepth; ++i) {
        parent = ComReference<IXMLDOMNode>(made.Detach());
        Require(document.AppendElement(parent.Get(), kFrameworkNamespace, element_name::kFeature, &made) == S_OK,
                "an element isn't made in the depth");
    }
    Require(document.FindChildElement(parent.Get(), kFrameworkNamespace, element_name::kFeature, &made) == S_OK,
            "an element isn't found in the depth");
}

// As many side by side.
void BuildFlat() {
    SchemaDocument document;
    BeginDocument(&document);
    ElementReference made;
    for (int i = 1; i < kDepth; ++i) {
        Require(document.AppendElement(nullptr, kFrameworkNamespace, element_name::kFeature, &made) == S_OK,
                "an element isn't made");
    }
}

// --- By libxml2: the same trees, prefixes looked up at each node

struct Uris {
    Name schema{host::ToUtf8(kSchemaNamespace)};
    Name instance{host::ToUtf8(kInstanceNamespace)};
    Name framework{host::ToUtf8(kFrameworkNamespace)};
    Name keywords{host::ToUtf8(kKeywordsNamespace)};
    Name own{host::ToUtf8(kPrivateNamespace)};
};

const Uris& TheUris() {
    static const Uris uris;
    return uris;
}

class PlainBuilder {
  public:
    PlainBuilder() : document_(xmlNewDoc(Plain("1.0"))) {
        root_ = xmlNewDocNode(document_.get(), nullptr, Plain("PrintCapabilities"), nullptr);
        xmlDocSetRootElement(document_.get(), root_);
        for (const StandardNamespace& standard : kStandardNamespaces) {
            xmlNewNs(root_, Name(host::ToUtf8(standard.uri)).Plain(), Name(host::ToUtf8(standard.prefix)).Plain());
        }
        xmlSetNs(root_, xmlSearchNsByHref(document_.get(), root_, TheUris().framework.Plain()));
    }

    xmlNode* Root() const { return root_; }
    PlainDocument Take() { return std::move(document_); }

    xmlNode* Add(xmlNode* parent, const char* kind) const {
        xmlNs* space = xmlSearchNsByHref(document_.get(), parent, TheUris().framework.Plain());
        return xmlAddChild(parent, xmlNewDocNode(document_.get(), space, Plain(kind), nullptr));
    }
    xmlNode* AddNamed(xmlNode* parent, const char* kind, const Name& uri, const std::string& name) const {
        xmlNode* made = Add(parent, kind);
        xmlNewProp(made, Plain("name"), Plain(Written(made, uri, name).c_str()));
        return made;
    }
    void AddValue(xmlNode* parent, const char* type, const std::string& text) const {
        xmlNode* made = Add(parent, "Value");
        xmlNs* space = xmlSearchNsByHref(document_.get(), made, TheUris().instance.Plain());
        xmlNewNsProp(made, space, Plain("type"), Plain(Written(parent, TheUris().schema, type).c_str()));
        xmlAddChild(made, xmlNewDocText(document_.get(), Plain(text.c_str())));
    }
    void AddName(xmlNode* parent, const Name& uri, const std::string& name) const {
        AddValue(parent, "QName", Written(parent, uri, name));
    }
    void AddDisplayName(xmlNode* parent, const char* text) const {
        AddValue(AddNamed(parent, "Property", TheUris().keywords, "DisplayName"), "string", text);
    }
    xmlNode* AddProperty(xmlNode* parent, const char* name) const {
        return AddNamed(parent, "Property", TheUris().framework, name);
    }

  private:
    std::string Written(xmlNode* node, const Name& uri, const std::string& name) const {
        const xmlNs* space = xmlSearchNsByHref(document_.get(), node, uri.Plain());
        return std::string(reinterpret_cast<const char*>(space->prefix)) + ":" + name;
    }

    PlainDocument document_;
    xmlNode* root_;
};

PlainDocument BuildPlainCapabilities() {
    const Uris& uris = TheUris();
    PlainBuilder builder;
    for (int i = 0; i < kProperties; ++i) {
        builder.AddValue(builder.AddNamed(builder.Root(), "Property", uris.keywords, Names()[i].plain), "integer",
                         std::to_string(20));
    }
    for (int i = 0; i < kFeatures; ++i) {
        xmlNode* feature = builder.AddNamed(builder.Root(), "Feature", uris.keywords, Names()[i].plain);
        builder.AddName(builder.AddProperty(feature, "SelectionType"), uris.keywords, "PickOne");
        builder.AddDisplayName(feature, "Two sides");
        for (int j = 0; j < kOptions; ++j) {
            xmlNode* option = builder.AddNamed(feature, "Option", uris.own, Names()[j].plain);
            xmlNewProp(option, Plain("constrained"), Plain("psk:None"));
            builder.AddDisplayName(option, "Short edge");
            builder.AddValue(builder.AddNamed(option, "ScoredProperty", uris.keywords, "MediaSizeWidth"), "integer",
                             std::to_string(210000));
        }
    }
    for (int i = 0; i < kParameters; ++i) {
        xmlNode* definition = builder.AddNamed(builder.Root(), "ParameterDef", uris.keywords, Names()[i].plain);
        builder.AddDisplayName(definition, "Copies");
        builder.AddName(builder.AddProperty(definition, "DataType"), uris.schema, "integer");
        for (const auto& [property, number] :
             {std::pair("DefaultValue", 1), {"MinValue", 1}, {"MaxValue", 999}, {"Multiple", 1}}) {
            builder.AddValue(builder.AddProperty(definition, property), "integer", std::to_string(number));
        }
        builder.AddValue(builder.AddProperty(definition, "UnitType"), "string", "copies");
        builder.AddName(builder.AddProperty(definition, "Mandatory"), uris.keywords, "Unconditional");
    }
    return builder.Take();
}

bool IsPlainFeature(xmlNode* node, const Name& wanted) {
    const Uris& uris = TheUris();
    if (node->type != XML_ELEMENT_NODE || !xmlStrEqual(node->name, Plain("Feature")) || !node->ns ||
        !xmlStrEqual(node->ns->href, uris.framework.Plain())) {
        return false;
    }
    const PlainText written(xmlGetNoNsProp(node, Plain("name")));
    xmlChar* prefix = nullptr;
    const PlainText local(written ? xmlSplitQName2(written.get(), &prefix) : nullptr);
    const PlainText owned(prefix);
    const xmlNs* space = local ? xmlSearchNs(node->doc, node, prefix) : nullptr;
    return space && xmlStrEqual(space->href, uris.keywords.Plain()) && xmlStrEqual(local.get(), wanted.Plain());
}

bool HasPlainFeature(xmlNode* parent, const Name& wanted) {
    for (xmlNode* node = parent->children; node; node = node->next) {
        if (IsPlainFeature(node, wanted)) {
            return true;
        }
    }
    return false;
}

// --- That both have built the same

void CompareBuilders() {
    SchemaDocument document;
    BuildCapabilities(&document);
    const PlainDocument plain = BuildPlainCapabilities();
    Require(CanonicalText(ParsePlain(TextOf(document.Root())).get()) == CanonicalText(plain.get()),
            "the driver and libxml2 don't build the same capabilities");
    Require(CountElements(plain->children) == kElements, "the capabilities don't have 2,000 elements");
}

}  // namespace

// A document and an element in it.
struct TicketBench::Place {
    SchemaDocument document;
    ElementReference element;
};

struct TicketBench::Parts {
    ComUse com;
    SchemaDocument features;
    PlainDocument plainFeatures;
    Place places[std::size(kSizes)];
};

TicketBench::TicketBench() : parts_(std::make_unique<Parts>()) {
    CompareBuilders();
    RegisterWork(kBuild, [] {
        SchemaDocument document;
        BuildCapabilities(&document);
    });
    RegisterWork(kPlainBuild, [] { Require(BuildPlainCapabilities() != nullptr, "libxml2 builds nothing"); });

    SchemaDocument& features = parts_->features;
    BeginDocument(&features);
    for (const Name& name : Names()) {
        Require(features.AddFeature(kKeywordsNamespace, name.wide.c_str(), nullptr) == S_OK, "a feature isn't added");
    }
    parts_->plainFeatures = ParsePlain(TextOf(features.Root()));
    const auto forEachWanted = [](auto find) {
        for (int i = 0; i < kWanted; ++i) {
            Require(find(Names()[i * (kChildren / kWanted)]), "a feature isn't found");
        }
    };
    RegisterWork(kFind, [=, &features] {
        forEachWanted([&](const Name& wanted) {
            ElementReference feature;
            return features.FindFeature(nullptr, kKeywordsNamespace, wanted.wide.c_str(), &feature) == S_OK;
        });
    });
    RegisterWork(kPlainFind, [=, root = xmlDocGetRootElement(parts_->plainFeatures.get())] {
        forEachWanted([&](const Name& wanted) { return HasPlainFeature(root, wanted); });
    });

    for (size_t i = 0; i < std::size(kSizes); ++i) {
        Place& place = parts_->places[i];
        BeginDocument(&place.document);
        for (int elements = 1; elements < kSizes[i]; ++elements) {
            Require(place.document.AddFeature(kKeywordsNamespace, u"Feature", &place.element) == S_OK,
                    "a feature isn't added");
        }
        RegisterWork(LookupName(kSizes[i]), [&place] {
            OwnedBstr prefix;
            Require(place.document.LookupPrefix(place.element.Get(), kPrivateNamespace, &prefix) == S_OK,
                    "a prefix isn't found");
        });
    }

    RegisterWork(kDeep, BuildDeep);
    RegisterWork(kFlat, BuildFlat);
}

TicketBench::~TicketBench() = default;

bool TicketBench::Judge(const Times& times) const {
    return PrintFigure("a prefix among 100,000 elements, against 100",
                       times.at(LookupName(kSizes[1])) / times.at(LookupName(kSizes[0])), "x", kMostLookupGrowth);
}

void TicketBench::AddRows(CallTables* tables) const {
    tables->Add(CallRow{CallGroup::kTickets, "capabilities of 2,000 elements built", kBuild, "libxml2, same tree",
                        kPlainBuild, MostRatio(kMostBuildRatio)});
    tables->Add(CallRow{CallGroup::kTickets, "40 features among 400 found", kFind, "libxml2, same search", kPlainFind,
                        MostRatio(kMostFindRatio)});
    tables->Add(CallRow{CallGroup::kTickets, "10,000 elements built in each other", kDeep, "built side by side", kFlat,
                        MostRatio(kMostDeepRatio)});
}

}  // namespace velmora
