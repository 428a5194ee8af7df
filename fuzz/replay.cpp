// Runs a fuzz target once on each input of files and folders, in the order of their names, where there is no fuzzer:
// what was found once stays mended. What isn't there is left out: not each target has had findings.
//
// Usage: fuzz_TARGET FILE|FOLDER...
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// What mutators call; none runs here.
extern "C" size_t LLVMFuzzerMutate(uint8_t*, size_t size, size_t) {
    return size;
}

int main(int count, char** arguments) {
    std::vector<fs::path> inputs;
    for (int i = 1; i < count; ++i) {
        const fs::path path = arguments[i];
        if (fs::is_directory(path)) {
            for (const auto& entry : fs::directory_iterator(path)) {
                if (entry.is_regular_file()) {
                    inputs.push_back(entry.path());
                }
            }
        } else if (fs::exists(path)) {
            inputs.push_back(path);
        }
    }
    std::ranges::sort(inputs);
    for (const fs::path& path : inputs) {
        // In memory of just this size, so that no access beyond it goes unseen.
        const size_t size = fs::file_size(path);
        const auto bytes = std::make_unique<uint8_t[]>(size);
        if (!std::ifstream(path, std::ios::binary)
                 .read(reinterpret_cast<char*>(bytes.get()), static_cast<std::streamsize>(size))) {
            fprintf(stderr, "can't read %s\n", path.c_str());
            return 1;
        }
        // Named before it runs: a fault ends the process.
        printf("%s\n", path.c_str());
        fflush(stdout);
        LLVMFuzzerTestOneInput(bytes.get(), size);
    }
    if (inputs.empty()) {
        fprintf(stderr, "no inputs\n");
        return 1;
    }
    return 0;
}
