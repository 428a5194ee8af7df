#include "driver/ptprovider/postscript_features.h"

namespace velmora {
namespace {

constexpr UINT kHalftoneString = 3344;
constexpr uint32_t kPrinterHalftone = 0;
constexpr uint32_t kUserHalftone = 1;
constexpr PlainOption kHalftones[] = {
    {TEXT("Printer"), kPrinterHalftone, 3345},
    {TEXT("User"), kUserHalftone, 3346},
};
constexpr LONG kMostFrequency = 6000;  // tenths of a line per inch
constexpr LONG kMostAngle = 3600;      // tenths of a degree
constexpr Keyword kFrequencyProperty = OemKeyword(TEXT("HalftoneFrequency"));
constexpr Keyword kAngleProperty = OemKeyword(TEXT("HalftoneAngle"));
constexpr IntegerParameter kFrequency = {OemKeyword(TEXT("DocumentPSHalftoneFrequency")),
                                         {600, 0, kMostFrequency, 1},
                                         TEXT("tenths of line per inch"),
                                         3351};
constexpr IntegerParameter kAngle = {
    OemKeyword(TEXT("DocumentPSHalftoneAngle")), {450, 0, kMostAngle, 1}, TEXT("tenths of degree"), 3352};

// A parameter of the document and the field that it goes into.
struct ToneParameter {
    IntegerParameter parameter;
    int16_t PrivateDevMode::*field;
};
constexpr LONG kMostTone = 50;
constexpr ToneParameter kTones[] = {
    {{PrivateKeyword(TEXT("DocumentPSContrast")),
      {0, -kMostTone, kMostTone, 1},
      nullptr,
      1877,
      keyword_name::kUnconditional},
     &PrivateDevMode::psContrast},
    {{PrivateKeyword(TEXT("DocumentPSBrightness")),
      {0, -kMostTone, kMostTone, 1},
      nullptr,
      3353,
      keyword_name::kUnconditional},
     &PrivateDevMode::psBrightness},
};

}  // namespace

void WriteHalftone(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    if (!IsPostScript(writer.printer)) {
        return;
    }
    const PrivateDevMode* const devMode = working ? &working->DevMode()->privatePart : nullptr;
    const Keyword& name = row.NameFor(writer);
    const ElementReference feature = writer.BeginFeature(name, kHalftoneString);
    for (const PlainOption& option : kHalftones) {
        if (writer.Writes(devMode && devMode->extraFlag == option.value)) {
            const ElementReference written = writer.AddOption(feature, {name.uri, option.name}, option.displayName);
            if (option.value == kUserHalftone) {
                writer.AddScoredParameter(written, kFrequencyProperty, kFrequency.name);
                writer.AddScoredParameter(written, kAngleProperty, kAngle.name);
            }
        }
    }
    if (writer.Writes(devMode && devMode->extraFlag == kUserHalftone)) {
        writer.BeginParameters(name);
        writer.WriteParameter(kFrequency, devMode ? devMode->psHalftoneFrequency : 0);
        writer.WriteParameter(kAngle, devMode ? devMode->psHalftoneAngle : 0);
    }
}

void ReadHalftone(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    FoundOption found;
    if (!IsPostScript(reader.printer) || !reader.FindOption(row.names, &found)) {
        return;
    }
    const PlainOption* const option = MatchOption(found.name, row.names[0].uri, kHalftones);
    if (!option) {
        return;
    }
    // A negative number reads as one above every limit.
    ULONG frequency = 0;
    ULONG angle = 0;
    if (option->value == kUserHalftone &&
        (!reader.ReadParameter(found.option, kFrequencyProperty, &frequency) || frequency < 1 ||
         frequency > static_cast<ULONG>(kMostFrequency) ||
         !reader.ReadParameter(found.option, kAngleProperty, &angle) || angle > static_cast<ULONG>(kMostAngle))) {
        return;
    }
    PrivateDevMode& devMode = working.DevMode()->privatePart;
    devMode.extraFlag = static_cast<uint16_t>(option->value);
    devMode.psHalftoneFrequency = static_cast<int16_t>(frequency);
    devMode.psHalftoneAngle = static_cast<int16_t>(angle);
}

void WriteContrastAndBrightness(FeatureWriter& writer, const WorkingDevMode* working) {
    if (!IsPostScript(writer.printer)) {
        return;
    }
    for (const ToneParameter& tone : kTones) {
        const Keyword& name = tone.parameter.name;
        if (writer.document.FindParameterInit(nullptr, name.uri, name.name, nullptr) != S_OK) {
            writer.WriteParameter(tone.parameter, working ? working->DevMode()->privatePart.*tone.field : 0);
        }
    }
}

void ReadContrastAndBrightness(FeatureReader& reader, WorkingDevMode& working) {
    if (!IsPostScript(reader.printer)) {
        return;
    }
    for (const ToneParameter& tone : kTones) {
        const Keyword& name = tone.parameter.name;
        LONG value = 0;
        if (reader.document.ReadParameterInitInteger(name.uri, name.name, &value) == S_OK && value >= -kMostTone &&
            value <= kMostTone) {
            working.DevMode()->privatePart.*tone.field = static_cast<int16_t>(value);
        }
    }
}

}  // namespace velmora
