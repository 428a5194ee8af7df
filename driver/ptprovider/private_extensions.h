// What print tickets carry of a model beyond the published features: the model's own features, its colour correction,
// and the texts and commands of a job.
#pragma once

#include "driver/ptprovider/feature_row.h"

namespace velmora {

// The model's own features. `working` is null where every option is listed.
void WriteDeviceFeatures(FeatureWriter& writer, const WorkingDevMode* working);
void ReadDeviceFeatures(FeatureReader& reader, WorkingDevMode& working);

void WriteColorCorrection(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadColorCorrection(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

// Selects a colour-correction preset by the name of an option, with what it brings along. A name that is none, or names
// no preset of the model, changes nothing.
void ApplyColorPreset(WorkingDevMode& working, const WCHAR* optionNamespace, const WCHAR* optionName);

// The lists of the working device mode, each in the place of one that the ticket has.
void WritePrivateDataLists(FeatureWriter& writer, const WorkingDevMode& working);

}  // namespace velmora
