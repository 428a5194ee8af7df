// Programs that the panel set, for WinExec.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace host {

using ProgramFunction = std::function<void(const std::string& commandLine)>;

// By file name, case ignored. A null function: no such program any more.
void SetProgramFunction(std::u16string_view fileName, ProgramFunction program);
void ForgetPrograms();

}  // namespace host
