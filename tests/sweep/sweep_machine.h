// The machine whose works are made to fail: a printer with everything, and what is stored on it, piece by piece.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <memory>
#include <string>

#include "driver/base/com.h"
#include "driver/job/job_hooks.h"
#include "driver/ptprovider/print_ticket_provider.h"
#include "platform/spooler/state.h"
#include "tests/driver/machine.h"
#include "tests/driver/sheet_host.h"
#include "tests/driver/ticket_printer.h"

namespace sweep_test {

// What is stored, by its place: a printer-data value, a form, a key of an INI file, a whole other file, ... A fault
// leaves each of them as it was or as it was to become. The printer's device mode isn't among them.
using StoredPieces = std::map<std::string, std::string>;

// Which description file the printer has.
enum class Model { kPlain, kColor, kImage, kSheets, kLineJobs, kTextJobs, kRecordJobs };

class SweepMachine {
  public:
    SweepMachine(Model model, bool hasStoredSettings);
    ~SweepMachine();
    SweepMachine(const SweepMachine&) = delete;
    SweepMachine& operator=(const SweepMachine&) = delete;

    // What is stored becomes what it was when the machine was made.
    void Restore();
    StoredPieces Stored() const;

    HANDLE Printer() const { return printer_.Get(); }
    WCHAR* Name() { return name_.data(); }
    // A device mode for the works: the printer's own, but for a version that is to be repaired.
    velmora::VelmoraDevMode Input() const;
    // A device mode that was written at all has the published frame.
    static void CheckFrame(const velmora::VelmoraDevMode& devMode);

    // --- Sheets: steps of the user, each where its page or dialog is there
    void ThenOnPage(int slot, std::function<void(HWND page)> use);
    void ThenInDialog(std::function<void(HWND dialog)> use);
    void ThenPressOk();
    void RunDeviceSheet();
    void RunDocumentSheet();

    // --- Jobs
    void StartJob();
    void StartSheet();
    void EndJob();

    // --- Print tickets
    void MakeProvider();
    void Bind();
    void ReadTicket();  // a ticket of the device mode, before anything fails
    void Forget();      // all of these

    host::Machine machine;
    driver_test::SheetHost sheets;
    velmora::ComReference<IPrintTicketProvider> provider;
    driver_test::TicketDocument ticket;
    velmora::VelmoraDevMode ticketDevMode = {};
    velmora::JobHookRecord job = {};

  private:
    void FillMachine(Model model);
    std::map<std::string, std::string> Files() const;

    driver_test::WideText name_ = driver_test::kPrinterName;
    velmora::OwnedPrinter printer_;
    velmora::VelmoraDevMode devMode_ = {};
    // As the machine was made.
    host::Printer printerBefore_;
    std::vector<host::Form> formsBefore_;
    std::vector<host::PrintProcessor> processorsBefore_;
    std::map<std::string, std::string> filesBefore_;
};

}  // namespace sweep_test
