// Runs a fuzz target over files, or all files of folders: PROGRAM FILE_OR_FOLDER...

#include "fuzz/support.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

void Replay(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  std::printf("%s\n", path.filename().c_str());
  std::fflush(stdout); // so that a crash shows its input
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

} // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int i = 1; i < argc; ++i) {
    if (std::filesystem::is_directory(argv[i])) {
      for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
        if (entry.is_regular_file()) {
          Replay(entry.path());
          ++count;
        }
      }
    } else {
      Replay(argv[i]);
      ++count;
    }
  }
  std::printf("%d inputs\n", count);
  return count > 0 ? 0 : 2;
}
