// Names for the records of a model that has none: description files don't hold them.
#pragma once

#include "tools/xpic/model_source.h"

namespace velmora {

// Gives every nameless record a name that no other of its list has: a standard paper's own name, else the display text
// in the model's first language, else its keyword, else its place ("tray 3"). Records with names keep them.
void MakeNames(ModelSource& model);

}  // namespace velmora
