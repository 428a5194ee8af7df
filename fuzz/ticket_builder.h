// Print tickets, built step by step by the object model.
#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "driver/base/com.h"
#include "driver/ptprovider/dom_classes.h"
#include "fuzz/ticket_printer.h"
#include "fuzz/ticket_steps.h"
#include "fuzz/ticket_words.h"

namespace fuzz {

using Node = velmora::ComReference<IXMLDOMNode>;

// A ticket that grows by steps. Each acts on what the one before added; any bytes are a step.
class TicketBuilder {
  public:
    // `areExchanged`: the usual prefixes stand for other namespaces.
    TicketBuilder(const TicketPrinter& printer, bool areExchanged);

    // All steps but those that change the device mode, which do nothing here.
    void Take(const Step& step);
    IXMLDOMDocument2* Document() const { return document_.Get(); }

  private:
    static void SetAttribute(const Node& element, const Text& name, const Text& value);
    // An element of the framework; null where its name is none.
    Node Add(IXMLDOMNode* parent, const Text& name);
    // As written in the ticket: names of other namespaces have a prefix that stands for none.
    Text Written(const Name& name) const;
    Node AddNamed(const Node& parent, const Text& kind, const Name& name);
    static Name WithSpace(const Step& step, const WCHAR* uri, const Text& word);

    std::vector<Name> OptionsOf(const Step& step, const FeatureWords& feature) const;
    void AddFeature(const Step& step);
    Text ValueOf(const Step& step) const;
    void AddValue(const Node& parent, const Step& step);
    void AddScored(const Name& property, const Step& step, bool isByParameter);
    void AddProperties(const Step& step);
    void AddNested(const Step& step);

    const TicketPrinter& printer_;
    velmora::ComReference<IXMLDOMDocument2> document_;
    std::map<Text, Text> prefixes_;                 // by their namespaces
    const FeatureWords* words_ = kFeatures.data();  // of the feature that was added last
    // Those that were added last; the root before.
    Node root_;
    Node feature_;
    Node option_;
    Node last_;
};

}  // namespace fuzz
