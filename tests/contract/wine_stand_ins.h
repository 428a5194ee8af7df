// Stand-ins for published calls that Wine lacks or breaks. They are put into the import tables of loaded modules, in
// memory, so neither the driver nor a test knows of them. Each is used only where a probe shows that it is needed.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace contract {

// Finds out which calls fall short, each once a process, and prints each stand-in that is used from then on. `printer`
// is open for administering, and is as it was afterwards; null: only the calls that have nothing to do with printers.
void ProbeCalls(HANDLE printer);

// Puts the stand-ins that are used into the import table of a loaded module.
void PutStandIns(HMODULE module);

// Lets a loaded module's import of this name, from whatever library, lead to `function`. Nothing happens where the
// module doesn't import it.
void ReplaceImport(HMODULE module, const char* name, void* function);

// Tells the driver of an event of its printer (winddiui.h) where the spooler doesn't. Throws std::runtime_error where a
// new printer can't be initialised.
void SendMissingEvent(HMODULE driver, HANDLE printer, int event);

// The user's language as drivers are told it, and the ANSI code page, until ForgetMachine. A fresh machine is English
// (0x0409), and has Wine's own code page.
void SetUserLanguage(LANGID language);
void SetUserCodePage(UINT codePage);

// What WinExec does with a command line: fails as without such a program, succeeds without starting anything, or starts
// it. Null: there is no program.
enum class ProgramStart { kNone, kPretended, kReal };
void SetProgramStarter(std::function<ProgramStart(const std::string& command)> starter);

// Lets waits that would run out do so at once, until ForgetMachine.
void SetWaitsElapseAtOnce(bool atOnce);

// Makes the stand-ins forget what they keep: of one printer; of all printers and forms.
void ForgetPrinter(HANDLE printer);
void ForgetMachine();

}  // namespace contract
