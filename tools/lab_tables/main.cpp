// Writes the tables of driver/ui/lab_tables.cpp to the standard output.
#include <cstdio>

#include "driver/ui/lab_tables.h"
#include "tools/lab_tables/rendering.h"

int main() {
    using namespace velmora;  // NOLINT(google-build-using-namespace)
    constexpr size_t kNodesOfLine = 9;
    for (size_t baseColor = 1; baseColor <= kBaseColors; ++baseColor) {
        std::puts("{");
        for (const int lightness : kLightnessNodes) {
            for (const int a : kANodes) {
                for (size_t i = 0; i < kLabSteps; ++i) {
                    for (size_t channel = 0; channel < 3; ++channel) {
                        std::printf("%d,", RenderLab(baseColor, channel, lightness, a, kBNodes[i]));
                    }
                    if (i + 1 == kNodesOfLine || i + 1 == kLabSteps) {
                        std::puts("");
                    }
                }
            }
        }
        std::puts("},");
    }
    return std::fflush(stdout) == 0 && !std::ferror(stdout) ? 0 : 1;
}
