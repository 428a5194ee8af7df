#include "platform/kernel/failures.h"

#include <cstdio>

namespace host {

bool Fail(DWORD error) {
    SetLastError(error);
    return false;
}

bool FailUnsupported(const char* what) {
    fprintf(stderr, "platform: %s is not supported\n", what);
    return Fail(ERROR_NOT_SUPPORTED);
}

}  // namespace host
