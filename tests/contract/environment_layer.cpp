// The machine of the platform layer: a fresh one for every environment.
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "platform/host.h"
#include "tests/contract/environment.h"
#include "tools/wm/watermark_program.h"

namespace contract {
namespace {

class LayerEnvironment : public ContractEnvironment {
  public:
    LayerEnvironment() { machine_.SetMetric(true); }

    ~LayerEnvironment() override {
        for (const std::string& open : host::StillOpen()) {
            // A connection's marker lasts as long as the process.
            if (!open.starts_with("semaphore //")) {
                ADD_FAILURE() << "still open: " << open;
            }
        }
    }

    std::filesystem::path HostPath(const WideText& path) const override {
        static constexpr std::u16string_view kDrive = u"C:\\";
        if (!std::u16string_view(path).starts_with(kDrive)) {
            throw std::runtime_error("not a path of drive C:");
        }
        std::u16string below = path.substr(kDrive.size());
        std::ranges::replace(below, u'\\', u'/');
        // A dot at the end of a folder's name isn't part of it.
        for (size_t dot = below.find(u"./"); dot != std::u16string::npos; dot = below.find(u"./", dot)) {
            below.erase(dot, 1);
        }
        return machine_.Drive() / below;
    }

    void SetMetric(bool metric) override { machine_.SetMetric(metric); }

    void SetSystemVersion(DWORD major, DWORD minor) override { machine_.SetSystemVersion(major, minor); }

    void SetLanguage(LANGID language) override {
        constexpr LANGID kJapanese = 0x0411;
        machine_.SetLanguage(language);
        machine_.SetAnsiCodePage(language == kJapanese ? 932 : 1252);
    }

    void SetRegistryText(HKEY root, const WideText& key, const WideText& text) override {
        HKEY opened = nullptr;
        if (RegCreateKeyExW(root, key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &opened,
                            nullptr) != ERROR_SUCCESS) {
            throw std::runtime_error("a registry key can't be made");
        }
        RegSetValueExW(opened, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                       static_cast<DWORD>((text.size() + 1) * sizeof(WCHAR)));
        RegCloseKey(opened);
    }

    void AddProgram(const WideText& fileName, Program run) override {
        machine_.SetWaitsElapseAtOnce(true);
        machine_.SetProgram(fileName, [run](const std::string& command) {
            if (run) {
                run(command);
            }
        });
    }

    void AddWatermarkProgram() override {
        machine_.SetProgram(u"KV62WM.EXE",
                            [](const std::string& command) { velmora::RunWatermarkProgram(command.c_str()); });
    }

    void SetUser(std::function<void()> user) override { machine_.SetUser(std::move(user)); }

    void SavePicture(HWND window, const std::filesystem::path& file) override {
        if (!host::SavePicture(window, file)) {
            throw std::runtime_error("can't write " + file.string());
        }
    }

    Holdings CountHoldings() const override {
        const std::vector<std::string> open = host::StillOpen();
        const auto blocks = static_cast<size_t>(
            std::ranges::count_if(open, [](const std::string& line) { return line.starts_with("heap block "); }));
        return {open.size() - blocks, blocks};
    }

    void PrepareDriver(HMODULE, HANDLE) override {}

    void LeaveDriver(HMODULE, HANDLE) override {}

  private:
    host::Machine machine_;
};

}  // namespace

std::unique_ptr<ContractEnvironment> MakeEnvironment() {
    return std::make_unique<LayerEnvironment>();
}

}  // namespace contract
