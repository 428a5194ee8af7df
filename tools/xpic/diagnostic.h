// What the compiler has to say about a model source, and how it is printed.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// A place in a source, 1-based; column counts characters, not bytes. 0: the place isn't known.
struct Position {
    size_t line = 0;
    size_t column = 0;
};

// One fault of a source. `found` says what stands at the place, `expected` what belongs there.
struct Diagnostic {
    std::string file;
    Position position;
    std::string path;  // "$.papers[3].widthMm"
    std::string found;
    std::string expected;
};

// "FILE:LINE:COLUMN: PATH: found …, expected …" on one line, without a line end.
std::string FormatDiagnostic(const Diagnostic& diagnostic);

// By file, line and column; faults of one place keep their order.
void SortDiagnostics(std::vector<Diagnostic>& diagnostics);

// The candidate that a mistyped name most likely means, empty when none is near. Case doesn't count.
std::string_view NearestName(std::string_view name, std::span<const std::string_view> candidates);

}  // namespace velmora
