#include "platform/spooler/failures.h"

#include <string>

#include "platform/kernel/objects.h"
#include "platform/kernel/settings.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

std::u16string ThisServer() {
    const MachineLock lock;
    return u"\\\\" + CurrentSettings().computerName;
}

}  // namespace

bool IsSupportedLevel(const char* call, DWORD level, DWORD supported, DWORD highestPublished) {
    if (level == supported) {
        return true;
    }
    if (level > highestPublished) {
        return Fail(ERROR_INVALID_LEVEL);
    }
    return FailUnsupported((std::string(call) + " at level " + std::to_string(level)).c_str());
}

bool IsThisMachine(LPCWSTR serverName) {
    return !serverName || !*serverName || EqualsIgnoringCase(serverName, ThisServer()) ||
           Fail(RPC_S_SERVER_UNAVAILABLE);
}

bool IsThisEnvironment(LPCWSTR environment) {
    return !environment || !*environment || EqualsIgnoringCase(environment, kThisEnvironment) ||
           Fail(ERROR_INVALID_ENVIRONMENT);
}

LPCWSTR LocalPrinterName(LPCWSTR name) {
    const std::u16string_view whole = name;
    const std::u16string prefix = ThisServer() + u"\\";
    return whole.size() >= prefix.size() && EqualsIgnoringCase(whole.substr(0, prefix.size()), prefix)
               ? name + prefix.size()
               : name;
}

}  // namespace host
