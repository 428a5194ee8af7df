// How a run that shows a fault ends.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/host.h"

namespace fuzz {

// Ends the process as a crash does.
[[noreturn]] inline void Stop(const char* what, const std::string& detail = {}) {
    fprintf(stderr, "%s%s%s\n", what, detail.empty() ? "" : ": ", detail.c_str());
    abort();
}

// Stops where less or more is open at the end of an input than at its beginning.
class OpenCheck {
  public:
    OpenCheck() : before_(host::StillOpen().size()) {}
    OpenCheck(const OpenCheck&) = delete;
    OpenCheck& operator=(const OpenCheck&) = delete;
    ~OpenCheck() {
        const std::vector<std::string> open = host::StillOpen();
        if (open.size() != before_) {
            Stop("something is left open, or closed twice", open.empty() ? "" : open.back());
        }
    }

  private:
    size_t before_;
};

}  // namespace fuzz
