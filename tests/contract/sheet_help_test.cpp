// Help for the sheets' pages and controls.
#include <filesystem>
#include <string>
#include <vector>

#include "tests/contract/modules/help_engine.h"
#include "tests/contract/sheet_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

constexpr int kAvailable = 11004, kInstalled = 11007;

constexpr WCHAR kEngineKey[] = TEXT("CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32");

DriverPackage PackageWithHelp() {
    DriverPackage package = PackageOf(kColorModel);
    package.dependentFiles.push_back({TEXT("KV62ENUS.CHM"), {}, "help"});
    return package;
}

// The tests' own help engine as a file of the machine. Drivers keep what they have loaded of it; it ends with this.
class HelpEngine {
  public:
    explicit HelpEngine(ContractEnvironment& environment) : environment_(environment) {
        const std::filesystem::path file = environment.HostPath(kFile);
        std::filesystem::create_directories(file.parent_path());
        std::filesystem::copy_file("package/CONTRACTHELP.OCX", file, std::filesystem::copy_options::overwrite_existing);
        module_ = LoadLibraryW(kFile);
        EXPECT_TRUE(module_ != nullptr);
        take_ = reinterpret_cast<decltype(&::TakeHelpRequests)>(
            reinterpret_cast<void*>(GetProcAddress(module_, "TakeHelpRequests")));
    }
    ~HelpEngine() {
        FreeLibrary(module_);
        if (wasUsed_) {
            FreeLibrary(module_);
        }
    }
    HelpEngine(const HelpEngine&) = delete;
    HelpEngine& operator=(const HelpEngine&) = delete;

    void Register() const { environment_.SetRegistryText(HKEY_CLASSES_ROOT, kEngineKey, kFile); }

    // What was asked of it since the last call, a line each.
    std::string Requests() {
        const std::string requests = take_();
        wasUsed_ = wasUsed_ || !requests.empty();
        return requests;
    }

  private:
    static constexpr WCHAR kFile[] = TEXT("C:\\VelmoraHelp\\CONTRACTHELP.OCX");

    ContractEnvironment& environment_;
    HMODULE module_ = nullptr;
    decltype(&::TakeHelpRequests) take_ = nullptr;
    bool wasUsed_ = false;
};

class SheetHelp : public SheetTest {};

// A point of the page that no control covers.
POINT EmptyPoint() {
    RECT page = {};
    GetWindowRect(FrontPage(), &page);
    return {page.left + 2, page.bottom - 2};
}

TEST_F(SheetHelp, OfPagesAndControls) {
    HelpEngine engine(*environment_);
    engine.Register();
    InstalledPrinter printer(*environment_, PackageWithHelp());
    const struct {
        const char* title;
        Step act;
        const char* requests;
    } cases[] = {
        {"F1",
         [] {
             SetFocus(Control(kAvailable));
             PressKey(VK_F1);
         },
         "begin\ncontrol 11004: KV62ENUS.CHM::/KV62.txt topic 77 at the cursor\n"},
        {"Help of the sheet", InSheet(PSBTN_HELP), "page: KV62ENUS.CHM::/80000000.htm\n"},
        {"right click on an empty part", [] { Click(EmptyPoint(), true); }, ""},
        {"right click on a list", [] { Click(MiddleOf(Control(kInstalled)), true); },
         "context 11007: KV62ENUS.CHM::/KV62.txt 11007 79 0 0\n"},
        {"right click on a disabled list",
         [] {
             EnableWindow(Control(kAvailable), FALSE);
             Click(MiddleOf(Control(kAvailable)), true);
         },
         "context 11004: KV62ENUS.CHM::/KV62.txt 11004 77 0 0\n"},
        {"closed", InSheet(PSBTN_CANCEL), "end\n"},
    };
    std::vector<Step> steps;
    std::vector<std::string> answers;
    for (const auto& c : cases) {
        if (!steps.empty()) {
            steps.push_back([&] { answers.push_back(engine.Requests()); });
        }
        steps.push_back(c.act);
    }
    ShowDeviceSheet(printer, steps);
    answers.push_back(engine.Requests());
    ASSERT_EQ(answers.size(), std::size(cases));
    for (size_t i = 0; i < answers.size(); ++i) {
        EXPECT_EQ(answers[i], cases[i].requests) << cases[i].title;
    }
}

TEST_F(SheetHelp, LooksForItsEngineOnce) {
    HelpEngine engine(*environment_);
    InstalledPrinter printer(*environment_, PackageWithHelp());
    const Step pressF1 = [] { PressKey(VK_F1); };
    const Step registerEngine = [&] { engine.Register(); };
    ShowDeviceSheet(printer, {pressF1, registerEngine, pressF1, InSheet(PSBTN_HELP), InSheet(PSBTN_CANCEL)});
    EXPECT_EQ(engine.Requests(), "");
}

}  // namespace
}  // namespace contract
