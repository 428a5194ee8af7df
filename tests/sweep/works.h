// Everything that is made to fail: each of the driver's exports in the situations that bring it to different places.
#pragma once

#include <functional>
#include <vector>

#include "tests/sweep/sweep_machine.h"

namespace sweep_test {

struct Work {
    const char* exportName;
    const char* situation;
    Model model;
    std::function<void(SweepMachine&)> run;  // with the fault
    // Without: what the work stands on, and what gives back what it opened. Null: nothing.
    void (*before)(SweepMachine&) = nullptr;
    void (*after)(SweepMachine&) = nullptr;
    bool hasStoredSettings = false;  // the printer already names a settings file
    bool isSlow = false;
};

const std::vector<Work>& Works();

}  // namespace sweep_test
