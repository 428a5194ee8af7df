// Every export in many situations, with every allocation and every call of the platform made to fail in turn: nothing
// crashes, nothing stays open, and of what is stored each piece is as it was or as it was to become.
#include <gtest/gtest.h>
#include <objbase.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>

#include "driver/entry/driver_interface.h"
#include "platform/kernel/faults.h"
#include "tests/sweep/works.h"

namespace sweep_test {
namespace {

// At most so many failures of a work; 0: all. The tests make some, a command of its own makes more.
size_t MostPoints(const Work& work) {
    const char* const given = std::getenv("VELMORA_SWEEP_POINTS");
    return given ? std::strtoull(given, nullptr, 10) : work.isSlow ? 6 : 40;
}

// Calls that aren't made to fail: those that close something, since what they don't close stays open by nobody's fault;
// the host's own of a sheet; and those that fail as allocations do.
constexpr std::string_view kSpared[] = {"ClosePrinter",    "CloseClipboard", "DestroyPropertySheetPage",
                                        "PropertySheetW",  "CoTaskMemAlloc", "HeapAlloc",
                                        "UnregisterClassW"};

// After these, what is stored may be something else: what can't be read is taken for missing, a value of an INI file or
// a text of a module, and a file that can't be deleted stays.
constexpr std::string_view kLeaveMore[] = {"DeleteFileW", "GetPrivateProfileIntW", "GetPrivateProfileSectionW",
                                           "GetPrivateProfileStringW", "LoadStringW"};

// Pieces that have a fallback where something can't be read: the built-in watermarks are in the language that there is
// a module of, and an installation stores what it knows of the model.
constexpr struct {
    std::string_view exportName;  // empty: any
    std::string_view part;        // of the piece's name
} kFallbacks[] = {{"", "[Watermarks]WM"},
                  {"", "[Watermarks]Language"},
                  {"DrvPrinterEvent", "data BasePDFSize"},
                  {"DrvPrinterEvent", "data ColorData"},
                  {"DrvPrinterEvent", "data DeviceInfo"}};

bool HasFallback(std::string_view exportName, const std::string& place) {
    return std::ranges::any_of(kFallbacks, [&](const auto& fallback) {
        return (fallback.exportName.empty() || fallback.exportName == exportName) &&
               place.find(fallback.part) != std::string::npos;
    });
}

// A failure: of an allocation, or of a call where one is named.
struct Point {
    std::string call;
    uint64_t nth = 0;
};

std::ostream& operator<<(std::ostream& stream, const Point& point) {
    return stream << (point.call.empty() ? "allocation" : point.call) << ' ' << point.nth;
}

using Counts = std::map<std::string, uint64_t>;  // by call; the empty name: allocations

Counts CountsSoFar() {
    Counts counts = {{"", host::AllocationsSoFar()}};
    for (const std::string& call : host::CallsMade()) {
        if (std::ranges::find(kSpared, call) == std::end(kSpared)) {
            counts[call] = host::CallsSoFar(call);
        }
    }
    return counts;
}

// No more than `most` failures of what there is, each call as often as the others as far as it is made, spread over
// the work. Where even one of each is too many, which ones there are depends on `seed`.
std::vector<Point> ChoosePoints(const Counts& counts, size_t most, size_t seed) {
    const auto sum = [&](uint64_t limit) {
        uint64_t total = 0;
        for (const auto& [call, count] : counts) {
            total += std::min(count, limit);
        }
        return total;
    };
    uint64_t limit = 1;
    while ((most == 0 || sum(limit + 1) <= most) && sum(limit + 1) > sum(limit)) {
        ++limit;
    }
    std::vector<Point> points;
    for (const auto& [call, count] : counts) {
        const uint64_t chosen = std::min(count, limit);
        for (uint64_t i = 0; i < chosen; ++i) {
            points.push_back({call, (2 * i + 1) * count / (2 * chosen) + 1});
        }
    }
    const size_t stride = most == 0 ? 1 : std::max<size_t>(1, (points.size() + most - 1) / most);
    std::vector<Point> taken;
    for (size_t i = seed % stride; i < points.size(); i += stride) {
        taken.push_back(points[i]);
    }
    return taken;
}

// A connection's marker lasts as long as the process.
std::vector<std::string> StillOpen() {
    std::vector<std::string> open = host::StillOpen();
    std::erase_if(open, [](const std::string& line) { return line.starts_with("semaphore //"); });
    return open;
}

// Whether a piece is in both or in none, and the same.
bool IsSame(const std::string& place, const StoredPieces& a, const StoredPieces& b) {
    const auto inA = a.find(place);
    const auto inB = b.find(place);
    return inA == a.end() || inB == b.end() ? (inA == a.end()) == (inB == b.end()) : inA->second == inB->second;
}

// The pieces that are neither as they were nor as they were to become, a line each, but for those with a fallback.
std::string OtherPieces(std::string_view exportName, const StoredPieces& now, const StoredPieces& before,
                        const StoredPieces& after) {
    StoredPieces pieces = now;
    pieces.insert(before.begin(), before.end());
    pieces.insert(after.begin(), after.end());
    std::string lines;
    for (const auto& [place, content] : pieces) {
        if (!HasFallback(exportName, place) && !IsSame(place, now, before) && !IsSame(place, now, after)) {
            lines += place + ": " + (now.contains(place) ? content : "gone") + '\n';
        }
    }
    return lines;
}

class Sweep : public testing::TestWithParam<size_t> {
  protected:
    // The whole work over what was stored at first, with this failure; null: none. What it asked for.
    Counts Run(const Point* point = nullptr) {
        machine_.Restore();
        if (work_.before) {
            work_.before(machine_);
        }
        const Counts earlier = CountsSoFar();
        host::FailAllocation(point && point->call.empty() ? point->nth : 0);
        if (point && !point->call.empty()) {
            host::FailCall(point->call, ERROR_ACCESS_DENIED, point->nth);
        }
        work_.run(machine_);
        Counts counts = CountsSoFar();
        host::ClearFaults();
        for (auto& [call, count] : counts) {
            const auto found = earlier.find(call);
            count -= found != earlier.end() && !call.empty() ? found->second : 0;
        }
        if (work_.after) {
            work_.after(machine_);
        }
        return counts;
    }

    const Work& work_ = Works()[GetParam()];
    SweepMachine machine_{work_.model, work_.hasStoredSettings};
};

TEST_P(Sweep, EveryFailure) {
    const StoredPieces before = machine_.Stored();
    // Once more than to count: what the machine keeps from its first use is there then.
    Run();
    const std::vector<std::string> open = StillOpen();
    const Counts counts = Run();
    const StoredPieces after = machine_.Stored();
    const std::vector<Point> points = ChoosePoints(counts, MostPoints(work_), GetParam());
    for (const Point& point : points) {
        SCOPED_TRACE(point);
        ASSERT_GE(Run(&point)[point.call], point.nth) << "the work isn't the same each time";
        ASSERT_EQ(StillOpen(), open);
        ASSERT_EQ(DllCanUnloadNow(), S_OK);
        if (std::ranges::find(kLeaveMore, point.call) == std::end(kLeaveMore)) {
            EXPECT_EQ(OtherPieces(work_.exportName, machine_.Stored(), before, after), "");
        }
    }
    uint64_t all = 0;
    for (const auto& [call, count] : counts) {
        all += count;
    }
    std::printf("swept %s (%s): %zu of %zu failures\n", work_.exportName, work_.situation, points.size(),
                static_cast<size_t>(all));
}

INSTANTIATE_TEST_SUITE_P(Exports, Sweep, testing::Range(size_t{0}, Works().size()), [](const auto& info) {
    const Work& work = Works()[info.param];
    std::string name = std::string(work.exportName) + '_' + work.situation;
    std::ranges::replace_if(
        name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

}  // namespace
}  // namespace sweep_test
