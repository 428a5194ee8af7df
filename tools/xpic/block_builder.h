// The device block: the record of plain numbers and references, and behind it the tables that its slots lead to.
#pragma once

#include "tools/xpic/model_source.h"
#include "tools/xpic/string_pools.h"

namespace velmora {

// The references of all texts that the block numbers.
struct TextPools {
    LocalizedPool strings;
    FixedPool names{"names"};
    FixedPool texts{"job texts"};
};

// Lays out the block and fills the pools. A block or an index beyond the format's limits becomes a fault.
Bytes BuildDeviceBlock(const ModelSource& model, TextPools& pools, LimitFaults& faults);

// The group starts that loading font records of these sizes makes, 1-based record numbers: records share a group while
// their sizes together stay within 32767 bytes.
std::vector<uint16_t> FontGroups(const std::vector<Bytes>& fonts);

}  // namespace velmora
