// How long waits last.
#pragma once

namespace host {

// True: a wait for what isn't signalled ends at once, and the machine's tick count goes on by its time.
void SetWaitsElapse(bool atOnce);

}  // namespace host
