// What the tickets of a printer carry beside its settings: lists of texts, and pages that are printed otherwise.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "driver/ptprovider/working_devmode.h"
#include "tools/velmora/devmode_check.h"
#include "tools/velmora/printer_model.h"
#include "tools/velmora/table.h"

namespace velmora {

struct TextListReport {
    velmora::DevModeSource source;      // of the device mode that the lists are made for
    std::optional<DevModeCheck> given;  // what the validations say to the device mode that was given; empty: none was
    Json lists;                         // a member a list: its texts
    Table exceptions;
};

// The lists for `given`, where the driver takes it, else for the printer's own device mode. Throws a CommandError
// where there is no memory.
TextListReport ReportTextLists(const PrinterModel& model, const std::optional<VelmoraDevMode>& given);

// How many texts each list has, the texts (the beginnings of long ones) of each that has any, and the exceptions.
std::vector<Table> ToTables(const TextListReport& report);

// Which device mode the lists are for and, where it isn't the given one, why: lines without the last line end.
// `givenName` names the given one.
std::string DescribeSource(const TextListReport& report, const std::string& givenName);

// Members "devMode", with "source" and what the validations say to a given one, "lists" and "exceptions".
Json ToJson(const TextListReport& report);

}  // namespace velmora
