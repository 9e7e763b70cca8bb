// A terminal device: a serial port (/dev/ttyS0, /dev/ttyUSB0) or a pseudo-terminal.
// The line is made raw: 8 data bits, no parity, no echo, no CR/LF translation, no
// flow control until the state word asks for XON/XOFF.
//
// Name syntax: DEVICE or DEVICE@BAUD, e.g. "/dev/ttyS0@9600". Without a baud rate the
// device keeps the speed it has (set by the system or by stty); a rate that the
// terminal driver does not offer makes the open fail.
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <optional>
#include <utility>

#include "platform/fd_io.h"
#include "platform/port_kinds.h"

namespace posprint {
namespace {

struct BaudRate {
  long bitsPerSecond;
  speed_t code;
};

constexpr BaudRate kBaudRates[] = {
    {50, B50},         {75, B75},         {110, B110},       {134, B134},
    {150, B150},       {200, B200},       {300, B300},       {600, B600},
    {1200, B1200},     {1800, B1800},     {2400, B2400},     {4800, B4800},
    {9600, B9600},     {19200, B19200},   {38400, B38400},   {57600, B57600},
    {115200, B115200}, {230400, B230400}, {460800, B460800}, {500000, B500000},
    {576000, B576000}, {921600, B921600}, {1000000, B1000000}, {1152000, B1152000},
    {1500000, B1500000}, {2000000, B2000000}, {2500000, B2500000}, {3000000, B3000000},
    {3500000, B3500000}, {4000000, B4000000},
};

std::optional<speed_t> BaudCode(const std::string& digits) {
  if (digits.empty() || digits.size() > 8 ||
      digits.find_first_not_of("0123456789") != std::string::npos) {
    return std::nullopt;
  }
  const long rate = std::stol(digits);
  for (const BaudRate& baud : kBaudRates) {
    if (baud.bitsPerSecond == rate) return baud.code;
  }
  return std::nullopt;
}

class TerminalPort : public FdPort {
 public:
  explicit TerminalPort(int fd) : FdPort(fd, false) {}

  // With IXON the terminal driver itself stops sending at the printer's XOFF (DC3, 0x13)
  // and resumes at XON (DC1, 0x11); those two bytes are then not handed to reads.
  bool SetFlowControl(bool xonXoff) override {
    termios settings{};
    if (fd_ < 0 || ::tcgetattr(fd_, &settings) != 0) return false;
    settings.c_iflag &= ~(IXON | IXOFF | IXANY);
    if (xonXoff) settings.c_iflag |= IXON;
    // A line someone configured before us may carry other flow-control characters.
    settings.c_cc[VSTART] = 0x11;
    settings.c_cc[VSTOP] = 0x13;
    return ::tcsetattr(fd_, TCSANOW, &settings) == 0;
  }
};

bool MakeRaw(int fd, std::optional<speed_t> speed) {
  termios settings{};
  if (::tcgetattr(fd, &settings) != 0) return false;  // not a terminal
  ::cfmakeraw(&settings);
  settings.c_cflag |= CLOCAL | CREAD;  // ignore modem lines: printers rarely wire them
  settings.c_cflag &= ~(CRTSCTS | CSTOPB);
  settings.c_iflag &= ~(IXON | IXOFF | IXANY);
  settings.c_cc[VMIN] = 1;
  settings.c_cc[VTIME] = 0;
  settings.c_cc[VSTART] = 0x11;  // DC1 (XON) and DC3 (XOFF), whatever the line had before
  settings.c_cc[VSTOP] = 0x13;
  if (speed && (::cfsetispeed(&settings, *speed) != 0 || ::cfsetospeed(&settings, *speed) != 0)) {
    return false;
  }
  return ::tcsetattr(fd, TCSANOW, &settings) == 0;
}

}  // namespace

std::unique_ptr<PortBackend> OpenTerminalPort(const std::string& nameWithBaud) {
  std::string path = nameWithBaud;
  std::optional<speed_t> speed;
  const std::size_t at = nameWithBaud.rfind('@');
  if (at != std::string::npos) {
    speed = BaudCode(nameWithBaud.substr(at + 1));
    if (!speed) return nullptr;
    path = nameWithBaud.substr(0, at);
  }
  if (path.empty()) return nullptr;
  const int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return nullptr;
  if (!::isatty(fd) || !MakeRaw(fd, speed)) {
    ::close(fd);
    return nullptr;
  }
  return std::make_unique<TerminalPort>(fd);
}

}  // namespace posprint
