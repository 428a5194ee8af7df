// What a property sheet costs: opened and closed, drawn, and what its pages decide and compute at a user's every step.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "bench/bench.h"
#include "driver/entry/printer_access.h"
#include "driver/ui/color_adjustment.h"
#include "driver/ui/paper_rules.h"
#include "platform/host.h"

namespace velmora {

// Opens a printer's document sheets and cancels them.
void OpenDocumentSheet(host::Machine& machine, HANDLE printer, const std::string& name);

class SheetBench : public Bench {
  public:
    // Installs a printer on the machine, registers the works, and opens the sheets often enough to see what they leave.
    explicit SheetBench(host::Machine& machine);
    ~SheetBench() override;
    bool Judge(const Times& times) const override;
    void AddRows(CallTables* tables) const override;

  private:
    struct Previews;

    void DrawDevicePage();
    void RegisterPageWorks();
    void RegisterPreviewWorks();

    host::Machine& machine_;
    TemporaryFolder folder_{"velmora-bench-sheet"};
    OwnedPrinter printer_;
    double leftOpen_ = 0;
    PaperChoices choices_ = {};
    AdjustmentTable table_ = {};
    std::vector<uint32_t> sample_;
    std::unique_ptr<Previews> previews_;
};

}  // namespace velmora
