// Overlays, files that are printed with every page, in print tickets.
#pragma once

#include <windows.h>

#include "driver/ptprovider/feature_row.h"
#include "driver/ptprovider/watermark_feature.h"

namespace velmora {

// What tickets call the choice of an overlay file, and what says the file.
inline constexpr Keyword kOverlayFile = PrivateKeyword(TEXT("Overlay"));
inline constexpr Keyword kFileProperty = PrivateKeyword(TEXT("File"));

// Where it lies, and where the watermark of an exception lies, too.
inline constexpr Keyword kOverlayLayering = PrivateKeyword(TEXT("Layering"));
inline constexpr PlainOption kOverlayLayers[] = {{TEXT("Overlay"), kOverPage}, {TEXT("Underlay"), kUnderPage, 1742}};

// Adds an option for each of the user's overlay files, or, where a name is given, for those of the name.
void WriteOverlayFileOptions(FeatureWriter& writer, const ElementReference& feature, const WCHAR* selected);

void WriteOverlay(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadOverlay(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

}  // namespace velmora
