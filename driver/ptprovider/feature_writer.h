// The pieces that features of print tickets and print capabilities are written of. What the modes of a conversion do
// differently is decided here and nowhere else: capabilities list every option, with display names, selection types and
// constraints, and define the parameters; tickets hold only what a device mode selects, and give the parameters values.
//
// What can't be made is left out; the calls behind it do nothing then.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>

#include "driver/ptprovider/conversion_context.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/printer_snapshot.h"
#include "driver/ptprovider/schema_document.h"

namespace velmora {

// A display name by the number of its string in the language module.
inline constexpr UINT kNoDisplayName = 0;
inline constexpr size_t kDisplayNameCapacity = 128;

// A choice of a feature that stands for one value of a setting. Its name is in the feature's namespace.
struct PlainOption {
    const WCHAR* name;
    uint32_t value;
    UINT displayName = kNoDisplayName;
    bool isOnlyRead = false;  // taken from tickets, never written
};

// A numeric parameter. `mandatory` says whether a value is needed whatever is selected.
struct IntegerParameter {
    Keyword name;
    ParameterRange<LONG> range;
    const WCHAR* unit;  // null for none
    UINT displayName = kNoDisplayName;
    const WCHAR* mandatory = keyword_name::kConditional;
};

// A text parameter, of at least one character where it is given.
struct TextParameter {
    Keyword name;
    const WCHAR* defaultValue;
    UINT displayName = kNoDisplayName;
    LONG maxLength = 0;  // characters; 0: any
};

class FeatureWriter {
  public:
    // The context has a document with a root and a snapshot.
    explicit FeatureWriter(ConversionContext& context)
        : document(context.document), printer(*context.printer), context_(context) {}

    SchemaDocument& document;
    const PrinterSnapshot& printer;

    // Without a model there are only the parameters that every printer has.
    bool HasModel() const { return static_cast<bool>(printer.model); }
    const DeviceModel& Model() const { return *printer.model.Get(); }
    // True where every option is listed and there is no device mode to select one.
    bool ListsAll() const { return context_.mode == ConversionMode::kCapabilities; }
    // True for a ticket that is made of a device mode, not completed.
    bool MakesTicket() const { return context_.mode == ConversionMode::kTicket; }
    // Whether an option is written that the device mode selects, or doesn't.
    bool Writes(bool isSelected) const { return ListsAll() || isSelected; }

    // A feature of the root under a banner of its name, or one in another feature; every one is a choice of one option.
    ElementReference BeginFeature(const Keyword& name, UINT displayName);
    ElementReference BeginSubFeature(const ElementReference& parent, const Keyword& name, UINT displayName);
    // The same without selection type: features that only hold others.
    ElementReference BeginGroup(const ElementReference& parent, const Keyword& name, UINT displayName);
    ElementReference BeginGroup(const ElementReference& parent, const OptionName& name, const WCHAR* label);
    void AddSelectionType(const ElementReference& feature);

    // An option. `isInstalled`: the printer's accessories allow it.
    ElementReference AddOption(const ElementReference& feature, const Keyword& name, UINT displayName,
                               bool isInstalled = true);
    // One that the model names and labels; an empty label is none.
    ElementReference AddOption(const ElementReference& feature, const OptionName& name, const WCHAR* label,
                               bool isInstalled = true);
    ElementReference AddUnnamedOption(const ElementReference& feature, const WCHAR* label, bool isInstalled = true);
    // Those of the list whose value is selected, or all.
    void AddOptions(const ElementReference& feature, const WCHAR* uri, std::span<const PlainOption> options,
                    uint32_t selected);

    // What an option says of itself.
    void AddScoredInteger(const ElementReference& option, const Keyword& name, LONG value);
    void AddScoredKeyword(const ElementReference& option, const Keyword& name, const Keyword& value);
    void AddScoredText(const ElementReference& option, const Keyword& name, const WCHAR* text);
    void AddScoredParameter(const ElementReference& option, const Keyword& name, const Keyword& parameter);
    void AddIntegerProperty(const ElementReference& option, const Keyword& name, LONG value);
    void AddTextProperty(const ElementReference& option, const Keyword& name, const WCHAR* text);

    // Parameters stand on the root behind the feature that refers to them, under a banner of its name.
    void BeginParameters(const Keyword& feature);
    void WriteParameter(const IntegerParameter& parameter, LONG value);
    void WriteParameter(const TextParameter& parameter, const WCHAR* value);

    // A display name of the language module, its mnemonic's mark taken out; empty where there is none.
    void LoadDisplayName(UINT id, WCHAR (&name)[kDisplayNameCapacity]) const;

  private:
    const WCHAR* Constraint(bool isInstalled) const;
    void AddDisplayName(const ElementReference& element, UINT id);

    ConversionContext& context_;
};

}  // namespace velmora
