// The description file around a device block.
#pragma once

#include "tools/xpic/block_builder.h"

namespace velmora {

// The whole file: header, block, language table and the pools. The same model gives the same bytes.
Bytes BuildContainer(const ModelSource& model, const Bytes& block, const TextPools& pools);

}  // namespace velmora
