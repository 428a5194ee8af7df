// What the conversions of the print-ticket provider cost beside libxml2's work on the same documents, and how they grow
// with the model.
#pragma once

#include <memory>
#include <string>

#include "bench/bench.h"
#include "platform/host.h"

namespace velmora {

// Works on a printer of the project's richest model and on printers of generated ones, on a machine that outlives it.
class ConversionBench : public Bench {
  public:
    explicit ConversionBench(const host::Machine& machine);
    ~ConversionBench() override;
    bool Judge(const Times& times) const override;
    void AddRows(CallTables* tables) const override;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace velmora
