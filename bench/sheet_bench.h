// What a property sheet costs: opened and closed, and drawn.
#pragma once

#include <string>

#include "bench/bench.h"
#include "driver/entry/printer_access.h"
#include "platform/host.h"

namespace velmora {

class SheetBench : public Bench {
  public:
    // Installs a printer on the machine, registers the works, and opens the sheets often enough to see what they leave.
    explicit SheetBench(host::Machine& machine);
    bool Judge(const Times& times) const override;

  private:
    void OpenDocumentSheet();
    void DrawDevicePage();

    host::Machine& machine_;
    TemporaryFolder folder_{"velmora-bench-sheet"};
    OwnedPrinter printer_;
    double leftOpen_ = 0;
};

}  // namespace velmora
