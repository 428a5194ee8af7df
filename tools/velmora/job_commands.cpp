#include "tools/velmora/commands.h"

#include <optional>
#include <span>

#include "tools/velmora/devmode_names.h"
#include "tools/velmora/devmode_report.h"
#include "tools/velmora/driver_library.h"
#include "tools/velmora/job_report.h"

namespace velmora {

void JobCommand(const Request& request) {
    const auto machine = OpenMachine(request);
    NoteOtherDriver(request);
    const PrinterModel model(request.printer);
    const std::optional<VelmoraDevMode> given = GivenDevMode(request);
    std::optional<VelmoraDevMode> devMode = given;
    const PrintedJob job =
        PrintByDriver(model.Printer(), request.printer, request.jobName, request.sheets, devMode ? &*devMode : nullptr);
    const Table repairs = given ? ReportDifferences(*given, *devMode, NamesOfNumbers(&model), request.file, "Used")
                                : Table{"", "differences", {}};
    if (request.json) {
        Json members = {{"printer", request.printer}, {"blocks", ToJson(job, model)}};
        members.update(ToJson(std::span(&repairs, 1)));
        request.output << FormatJson(members);
    } else {
        request.output << FormatJob(job, model);
        if (!repairs.rows.empty()) {
            request.output << "\nThe hooks changed the device mode:\n\n" << FormatText(std::span(&repairs, 1));
        }
    }
    TellLeftOpen(request, "the hooks", job.leftOpen);
}

}  // namespace velmora
