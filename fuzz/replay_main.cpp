// Runs the fuzzer's input function over files, so that the same code runs in the ordinary and
// the sanitizer builds without libFuzzer: over the installed profiles, hostile inputs and any
// crash input libFuzzer left behind.
//
//     veltrino_fuzz_replay PATH...   (a folder stands for every file below it)
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fs = std::filesystem;

namespace {

bool collect(const fs::path& path, std::vector<fs::path>& files) {
    std::error_code ec;
    if (fs::is_regular_file(path, ec)) {
        files.push_back(path);
        return true;
    }
    if (!fs::is_directory(path, ec))
        return false;
    for (auto it = fs::recursive_directory_iterator(path, ec);
         !ec && it != fs::recursive_directory_iterator(); it.increment(ec))
        if (it->is_regular_file(ec))
            files.push_back(it->path());
    return !ec;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        if (!collect(argv[i], files)) {
            std::fprintf(stderr, "cannot read %s\n", argv[i]);
            return 1;
        }
    }
    // An empty run proves nothing; it usually means the profiles are not installed.
    if (files.empty()) {
        std::fprintf(stderr, "usage: %s PATH...  (no input files found)\n", argv[0]);
        return 1;
    }
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files) {
        std::ifstream in(file, std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
        if (!in.eof() && in.fail()) {
            std::fprintf(stderr, "cannot read %s\n", file.c_str());
            return 1;
        }
        // Named first, so a crash report follows the name of the input that caused it.
        std::fprintf(stderr, "%s (%zu bytes)\n", file.c_str(), bytes.size());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::fprintf(stderr, "replayed %zu inputs\n", files.size());
    return 0;
}
