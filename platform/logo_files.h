// The terminal keeps logos in one folder; on this platform it stands for a directory
// chosen by the host.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace posprint {

// The terminal's logo folder as the drivers name it.
constexpr const char* kTerminalLogoFolder = "\\FlashDisk\\Extern\\Customized\\BWLogos\\";

// The directory that stands for the terminal's logo folder ("." until the host sets one).
void SetLogoDirectory(const std::string& directory);
const std::string& LogoDirectory();

// Maps a terminal path (kTerminalLogoFolder + name) to the local file system.
std::string LocalPath(const std::string& terminalPath);

enum class FileReadResult { kOk, kCannotOpen, kNoMemory };
// Reads a whole file named by its terminal path (through the installed source, below).
FileReadResult ReadTerminalFile(const std::string& terminalPath, std::vector<std::uint8_t>& bytes);

// Where the terminal's files come from: the local file system under LogoDirectory(),
// unless a host keeps its logos elsewhere (read once into memory, in a package) and
// installs a source of its own.
class TerminalFileSource {
 public:
  virtual ~TerminalFileSource() = default;
  virtual FileReadResult Read(const std::string& terminalPath, std::vector<std::uint8_t>& bytes) = 0;
};
// Installs source (not owned); nullptr goes back to the file system.
void SetTerminalFileSource(TerminalFileSource* source);

}  // namespace posprint
