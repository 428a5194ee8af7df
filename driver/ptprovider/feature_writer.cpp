#include "driver/ptprovider/feature_writer.h"

#include "driver/base/format.h"
#include "driver/base/text.h"

namespace velmora {
namespace {

// A feature's name with what is added to it.
constexpr size_t kBannerCapacity = 128;

}  // namespace

const WCHAR* FeatureWriter::Constraint(bool isInstalled) const {
    if (!ListsAll()) {
        return nullptr;
    }
    return isInstalled ? keyword_name::kNone : keyword_name::kDeviceSettings;
}

void FeatureWriter::LoadDisplayName(UINT id, WCHAR (&name)[kDisplayNameCapacity]) const {
    name[0] = 0;
    if (id == kNoDisplayName || !context_.Strings()) {
        return;
    }
    LoadStringW(context_.Strings(), id, name, static_cast<int>(kDisplayNameCapacity));
    WCHAR* mark = FindText(static_cast<WCHAR*>(name), TEXT("&"));
    for (; mark && *mark != 0; ++mark) {
        *mark = mark[1];
    }
}

void FeatureWriter::AddDisplayName(const ElementReference& element, UINT id) {
    if (ListsAll() && element && id != kNoDisplayName) {
        WCHAR name[kDisplayNameCapacity];
        LoadDisplayName(id, name);
        document.AddDisplayName(element.Get(), name);
    }
}

void FeatureWriter::AddSelectionType(const ElementReference& feature) {
    if (ListsAll() && feature) {
        document.AddSelectionTypePickOne(feature.Get());
    }
}

ElementReference FeatureWriter::BeginFeature(const Keyword& name, UINT displayName) {
    document.AppendBanner(name.name);
    ElementReference feature = BeginGroup({}, name, displayName);
    AddSelectionType(feature);
    return feature;
}

ElementReference FeatureWriter::BeginSubFeature(const ElementReference& parent, const Keyword& name, UINT displayName) {
    if (!parent) {
        return {};
    }
    ElementReference feature = BeginGroup(parent, name, displayName);
    AddSelectionType(feature);
    return feature;
}

ElementReference FeatureWriter::BeginGroup(const ElementReference& parent, const Keyword& name, UINT displayName) {
    ElementReference feature;
    document.AddFeature(parent.Get(), name.uri, name.name, &feature);
    AddDisplayName(feature, displayName);
    return feature;
}

ElementReference FeatureWriter::BeginGroup(const ElementReference& parent, const OptionName& name, const WCHAR* label) {
    ElementReference feature;
    document.AddFeature(parent.Get(), name.namespaceUri, name.keyword, &feature);
    if (ListsAll() && feature && *label != 0) {
        document.AddDisplayName(feature.Get(), label);
    }
    return feature;
}

ElementReference FeatureWriter::AddOption(const ElementReference& feature, const Keyword& name, UINT displayName,
                                          bool isInstalled) {
    ElementReference option;
    document.AddOption(feature.Get(), name.uri, name.name, Constraint(isInstalled), &option);
    AddDisplayName(option, displayName);
    return option;
}

ElementReference FeatureWriter::AddOption(const ElementReference& feature, const OptionName& name, const WCHAR* label,
                                          bool isInstalled) {
    ElementReference option;
    document.AddOption(feature.Get(), name.namespaceUri, name.keyword, Constraint(isInstalled), &option);
    if (ListsAll() && option && *label != 0) {
        document.AddDisplayName(option.Get(), label);
    }
    return option;
}

ElementReference FeatureWriter::AddUnnamedOption(const ElementReference& feature, const WCHAR* label,
                                                 bool isInstalled) {
    return AddOption(feature, OptionName{nullptr, {}}, label, isInstalled);
}

void FeatureWriter::AddOptions(const ElementReference& feature, const WCHAR* uri, std::span<const PlainOption> options,
                               uint32_t selected) {
    for (const PlainOption& option : options) {
        if (!option.isOnlyRead && Writes(option.value == selected)) {
            AddOption(feature, {uri, option.name}, option.displayName);
        }
    }
}

void FeatureWriter::AddScoredInteger(const ElementReference& option, const Keyword& name, LONG value) {
    ElementReference property;
    if (SUCCEEDED(document.AddScoredProperty(option.Get(), name.uri, name.name, &property))) {
        document.AddValueInteger(property.Get(), value);
    }
}

void FeatureWriter::AddScoredKeyword(const ElementReference& option, const Keyword& name, const Keyword& value) {
    ElementReference property;
    if (SUCCEEDED(document.AddScoredProperty(option.Get(), name.uri, name.name, &property))) {
        document.AddValueQName(property.Get(), value.uri, value.name);
    }
}

void FeatureWriter::AddScoredText(const ElementReference& option, const Keyword& name, const WCHAR* text) {
    ElementReference property;
    if (SUCCEEDED(document.AddScoredProperty(option.Get(), name.uri, name.name, &property))) {
        document.AddValueString(property.Get(), nullptr, text);
    }
}

void FeatureWriter::AddScoredParameter(const ElementReference& option, const Keyword& name, const Keyword& parameter) {
    ElementReference property;
    if (SUCCEEDED(document.AddScoredProperty(option.Get(), name.uri, name.name, &property))) {
        document.AddParameterRef(property.Get(), parameter.uri, parameter.name);
    }
}

void FeatureWriter::AddIntegerProperty(const ElementReference& option, const Keyword& name, LONG value) {
    ElementReference property;
    if (option && SUCCEEDED(document.AddProperty(option.Get(), name.uri, name.name, &property))) {
        document.AddValueInteger(property.Get(), value);
    }
}

void FeatureWriter::AddTextProperty(const ElementReference& option, const Keyword& name, const WCHAR* text) {
    ElementReference property;
    if (option && SUCCEEDED(document.AddProperty(option.Get(), name.uri, name.name, &property))) {
        document.AddValueString(property.Get(), nullptr, text);
    }
}

void FeatureWriter::BeginParameters(const Keyword& feature) {
    WCHAR banner[kBannerCapacity];
    FormatWide(banner, kBannerCapacity, TEXT("%sParameters"), feature.name);
    document.AppendBanner(banner);
}

void FeatureWriter::WriteParameter(const IntegerParameter& parameter, LONG value) {
    if (!ListsAll()) {
        document.AddParameterInit(parameter.name.uri, parameter.name.name, value);
        return;
    }
    WCHAR displayName[kDisplayNameCapacity];
    LoadDisplayName(parameter.displayName, displayName);
    document.AddIntegerParameterDef(nullptr, parameter.name.uri, parameter.name.name, parameter.range,
                                    {displayName, nullptr, parameter.unit, parameter.mandatory});
}

void FeatureWriter::WriteParameter(const TextParameter& parameter, const WCHAR* value) {
    if (!ListsAll()) {
        document.AddParameterInit(parameter.name.uri, parameter.name.name, nullptr, value);
        return;
    }
    WCHAR displayName[kDisplayNameCapacity];
    LoadDisplayName(parameter.displayName, displayName);
    document.AddStringParameterDef(
        nullptr, parameter.name.uri, parameter.name.name,
        {displayName, nullptr, parameter.defaultValue, 1, parameter.maxLength, nullptr, keyword_name::kConditional});
}

}  // namespace velmora
