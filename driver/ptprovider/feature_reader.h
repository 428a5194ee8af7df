// The pieces that features of print tickets are read by. What a ticket lacks, or says in a way that can't be read, is
// not found; nothing is reported.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>

#include "driver/ptprovider/conversion_context.h"
#include "driver/ptprovider/feature_writer.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/printer_snapshot.h"
#include "driver/ptprovider/schema_document.h"

namespace velmora {

// The option that a ticket selects.
struct FoundOption {
    ElementReference feature;
    ElementReference option;
    QualifiedName name;
};

class FeatureReader {
  public:
    // The context has a document with a root and a snapshot.
    explicit FeatureReader(ConversionContext& context) : document(context.document), printer(*context.printer) {}

    SchemaDocument& document;
    const PrinterSnapshot& printer;

    // Without a model there are only the parameters that every printer has.
    bool HasModel() const { return static_cast<bool>(printer.model); }
    const DeviceModel& Model() const { return *printer.model.Get(); }

    // The named option of the first of the root's features of these names that has one; names end at a null one.
    bool FindOption(std::span<const Keyword> names, FoundOption* found);
    // The same for options that need no name.
    bool FindUnnamedOption(std::span<const Keyword> names, FoundOption* found);
    // The named option of a feature in another, or on the root where `parent` is null.
    bool FindOption(IXMLDOMElement* parent, const Keyword& feature, FoundOption* found);
    // Which of the options it is; null for none.
    const PlainOption* FindPlainOption(IXMLDOMElement* parent, const Keyword& feature,
                                       std::span<const PlainOption> options);

    // What an option says of itself, as it is written there or by the parameter that is referred to.
    bool ReadScored(const ElementReference& option, const Keyword& name, LONG* value);
    bool ReadParameter(const ElementReference& option, const Keyword& name, LONG* value);
    bool ReadParameter(const ElementReference& option, const Keyword& name, ULONG* value);
    bool ReadScored(const ElementReference& option, const Keyword& name, OwnedBstr* text);
    bool ReadParameter(const ElementReference& option, const Keyword& name, OwnedBstr* text);
};

// Which of the options, all of one namespace, has the name; null for none.
const PlainOption* MatchOption(const QualifiedName& name, const WCHAR* uri, std::span<const PlainOption> options);

// Whether the name is that of an entry of the model's lists.
bool IsNamed(const OptionName& entry, const QualifiedName& name);

// The first entry of a list with the name; null for none.
template <class Entry>
const Entry* FindEntry(const EntryList<Entry>& list, const QualifiedName& name) {
    for (const Entry& entry : list) {
        if (IsNamed(entry.name, name)) {
            return &entry;
        }
    }
    return nullptr;
}

// Its index; 0 for none.
template <class Entry>
uint16_t FindEntryIndex(const EntryList<Entry>& list, const QualifiedName& name) {
    const Entry* const entry = FindEntry(list, name);
    return entry ? static_cast<uint16_t>(entry - list.begin()) : uint16_t{0};
}

}  // namespace velmora
