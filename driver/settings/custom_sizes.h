// The paper sizes that a user has named: kept per user and printer in the section "CustomSizes" of the printer's
// settings file, with a list shipped in the driver's INI data file for users who have none yet.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/settings/stored_list.h"

namespace velmora {

#pragma pack(push, 1)

// A named paper size, 140 bytes.
struct CustomSizeRecord {
    uint32_t width;   // 0.01 mm
    uint32_t length;  // 0.01 mm
    uint32_t metric;  // 1 metric, 0 U.S.
    WCHAR name[64];
};

#pragma pack(pop)

static_assert(offsetof(CustomSizeRecord, width) == 0);
static_assert(offsetof(CustomSizeRecord, length) == 4);
static_assert(offsetof(CustomSizeRecord, metric) == 8);
static_assert(offsetof(CustomSizeRecord, name) == 12);
static_assert(sizeof(CustomSizeRecord) == 140);

using CustomSizeList = StoredList<CustomSizeRecord>;

// The printer's custom sizes: the user's, or those shipped with the driver, or none.
CustomSizeList LoadCustomSizes(const WCHAR* printerName);

// The same for an opened printer; no records at all where its name can't be had.
CustomSizeList LoadPrinterCustomSizes(HANDLE printer);

// The custom sizes of an INI file. A list with one incomplete record reads as empty.
CustomSizeList ReadCustomSizes(const WCHAR* iniFile);

// Stores the printer's custom sizes; does nothing where it has no settings file name.
void SaveCustomSizes(const WCHAR* printerName, const CustomSizeRecord* records, uint16_t count);

// Replaces the custom sizes of an INI file.
void WriteCustomSizes(const WCHAR* iniFile, const CustomSizeRecord* records, uint16_t count);

// The record that a new size starts from: no name, and A4 in the user's measurement system. A U.S. record counts in
// 1/25.4 of the metric unit.
void MakeBlankCustomSize(CustomSizeRecord* record);

// The user-defined forms of the printer's server as custom sizes, without a blank record. None, or a failure: 0 and
// empty.
CustomSizeList EnumUserForms(HANDLE printer);

}  // namespace velmora
