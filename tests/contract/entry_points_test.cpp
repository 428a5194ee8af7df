// What every export answers before any printer setting matters.
#include <string>

#include "tests/contract/contract_test.h"
#include "tests/contract/print_ticket_provider.h"

namespace contract {
namespace {

class EntryPoints : public ContractTest {
  protected:
    InstalledPrinter printer_{*environment_, PackageOf(DescriptionFiles().at(0))};
};

TEST_F(EntryPoints, ConstantAnswers) {
    const DriverExports& driver = printer_.Driver();
    BYTE query[64] = {};
    EXPECT_EQ(driver.DevQueryPrintEx(reinterpret_cast<PDEVQUERYPRINT_INFO>(query)), 1);
    EXPECT_EQ(driver.DrvUpgradePrinter(1, nullptr), 1);
    EXPECT_EQ(
        driver.DrvAdvancedDocumentProperties(nullptr, printer_.Handle(), printer_.NameArgument(), nullptr, nullptr),
        10);
}

DOCUMENTPROPERTYHEADER DocumentHeader(InstalledPrinter& printer, DEVMODEW* output, DWORD outputSize, DWORD mode) {
    DOCUMENTPROPERTYHEADER header = {};
    header.cbSize = sizeof(header);
    header.hPrinter = printer.Handle();
    header.pszPrinterName = printer.NameArgument();
    header.pdmOut = output;
    header.cbOut = outputSize;
    header.fMode = mode;
    return header;
}

TEST_F(EntryPoints, DocumentSettingsTellTheSize) {
    DevModeBuffer output;
    const auto older = [this](DEVMODEW* to, DWORD mode) {
        return printer_.Driver().DrvDocumentProperties(nullptr, printer_.Handle(), printer_.NameArgument(), to, nullptr,
                                                       mode);
    };
    EXPECT_EQ(older(output.Get(), 0), 4088);
    EXPECT_EQ(older(nullptr, DM_OUT_BUFFER), 4088);
    const struct {
        DEVMODEW* output;
        DWORD mode;
    } cases[] = {
        {output.Get(), 0}, {nullptr, 0}, {nullptr, DM_OUT_BUFFER}, {nullptr, DM_IN_BUFFER | DM_OUT_BUFFER | DM_PROMPT}};
    for (const auto& c : cases) {
        SCOPED_TRACE("fMode " + std::to_string(c.mode));
        DOCUMENTPROPERTYHEADER header = DocumentHeader(printer_, c.output, 0, c.mode);
        EXPECT_EQ(printer_.Driver().DrvDocumentPropertySheets(nullptr, reinterpret_cast<LPARAM>(&header)), 4088);
        EXPECT_EQ(header.cbOut, 4088u);

        // A sheet info's header counts, not the second parameter.
        DOCUMENTPROPERTYHEADER sheetHeader = DocumentHeader(printer_, c.output, 0, c.mode);
        PROPSHEETUI_INFO info = {};
        info.cbSize = sizeof(info);
        info.Reason = PROPSHEETUI_REASON_INIT;
        info.lParamInit = reinterpret_cast<LPARAM>(&sheetHeader);
        EXPECT_EQ(printer_.Driver().DrvDocumentPropertySheets(&info, 0), 4088);
        EXPECT_EQ(sheetHeader.cbOut, 4088u);
    }
    DOCUMENTPROPERTYHEADER header = DocumentHeader(printer_, output.Get(), 4000, DM_OUT_BUFFER);
    EXPECT_EQ(printer_.Driver().DrvDocumentPropertySheets(nullptr, reinterpret_cast<LPARAM>(&header)), 1);
    EXPECT_TRUE(output.Untouched()) << "the output was too small";
}

TEST_F(EntryPoints, SheetsAnswerOtherReasonsWithSuccess) {
    DevModeBuffer output;
    const struct {
        DWORD mode;
        WORD reason;
        ULONG_PTR result;  // Result afterwards; it was 77
    } cases[] = {{DM_OUT_BUFFER, PROPSHEETUI_REASON_INIT, 77},
                 {DM_OUT_BUFFER | DM_PROMPT, PROPSHEETUI_REASON_GET_INFO_HEADER, 1},
                 {DM_OUT_BUFFER | DM_PROMPT, PROPSHEETUI_REASON_SET_RESULT, 1},
                 {DM_OUT_BUFFER | DM_PROMPT, PROPSHEETUI_REASON_GET_ICON, 1},
                 {DM_OUT_BUFFER | DM_PROMPT, 1000, 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE("fMode " + std::to_string(c.mode) + " reason " + std::to_string(c.reason));
        DOCUMENTPROPERTYHEADER header = DocumentHeader(printer_, output.Get(), 4088, c.mode);
        PROPSHEETUI_INFO info = {};
        info.cbSize = sizeof(info);
        info.Reason = c.reason;
        info.lParamInit = reinterpret_cast<LPARAM>(&header);
        info.Result = 77;
        EXPECT_EQ(printer_.Driver().DrvDocumentPropertySheets(&info, 0), 1);
        EXPECT_EQ(info.Result, c.result);

        if (c.reason != PROPSHEETUI_REASON_INIT) {
            DEVICEPROPERTYHEADER deviceHeader = {};
            deviceHeader.cbSize = sizeof(deviceHeader);
            deviceHeader.hPrinter = printer_.Handle();
            deviceHeader.pszPrinterName = printer_.NameArgument();
            info.lParamInit = reinterpret_cast<LPARAM>(&deviceHeader);
            EXPECT_EQ(printer_.Driver().DrvDevicePropertySheets(&info, 0), 1);
        }
    }
    EXPECT_TRUE(output.Untouched());
}

// The library is loaded, used and unloaded over and over, as hosts do that load it for a call.
TEST_F(EntryPoints, LoadingManyTimesKeepsNothing) {
    constexpr int kWarmUps = 5;  // whatever the host keeps from its first use
    constexpr int kLoads = 100;
    // Another file than the printer's, which stays loaded.
    const WideText library = printer_.File(TEXT("KV62U.DLL")) + TEXT(".copy.DLL");
    ASSERT_TRUE(CopyFileW(printer_.File(TEXT("KV62U.DLL")).c_str(), library.c_str(), FALSE));
    ContractEnvironment::Holdings before = {};
    for (int i = -kWarmUps; i < kLoads; ++i) {
        if (i == 0) {
            before = environment_->CountHoldings();
        }
        const HMODULE module = LoadLibraryW(library.c_str());
        ASSERT_NE(module, nullptr);
        const DriverExports driver = ResolveExports(module);
        DevModeBuffer output;
        LONG size = sizeof(*output.content);
        EXPECT_TRUE(driver.DrvConvertDevMode(printer_.NameArgument(), nullptr, output.Get(), &size, 0));
        EXPECT_GT(driver.DrvDeviceCapabilities(printer_.Handle(), printer_.NameArgument(), DC_PAPERS, nullptr, nullptr),
                  0u);
        void* factory = nullptr;
        EXPECT_EQ(driver.DllGetClassObject(kProviderClass, IID_IClassFactory, &factory), S_OK);
        static_cast<IClassFactory*>(factory)->Release();
        EXPECT_EQ(driver.DllCanUnloadNow(), S_OK);
        ASSERT_TRUE(FreeLibrary(module));
        ASSERT_EQ(GetModuleHandleW(library.c_str()), nullptr);
    }
    const ContractEnvironment::Holdings after = environment_->CountHoldings();
    EXPECT_LT(after.objects, before.objects + kLoads / 10);
    EXPECT_LT(after.heapBlocks, before.heapBlocks + kLoads / 2);
    EXPECT_TRUE(DeleteFileW(library.c_str()));
}

}  // namespace
}  // namespace contract
