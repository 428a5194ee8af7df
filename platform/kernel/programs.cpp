#include "platform/kernel/programs.h"

#include <windows.h>

#include <map>
#include <vector>

#include "platform/kernel/code_pages.h"
#include "platform/kernel/drive.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

std::map<std::u16string, ProgramFunction>& Programs() {
    static auto& programs = *new std::map<std::u16string, ProgramFunction>;
    return programs;
}

constexpr UINT kStarted = 33;  // anything above 31

size_t NameAt(const std::u16string& path) {
    return path.find_last_of(u"\\/:") + 1;
}

// What may be the program's path, in the order in which it is tried: what quotation marks enclose, or what ends at the
// first blank, at the second, and so on. ".exe" is added where there is no extension.
std::vector<std::u16string> ProgramPaths(const std::u16string& commandLine) {
    std::u16string_view text(commandLine);
    while (!text.empty() && text.front() == u' ') {
        text.remove_prefix(1);
    }
    std::vector<std::u16string> paths;
    if (!text.empty() && text.front() == u'"') {
        text.remove_prefix(1);
        paths.emplace_back(text.substr(0, text.find(u'"')));
    } else {
        for (size_t end = text.find(u' '); end != text.npos; end = text.find(u' ', end + 1)) {
            paths.emplace_back(text.substr(0, end));
        }
        paths.emplace_back(text);
    }
    for (std::u16string& path : paths) {
        if (path.find(u'.', NameAt(path)) == path.npos) {
            path += u".exe";
        }
    }
    return paths;
}

}  // namespace

void SetProgramFunction(std::u16string_view fileName, ProgramFunction program) {
    MachineLock lock;
    if (program) {
        Programs()[FoldCase(fileName)] = std::move(program);
    } else {
        Programs().erase(FoldCase(fileName));
    }
}

void ForgetPrograms() {
    MachineLock lock;
    Programs().clear();
}

}  // namespace host

extern "C" UINT WINAPI WinExec(LPCSTR commandLine, UINT) {
    if (host::FaultAsked("WinExec")) {
        return GetLastError();
    }
    host::ProgramFunction program;
    {
        host::MachineLock lock;
        const auto paths = host::ProgramPaths(host::FromAnsi(commandLine != nullptr ? commandLine : ""));
        for (const std::u16string& path : paths) {
            const auto found = host::Programs().find(host::FoldCase(path.substr(host::NameAt(path))));
            if (found != host::Programs().end()) {
                program = found->second;
                break;
            }
        }
        if (!program) {
            const host::Place place = host::FindPlace(paths.front().c_str());
            // What lies there as a file is nothing that this machine can run.
            const UINT error = place.error == ERROR_SUCCESS ? ERROR_BAD_FORMAT : place.error;
            SetLastError(error);
            return error;
        }
    }
    // Without the lock: the program makes calls of its own. It ends before this call returns.
    program(commandLine);
    return host::kStarted;
}
