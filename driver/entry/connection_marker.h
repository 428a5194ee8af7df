// Connections to printers of other machines, as systems of version 4 keep track of them. The printer's data name the
// computers that installed the connection over the network; a named semaphore that lives as long as the process marks a
// connection whose computer was found among them, so that the printer is asked once.
#pragma once

#include <windows.h>

namespace velmora {

// True on systems of version 4.
bool SystemMarksConnections();

// True for a printer of another machine: its name begins with a server's that isn't this computer.
bool IsConnectionName(const WCHAR* printerName);

// The connection's marker. Creating it leaves it open for the life of the process.
bool HasConnectionMarker(const WCHAR* printerName);
void CreateConnectionMarker(const WCHAR* printerName);

// What the printer's data say of installations over the network.
enum class NetworkInstall {
    kNone,          // no such value, or an empty one
    kThisComputer,  // this computer is among the installed ones
    kOthers,
    kUnreadable,
};
NetworkInstall ReadNetworkInstall(HANDLE printer);

// Puts this computer behind the installed ones, whether it is among them or not. Takes every mention of it away; the
// value goes with the last computer. Neither changes a value that can't be read.
void AddNetworkInstall(HANDLE printer);
void RemoveNetworkInstall(HANDLE printer);

}  // namespace velmora
