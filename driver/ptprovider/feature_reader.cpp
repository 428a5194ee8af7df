#include "driver/ptprovider/feature_reader.h"

#include "driver/base/text.h"

namespace velmora {

bool FeatureReader::FindOption(IXMLDOMElement* parent, const Keyword& feature, FoundOption* found) {
    return document.FindFeatureOption(parent, feature.uri, feature.name, &found->feature, &found->option,
                                      &found->name) == S_OK;
}

bool FeatureReader::FindOption(std::span<const Keyword> names, FoundOption* found) {
    for (const Keyword& name : names) {
        if (!name.name) {
            return false;
        }
        if (FindOption(nullptr, name, found)) {
            return true;
        }
    }
    return false;
}

bool FeatureReader::FindUnnamedOption(std::span<const Keyword> names, FoundOption* found) {
    for (const Keyword& name : names) {
        if (!name.name) {
            return false;
        }
        if (document.FindFeatureOption(nullptr, name.uri, name.name, &found->feature, &found->option, nullptr) ==
            S_OK) {
            return true;
        }
    }
    return false;
}

const PlainOption* FeatureReader::FindPlainOption(IXMLDOMElement* parent, const Keyword& feature,
                                                  std::span<const PlainOption> options) {
    FoundOption found;
    return FindOption(parent, feature, &found) ? MatchOption(found.name, feature.uri, options) : nullptr;
}

bool FeatureReader::ReadScored(const ElementReference& option, const Keyword& name, LONG* value) {
    return option && document.ReadScoredPropertyInteger(option.Get(), name.uri, name.name, value) == S_OK;
}

bool FeatureReader::ReadScored(const ElementReference& option, const Keyword& name, OwnedBstr* text) {
    return option && document.ReadScoredPropertyString(option.Get(), name.uri, name.name, text) == S_OK;
}

bool FeatureReader::ReadParameter(const ElementReference& option, const Keyword& name, LONG* value) {
    return option && document.ReadScoredParameterInteger(option.Get(), name.uri, name.name, value) == S_OK;
}

bool FeatureReader::ReadParameter(const ElementReference& option, const Keyword& name, ULONG* value) {
    return option && document.ReadScoredParameterUnsigned(option.Get(), name.uri, name.name, value) == S_OK;
}

bool FeatureReader::ReadParameter(const ElementReference& option, const Keyword& name, OwnedBstr* text) {
    return option && document.ReadScoredParameterString(option.Get(), name.uri, name.name, text) == S_OK;
}

const PlainOption* MatchOption(const QualifiedName& name, const WCHAR* uri, std::span<const PlainOption> options) {
    for (const PlainOption& option : options) {
        if (name.Is(uri, option.name)) {
            return &option;
        }
    }
    return nullptr;
}

bool IsNamed(const OptionName& entry, const QualifiedName& name) {
    return entry.namespaceUri && name.Is(entry.namespaceUri, entry.keyword);
}

}  // namespace velmora
