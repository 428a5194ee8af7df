#include "bench/job_bench.h"

#include <utility>

#include "bench/bench_printer.h"
#include "bench/call_tables.h"
#include "driver/devdesc/description_file.h"
#include "driver/devmode/default_devmode.h"
#include "driver/job/job_description.h"
#include "driver/job/job_hooks.h"
#include "tools/velmora/spooler_client.h"
#include "tools/xpic/compile.h"

namespace velmora {
namespace {

constexpr double kMostJobMicroseconds = 300;
constexpr double kMostDescriptionMicroseconds = 150;
constexpr int kFeatures = 16;
constexpr double kSeconds = 0.1;

constexpr const char* kJob = "start and end of a job of lines";
constexpr const char* kDescription = "job description as text";

std::string SourceOfText() {
    std::string text = R"({"modelName": "Bench", "pdl": "image", "color": "none", "jobDescription": "text",
        "papers": ["A4"], "resolutions": [{"name": "Draft", "dpi": 300}, {"name": "Fine", "dpi": 600}],
        "margins": [{"papers": ["A4"], "allMm": 4.2}], "features": [)";
    for (int i = 0; i < kFeatures; ++i) {
        const std::string number = std::to_string(i);
        text += std::string(i > 0 ? "," : "") + "{\"name\": \"Feature " + number + "\", \"jobKey\": \"FEATURE" +
                number + "\", \"options\": [{\"name\": \"On\", \"jobValue\": \"ON" + number +
                "\"}, {\"name\": \"Off\", \"jobValue\": \"OFF\"}]}";
    }
    return text + "]}";
}

}  // namespace

DWORD RunJob(const std::u16string& printer, VelmoraDevMode* devMode) {
    char block[8192] = {};
    DWORD size = sizeof(block);
    JobHookRecord record = {};
    record.printerName = printer.c_str();
    if (StartJob(devMode, block, &size, &record) != kJobDone) {
        return 0;
    }
    const DWORD length = size;
    size = sizeof(block);
    block[0] = 0;
    return EndJob(devMode, block, &size, &record) == kJobDone ? length : 0;
}

std::unique_ptr<JobBench::Printer> JobBench::Install(const host::Machine& machine, const std::string& name,
                                                     const std::vector<std::byte>& description) {
    const OwnedPrinter opened = InstallDescription(machine, name, description);
    auto printer = std::make_unique<Printer>();
    printer->name.assign(name.begin(), name.end());
    BuildDefaultDevMode(opened.Get(), printer->name.c_str(), &printer->devMode);
    return printer;
}

JobBench::JobBench(const host::Machine& machine) {
    DWORD longest = 0;
    for (const std::filesystem::path& source : ProjectModels()) {
        const CompileResult compiled = CompileModel(source);
        Require(compiled.Succeeded(), source.string() + " doesn't compile");
        if (compiled.model->device.pdlType == kPdlImage) {
            continue;
        }
        auto printer = Install(machine, "JOB-" + source.stem().string(), compiled.bytes);
        const DWORD length = RunJob(printer->name, &printer->devMode);
        if (length > longest) {
            longest = length;
            ofLines_ = std::move(printer);
            modelName_ = source.filename().string();
        }
    }
    Require(longest > 0, "no job starts");
    const CompileResult compiled = CompileModelText(SourceOfText(), "bench.json");
    Require(compiled.Succeeded(), "the generated model of features doesn't compile");
    ofText_ = Install(machine, "JOB-TEXT", compiled.bytes);
    RegisterWork(
        kJob, [this, longest] { Require(RunJob(ofLines_->name, &ofLines_->devMode) == longest, "the job fails"); },
        kSeconds);
    RegisterWork(
        kDescription,
        [this, printer = std::make_shared<OwnedPrinter>(OpenNamedPrinter("JOB-TEXT"))] {
            const OwnedFile file = OpenDescriptionFile(printer->Get());
            const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
            char block[8192];
            DWORD size = sizeof(block);
            Require(BuildJobDescription(block, &size, TEXT("Job"),
                                        {printer->Get(), ofText_->name.c_str(), file.Get(), *model}, &ofText_->devMode),
                    "the job isn't described");
        },
        kSeconds);
}

bool JobBench::Judge(const Times&) const {
    return true;
}

void JobBench::AddRows(CallTables* tables) const {
    tables->Add(CallRow{CallGroup::kJobs, std::string(kJob) + ", " + modelName_, kJob, "", "",
                        MostMicroseconds(kMostJobMicroseconds)});
    tables->Add(CallRow{CallGroup::kJobs, std::string(kDescription) + ", " + std::to_string(kFeatures) + " features",
                        kDescription, "", "", MostMicroseconds(kMostDescriptionMicroseconds)});
}

}  // namespace velmora
