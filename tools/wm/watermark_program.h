// The program that renders watermarks for the driver, KV62WM.EXE, as a call.
#pragma once

namespace velmora {

// Renders the job that a command line in the ANSI code page names: the program's path, which ends with ".EXE", and
// behind it the job's INI file, in quotation marks or not, whatever blanks are in it. The answer goes into that file,
// and then the event of its name is signalled, whatever came of it. Uses at most 300 MB of memory.
void RunWatermarkProgram(const char* commandLine);

}  // namespace velmora
