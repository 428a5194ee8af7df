#include "driver/ui/lab_tables.h"

namespace velmora {

const LabTable kLabTables[kBaseColors] = {
#include "driver/ui/lab_tables.inc"
};

}  // namespace velmora
