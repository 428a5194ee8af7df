// What the main calls cost on a printer of a model of the project, and on models of ten times and a hundred times the
// content; and what CUPS' PPD library takes for the same content.
#pragma once

#include <memory>

#include "bench/bench.h"
#include "platform/host.h"

namespace velmora {

// Works on printers of its own, on a machine that outlives it.
class CallBench : public Bench {
  public:
    explicit CallBench(host::Machine& machine);
    ~CallBench() override;
    bool Judge(const Times& times) const override;
    void AddRows(CallTables* tables) const override;

  private:
    class Printer;
    std::unique_ptr<Printer> printer_;                  // of the project's model
    std::vector<std::unique_ptr<Printer>> ofTenfolds_;  // of generated ones
};

}  // namespace velmora
