// What the driver's validations say to a device mode.
#pragma once

#include <string>

#include "driver/devmode/validate_devmode.h"
#include "tools/velmora/printer_model.h"
#include "tools/velmora/table.h"

namespace velmora {

struct DevModeCheck {
    ValidationReport publicPart;
    ValidationReport privatePart;
    VelmoraDevMode repaired;  // the device mode with what was repaired and completed

    bool IsAccepted() const { return publicPart.IsAccepted() && privatePart.IsAccepted(); }
};

// Checks the public part and then, whatever came of it, the private part. The driver itself doesn't look at the private
// part of a device mode whose public part it rejects.
DevModeCheck CheckDevMode(const PrinterModel& model, const VelmoraDevMode& devMode);

// "accepted", "accepted after 1 repair: dmScale", "rejected by dmSize", "rejected after 3 repairs: dmScale, dmCopies,
// dmNup".
std::string Describe(const ValidationReport& report);

// "NAME isn't taken:" and what the validations say, a line each without the last line end. `name` names the device
// mode.
std::string DescribeRejection(const DevModeCheck& check, const std::string& name);

// A report as members "accepted", "repairs" (their number), "repaired" (names, at most three) and "rejectedBy".
Json ToJson(const ValidationReport& report);

}  // namespace velmora
