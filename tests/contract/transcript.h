// What a run observed, line by line. The runs of both hosts write the same lines, so a diff of the two files shows
// where they part.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "driver/devmode/private_devmode.h"
#include "tests/contract/environment.h"
#include "tests/print_schema/xml_tree.h"

namespace contract {

using print_schema::Printable;

// "0A FF".
std::string Hex(const uint8_t* bytes, size_t count);

// Notes a line under the running test's name. After the last test all lines go to the file that the environment
// variable VELMORA_TRANSCRIPT names, if it names one, the tests in the order of their names.
void Record(std::string_view line);

// A line for each element of a field that differs, "dmCopies[0] is 1, not 3", and one for all other bytes.
std::vector<std::string> Differences(const velmora::VelmoraDevMode& expected, const velmora::VelmoraDevMode& actual);

// Notes a device mode: each field of the driver's own table with its value, then the bytes in rows of 16
// (rows of zeros are left out). What differs between machines by right is masked in both: of the description path only
// the file name stands.
void RecordDevMode(const DEVMODEW* devMode);

}  // namespace contract
