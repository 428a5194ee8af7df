// The machine of the platform layer: a fresh one for every environment.
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "platform/host.h"
#include "tests/contract/environment.h"

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

    bool SetSystemVersion(DWORD major, DWORD minor) override {
        machine_.SetSystemVersion(major, minor);
        return true;
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
