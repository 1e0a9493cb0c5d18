// Runs a fuzz target over saved inputs, for toolchains without libFuzzer.
// Arguments are files or folders (every regular file directly inside, in name
// order). A failing input aborts inside the target, after its name is printed.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace fs = std::filesystem;

namespace {

bool runFile(const fs::path &path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return false;
    }
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::fprintf(stderr, "running %s (%zu bytes)\n", path.c_str(), bytes.size());
    std::fflush(stderr);
    // A zero-size input still gets a valid pointer, as under libFuzzer.
    static const uint8_t none = 0;
    LLVMFuzzerTestOneInput(bytes.empty() ? &none : reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FILE_OR_FOLDER...\n", argv[0]);
        return 2;
    }
    size_t ran = 0;
    for (int i = 1; i < argc; ++i) {
        const fs::path argument(argv[i]);
        std::error_code error;
        if (fs::is_directory(argument, error)) {
            std::vector<fs::path> files;
            for (const auto &entry : fs::directory_iterator(argument, error)) {
                if (entry.is_regular_file())
                    files.push_back(entry.path());
            }
            if (error) {
                std::fprintf(stderr, "cannot list %s: %s\n", argv[i], error.message().c_str());
                return 1;
            }
            std::sort(files.begin(), files.end());
            for (const fs::path &file : files) {
                if (!runFile(file))
                    return 1;
                ++ran;
            }
        } else if (!runFile(argument)) {
            return 1;
        } else {
            ++ran;
        }
    }
    // An empty or mistyped corpus folder must not pass as a clean run.
    if (ran == 0) {
        std::fprintf(stderr, "no inputs found\n");
        return 1;
    }
    std::fprintf(stderr, "%zu inputs ran without a failure\n", ran);
    return 0;
}
