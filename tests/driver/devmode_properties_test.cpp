// What holds of the validations on every project model, whatever a device mode holds.
#include <algorithm>
#include <memory>
#include <random>

#include "driver/devmode/default_devmode.h"
#include "driver/devmode/devmode_fields.h"
#include "driver/devmode/validate_devmode.h"
#include "tests/driver/project_models.h"
#include "tools/velmora/devmode_differences.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

// Device modes that are made in a test of a model; the sum over the models is about 20000.
constexpr int kDamaged = 1200;
constexpr int kRandom = 400;

class DevModeProperties : public ProjectModelTest {
  protected:
    void SetUp() override {
        ProjectModelTest::SetUp();
        facts_ = ReadPrivateFacts(printer_.Get(), file_.Get());
        BuildDefaultDevMode(printer_.Get(), kPrinterName, &valid_);
    }

    // Both validations one after the other, as callers run them.
    struct Reports {
        ValidationReport ofPublicPart;
        ValidationReport ofPrivatePart;
        bool AreAccepted() const { return ofPublicPart.IsAccepted() && ofPrivatePart.IsAccepted(); }
    };
    Reports Check(VelmoraDevMode* devMode) {
        Reports reports;
        host::FailAllocation(0);  // counts from here
        CheckPublicDevMode(printer_.Get(), *model_, &devMode->publicPart, &reports.ofPublicPart);
        const Texts repaired = RepairsOf(reports.ofPublicPart);
        const bool asksThePrinter = std::ranges::any_of(
            repaired, [](const std::string& name) { return name == "dmDriverVersion" || name.starts_with("dmPaper"); });
        EXPECT_TRUE(asksThePrinter || host::AllocationsSoFar() == 0) << testing::PrintToString(repaired);
        if (reports.ofPublicPart.IsAccepted()) {
            host::FailAllocation(0);
            CheckPrivateDevMode(facts_, *model_, &devMode->privatePart, &reports.ofPrivatePart);
            EXPECT_EQ(host::AllocationsSoFar(), 0u);
        }
        return reports;
    }

    // The same on a block of exactly a device mode's size; what is accepted then is a device mode that is accepted as
    // it is.
    bool CheckTwice(const VelmoraDevMode& devMode) {
        const auto block = std::make_unique<VelmoraDevMode>(devMode);
        if (!Check(block.get()).AreAccepted()) {
            return false;
        }
        const VelmoraDevMode once = *block;
        const Reports again = Check(block.get());
        EXPECT_TRUE(again.AreAccepted());
        EXPECT_EQ(RepairsOf(again.ofPublicPart), Texts());
        EXPECT_EQ(RepairsOf(again.ofPrivatePart), Texts());
        EXPECT_EQ(DifferenceLines(once, *block), Texts());
        return true;
    }

    size_t Below(size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(random_); }

    // Another value in a field, mostly one near an end of its valid values or of its type.
    void Damage(VelmoraDevMode* devMode) {
        const size_t chosen = Below(PublicFields().size() + PrivateFields().size());
        const bool isPublic = chosen < PublicFields().size();
        const FieldDescriptor& field =
            isPublic ? PublicFields()[chosen] : PrivateFields()[chosen - PublicFields().size()];
        char* const part =
            isPublic ? reinterpret_cast<char*>(&devMode->publicPart) : reinterpret_cast<char*>(&devMode->privatePart);
        if (field.kind != FieldKind::kUnsigned && field.kind != FieldKind::kSigned) {
            part[field.offset + Below(field.width)] = static_cast<char>(Below(256));
            return;
        }
        std::vector<int64_t> numbers = {0, 1, -1, 3, 9, 256, 0x7FFF, static_cast<int64_t>(Below(0xFFFFFFFF))};
        for (const ValueRange& range : field.accepted) {
            numbers.insert(numbers.end(), {range.low - 1, range.low, range.high, range.high + 1});
        }
        WriteFieldNumber(field, part, Below(field.count), numbers[Below(numbers.size())]);
    }

    PrivateFacts facts_ = {};
    VelmoraDevMode valid_ = {};
    std::minstd_rand random_;  // the same numbers each time
};

TEST_P(DevModeProperties, WhatIsAcceptedIsAcceptedAsItIs) {
    int accepted = 0;
    for (int i = 0; i < kDamaged; ++i) {
        VelmoraDevMode devMode = valid_;
        for (size_t edits = Below(5) + 1; edits > 0; --edits) {
            Damage(&devMode);
        }
        accepted += CheckTwice(devMode);
        ASSERT_FALSE(HasFailure()) << "device mode " << i;
    }
    // Else the damage is too great to say anything.
    EXPECT_GT(accepted, kDamaged / 4);
    EXPECT_LT(accepted, kDamaged);
}

// Only what a private part is known by is left of it, so that the checks go on as far as they can.
TEST_P(DevModeProperties, AnyBytesAreChecked) {
    for (int i = 0; i < kRandom; ++i) {
        VelmoraDevMode devMode;
        auto* const bytes = reinterpret_cast<unsigned char*>(&devMode);
        const size_t zeros = Below(4);  // of four bytes, how many are 0
        std::generate_n(bytes, sizeof(devMode), [&] { return Below(4) < zeros ? 0 : Below(256); });
        if (i % 2 == 0) {
            PrivateDevMode& own = devMode.privatePart;
            own.privateVersion = kPrivateVersion;
            own.privateSignature = kPrivateSignature;
            own.optionAreaOffset = kOptionAreaOffset;
            own.sliceTableOffset = kSliceTableOffset;
            own.exceptionAreaOffset = kExceptionAreaOffset;
            own.extensionMagicA = valid_.privatePart.extensionMagicA;
            own.extensionMagicB = valid_.privatePart.extensionMagicB;
            memcpy(own.descriptionPath, valid_.privatePart.descriptionPath,
                   sizeof(own.descriptionPath) + sizeof(own.settingsFolder));
            devMode.publicPart = valid_.publicPart;
        }
        CheckTwice(devMode);
    }
    // The walk over the exception area, which follows what it finds there.
    facts_.hasPipelineConfig = true;
    for (int i = 0; i < kRandom / 4; ++i) {
        VelmoraDevMode devMode = valid_;
        devMode.privatePart.exceptionCount = static_cast<uint8_t>(Below(5));
        devMode.privatePart.pageListCount = static_cast<uint8_t>(Below(5));
        for (uint8_t& byte : devMode.privatePart.exceptionArea) {
            byte = static_cast<uint8_t>(Below(4));
        }
        CheckTwice(devMode);
        ASSERT_FALSE(HasFailure()) << "exception area " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Models, DevModeProperties, testing::ValuesIn(CompiledModels()), ModelName);

}  // namespace
}  // namespace velmora
