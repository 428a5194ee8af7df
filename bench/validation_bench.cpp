#include "bench/validation_bench.h"

#include <cstdio>
#include <cstring>

#include "driver/devdesc/description_format.h"
#include "driver/devmode/default_devmode.h"
#include "tools/velmora/driver_package.h"
#include "tools/velmora/spooler_client.h"

namespace velmora {
namespace {

constexpr double kMostMicroseconds = 3;
constexpr double kMostRatio = 1.3;

constexpr const char* kInHand = "validate, model in hand";
constexpr const char* kLoad = "load for validation";
constexpr const char* kFacts = "facts of the private part";
constexpr const char* kPublicAlone = "validate public, no model";
constexpr const char* kPrivateAlone = "validate private, no model";

// Bytes of a description's device block: the tables that checks walk.
size_t TableBytes(const PackagedModel& model) {
    DescriptionFileHeader header = {};
    if (model.description.size() >= sizeof(header)) {
        std::memcpy(&header, model.description.data(), sizeof(header));
    }
    return header.languageTableOffset - header.deviceBlockOffset;
}

PackagedModel RichestModel() {
    PackagedModel richest;
    for (const auto& entry : std::filesystem::directory_iterator(VELMORA_MODELS_SOURCE_DIR)) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with(".json") && !name.ends_with("schema.json")) {
            PackagedModel model = ReadModel(entry.path());
            if (TableBytes(model) > TableBytes(richest)) {
                richest = std::move(model);
            }
        }
    }
    Require(!richest.description.empty(), "there are no models");
    return richest;
}

}  // namespace

ValidationBench::ValidationBench(const host::Machine& machine) : devMode_(std::make_unique<VelmoraDevMode>()) {
    const PackagedModel model = RichestModel();
    modelName_ = model.modelName;
    const std::string name = "Validation";
    InstallPrinter(machine, FindBuiltFiles(ToolsFolder() / "velmora"), model, name);
    printer_ = OpenNamedPrinter(name);
    file_ = OpenDescriptionFile(printer_.Get());
    model_ = LoadDeviceModel(file_.Get());
    facts_ = ReadPrivateFacts(printer_.Get(), file_.Get());
    BuildDefaultDevMode(printer_.Get(), u"Validation", devMode_.get());
    // What a new device mode costs in repairs is repaired before anything is measured.
    CheckBothParts();

    RegisterWork(kInHand, [this] { CheckBothParts(); });
    RegisterWork(kLoad, [this] {
        const OwnedFile file = OpenDescriptionFile(printer_.Get());
        Require(static_cast<bool>(LoadDeviceModel(file.Get())), "the model doesn't load");
    });
    RegisterWork(kFacts, [this] {
        Require(ReadPrivateFacts(printer_.Get(), file_.Get()).blobSize == facts_.blobSize, "the facts can't be read");
    });
    RegisterWork(kPublicAlone, [this] {
        Require(ValidatePublicDevMode(printer_.Get(), &devMode_->publicPart, nullptr) == 1,
                "the public part isn't accepted");
    });
    RegisterWork(kPrivateAlone, [this] {
        Require(ValidatePrivateDevMode(printer_.Get(), &devMode_->privatePart, INVALID_HANDLE_VALUE, nullptr) == 1,
                "the private part isn't accepted");
    });
}

void ValidationBench::CheckBothParts() const {
    ValidationReport ofPublicPart;
    ValidationReport ofPrivatePart;
    CheckPublicDevMode(printer_.Get(), *model_, &devMode_->publicPart, &ofPublicPart);
    CheckPrivateDevMode(facts_, *model_, &devMode_->privatePart, &ofPrivatePart);
    Require(ofPublicPart.IsAccepted() && ofPrivatePart.IsAccepted(), "the device mode isn't accepted");
}

bool ValidationBench::Judge(const Times& times) const {
    constexpr double kNanosecondsPerMicrosecond = 1000;
    const auto time = [&](const char* work) { return times.at(work) / kNanosecondsPerMicrosecond; };
    if (times.isWhole) {
        std::printf(
            "\n  %s: load %.2f us, facts of the private part %.2f us, public part without model %.2f us, private "
            "part %.2f us\n\n",
            modelName_.c_str(), time(kLoad), time(kFacts), time(kPublicAlone), time(kPrivateAlone));
    }
    bool holds =
        PrintFigure("validation of a whole device mode, model in hand", time(kInHand), "us", kMostMicroseconds);
    // Both parts' checks are counted in each: they are small beside the loading.
    holds &= PrintFigure("public part without model, against load and check",
                         time(kPublicAlone) / (time(kLoad) + time(kInHand)), "x", kMostRatio);
    holds &= PrintFigure("private part without model, against load, facts and check",
                         time(kPrivateAlone) / (time(kLoad) + time(kFacts) + time(kInHand)), "x", kMostRatio);
    return holds;
}

}  // namespace velmora
