// What a conversion between print tickets and device modes works with: the document and its printer.
#pragma once

#include <windows.h>

#include <cstdint>

#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/printer_snapshot.h"
#include "driver/ptprovider/schema_document.h"

namespace velmora {

enum class ConversionMode : uint8_t {
    kTicket,        // a device mode becomes a ticket, or a ticket a device mode
    kCapabilities,  // every option that the printer offers is listed
    kValidation,    // what a ticket lacks is added to it
};

// A call's context and its working device mode share one snapshot: reading the printer's description twice would tell
// the same.
struct ConversionContext {
    explicit ConversionContext(ConversionMode conversionMode) : mode(conversionMode) {}

    // The printer stays the caller's. The snapshot, which lives as long as this, may be null.
    void Bind(HANDLE boundPrinter, const PrinterSnapshot* snapshot) {
        hPrinter = boundPrinter;
        printer = snapshot;
        if (printer && printer->isXpsWriter) {
            // Known before a document is, lest its prefix is made for another namespace.
            document.DeclareNamespace(nullptr, kXpsWriterNamespace, kXpsWriterPrefix, nullptr);
        }
    }
    // The module of display names; null where there is none.
    HMODULE Strings() const { return printer ? printer->resources.Get() : nullptr; }

    SchemaDocument document;
    const PrinterSnapshot* printer = nullptr;
    HANDLE hPrinter = nullptr;
    const ConversionMode mode;
};

}  // namespace velmora
