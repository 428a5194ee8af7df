#include "bench/call_tables.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "bench/generated_model.h"

namespace velmora {
namespace {

constexpr const char* kGroupNames[] = {
    "the model",       "device modes",   "capabilities",
    "print tickets",   "jobs",           "installation",
    "property sheets", "model compiler", "beside CUPS' PPD library",
};

constexpr double kNanosecondsPerMicrosecond = 1000;

// Microseconds; not a number where the work hasn't run.
double TimeOf(const Times& times, const std::string& work) {
    return times.at(work) / kNanosecondsPerMicrosecond;
}

// In three figures or more, the unit aligned.
std::string TimeText(double microseconds) {
    char text[32];
    constexpr double kMillisecond = 1000;
    constexpr double kMostMicroseconds = 10 * kMillisecond;
    const bool isLong = microseconds >= kMostMicroseconds;
    const double value = isLong ? microseconds / kMillisecond : microseconds;
    std::snprintf(text, sizeof(text), "%.*f %s", value < 10 ? 2 : value < 100 ? 1 : 0, value, isLong ? "ms" : "us");
    return text;
}

std::string RatioText(double ratio) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.*f x", ratio < 0.1 ? 4 : ratio < 100 ? 2 : 0, ratio);
    return text;
}

std::string LimitText(const CallLimit& limit) {
    switch (limit.kind) {
        case CallLimit::kRatio:
            return RatioText(limit.most);
        case CallLimit::kMicroseconds:
            return TimeText(limit.most);
        default:
            return "-";
    }
}

bool IsKept(const CallLimit& limit, double time, double ratio) {
    return limit.kind == CallLimit::kNone || (limit.kind == CallLimit::kRatio ? ratio : time) <= limit.most;
}

}  // namespace

bool CallTables::Print(const Times& times) const {
    const bool calls = PrintCalls(times);
    return PrintGrowth(times) && calls;
}

bool CallTables::PrintCalls(const Times& times) const {
    std::vector<CallRow> rows;
    std::ranges::copy_if(calls_, std::back_inserter(rows), [&](const CallRow& row) {
        return times.Has(row.work) && (row.floorWork.empty() || times.Has(row.floorWork));
    });
    std::ranges::stable_sort(rows, {}, &CallRow::group);
    std::printf("\n  %-52s %10s   %-30s %10s %9s %9s\n", "call", "time", "beside", "time", "ratio", "at most");
    bool holds = true;
    for (size_t i = 0; i < rows.size(); ++i) {
        const CallRow& row = rows[i];
        if (i == 0 || rows[i - 1].group != row.group) {
            std::printf("%s\n", kGroupNames[static_cast<size_t>(row.group)]);
        }
        const double time = TimeOf(times, row.work);
        const double floorTime = TimeOf(times, row.floorWork);
        const double ratio = floorTime > 0 ? time / floorTime : 0;
        const bool isKept = IsKept(row.limit, time, ratio);
        std::printf("  %-52s %10s   %-30s %10s %9s %9s%s\n", row.call.c_str(), TimeText(time).c_str(),
                    row.floorWork.empty() ? "-" : row.floor.c_str(),
                    row.floorWork.empty() ? "" : TimeText(floorTime).c_str(),
                    row.floorWork.empty() ? "" : RatioText(ratio).c_str(), LimitText(row.limit).c_str(),
                    isKept ? "" : "  ABOVE");
        holds &= isKept;
    }
    return holds;
}

bool CallTables::PrintGrowth(const Times& times) const {
    std::printf("\n  %-52s", "growth, papers:");
    for (const ModelExtent& extent : kTenfolds) {
        std::printf(" %10d", extent.papers);
    }
    std::printf("   most of a tenfold, at most %.0f x\n", kMostTenfold);
    bool holds = true;
    for (const GrowthRow& row : growths_) {
        if (!std::ranges::all_of(row.works, [&](const std::string& work) { return times.Has(work); })) {
            continue;
        }
        std::printf("  %-52s", row.call.c_str());
        double most = 0;
        double before = 0;
        for (const std::string& work : row.works) {
            const double time = TimeOf(times, work);
            std::printf(" %10s", TimeText(time).c_str());
            most = before > 0 ? std::max(most, time / before) : 0;
            before = time;
        }
        const bool isKept = !row.isJudged || most <= kMostTenfold;
        std::printf("   %s%s\n", RatioText(most).c_str(), isKept ? "" : "  ABOVE");
        holds &= isKept;
    }
    return holds;
}

}  // namespace velmora
