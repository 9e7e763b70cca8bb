// Logo files: the drivers name them by the terminal's folder; the host decides which
// local directory stands for it.
#include "platform/logo_files.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <sys/stat.h>

namespace posprint {
namespace {

std::string& Directory() {
  static std::string directory = ".";
  return directory;
}

std::string Slashes(std::string path) {
  for (char& c : path) {
    if (c == '\\') c = '/';
  }
  return path;
}

bool StartsWithIgnoringCase(const std::string& text, const char* prefix) {
  const std::size_t length = std::strlen(prefix);
  if (text.size() < length) return false;
  for (std::size_t i = 0; i < length; ++i) {
    if (std::tolower(static_cast<unsigned char>(text[i])) != std::tolower(static_cast<unsigned char>(prefix[i])))
      return false;
  }
  return true;
}

struct FileCloser {
  void operator()(std::FILE* f) const { std::fclose(f); }
};

}  // namespace

void SetLogoDirectory(const std::string& directory) { Directory() = directory; }
const std::string& LogoDirectory() { return Directory(); }

std::string LocalPath(const std::string& terminalPath) {
  if (!StartsWithIgnoringCase(terminalPath, kTerminalLogoFolder)) return Slashes(terminalPath);
  const std::string rest = Slashes(terminalPath.substr(std::strlen(kTerminalLogoFolder)));
  const std::string& directory = LogoDirectory();
  if (!directory.empty() && directory.back() == '/') return directory + rest;
  return directory + "/" + rest;
}

namespace {
TerminalFileSource* installedSource = nullptr;

FileReadResult ReadLocalFile(const std::string& terminalPath, std::vector<std::uint8_t>& bytes) {
  const std::string path = LocalPath(terminalPath);
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return FileReadResult::kCannotOpen;
  std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
  if (!file) return FileReadResult::kCannotOpen;
  if (std::fseek(file.get(), 0, SEEK_END) != 0) return FileReadResult::kCannotOpen;
  const long size = std::ftell(file.get());
  if (size < 0 || std::fseek(file.get(), 0, SEEK_SET) != 0) return FileReadResult::kCannotOpen;
  try {
    bytes.assign(static_cast<std::size_t>(size), 0);
  } catch (const std::bad_alloc&) {
    bytes.clear();
    return FileReadResult::kNoMemory;
  }
  // A file that shrank meanwhile keeps what could be read.
  const std::size_t got = std::fread(bytes.data(), 1, bytes.size(), file.get());
  bytes.resize(got);
  return FileReadResult::kOk;
}
}  // namespace

void SetTerminalFileSource(TerminalFileSource* source) { installedSource = source; }

FileReadResult ReadTerminalFile(const std::string& terminalPath, std::vector<std::uint8_t>& bytes) {
  return installedSource ? installedSource->Read(terminalPath, bytes) : ReadLocalFile(terminalPath, bytes);
}

}  // namespace posprint
