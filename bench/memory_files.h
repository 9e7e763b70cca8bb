// The terminal's logo folder held in memory: each file is read from disk the first time
// a driver asks for it, and handed out from memory afterwards, so that a benchmark times
// the driver, not the file system.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/logo_files.h"

namespace posprint::bench {

class MemoryFiles : public TerminalFileSource {
 public:
  FileReadResult Read(const std::string& terminalPath, std::vector<std::uint8_t>& bytes) override;

 private:
  std::map<std::string, std::vector<std::uint8_t>> files_;
};

}  // namespace posprint::bench
