// What print-schema documents cost beside the same documents in libxml2: building, finding, looking up prefixes.
#pragma once

#include "bench/bench.h"

namespace velmora {

// Works on documents of its own, on the machine that there is while it lives.
class TicketBench : public Bench {
  public:
    TicketBench();
    ~TicketBench() override;
    bool Judge(const Times& times) const override;
    void AddRows(CallTables* tables) const override;

  private:
    struct Place;
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace velmora
