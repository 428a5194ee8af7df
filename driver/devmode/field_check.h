// Checking the fields of a device mode by their rows in the table of fields.
#pragma once

#include "driver/devmode/devmode_fields.h"
#include "driver/devmode/validate_devmode.h"

namespace velmora {

// A text's last character or byte as it lies in `part`: 0 where the text is terminated within its field.
WCHAR LastCharacter(const FieldDescriptor& text, const void* part);

// Fills a text with 0.
void ClearText(const FieldDescriptor& text, void* part);

// Every element of a numeric field that its row doesn't accept becomes `repair`, and an unterminated text becomes
// empty; one repair each. False once the validation is over.
bool CheckField(const FieldDescriptor& field, void* part, int64_t repair, ValidationReport* report);

// Whether the row of a numeric field accepts what the field holds.
bool IsAccepted(const FieldDescriptor& field, const void* part);

}  // namespace velmora
