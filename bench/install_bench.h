// What installing a printer costs: how it grows with the model's fonts and patterns, and what memory a printer data
// file takes that is greater than what should be read of it.
#pragma once

#include "bench/bench.h"
#include "platform/host.h"

namespace velmora {

// Works on printers with printer data files, on a machine that outlives it.
class InstallBench : public Bench {
  public:
    explicit InstallBench(const host::Machine& machine);
    bool Judge(const Times& times) const override;
    void AddRows(CallTables* tables) const override;

  private:
    TemporaryFolder folder_{"velmora-install-bench"};
    double megabytes_ = 0;  // by which the peak grew
    double milliseconds_ = 0;
};

}  // namespace velmora
