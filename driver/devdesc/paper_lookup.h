// Lookups built on a device model: a paper's size and its printable margins.
#pragma once

#include <windows.h>

#include "driver/devdesc/device_model.h"

namespace velmora {

// Paper ids (wingdi.h, driver-defined ones and the user's own).
inline constexpr int kFirstCustomPaper = 448;  // 448 + i: custom size i of the user, then user-defined forms
inline constexpr int kFirstNoPaper = 119;      // ids from here to kLastNoPaper name no paper
inline constexpr int kLastNoPaper = 447;

struct PaperSize {
    LONG width;   // 0.1 mm
    LONG length;  // 0.1 mm
    int isMetric;
};

// The model's record of a paper, by whichever of its ids; null where there is none. `model` may be null.
const PaperRecord* FindPaperRecord(const DeviceModel* model, int paperId);

// The size of a paper, at most 32767 for the user's own; the locale's default paper (A4 or Letter) where the id names
// none. `model` may be null.
PaperSize LookupPaperSize(HANDLE printer, const DeviceModel* model, int paperId);

struct MarginPair {
    SHORT horizontal;  // left or right
    SHORT vertical;    // top or bottom
};

// Orientations for which margins are asked (MarginRecord.orientationMask).
inline constexpr WORD kPortraitMargins = 1u << 0;
inline constexpr WORD kLandscapeMargins = 1u << 1;

// The left and top margins of a paper, or, for a negated id, its right and bottom ones, in units of 1/`scale` inch. A
// quarter inch where the model (which may be null) says nothing of the paper.
MarginPair GetPrintableMargins(HANDLE printer, const DeviceModel* model, int signedPaperId, WORD orientationMask,
                               LONG scale);

}  // namespace velmora
