#include "driver/ptprovider/feature_row.h"

#include <cstring>

namespace velmora {

uint32_t ReadSetting(const VelmoraDevMode& devMode, const SettingField& field) {
    // Numbers lie with their low bytes first.
    uint32_t number = 0;
    memcpy(&number, reinterpret_cast<const char*>(&devMode) + field.offset, field.width);
    return number & field.mask;
}

void WriteSetting(VelmoraDevMode* devMode, const SettingField& field, uint32_t value) {
    char* const place = reinterpret_cast<char*>(devMode) + field.offset;
    uint32_t number = 0;
    memcpy(&number, place, field.width);
    number = (number & ~field.mask) | (value & field.mask);
    memcpy(place, &number, field.width);
}

void WritePlainFeature(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) {
    const PlainFeature& plain = row.plain;
    if (plain.isOffered && !plain.isOffered(writer.printer)) {
        return;
    }
    uint32_t selected = 0;
    if (!writer.ListsAll()) {
        const VelmoraDevMode& devMode = *working->DevMode();
        if ((devMode.publicPart.dmFields & plain.neededField) != plain.neededField) {
            return;
        }
        selected = plain.get ? plain.get(devMode, writer.printer) : ReadSetting(devMode, plain.field);
    }
    const Keyword& name = row.NameFor(writer);
    const ElementReference feature = writer.BeginFeature(name, plain.displayName);
    if (!plain.hasOptions || plain.hasOptions(writer.printer)) {
        writer.AddOptions(feature, name.uri, plain.options, selected);
    }
}

void ReadPlainFeature(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) {
    const PlainFeature& plain = row.plain;
    if (!plain.isReadAnyway && !plain.isOffered(reader.printer)) {
        return;
    }
    FoundOption found;
    if (!reader.FindOption(row.names, &found)) {
        return;
    }
    const PlainOption* const option = MatchOption(found.name, row.names[0].uri, plain.options);
    if (!option) {
        return;
    }
    VelmoraDevMode* const devMode = working.DevMode();
    if (plain.set) {
        plain.set(devMode, reader.printer, option->value);
    } else {
        WriteSetting(devMode, plain.field, option->value);
    }
    devMode->publicPart.dmFields |= plain.setField;
}

}  // namespace velmora
