#include "bench/call_bench.h"

#include <cstring>
#include <iterator>
#include <utility>

#include "bench/bench_printer.h"
#include "bench/call_tables.h"
#include "bench/generated_model.h"
#include "bench/job_bench.h"
#include "bench/ppd_file.h"
#include "bench/sheet_bench.h"
#include "driver/devdesc/description_file.h"
#include "driver/devmode/convert_devmode.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/device_capabilities.h"
#include "driver/devmode/document_properties.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/ptprovider/printer_snapshot.h"
#include "driver/settings/device_info.h"
#include "driver/ui/constraints.h"
#include "tools/xpic/compile.h"

namespace velmora {
namespace {

constexpr const char* kModel = "velmora-c3200.json";
constexpr double kSeconds = 0.05;

// Works that are measured on every printer.
constexpr const char* kCopy = "4088 bytes copied";
constexpr const char* kRead = "its file read";
constexpr const char* kLoad = "model loaded";
constexpr const char* kTexts = "model loaded with all its texts";
constexpr const char* kDefault = "default device mode";
constexpr const char* kValidation = "device mode validated, model in hand";
constexpr const char* kConflict = "constraints checked, model in hand";
constexpr const char* kMerge = "device mode merged without a sheet";
constexpr const char* kConversion = "device mode converted for the spooler";
constexpr const char* kMedia = "names of the media";
constexpr const char* kJob = "job started and ended";
constexpr const char* kSheet = "document sheets opened and closed";
constexpr const char* kPpd = "ppdOpenFile";
constexpr const char* kMarkedPpd = "ppdOpenFile, ppdMarkDefaults";
constexpr const char* kPpdConflict = "ppdConflicts";

// Rows of the calls. Their floors are works of the same printer.
constexpr struct {
    CallGroup group;
    const char* call;
    const char* floor;  // null: none
} kRows[] = {
    {CallGroup::kModel, kLoad, kRead},
    {CallGroup::kModel, kTexts, kRead},
    {CallGroup::kDeviceModes, kValidation, kCopy},
    {CallGroup::kDeviceModes, kConflict, kCopy},
    {CallGroup::kDeviceModes, kDefault, kRead},
    {CallGroup::kDeviceModes, kMerge, kRead},
    {CallGroup::kDeviceModes, kConversion, kRead},
    {CallGroup::kCapabilities, kMedia, kRead},
    {CallGroup::kJobs, kJob, kRead},
    {CallGroup::kSheets, kSheet, nullptr},
    {CallGroup::kBesidePpd, kLoad, kPpd},
    {CallGroup::kBesidePpd, kTexts, kPpd},
    {CallGroup::kBesidePpd, kDefault, kMarkedPpd},
    {CallGroup::kBesidePpd, kConflict, kPpdConflict},
};

}  // namespace

// A printer of a model, what its calls work on, and the same model as a PPD file. The device mode has the model's last
// paper and medium, which are looked for the longest.
class CallBench::Printer {
  public:
    Printer(host::Machine& machine, std::string name, const CompileResult& compiled)
        : machine_(machine),
          folder_("velmora-bench-" + name),
          name_(std::move(name)),
          wideName_(name_.begin(), name_.end()) {
        if (!compiled.Succeeded()) {
            Require(false, FormatDiagnostic(compiled.diagnostics.front()));
        }
        printer_ = InstallDescription(machine, name_, compiled.bytes);
        FindDescriptionFile(printer_.Get(), path_);
        file_ = OpenDescriptionFile(printer_.Get());
        model_ = LoadDeviceModel(file_.Get());
        facts_ = ReadPrivateFacts(printer_.Get(), file_.Get());
        installed_ = ReadDeviceInfo(printer_.Get(), model_.Get());
        installed_.optionFlags |= kDuplexInstalled;
        BuildDefaultDevMode(printer_.Get(), wideName_.c_str(), &devMode_);
        const PaperSource& paper = compiled.model->papers.back();
        devMode_.publicPart.dmPaperSize = paper.id;
        devMode_.publicPart.dmPaperWidth = paper.width;
        devMode_.publicPart.dmPaperLength = paper.length;
        devMode_.privatePart.mediaIndex = static_cast<int16_t>(compiled.model->media.size());
        Validate();
        ppd_ = std::make_unique<PpdFile>(*compiled.model, folder_.Path() / "bench.ppd");
        marked_ = ppd_->OpenMarked();
        ppdMarkOption(marked_.get(), kPpdPaper, PpdChoice(kPpdPaper, compiled.model->papers.size() - 1).c_str());
        ppdMarkOption(marked_.get(), kPpdMedium, PpdChoice(kPpdMedium, compiled.model->media.size() - 1).c_str());
    }

    void CopyDevMode() {
        std::memcpy(&output_, &devMode_, sizeof(output_));
        // Nothing of the copy is left out.
        asm volatile("" : : "r"(&output_) : "memory");
    }
    void ReadFile() { ReadWholeDescription(path_); }
    void LoadModel() {
        const OwnedFile file = OpenDescriptionFile(printer_.Get());
        Require(static_cast<bool>(LoadDeviceModel(file.Get())), "a model doesn't load");
    }
    void LoadTexts() { Require(static_cast<bool>(LoadPrinterSnapshot(printer_.Get())), "there is no snapshot"); }
    void BuildDefault() { BuildDefaultDevMode(printer_.Get(), wideName_.c_str(), &output_); }
    void Validate() {
        ValidationReport ofPublicPart;
        ValidationReport ofPrivatePart;
        CheckPublicDevMode(printer_.Get(), *model_, &devMode_.publicPart, &ofPublicPart);
        CheckPrivateDevMode(facts_, *model_, &devMode_.privatePart, &ofPrivatePart);
        Require(ofPublicPart.IsAccepted() && ofPrivatePart.IsAccepted(), "a device mode isn't accepted");
    }
    void Merge() {
        DOCUMENTPROPERTYHEADER header = {};
        header.cbSize = sizeof(header);
        header.hPrinter = printer_.Get();
        header.pszPrinterName = wideName_.data();
        header.pdmIn = &devMode_.publicPart;
        header.pdmOut = &output_.publicPart;
        header.cbOut = sizeof(output_);
        header.fMode = DM_IN_BUFFER | DM_OUT_BUFFER;
        output_.publicPart.dmSize = 0;
        DocumentPropertiesNoUI(header);
        Require(output_.publicPart.dmSize == devMode_.publicPart.dmSize, "no device mode is merged");
    }
    void Convert() {
        LONG needed = sizeof(output_);
        Require(ConvertDevMode(wideName_.c_str(), &devMode_.publicPart, &output_.publicPart, &needed),
                "a device mode isn't converted");
    }
    void ListMedia() {
        names_.resize(kPaperNameCapacity * GetDeviceCapability(printer_.Get(), DC_MEDIATYPENAMES, nullptr));
        GetDeviceCapability(printer_.Get(), DC_MEDIATYPENAMES, names_.data());
    }
    void SeekConflict() { Require(!HasConflict(devMode_), "the settings can't be printed"); }
    void StartAndEndJob() { Require(RunJob(wideName_, &devMode_) > 0, "the job doesn't start"); }
    void OpenSheet() { OpenDocumentSheet(machine_, printer_.Get(), name_); }
    void OpenPpd() { ppd_->Open(); }
    void OpenMarkedPpd() { ppd_->OpenMarked(); }
    void SeekPpdConflict() { Require(ppdConflicts(marked_.get()) == 0, "CUPS finds a conflict"); }

    // The first paper and medium of a generated model can't be printed on both sides.
    void RequireConflicts() {
        VelmoraDevMode both = devMode_;
        both.publicPart.dmPaperSize = kFirstPaperId;
        both.publicPart.dmDuplex = DMDUP_VERTICAL;
        both.privatePart.mediaIndex = 1;
        const OwnedPpd marked = ppd_->OpenMarked();
        const bool isFree = ppdConflicts(marked.get()) == 0;
        ppdMarkOption(marked.get(), "Duplex", "DuplexNoTumble");
        Require(HasConflict(both) && isFree && ppdConflicts(marked.get()) > 0, "a conflict isn't found");
    }

    std::string WorkName(const char* work) const { return name_ + ": " + work; }

  private:
    bool HasConflict(const VelmoraDevMode& devMode) const {
        return FindConflict({printer_.Get(), *model_, installed_, devMode, 0}) != nullptr;
    }

    host::Machine& machine_;
    TemporaryFolder folder_;
    std::string name_;
    std::u16string wideName_;
    OwnedPrinter printer_;
    WCHAR path_[MAX_PATH];
    OwnedFile file_;
    HeapOwner<DeviceModel> model_;
    PrivateFacts facts_ = {};
    DeviceInfo installed_ = {};
    VelmoraDevMode devMode_ = {};
    VelmoraDevMode output_ = {};
    std::vector<WCHAR> names_;
    std::unique_ptr<PpdFile> ppd_;
    OwnedPpd marked_;
};

CallBench::CallBench(host::Machine& machine) {
    constexpr struct {
        const char* name;
        void (Printer::*run)();
    } kWorks[] = {
        {kCopy, &Printer::CopyDevMode},
        {kRead, &Printer::ReadFile},
        {kLoad, &Printer::LoadModel},
        {kTexts, &Printer::LoadTexts},
        {kDefault, &Printer::BuildDefault},
        {kValidation, &Printer::Validate},
        {kConflict, &Printer::SeekConflict},
        {kMerge, &Printer::Merge},
        {kConversion, &Printer::Convert},
        {kMedia, &Printer::ListMedia},
        {kJob, &Printer::StartAndEndJob},
        {kSheet, &Printer::OpenSheet},
        {kPpd, &Printer::OpenPpd},
        {kMarkedPpd, &Printer::OpenMarkedPpd},
        {kPpdConflict, &Printer::SeekPpdConflict},
    };
    const auto registerWorks = [&](Printer* printer) {
        for (const auto& work : kWorks) {
            RegisterWork(
                printer->WorkName(work.name), [printer, run = work.run] { (printer->*run)(); }, kSeconds);
        }
    };
    for (const std::filesystem::path& source : ProjectModels()) {
        if (source.filename() == kModel) {
            printer_ = std::make_unique<Printer>(machine, "CALLS", CompileModel(source));
        }
    }
    Require(printer_ != nullptr, "the model of the calls isn't there");
    registerWorks(printer_.get());
    for (const ModelExtent& extent : kTenfolds) {
        ofTenfolds_.push_back(std::make_unique<Printer>(machine, "CALLS-" + std::to_string(extent.papers),
                                                        CompileModelText(GeneratedSource(extent), "bench.json")));
        ofTenfolds_.back()->RequireConflicts();
        registerWorks(ofTenfolds_.back().get());
    }
}

CallBench::~CallBench() = default;

bool CallBench::Judge(const Times&) const {
    return true;
}

void CallBench::AddRows(CallTables* tables) const {
    for (const auto& row : kRows) {
        tables->Add(CallRow{row.group, row.call, printer_->WorkName(row.call), row.floor ? row.floor : "",
                            row.floor ? printer_->WorkName(row.floor) : ""});
    }
    const Printer& largest = *ofTenfolds_.back();
    for (const auto& row : kRows) {
        if (row.group == CallGroup::kBesidePpd) {
            tables->Add(CallRow{row.group, row.call + std::string(", 1,000 papers"), largest.WorkName(row.call),
                                row.floor, largest.WorkName(row.floor)});
        }
    }
    struct Growth {
        const char* call;
        bool isOfDriver = true;
    };
    for (const Growth& growth : {Growth{kRead, false},
                                 {kLoad},
                                 {kTexts},
                                 {kDefault},
                                 {kValidation},
                                 {kConflict},
                                 {kMerge},
                                 {kConversion},
                                 {kMedia},
                                 {kJob},
                                 {kSheet},
                                 {kPpd, false},
                                 {kMarkedPpd, false},
                                 {kPpdConflict, false}}) {
        const char* const call = growth.call;
        GrowthRow row = {call, {}, growth.isOfDriver};
        for (const auto& printer : ofTenfolds_) {
            row.works.push_back(printer->WorkName(call));
        }
        tables->Add(std::move(row));
    }
}

}  // namespace velmora
