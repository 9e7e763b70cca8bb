#include "memory_files.h"

#include <fstream>
#include <iterator>

namespace posprint::bench {

FileReadResult MemoryFiles::Read(const std::string& terminalPath, std::vector<std::uint8_t>& bytes) {
  auto it = files_.find(terminalPath);
  if (it == files_.end()) {
    std::ifstream file(LocalPath(terminalPath), std::ios::binary);
    if (!file) return FileReadResult::kCannotOpen;
    std::vector<std::uint8_t> content((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    it = files_.emplace(terminalPath, std::move(content)).first;
  }
  bytes = it->second;
  return FileReadResult::kOk;
}

}  // namespace posprint::bench
