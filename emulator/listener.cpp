// A virtual printer for other programs, on a pseudo-terminal or a TCP port, for
// `posprint emulate`. Whatever arrives goes to the printer; its answers go straight
// back; each finished ticket or label is written to the preview directory.
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "emulator/png_file.h"
#include "emulator/virtual_printer.h"

namespace posprint::emulator {
namespace {

constexpr int kPollMs = 100;
constexpr int kQuietBeforeSnapshotMs = 500;  // the unfinished print is saved after this much quiet

class Fd {
 public:
  explicit Fd(int fd = -1) : fd_(fd) {}
  ~Fd() { Reset(); }
  Fd(const Fd&) = delete;
  Fd& operator=(const Fd&) = delete;
  int Get() const { return fd_; }
  void Reset(int fd = -1) {
    if (fd_ >= 0) ::close(fd_);
    fd_ = fd;
  }

 private:
  int fd_;
};

bool WriteAll(int fd, const std::string& bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += static_cast<std::size_t>(n);
  }
  return true;
}

// What one finished print is called in file names and the log.
const char* KindOfPrint(Language language) {
  switch (language) {
    case Language::kZpl:
    case Language::kItalora: return "label";
    case Language::kEscP: return "page";
    default: return "ticket";
  }
}

// Keeps the preview directory up to date with what the printer printed.
class PreviewWriter {
 public:
  PreviewWriter(const VirtualPrinter& printer, std::string directory,
                const std::function<void(const std::string&)>& log)
      : printer_(printer), directory_(std::move(directory)), log_(log),
        kind_(KindOfPrint(printer.Profile().language)) {}

  void PagesDone() {
    while (written_ < printer_.FinishedPages()) {
      char name[64];
      std::snprintf(name, sizeof name, "/%s-%04d.png", kind_, written_ + 1);
      // Each ticket (up to its cut) or label (up to ^XZ) is announced as it comes out.
      if (directory_.empty()) Log(std::string(kind_) + " " + std::to_string(written_ + 1) + " printed");
      else Save(printer_.Page(written_), directory_ + name);
      ++written_;
    }
    while (notesShown_ < printer_.PrinterNotes().List().size()) Log("note: " + printer_.PrinterNotes().List()[notesShown_++]);
  }

  // What hangs out of the printer, not yet cut off.
  void Snapshot() {
    const Image unfinished = printer_.Unfinished();
    if (directory_.empty() || unfinished.Empty()) return;
    std::string error;
    if (!WritePng(unfinished, directory_ + "/current.png", &error)) Log("preview: " + error);
  }

 private:
  void Save(const Image& page, const std::string& path) {
    if (directory_.empty()) return;
    std::string error;
    if (WritePng(page, path, &error)) Log("printed " + path);
    else Log("preview: " + error);
  }
  void Log(const std::string& line) {
    if (log_) log_(line);
  }

  const VirtualPrinter& printer_;
  std::string directory_;
  const std::function<void(const std::string&)>& log_;
  const char* kind_;
  int written_ = 0;
  std::size_t notesShown_ = 0;
};

bool OpenPty(const std::string& link, Fd* master, Fd* keeper, std::string* name, std::string* error) {
  master->Reset(::posix_openpt(O_RDWR | O_NOCTTY));
  if (master->Get() < 0 || ::grantpt(master->Get()) != 0 || ::unlockpt(master->Get()) != 0) {
    *error = std::string("cannot make a pseudo-terminal: ") + std::strerror(errno);
    return false;
  }
  const char* slave = ::ptsname(master->Get());
  if (!slave) {
    *error = "cannot name the pseudo-terminal";
    return false;
  }
  *name = slave;
  // Holding the other side open keeps reads from failing while no program has it open.
  keeper->Reset(::open(slave, O_RDWR | O_NOCTTY));
  termios raw {};
  if (keeper->Get() >= 0 && ::tcgetattr(keeper->Get(), &raw) == 0) {
    ::cfmakeraw(&raw);
    ::tcsetattr(keeper->Get(), TCSANOW, &raw);
  }
  if (!link.empty()) {
    ::unlink(link.c_str());
    if (::symlink(slave, link.c_str()) != 0) {
      *error = "cannot make the link " + link + ": " + std::strerror(errno);
      return false;
    }
    *name = link;
  }
  return true;
}

bool OpenTcp(const std::string& address, Fd* listener, std::string* name, std::string* error) {
  const std::size_t colon = address.rfind(':');
  if (colon == std::string::npos) {
    *error = "tcp:HOST:PORT expected, got tcp:" + address;
    return false;
  }
  const std::string host = address.substr(0, colon), port = address.substr(colon + 1);
  addrinfo hints {};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_PASSIVE;
  addrinfo* found = nullptr;
  if (::getaddrinfo(host.empty() ? nullptr : host.c_str(), port.c_str(), &hints, &found) != 0 || !found) {
    *error = "cannot resolve " + address;
    return false;
  }
  listener->Reset(::socket(found->ai_family, found->ai_socktype, 0));
  const int yes = 1;
  const bool ok = listener->Get() >= 0 &&
                  ::setsockopt(listener->Get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) == 0 &&
                  ::bind(listener->Get(), found->ai_addr, found->ai_addrlen) == 0 && ::listen(listener->Get(), 1) == 0;
  ::freeaddrinfo(found);
  if (!ok) {
    *error = "cannot listen on tcp:" + address + ": " + std::strerror(errno);
    return false;
  }
  sockaddr_in bound {};
  socklen_t length = sizeof bound;
  ::getsockname(listener->Get(), reinterpret_cast<sockaddr*>(&bound), &length);
  *name = "tcp:" + (host.empty() ? std::string("0.0.0.0") : host) + ":" + std::to_string(ntohs(bound.sin_port));
  return true;
}

// Hands what arrived on fd to the printer and its answers back; false when the other end
// closed or failed.
bool Serve(int fd, VirtualPrinter& printer) {
  char buffer[4096];
  const ssize_t n = ::read(fd, buffer, sizeof buffer);
  if (n < 0 && (errno == EINTR || errno == EAGAIN)) return true;
  if (n <= 0) return false;
  printer.Receive(buffer, static_cast<std::size_t>(n));
  std::string burst;
  while (printer.TakeAnswer(&burst))
    if (!WriteAll(fd, burst)) return false;
  return true;
}

}  // namespace

bool Listen(const ListenOptions& options, const std::atomic<bool>& stop,
            const std::function<void(const std::string&)>& ready,
            const std::function<void(const std::string&)>& log, std::string* error) {
  std::unique_ptr<VirtualPrinter> printer = VirtualPrinter::ForModel(options.model, options.dotsPerMm);
  if (!printer) {
    *error = "no virtual printer plays the model \"" + options.model + "\"";
    return false;
  }
  printer->SetState(options.state);

  Fd line, keeper, listener, client;
  std::string name;
  const bool tcp = options.listen.rfind("tcp:", 0) == 0;
  if (tcp) {
    if (!OpenTcp(options.listen.substr(4), &listener, &name, error)) return false;
  } else if (options.listen == "pty" || options.listen.rfind("pty:", 0) == 0) {
    const std::string link = options.listen.size() > 4 ? options.listen.substr(4) : "";
    if (!OpenPty(link, &line, &keeper, &name, error)) return false;
  } else {
    *error = "--listen takes pty, pty:LINK or tcp:HOST:PORT, not \"" + options.listen + "\"";
    return false;
  }
  if (ready) ready(name);

  PreviewWriter previews(*printer, options.previewDir, log);
  int quietMs = 0;
  bool snapshotDue = false;
  while (!stop.load()) {
    pollfd watch {};
    watch.fd = tcp ? (client.Get() >= 0 ? client.Get() : listener.Get()) : line.Get();
    watch.events = POLLIN;
    const int ready_count = ::poll(&watch, 1, kPollMs);
    if (ready_count < 0 && errno != EINTR) {
      *error = std::string("poll: ") + std::strerror(errno);
      return false;
    }
    if (ready_count <= 0) {
      quietMs += kPollMs;
      if (snapshotDue && quietMs >= kQuietBeforeSnapshotMs) {
        previews.Snapshot();
        snapshotDue = false;
      }
      continue;
    }
    quietMs = 0;
    if (tcp && client.Get() < 0) {
      client.Reset(::accept(listener.Get(), nullptr, nullptr));
      continue;
    }
    if (!Serve(watch.fd, *printer)) {
      if (tcp) client.Reset();  // the program went away; wait for the next one
    } else if (!tcp && printer->HoldsLine()) {
      // A printer that cannot print answers what it hears with XOFF. It is sent after the
      // program's first bytes: by then the program has set up the line, and its XON/XOFF
      // flow control stops its output (an XOFF that came earlier would be read as data).
      constexpr char kXoff = 0x13;
      WriteAll(line.Get(), std::string(1, kXoff));
    }
    snapshotDue = true;
    previews.PagesDone();
  }
  printer->Finish();
  previews.PagesDone();
  previews.Snapshot();
  if (!tcp && options.listen.size() > 4) ::unlink(options.listen.substr(4).c_str());
  return true;
}

}  // namespace posprint::emulator
