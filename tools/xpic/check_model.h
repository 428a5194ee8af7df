// Judges a model: what is legal and will hurt.
#pragma once

#include "tools/xpic/finding.h"
#include "tools/xpic/model_source.h"

namespace velmora {

// The model comes from a source that the compiler takes, or from a description file without errors. Findings are in the
// order of the model's tables; their paths are those of the source (margins and constraints by the elements that their
// records were made of), their places aren't known.
Findings CheckModel(const ModelSource& model);

}  // namespace velmora
