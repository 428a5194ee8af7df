#include "driver/devmode/devmode_field_table.h"
#include "driver/devmode/field_check.h"
#include "driver/devmode/private_check.h"

namespace velmora {
namespace {

// The fields that describe them, null where they have none of the kind, and the tray that takes the place of a bad one.
struct SheetFields {
    const FieldDescriptor* mode;
    const FieldDescriptor* bin;
    int64_t binRepair;
    const FieldDescriptor* paper;
    const FieldDescriptor* width;
    const FieldDescriptor* length;
    const FieldDescriptor* pages = nullptr;
    const FieldDescriptor* bothSides = nullptr;
    const FieldDescriptor* media;
};

constexpr SheetFields kFrontCover = {
    .mode = &PrivateField("frontCoverMode"),
    .bin = &PrivateField("frontCoverBin"),
    .binRepair = 261,
    .paper = &PrivateField("frontCoverPaper"),
    .width = &PrivateField("frontCoverWidth"),
    .length = &PrivateField("frontCoverLength"),
    .pages = &PrivateField("frontCoverNup"),
    .bothSides = &PrivateField("frontCoverBothSides"),
    .media = &PrivateField("frontCoverMedia"),
};
constexpr SheetFields kBackCover = {
    .mode = &PrivateField("backCoverMode"),
    .bin = &PrivateField("backCoverBin"),
    .binRepair = 264,
    .paper = &PrivateField("backCoverPaper"),
    .width = &PrivateField("backCoverWidth"),
    .length = &PrivateField("backCoverLength"),
    .bothSides = &PrivateField("backCoverBothSides"),
    .media = &PrivateField("backCoverMedia"),
};
constexpr SheetFields kInterleave = {
    .mode = &PrivateField("interleaveMode"),
    .bin = &PrivateField("interleaveBin"),
    .binRepair = kAutomaticSource,
    .paper = &PrivateField("interleavePaper"),
    .width = &PrivateField("interleaveWidth"),
    .length = &PrivateField("interleaveLength"),
    .media = &PrivateField("interleaveMedia"),
};
constexpr SheetFields kSeparator = {
    .mode = &PrivateField("separatorMode"),
    .bin = &PrivateField("separatorBin"),
    .binRepair = kAutomaticSource,
    .paper = &PrivateField("separatorPaper"),
    .width = &PrivateField("separatorWidth"),
    .length = &PrivateField("separatorLength"),
    .media = &PrivateField("separatorMedia"),
};

// Leaves the sheets out for a value that isn't accepted.
bool KeepSheets(const PrivateCheck& check, const SheetFields& fields, bool isAccepted, const char* name) {
    return RepairUnless(check, isAccepted, *fields.mode, 0, name);
}

bool HasSheetPaper(const PrivateCheck& check, const SheetFields& fields) {
    const auto number = [&](const FieldDescriptor* field) { return ReadFieldNumber(*field, &check.devMode, 0); };
    return number(fields.paper) == kDocumentPaper ||
           (fields.paper->Accepts(number(fields.paper)) && IsCustomWidth(check.model, number(fields.width)) &&
            IsCustomLength(check.model, number(fields.length)));
}

bool CheckSheets(const PrivateCheck& check, const SheetFields& fields) {
    PrivateDevMode* const devMode = &check.devMode;
    const auto checkField = [&](const FieldDescriptor* field, int64_t repair) {
        return !field || CheckField(*field, devMode, repair, &check.report);
    };
    if (!checkField(fields.mode, 0)) {
        return false;
    }
    if (ReadFieldNumber(*fields.mode, devMode, 0) == 0) {
        return true;
    }
    return checkField(fields.bin, fields.binRepair) &&
           KeepSheets(check, fields, HasSheetPaper(check, fields), fields.paper->name) && checkField(fields.pages, 1) &&
           checkField(fields.bothSides, 1) &&
           KeepSheets(check, fields, IsMedium(check.model, ReadFieldNumber(*fields.media, devMode, 0)),
                      fields.media->name);
}

}  // namespace

bool CheckFrontCover(const PrivateCheck& check) {
    return CheckSheets(check, kFrontCover);
}

bool CheckBackCover(const PrivateCheck& check) {
    return CheckSheets(check, kBackCover);
}

bool CheckInterleave(const PrivateCheck& check) {
    return CheckSheets(check, kInterleave);
}

bool CheckSeparator(const PrivateCheck& check) {
    return CheckSheets(check, kSeparator);
}

}  // namespace velmora
