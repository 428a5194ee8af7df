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

// Tells the driver of an event of its printer (winddiui.h) where the spooler doesn't. Throws std::runtime_error where a
// new printer can't be initialised.
void SendMissingEvent(HMODULE driver, HANDLE printer, int event);

// The user's language as drivers are told it, and its ANSI code page with it, until ForgetMachine.
void SetUserLanguage(LANGID language);

// What WinExec does instead of starting a program: whether there is one for the command line. Null: there is none.
void SetProgramStarter(std::function<bool(const std::string& command)> starter);

// What WinExec does. Throws std::runtime_error where the program can't be started.
void StartReally(const std::string& command);

// Lets waits that would run out do so at once, until ForgetMachine.
void SetWaitsElapseAtOnce(bool atOnce);

// Makes the stand-ins forget what they keep: of one printer; of all printers and forms.
void ForgetPrinter(HANDLE printer);
void ForgetMachine();

}  // namespace contract
