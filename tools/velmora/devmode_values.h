// The values of a device mode, one element of a field at a time, as the workbench shows and names them.
#pragma once

#include <windows.h>

#include <functional>
#include <span>
#include <string>

#include "driver/devmode/devmode_fields.h"
#include "driver/devmode/private_devmode.h"
#include "tools/velmora/table.h"

namespace velmora {

struct DevModePart {
    const char* name;  // "public" or "private"
    size_t offset;     // in the device mode, bytes
    size_t size;       // bytes
    std::span<const FieldDescriptor> fields;

    const BYTE* In(const VelmoraDevMode& devMode) const { return reinterpret_cast<const BYTE*>(&devMode) + offset; }
    BYTE* In(VelmoraDevMode& devMode) const { return reinterpret_cast<BYTE*>(&devMode) + offset; }
};

// The public part and the private part.
std::span<const DevModePart> DevModeParts();

// One element of a field; of a field that isn't an array the only one.
struct DevModeElement {
    const DevModePart* part;
    const FieldDescriptor* field;
    size_t index;

    size_t Offset() const { return field->offset + index * field->stride; }  // from the start of the part
    std::string Name() const;                                                // "dmScale", "colorAdjust[2]"
};

bool IsNumber(const FieldDescriptor& field);
bool IsText(const FieldDescriptor& field);

// Bytes of a part by their offsets in it: "private[2668]", "private[2668..2671]".
std::string ByteRangeName(const DevModePart& part, size_t offset, size_t size);

struct ElementValue {
    std::string text;  // "2 (landscape)", "\"Courier\"", "734 bytes, all 0"
    Json value;        // the number, the text, or the bytes in hexadecimal (empty: all 0)
    Json name;         // what the number stands for; null: nothing of its own

    bool operator==(const ElementValue&) const = default;
};

// What a number of a device mode stands for, where the table of fields doesn't say; empty: nothing of its own.
using NumberNames = std::function<std::string(const DevModeElement&, const VelmoraDevMode&, int64_t number)>;

// Element `index` of a field of any record that begins at `record`. `nameOf` names what the field's own table of values
// doesn't; null: nothing does.
ElementValue ReadRecordElement(const FieldDescriptor& field, const BYTE* record, size_t index,
                               const std::function<std::string(int64_t number)>& nameOf);

// Without `names` the table of fields alone names the values. ANSI texts are read in the machine's code page.
ElementValue ReadElement(const DevModeElement& element, const VelmoraDevMode& devMode, const NumberNames& names = {});

}  // namespace velmora
