// What the hooks of a job cost: the start and end of a job of command lines, and a job's description as text.
#pragma once

#include "bench/bench.h"
#include "driver/devmode/private_devmode.h"
#include "platform/host.h"

namespace velmora {

// Starts and ends a job. Bytes of the block that starts it, 0 where it doesn't start.
DWORD RunJob(const std::u16string& printer, VelmoraDevMode* devMode);

// Works on printers of the project's models and of one with as many features as are described at most, on a machine
// that outlives it.
class JobBench : public Bench {
  public:
    explicit JobBench(const host::Machine& machine);
    bool Judge(const Times& times) const override;
    void AddRows(CallTables* tables) const override;

  private:
    // A printer and a device mode of it.
    struct Printer {
        std::u16string name;
        VelmoraDevMode devMode;
    };

    std::unique_ptr<Printer> Install(const host::Machine& machine, const std::string& name,
                                     const std::vector<std::byte>& description);

    std::unique_ptr<Printer> ofLines_;  // of the model with the longest block
    std::string modelName_;
    std::unique_ptr<Printer> ofText_;
};

}  // namespace velmora
