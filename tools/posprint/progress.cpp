#include "progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "platform/diagnostics.h"

namespace posprint::host {
namespace {

bool IsCheck(const std::string& name) {
  static const char kCheck[] = "CHECK";
  if (name.size() != sizeof kCheck - 1) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    char c = name[i];
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    if (c != kCheck[i]) return false;
  }
  return true;
}

std::string BaseName(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Columns of the terminal behind `file`; 80 when it does not say.
std::size_t TerminalColumns(std::FILE* file) {
  winsize size{};
  if (::ioctl(::fileno(file), TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  return 80;
}

}  // namespace

bool ProgressWanted(bool json) { return !json && ::isatty(STDERR_FILENO) == 1; }

Progress::Progress(std::FILE* terminal, bool enabled, std::size_t jobCount)
    : terminal_(terminal), enabled_(enabled), jobCount_(jobCount), bytesAtStart_(posprint::BytesWritten()) {}

void Progress::StartJob(std::size_t index, const std::string& path, std::size_t commandCount) {
  job_ = index;
  path_ = BaseName(path);
  commandCount_ = commandCount;
  command_ = 0;
  label_.clear();
  Draw();
}

void Progress::Running(std::size_t number, const std::string& label) {
  command_ = number;
  label_ = label;
  Draw();
}

void Progress::Done(const CommandResult& result) {
  if (IsCheck(result.name)) lastStatus_ = result.ok ? 100 : (result.errors.empty() ? 0 : result.errors.back());
  Draw();
}

std::string Progress::Line() const {
  const std::uint64_t bytes = posprint::BytesWritten() - bytesAtStart_;
  std::string line = "job " + std::to_string(job_) + " of " + std::to_string(jobCount_) + " (" + path_ + "): command " +
                     std::to_string(command_) + " of " + std::to_string(commandCount_);
  if (!label_.empty()) line += " " + label_;
  return line + ", " + std::to_string(bytes) + " bytes sent, last status " +
         (lastStatus_ < 0 ? std::string("-") : std::to_string(lastStatus_));
}

void Progress::Clear() {
  if (!enabled_ || !drawn_) return;
  // CR, then erase to the end of the line.
  std::fputs("\r\033[K", terminal_);
  std::fflush(terminal_);
  drawn_ = false;
}

void Progress::Draw() {
  if (!enabled_) return;
  std::string line = Line();
  // One column short of the width: a line that filled it would wrap, and CR would then
  // go back only to the start of the second row.
  const std::size_t columns = TerminalColumns(terminal_);
  if (line.size() >= columns) line.resize(columns > 1 ? columns - 1 : 0);
  std::fprintf(terminal_, "\r\033[K%s", line.c_str());
  std::fflush(terminal_);
  drawn_ = true;
}

}  // namespace posprint::host
