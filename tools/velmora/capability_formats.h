// The capabilities (DC_, wingdi.h) that DeviceCapabilitiesW (winspool.h) is asked for, and how it gives each: what
// whoever reads an answer has to know. The driver's answers themselves: device_capabilities.h.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/devmode/device_capabilities.h"

namespace velmora {

enum class CapabilityKind : uint8_t {
    kNumber,  // the answer is the value; nothing is written
    kWords,   // lists: the answer is the number of entries
    kDwords,
    kPairs,  // two 32-bit numbers each
    kNames,  // UTF-16, terminated where a name doesn't fill its slot
};

struct CapabilityFormat {
    WORD index;
    const char* name;  // of the index
    CapabilityKind kind;
    size_t nameCapacity = 0;  // characters of a name's slot
};

#define CAPABILITY(index, ...) \
    { index, #index, CapabilityKind::__VA_ARGS__ }
// In the order of their indices, without a gap.
inline constexpr CapabilityFormat kCapabilityFormats[] = {
    CAPABILITY(DC_FIELDS, kNumber),
    CAPABILITY(DC_PAPERS, kWords),
    CAPABILITY(DC_PAPERSIZE, kPairs),
    CAPABILITY(DC_MINEXTENT, kNumber),
    CAPABILITY(DC_MAXEXTENT, kNumber),
    CAPABILITY(DC_BINS, kWords),
    CAPABILITY(DC_DUPLEX, kNumber),
    CAPABILITY(DC_SIZE, kNumber),
    CAPABILITY(DC_EXTRA, kNumber),
    CAPABILITY(DC_VERSION, kNumber),
    CAPABILITY(DC_DRIVER, kNumber),
    CAPABILITY(DC_BINNAMES, kNames, kBinNameCapacity),
    CAPABILITY(DC_ENUMRESOLUTIONS, kPairs),
    CAPABILITY(DC_FILEDEPENDENCIES, kNames, kPaperNameCapacity),
    CAPABILITY(DC_TRUETYPE, kNumber),
    CAPABILITY(DC_PAPERNAMES, kNames, kPaperNameCapacity),
    CAPABILITY(DC_ORIENTATION, kNumber),
    CAPABILITY(DC_COPIES, kNumber),
    CAPABILITY(DC_BINADJUST, kNumber),
    CAPABILITY(DC_EMF_COMPLIANT, kNumber),
    CAPABILITY(DC_DATATYPE_PRODUCED, kNumber),
    CAPABILITY(DC_COLLATE, kNumber),
    CAPABILITY(DC_MANUFACTURER, kNumber),
    CAPABILITY(DC_MODEL, kNumber),
    CAPABILITY(DC_PERSONALITY, kNames, kPersonalityCapacity),
    CAPABILITY(DC_PRINTRATE, kNumber),
    CAPABILITY(DC_PRINTRATEUNIT, kNumber),
    CAPABILITY(DC_PRINTERMEM, kNumber),
    CAPABILITY(DC_MEDIAREADY, kNames, kPaperNameCapacity),
    CAPABILITY(DC_STAPLE, kNumber),
    CAPABILITY(DC_PRINTRATEPPM, kNumber),
    CAPABILITY(DC_COLORDEVICE, kNumber),
    CAPABILITY(DC_NUP, kDwords),
    CAPABILITY(DC_MEDIATYPENAMES, kNames, kPaperNameCapacity),
    CAPABILITY(DC_MEDIATYPES, kDwords),
};
#undef CAPABILITY

// Bytes of an entry of a list; 0 for a number.
constexpr size_t EntrySize(const CapabilityFormat& format) {
    switch (format.kind) {
        case CapabilityKind::kWords:
            return sizeof(WORD);
        case CapabilityKind::kDwords:
            return sizeof(DWORD);
        case CapabilityKind::kPairs:
            return sizeof(POINT);
        case CapabilityKind::kNames:
            return format.nameCapacity * sizeof(WCHAR);
        default:
            return 0;
    }
}

}  // namespace velmora
