// Runs a fuzz target over saved inputs, for toolchains without libFuzzer. Arguments are files
// or folders (every regular file directly inside, in name order). A failing input aborts
// inside the target, after its name is printed.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace fs = std::filesystem;

int main(int argc, char **argv)
{
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        std::error_code error;
        if (!fs::is_directory(argv[i], error)) {
            inputs.emplace_back(argv[i]);
            continue;
        }
        std::vector<fs::path> files;
        for (const auto &entry : fs::directory_iterator(argv[i], error)) {
            if (entry.is_regular_file())
                files.push_back(entry.path());
        }
        std::sort(files.begin(), files.end());
        inputs.insert(inputs.end(), files.begin(), files.end());
    }
    // An empty or mistyped corpus folder must not pass as a clean run.
    if (inputs.empty()) {
        std::fprintf(stderr, "usage: %s FILE_OR_FOLDER...: no inputs found\n", argv[0]);
        return 1;
    }
    for (const fs::path &path : inputs) {
        std::ifstream in(path, std::ios::binary);
        if (!in) {
            std::fprintf(stderr, "cannot read %s\n", path.c_str());
            return 1;
        }
        const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        std::fprintf(stderr, "running %s (%zu bytes)\n", path.c_str(), bytes.size());
        std::fflush(stderr);
        // A zero-size input still gets a valid pointer, as under libFuzzer.
        static const uint8_t none = 0;
        LLVMFuzzerTestOneInput(bytes.empty() ? &none : reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
    }
    std::fprintf(stderr, "%zu inputs ran without a failure\n", inputs.size());
    return 0;
}
