// Lists that the settings stores keep: records read from an INI file, with a blank one behind them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "driver/base/heap.h"

namespace velmora {

// `count` records and a blank one behind them. No memory: no records at all.
template <class Record>
struct StoredList {
    uint16_t count = 0;
    HeapOwner<Record> records;

    // Room for `count` records, all 0, with what `makeBlank` fills behind them.
    static StoredList WithRoomFor(uint16_t count, void (*makeBlank)(Record* record)) {
        StoredList list;
        list.records = HeapOwner<Record>::Allocate(size_t{count} + 1);
        if (list.records) {
            list.count = count;
            makeBlank(list.records.Get() + count);
        }
        return list;
    }
};

}  // namespace velmora
