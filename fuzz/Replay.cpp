// Feeds every file of the given folders to the fuzz target once: the corpus as an ordinary test.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    int files = 0;
    for (int i = 1; i < argc; ++i)
        for (const auto& item : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (!item.is_regular_file()) continue;
            std::ifstream in(item.path(), std::ios::binary);
            std::string bytes{std::istreambuf_iterator<char>(in), {}};
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
            ++files;
        }
    std::printf("%d passed, 0 failed\n", files);
    return files > 0 ? 0 : 1;
}
