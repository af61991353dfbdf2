// Runs a fuzz target over the files of the folders that it is given.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    std::size_t files = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (!entry.is_regular_file())
                continue;
            std::ifstream in(entry.path(), std::ios::binary);
            const std::string bytes((std::istreambuf_iterator<char>(in)),
                                    std::istreambuf_iterator<char>());
            // Not in a string, so that the sanitizers see the first byte too many.
            const std::unique_ptr<std::uint8_t[]> data(new std::uint8_t[bytes.size()]);
            std::copy(bytes.begin(), bytes.end(), data.get());
            LLVMFuzzerTestOneInput(data.get(), bytes.size());
            ++files;
        }
    }
    std::printf("%zu inputs\n", files);
    return files == 0 ? 1 : 0;
}
