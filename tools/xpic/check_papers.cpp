// Papers, custom sizes and margins.
#include <algorithm>

#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/offered_papers.h"
#include "tools/xpic/model_checker.h"
#include "tools/xpic/model_limits.h"
#include "tools/xpic/source_document.h"

namespace velmora {
namespace {

// Ids by which PCL models name papers beside their own: 511 and down for those with a negative pclSizeCode in their
// order, 512 + code for the others.
constexpr int kLastCardId = 511;
constexpr int kPclCodeBase = 512;

constexpr int kFirstQuietId = 600;  // where there are hardly as many custom sizes

constexpr int kOrientations[] = {1, 2};

const char* NameOfOrientation(int orientation) {
    return orientation == 1 ? "portrait" : "landscape";
}

// A largest custom size of 0 is no limit.
int LargestOf(uint16_t limit) {
    return limit != 0 ? limit : INT16_MAX;
}

std::string InMillimetres(int tenths) {
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " mm";
}

bool IsWithin(const MarginRecord& record, int width, int length) {
    return width >= record.minWidth && width <= record.maxWidth && length >= record.minLength &&
           length <= record.maxLength;
}

struct Limits {
    int min;
    int max;
};

// The sizes just outside a record's limits, where they are inside the model's.
void AddNeighbours(std::set<int>& sizes, Limits model, int recordMin, int recordMax) {
    for (int size : {recordMin - 1, recordMax + 1}) {
        if (size > model.min && size < model.max) {
            sizes.insert(size);
        }
    }
}

}  // namespace

size_t ModelChecker::FindPaper(int id) const {
    int cards = 0;
    for (size_t i = 0; i < model_.papers.size(); ++i) {
        const PaperSource& paper = model_.papers[i];
        const bool isCard = paper.pclSizeCode < 0;
        if (paper.id == id || (IsPcl() && id < kPclCodeBase && isCard && id == kLastCardId - cards) ||
            (IsPcl() && id > kPclCodeBase && paper.pclSizeCode == id - kPclCodeBase)) {
            return i;
        }
        cards += isCard ? 1 : 0;
    }
    return model_.papers.size();
}

size_t ModelChecker::FindMargins(int id, Size size, int orientation) const {
    const auto holds = [&](const MarginRecord& record) {
        return (record.orientationMask & orientation) != 0 &&
               (id < kFirstOwnPaperId ? ContainsPaper(record.papers, id)
                                      : ContainsPaper(record.papers, 0) && IsWithin(record, size.width, size.length));
    };
    return static_cast<size_t>(std::find_if(model_.margins.begin(), model_.margins.end(), holds) -
                               model_.margins.begin());
}

void ModelChecker::CheckCustomSizes() {
    const DeviceModel& device = model_.device;
    const std::string path = "$.customSizes";
    if (!HasCustomSizes()) {
        Report("no-paper-page", path,
               device.customMaxWidth == device.customMaxLength ? "there are no custom sizes"
                                                               : "custom sizes have one largest size only");
        return;
    }
    // A size without margins, if there is one, is also found at the limits of the model or just beyond those of a
    // record. Models with more records than any has are tried at their own limits only.
    constexpr size_t kMostRecords = 100;
    const Limits width = {device.customMinWidth, std::min<int>(device.customMaxWidth, INT16_MAX)};
    const Limits length = {device.customMinLength, std::min<int>(device.customMaxLength, INT16_MAX)};
    std::set<int> widths = {width.min, width.max};
    std::set<int> lengths = {length.min, length.max};
    for (size_t i = 0; i < model_.margins.size() && model_.margins.size() <= kMostRecords; ++i) {
        const MarginRecord& record = model_.margins[i];
        if (ContainsPaper(record.papers, 0)) {
            AddNeighbours(widths, width, record.minWidth, record.maxWidth);
            AddNeighbours(lengths, length, record.minLength, record.maxLength);
        }
    }
    for (int orientation : kOrientations) {
        bool all = true;
        for (int w : widths) {
            for (int l : lengths) {
                all &= FindMargins(kFirstCustomId, {w, l}, orientation) < model_.margins.size();
            }
        }
        if (!all) {
            Report("paper-without-margins", path,
                   std::string("some custom sizes have no margins in ") + NameOfOrientation(orientation));
        }
    }
}

void ModelChecker::CheckPaperId(size_t position, const std::string& path) {
    const PaperSource& paper = model_.papers[position];
    const std::string idPath = path + ".id";
    const std::string called = Called(paper) + " has the id " + std::to_string(paper.id);
    const size_t found = FindPaper(paper.id);
    const auto cards = std::count_if(model_.papers.begin(), model_.papers.begin() + static_cast<ptrdiff_t>(position),
                                     [](const PaperSource& earlier) { return earlier.pclSizeCode < 0; });
    const bool isCard = paper.pclSizeCode < 0;
    const bool hasCardId = IsPcl() && isCard && paper.id == kLastCardId - cards;
    if (paper.id >= kFirstOwnPaperId && paper.id < kFirstCustomId) {
        Report("paper-id-not-looked-up", idPath, called + ", one of 256 to 447");
    } else if (found != position) {
        const PaperSource& other = model_.papers[found];
        if (other.id == paper.id) {
            Report("paper-id-twice", idPath, called + " of " + Called(other));
        } else {
            Report("paper-shadowed", idPath, called + ", which also stands for " + Called(other));
        }
    } else if (paper.id >= kFirstCustomId && paper.id < kFirstQuietId && !hasCardId) {
        Report("paper-id-shared", idPath, called + ", below " + std::to_string(kFirstQuietId));
    }
    if (isCard && !IsPcl()) {
        Report("card-unused", path + ".pclSizeCode",
               Called(paper) + " is marked as a size that the printer doesn't know");
    } else if (isCard && !hasCardId) {
        Report("card-id", idPath, called + " and, as a card, " + std::to_string(kLastCardId - cards));
    }
}

void ModelChecker::CheckPaperSize(const PaperSource& paper, const std::string& path) {
    const DeviceModel& device = model_.device;
    const int maxWidth = LargestOf(device.customMaxWidth);
    const int maxLength = LargestOf(device.customMaxLength);
    const int smallest = std::min(device.customMinWidth, device.customMinLength);
    const int largest = std::max(maxWidth, maxLength);
    const auto fits = [](int value, int min, int max) { return value >= min && value <= max; };
    const std::string size = Called(paper) + ", " + InMillimetres(paper.width) + " by " + InMillimetres(paper.length);
    if (!fits(paper.width, smallest, largest) || !fits(paper.length, smallest, largest)) {
        Report("paper-outside-limits", path,
               size + ", has a side that isn't from " + InMillimetres(smallest) + " to " + InMillimetres(largest));
    } else if (!fits(paper.width, device.customMinWidth, maxWidth) ||
               !fits(paper.length, device.customMinLength, maxLength)) {
        Report("paper-not-custom", path, size + ", isn't within the limits of custom sizes");
    }
    if (paper.fitPaperId == 0) {
        return;
    }
    const std::string fitPath = path + ".fit";
    const size_t target = FindPaper(paper.fitPaperId);
    if (target == model_.papers.size()) {
        Report("fit-target", fitPath, "no paper has the id " + std::to_string(paper.fitPaperId));
    } else if (paper.fitPaperId == paper.id) {
        Report("fit-target", fitPath, Called(paper) + " is scaled onto itself");
    } else if (!fits(model_.papers[target].width, device.customMinWidth, maxWidth) ||
               !fits(model_.papers[target].length, device.customMinLength, maxLength)) {
        Report("fit-target", fitPath, Called(model_.papers[target]) + " isn't within the limits of custom sizes");
    }
}

void ModelChecker::CheckPaperMargins(const PaperSource& paper, const std::string& path) {
    if (paper.id >= kFirstOwnPaperId && paper.id < kFirstCustomId) {
        return;  // told with its id
    }
    for (int orientation : kOrientations) {
        const size_t position = FindMargins(paper.id, {paper.width, paper.length}, orientation);
        const std::string where = std::string(" in ") + NameOfOrientation(orientation);
        if (position == model_.margins.size()) {
            Report("paper-without-margins", path, Called(paper) + " has no margins" + where);
            continue;
        }
        const MarginRecord& margins = model_.margins[position];
        constexpr int64_t kTenthsPerInch = 254;
        const auto isUsedUp = [&](int64_t side, int64_t first, int64_t second) {
            return side * margins.unit <= (first + second) * kTenthsPerInch;
        };
        if (isUsedUp(paper.width, margins.leftMargin, margins.rightMargin) ||
            isUsedUp(paper.length, margins.topMargin, margins.bottomMargin)) {
            Report("margins-leave-nothing", path, "the margins leave nothing of " + Called(paper) + where);
        }
    }
}

void ModelChecker::CheckPapers() {
    if (model_.papers.empty()) {
        Report("no-papers", "$.papers", "there are no papers");
        return;
    }
    if (FindPaper(kA4) == model_.papers.size()) {
        Report("no-a4", "$.papers", "there is no A4");
    }
    List list;
    for (size_t i = 0; i < model_.papers.size(); ++i) {
        const std::string path = ElementPath("$.papers", i);
        CheckRecord(model_.papers[i], path, list, Ticket::kNeedsKeyword);
        CheckPaperId(i, path);
        CheckPaperSize(model_.papers[i], path);
        CheckPaperMargins(model_.papers[i], path);
    }
}

std::string ModelChecker::MarginPath(size_t record) const {
    return ElementPath("$.margins", model_.marginElements.empty() ? record : model_.marginElements[record]);
}

std::set<size_t> ModelChecker::UsedMargins() const {
    std::set<size_t> used;
    for (const OfferedPaper& paper : kOfferedPapers) {
        for (int orientation : kOrientations) {
            used.insert(FindMargins(paper.paperId, {}, orientation));
        }
    }
    for (const PaperSource& paper : model_.papers) {
        for (int orientation : kOrientations) {
            used.insert(FindMargins(paper.id, {paper.width, paper.length}, orientation));
        }
    }
    if (!HasCustomSizes()) {
        return used;
    }
    // For custom sizes: what a record can be found for is not all in one earlier record.
    const DeviceModel& device = model_.device;
    for (size_t i = 0; i < model_.margins.size(); ++i) {
        const MarginRecord& record = model_.margins[i];
        const int minWidth = std::max<int>(record.minWidth, device.customMinWidth);
        const int maxWidth = std::min<int>(record.maxWidth, device.customMaxWidth);
        const int minLength = std::max<int>(record.minLength, device.customMinLength);
        const int maxLength = std::min<int>(record.maxLength, device.customMaxLength);
        if (!ContainsPaper(record.papers, 0) || minWidth > maxWidth || minLength > maxLength) {
            continue;
        }
        for (int orientation : kOrientations) {
            const auto covers = [&](const MarginRecord& earlier) {
                return ContainsPaper(earlier.papers, 0) && (earlier.orientationMask & orientation) != 0 &&
                       IsWithin(earlier, minWidth, minLength) && IsWithin(earlier, maxWidth, maxLength);
            };
            if ((record.orientationMask & orientation) != 0 &&
                std::none_of(model_.margins.begin(), model_.margins.begin() + static_cast<ptrdiff_t>(i), covers)) {
                used.insert(i);
            }
        }
    }
    return used;
}

void ModelChecker::CheckMargins() {
    // An element of a source makes several records; it is of use when one of them is.
    const std::set<size_t> used = UsedMargins();
    std::set<std::string> usedPaths;
    for (size_t record : used) {
        if (record < model_.margins.size()) {
            usedPaths.insert(MarginPath(record));
        }
    }
    std::string last;
    for (size_t i = 0; i < model_.margins.size(); ++i) {
        const std::string path = MarginPath(i);
        if (path != last && usedPaths.count(path) == 0) {
            Report("margins-never-used", path, "these margins are never used");
        }
        last = path;
    }
}

}  // namespace velmora
