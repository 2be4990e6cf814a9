// Runs an entry over inputs without a fuzzer:  fuzz_regression NAME FILE-OR-FOLDER...
// An input that breaks something ends the program by a signal, after its name was said.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <vector>

// Lists every entry as FUZZ_ENTRY(name); written by the build.
#define FUZZ_ENTRY(name) extern "C" int Fuzz_##name(const std::uint8_t* data, std::size_t size);
#include "fuzz_entries.h"
#undef FUZZ_ENTRY

namespace {

using Entry = int (*)(const std::uint8_t*, std::size_t);

Entry FindEntry(std::string_view wanted) {
#define FUZZ_ENTRY(name) \
  if (wanted == #name) { \
    return Fuzz_##name;  \
  }
#include "fuzz_entries.h"
#undef FUZZ_ENTRY
  return nullptr;
}

void RunFile(const std::filesystem::path& path, Entry entry) {
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file),
                                std::istreambuf_iterator<char>()};
  entry(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  const Entry entry = argc > 2 ? FindEntry(argv[1]) : nullptr;
  if (entry == nullptr) {
    std::fputs("usage: fuzz_regression NAME FILE-OR-FOLDER...\n", stderr);
    return 2;
  }
  int count = 0;
  for (int i = 2; i < argc; ++i) {
    if (!std::filesystem::is_directory(argv[i])) {
      RunFile(argv[i], entry);
      ++count;
      continue;
    }
    for (const auto& file : std::filesystem::recursive_directory_iterator(argv[i])) {
      if (file.is_regular_file()) {
        RunFile(file.path(), entry);
        ++count;
      }
    }
  }
  return count > 0 ? 0 : 2;  // Nothing run is nothing tested.
}
