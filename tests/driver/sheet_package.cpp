#include "tests/driver/sheet_package.h"

#include "tests/driver/built_modules.h"
#include "tests/driver/description_builder.h"

namespace driver_test {

DriverPackage SheetPackage() {
    DescriptionBuilder builder = SmallModel(velmora::kPdlPcl6);
    velmora::ConstraintRecord constraint = {};
    constraint.mark = 1;
    constraint.papers.bytes[kConflictPaper / 8] = static_cast<uint8_t>(0x80 >> (kConflictPaper % 8));
    constraint.messageRef = builder.AddString(kConflictMessage);
    builder.Table(offsetof(velmora::DeviceModel, constraintTable), std::vector{constraint});
    builder.fields.linkRef = builder.AddString(kModelLink);
    DriverPackage package = PackageOf(builder.Build());
    UseBuiltModules(package);
    return package;
}

}  // namespace driver_test
