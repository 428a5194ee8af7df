#include "tools/xpic/diagnostic.h"

#include <algorithm>
#include <tuple>

namespace velmora {
namespace {

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c;
}

// Edits (insert, delete, replace a byte) that turn one name into the other.
size_t EditDistance(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (size_t i = 1; i <= a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t replaced = diagonal + (Lower(a[i - 1]) != Lower(b[j - 1]));
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row[b.size()];
}

}  // namespace

std::string FormatDiagnostic(const Diagnostic& diagnostic) {
    std::string line = diagnostic.file;
    if (diagnostic.position.line != 0) {
        line.append(":").append(std::to_string(diagnostic.position.line));
        line.append(":").append(std::to_string(diagnostic.position.column));
    }
    return line + ": " + diagnostic.path + ": found " + diagnostic.found + ", expected " + diagnostic.expected;
}

void SortDiagnostics(std::vector<Diagnostic>& diagnostics) {
    std::stable_sort(diagnostics.begin(), diagnostics.end(), [](const Diagnostic& a, const Diagnostic& b) {
        return std::tie(a.file, a.position.line, a.position.column) <
               std::tie(b.file, b.position.line, b.position.column);
    });
}

std::string_view NearestName(std::string_view name, std::span<const std::string_view> candidates) {
    // Names longer than any of a source's own aren't slips of the finger, and comparing them is quadratic.
    constexpr size_t kLongestCompared = 200;
    if (name.size() > kLongestCompared) {
        return {};
    }
    const size_t limit = std::max<size_t>(2, name.size() / 3);
    std::string_view nearest;
    size_t best = limit + 1;
    for (std::string_view candidate : candidates) {
        const size_t gap =
            candidate.size() > name.size() ? candidate.size() - name.size() : name.size() - candidate.size();
        if (gap >= best) {
            continue;
        }
        const size_t distance = EditDistance(name, candidate);
        if (distance < best && distance < std::max(name.size(), candidate.size())) {
            best = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

}  // namespace velmora
