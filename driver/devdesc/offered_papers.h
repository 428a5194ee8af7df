// The standard papers that every printer with a model offers to applications, whatever papers its model has.
#pragma once

#include <cstdint>

namespace velmora {

struct OfferedPaper {
    int16_t nameId;   // string of the language resource module
    int16_t paperId;  // DMPAPER_ value (wingdi.h)
    int16_t width;    // 0.1 mm
    int16_t length;   // 0.1 mm
};

// In the order in which they are offered.
inline constexpr OfferedPaper kOfferedPapers[] = {
    {2013, 8, 2970, 4200},   // A3
    {2014, 9, 2100, 2970},   // A4
    {2016, 11, 1480, 2100},  // A5
    {2017, 70, 1050, 1480},  // A6
    {2018, 12, 2570, 3640},  // B4 (JIS)
    {2020, 13, 1820, 2570},  // B5 (JIS)
    {2021, 88, 1280, 1820},  // B6 (JIS)
    {2000, 1, 2159, 2794},   // Letter
    {2003, 6, 1397, 2159},   // Statement
    {2004, 7, 1841, 2667},   // Executive
    {2038, 34, 1760, 2500},  // Envelope B5
    {2024, 20, 1048, 2413},  // Envelope #10
    {2030, 27, 1100, 2200},  // Envelope DL
};

}  // namespace velmora
