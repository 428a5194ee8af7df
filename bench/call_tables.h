// The tables that the benchmarks end with: what each call costs beside the least that it could cost, and how calls grow
// with the model.
#pragma once

#include <string>
#include <vector>

#include "bench/bench.h"

namespace velmora {

enum class CallGroup {
    kModel,
    kDeviceModes,
    kCapabilities,
    kTickets,
    kJobs,
    kInstallation,
    kSheets,
    kCompiler,
    kBesidePpd,
};

// What a row keeps to: a ratio, or a time in microseconds.
struct CallLimit {
    enum Kind { kNone, kRatio, kMicroseconds };
    Kind kind = kNone;
    double most = 0;
};
constexpr CallLimit MostRatio(double most) {
    return {CallLimit::kRatio, most};
}
constexpr CallLimit MostMicroseconds(double most) {
    return {CallLimit::kMicroseconds, most};
}

// A call and what it is measured beside, each as it is called in the table and by the work that measures it.
struct CallRow {
    CallGroup group;
    std::string call;
    std::string work;
    std::string floor = {};  // empty: nothing, and no work
    std::string floorWork = {};
    CallLimit limit = {};
};

// A call on models of kTenfolds (generated_model.h), by the works that measure it, the smallest model's first.
struct GrowthRow {
    std::string call;
    std::vector<std::string> works;
    bool isJudged = true;  // by kMostTenfold
};

class CallTables {
  public:
    void Add(CallRow row) { calls_.push_back(std::move(row)); }
    void Add(GrowthRow row) { growths_.push_back(std::move(row)); }

    // Leaves out the rows of works that haven't run. False where a row is above its limit.
    bool Print(const Times& times) const;

  private:
    bool PrintCalls(const Times& times) const;
    bool PrintGrowth(const Times& times) const;

    std::vector<CallRow> calls_;
    std::vector<GrowthRow> growths_;
};

}  // namespace velmora
