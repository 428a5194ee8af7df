// What validating device modes costs: with everything in hand, and beside what it reads where a caller has nothing.
#pragma once

#include "bench/bench.h"
#include "driver/base/heap.h"
#include "driver/devdesc/description_file.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/entry/printer_access.h"
#include "platform/host.h"

namespace velmora {

// Works on a printer of the project's richest model, on a machine that outlives it.
class ValidationBench : public Bench {
  public:
    explicit ValidationBench(const host::Machine& machine);
    bool Judge(const Times& times) const override;

  private:
    void CheckBothParts() const;

    std::string modelName_;
    OwnedPrinter printer_;
    OwnedFile file_;
    HeapOwner<DeviceModel> model_;
    PrivateFacts facts_ = {};
    std::unique_ptr<VelmoraDevMode> devMode_;  // valid: no check changes it
};

}  // namespace velmora
