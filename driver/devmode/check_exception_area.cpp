#include "driver/devmode/devmode_field_table.h"
#include "driver/devmode/field_check.h"
#include "driver/devmode/private_check.h"

namespace velmora {
namespace {

constexpr const char* kExceptionArea = "exceptionArea";
constexpr size_t kExceptionStart = offsetof(PrivateDevMode, exceptionArea);
constexpr size_t kExceptionEnd = kExceptionStart + sizeof(PrivateDevMode::exceptionArea);  // none begins beyond it
constexpr int kMostKind = 6;                                                               // kind codes of records
constexpr int kMostSlot = 3;                                                               // slots of page lists

bool EmptyExceptionArea(const PrivateCheck& check) {
    check.devMode.exceptionCount = 0;
    check.devMode.pageListCount = 0;
    return check.report.CountRepair(kExceptionArea);
}

// Models without exception records: one byte of the area that must be 0.
bool CheckUnusedExceptionArea(const PrivateCheck& check) {
    constexpr size_t kCheckedByte = 3091;
    uint8_t& byte = check.devMode.exceptionArea[kCheckedByte - kExceptionStart];
    if (byte == 0) {
        return true;
    }
    byte = 0;
    return check.report.CountRepair(kExceptionArea);
}

// A byte of the area that may hold 0 to `most`.
bool CheckAreaByte(const PrivateCheck& check, size_t place, int most) {
    auto* const byte = reinterpret_cast<uint8_t*>(&check.devMode) + place;
    if (*byte <= most) {
        return true;
    }
    *byte = 0;
    return check.report.CountRepair(kExceptionArea);
}

}  // namespace

// Lengths come from outside: a record or list may claim any. One whose successor would begin beyond the area empties
// it. What follows a record of length 0 lies at the same place; the counts bound the walk.
bool CheckExceptionArea(const PrivateCheck& check) {
    if (!check.HasExceptions()) {
        return CheckUnusedExceptionArea(check);
    }
    PrivateDevMode& devMode = check.devMode;
    for (const FieldDescriptor* count : {&PrivateField("exceptionCount"), &PrivateField("pageListCount")}) {
        if (!IsAccepted(*count, &devMode) && !EmptyExceptionArea(check)) {
            return false;
        }
    }
    const auto* const part = reinterpret_cast<const uint8_t*>(&devMode);
    size_t place = kExceptionStart;
    for (int i = 0; i < devMode.exceptionCount; ++i) {
        const size_t length = part[place] | static_cast<size_t>(part[place + 1]) << 8;
        if (!CheckAreaByte(check, place + sizeof(uint16_t), kMostKind)) {
            return false;
        }
        place += length;
        if (place > kExceptionEnd) {
            return EmptyExceptionArea(check);
        }
    }
    for (int i = 0; i < devMode.pageListCount; ++i) {
        const size_t pages = part[place + 1];
        if (!CheckAreaByte(check, place, kMostSlot)) {
            return false;
        }
        place += 2 * sizeof(uint8_t) + pages * sizeof(uint16_t);
        if (place > kExceptionEnd) {
            return EmptyExceptionArea(check);
        }
    }
    return true;
}

}  // namespace velmora
