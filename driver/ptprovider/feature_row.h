// A row of the table of features: what print tickets call a feature, and how it goes into a ticket and out of one.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "driver/devmode/private_devmode.h"
#include "driver/ptprovider/feature_reader.h"
#include "driver/ptprovider/feature_writer.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/working_devmode.h"

namespace velmora {

// A number in the device mode, or some bits of one.
struct SettingField {
    uint16_t offset = 0;  // from the start of VelmoraDevMode
    uint8_t width = 0;    // bytes, at most 4
    uint32_t mask = UINT32_MAX;
};

// The field of the private part, or some bits of it.
#define PRIVATE_SETTING(name)                                                             \
    SettingField {                                                                        \
        .offset = offsetof(VelmoraDevMode, privatePart) + offsetof(PrivateDevMode, name), \
        .width = sizeof(PrivateDevMode::name)                                             \
    }

uint32_t ReadSetting(const VelmoraDevMode& devMode, const SettingField& field);
void WriteSetting(VelmoraDevMode* devMode, const SettingField& field, uint32_t value);

// A feature whose options each stand for one value of one setting. Whatever isn't said is the usual: no gate, no
// display name.
struct PlainFeature {
    UINT displayName = kNoDisplayName;
    SettingField field = {};
    std::span<const PlainOption> options = {};
    // Where the setting is no single field: its value, and storing it.
    uint32_t (*get)(const VelmoraDevMode& devMode, const PrinterSnapshot& printer) = nullptr;
    void (*set)(VelmoraDevMode* devMode, const PrinterSnapshot& printer, uint32_t value) = nullptr;
    // Bit of dmFields (wingdi.h) without which a ticket says nothing of it, and one that reading sets.
    DWORD neededField = 0;
    DWORD setField = 0;
    // Whether the printer has the feature; whether tickets of printers without it are read for it, too; whether it has
    // options.
    bool (*isOffered)(const PrinterSnapshot& printer) = nullptr;
    bool isReadAnyway = true;
    bool (*hasOptions)(const PrinterSnapshot& printer) = nullptr;
};

inline constexpr size_t kFeatureNames = 3;

struct FeatureRow {
    // The feature's names, one for each scope that it may have in a ticket, in the order in which they are looked for.
    // A ticket that has any of them is not given the feature again.
    Keyword names[kFeatureNames] = {};
    // Which of them print capabilities list, and completed tickets get; and which a ticket gets that is made of a
    // device mode.
    uint8_t name = 0;
    uint8_t ticketName = 0;
    // `working` is null where every option is listed.
    void (*write)(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working) = nullptr;
    // Device mode and model are there.
    void (*read)(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working) = nullptr;
    PlainFeature plain = {};  // of a plain feature

    // What the feature is called in the document that is written.
    const Keyword& NameFor(const FeatureWriter& writer) const {
        return names[writer.MakesTicket() ? ticketName : name];
    }
};

// The writer and the reader of plain features.
void WritePlainFeature(FeatureWriter& writer, const FeatureRow& row, const WorkingDevMode* working);
void ReadPlainFeature(FeatureReader& reader, const FeatureRow& row, WorkingDevMode& working);

}  // namespace velmora
