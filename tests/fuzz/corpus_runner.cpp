#include "property.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

/// A target as an ordinary test, for compilers without a fuzzer: every file of the folders that are
/// named, whole and cut short at every byte (at 512 places where it is longer).
///     fuzz_TARGET FOLDER-OR-FILE ...

namespace {
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t mostCuts = 512;

std::string runNow; ///< what is being run, for whoever has to find it again

void sayWhatRan(int /*signal*/)
{
    std::fprintf(stderr, "in %s\n", runNow.c_str());
    std::fflush(stderr);
}

std::vector<std::filesystem::path> filesIn(const std::filesystem::path &path)
{
    if (!std::filesystem::is_directory(path))
        return {path};
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(path)) {
        if (entry.is_regular_file())
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

Bytes readFile(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "cannot read %s\n", path.string().c_str());
        std::exit(2);
    }
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

/// A copy of exactly this size, so that AddressSanitizer sees whoever reads behind it.
void run(const Bytes &whole, std::size_t size, const std::string &name)
{
    runNow = name + ", its first " + std::to_string(size) + " bytes";
    const Bytes input(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    LLVMFuzzerTestOneInput(input.data(), input.size());
}
} // namespace

int main(int argc, char *argv[])
{
    std::signal(SIGABRT, sayWhatRan);
    int files = 0;
    int runs = 0;
    for (int at = 1; at < argc; ++at) {
        for (const std::filesystem::path &path : filesIn(argv[at])) {
            const Bytes whole = readFile(path);
            const std::size_t step = std::max<std::size_t>(1, whole.size() / mostCuts);
            for (std::size_t size = 0; size < whole.size(); size += step, ++runs)
                run(whole, size, path.string());
            run(whole, whole.size(), path.string());
            ++runs;
            ++files;
        }
    }
    std::printf("%d files, %d runs\n", files, runs);
    return files > 0 ? 0 : 1;
}
