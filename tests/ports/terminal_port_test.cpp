// The terminal-device back-end against a real pseudo-terminal: the test holds the master
// side, which plays the printer. These tests take real milliseconds (a pty is a real
// line); time bounds only catch a hang.
#include <gtest/gtest.h>

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

#include "platform/otool.h"
#include "ports/port_io.h"
#include "support/bytes.h"

namespace posprint {
namespace {

using test::Hex;
using test::Read;
using test::Write;
using test::ToHex;
using Steady = std::chrono::steady_clock;

// A pseudo-terminal pair; the slave's path is the port name.
class Pty {
 public:
  Pty() {
    char name[128] = {};
    if (::openpty(&master_, &slave_, name, nullptr, nullptr) == 0) path_ = name;
  }
  ~Pty() {
    CloseMaster();
    CloseSlave();
  }
  const std::string& Path() const { return path_; }
  std::wstring Name(const std::string& suffix = "") const {
    const std::string text = path_ + suffix;
    return std::wstring(text.begin(), text.end());
  }
  int Slave() const { return slave_; }

  void Send(const std::string& bytes) {
    ASSERT_EQ(::write(master_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  // What the printer received within waitMs (stops early once `count` bytes are in).
  std::string Receive(std::size_t count, int waitMs = 1000) {
    std::string got;
    const auto deadline = Steady::now() + std::chrono::milliseconds(waitMs);
    while (got.size() < count) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Steady::now());
      pollfd p{master_, POLLIN, 0};
      if (left.count() <= 0 || ::poll(&p, 1, static_cast<int>(left.count())) <= 0) break;
      char buffer[256];
      const ssize_t n = ::read(master_, buffer, sizeof buffer);
      if (n <= 0) break;
      got.append(buffer, static_cast<std::size_t>(n));
    }
    return got;
  }
  // Waits until the port side has `count` unread bytes waiting.
  bool WaitUntilPending(int count) {
    for (int i = 0; i < 200; ++i) {
      int pending = 0;
      if (::ioctl(slave_, FIONREAD, &pending) == 0 && pending >= count) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }
  void CloseSlave() {
    if (slave_ >= 0) ::close(slave_);
    slave_ = -1;
  }
  void CloseMaster() {
    if (master_ >= 0) ::close(master_);
    master_ = -1;
  }

 private:
  int master_ = -1, slave_ = -1;
  std::string path_;
};

class TerminalPort : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(pty.Path().empty());
    handle = otool_OPEN(pty.Name().c_str(), 0, nullptr);
    ASSERT_GE(handle, 0);
  }
  void TearDown() override { otool_CLOSE(handle); }

  Pty pty;
  int handle = -1;
};

TEST_F(TerminalPort, ControlBytesPassUntranslatedBothWays) {
  const std::string bytes = Hex("00 0A 0D 11 13 1B 7F FF 0D 0A");
  EXPECT_EQ(Write(handle, bytes), 10);
  EXPECT_EQ(ToHex(pty.Receive(10)), "00 0A 0D 11 13 1B 7F FF 0D 0A");

  pty.Send(bytes);
  EXPECT_EQ(ToHex(Read(handle, 10)), "00 0A 0D 11 13 1B 7F FF 0D 0A");
  EXPECT_EQ(pty.Receive(1, 100), "");  // nothing echoed back to the printer
}

TEST_F(TerminalPort, ReadReturnsAtTheGapBetweenTwoAnswers) {
  otool_IOCTL(handle, kPortSetReadTimeout, 2000);
  std::thread printer([this] {
    pty.Send("first");
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    pty.Send("second");
  });
  EXPECT_EQ(Read(handle, 64), "first");
  EXPECT_EQ(Read(handle, 64), "second");
  printer.join();
}

TEST_F(TerminalPort, ReadStopsAtTheCountAsked) {
  pty.Send("ABCDEF");
  EXPECT_EQ(Read(handle, 4), "ABCD");
  EXPECT_EQ(Read(handle, 4), "EF");
}

TEST_F(TerminalPort, SilentLineTimesOutWithNothing) {
  otool_IOCTL(handle, kPortSetReadTimeout, 50);
  EXPECT_EQ(Read(handle, 1), "");
}

TEST_F(TerminalPort, ClosedFarEndFailsAtOnce) {
  otool_IOCTL(handle, kPortSetReadTimeout, 10000);
  otool_IOCTL(handle, kPortSetWriteTimeout, 10000);
  pty.CloseSlave();  // only the port holds the slave side now
  pty.CloseMaster();
  const auto start = Steady::now();
  EXPECT_EQ(Read(handle, 1), "<failed>");
  EXPECT_EQ(Write(handle, "X"), -1);
  EXPECT_LT(Steady::now() - start, std::chrono::seconds(3));
}

TEST_F(TerminalPort, ScramblingXorsBothWays) {
  const int key[] = {0x5A, 0};
  ASSERT_EQ(otool_IOCTL(handle, kPortScramble, static_cast<const void*>(key)), 0);
  Write(handle, Hex("00 41 FF"));
  EXPECT_EQ(ToHex(pty.Receive(3)), "5A 1B A5");
  pty.Send(Hex("5A 1B"));
  EXPECT_EQ(ToHex(Read(handle, 2)), "00 41");

  const int off[] = {0};
  otool_IOCTL(handle, kPortScramble, static_cast<const void*>(off));
  Write(handle, Hex("00 41"));
  EXPECT_EQ(ToHex(pty.Receive(2)), "00 41");
}

TEST_F(TerminalPort, XoffFromThePrinterHoldsOutputUntilXon) {
  ASSERT_EQ(otool_IOCTL(handle, kPortSetState, 2), 0);
  // XOFF, then a marker: once the marker is read, the line discipline has seen the XOFF.
  pty.Send(Hex("13") + "M");
  ASSERT_EQ(Read(handle, 1), "M");
  otool_IOCTL(handle, kPortSetWriteTimeout, 5000);
  std::string heldBack = "<not looked at>";
  std::thread printer([this, &heldBack] {
    heldBack = pty.Receive(3, 150);
    pty.Send(Hex("11"));  // XON
  });
  // The write waits out the pause and returns whole once the printer sent XON.
  EXPECT_EQ(Write(handle, "abc"), 3);
  printer.join();
  EXPECT_EQ(heldBack, "");
  EXPECT_EQ(pty.Receive(3), "abc");

  // The flow-control bytes are the driver's, not data.
  pty.Send(Hex("11 41 13 11"));
  EXPECT_EQ(ToHex(Read(handle, 4)), "41");

  ASSERT_EQ(otool_IOCTL(handle, kPortSetState, 0), 0);
  pty.Send(Hex("13 42"));
  EXPECT_EQ(ToHex(Read(handle, 4)), "13 42");
}

TEST_F(TerminalPort, PurgeDiscardsWhatArrivedAndCountsIt) {
  pty.Send("12345");
  ASSERT_TRUE(pty.WaitUntilPending(5));
  EXPECT_EQ(otool_IOCTL(handle, kPortPurge, 0), 5);
  otool_IOCTL(handle, kPortSetReadTimeout, 50);
  EXPECT_EQ(Read(handle, 5), "");
}

TEST(TerminalPortName, BaudRateAfterTheAtSign) {
  struct Case {
    const char* name;
    const char* suffix;
    bool opens;
    speed_t speed;  // expected line speed after open (the pty starts at 38400)
  };
  const Case cases[] = {
      {"no rate keeps the speed", "", true, B38400},
      {"9600", "@9600", true, B9600},
      {"115200", "@115200", true, B115200},
      {"rate the driver does not offer", "@12345", false, 0},
      {"empty rate", "@", false, 0},
      {"letters", "@96OO", false, 0},
      {"negative", "@-9600", false, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Pty pty;
    termios settings{};
    ::tcgetattr(pty.Slave(), &settings);
    ::cfsetspeed(&settings, B38400);
    ::tcsetattr(pty.Slave(), TCSANOW, &settings);

    const int handle = otool_OPEN(pty.Name(c.suffix).c_str(), 0, nullptr);
    EXPECT_EQ(handle >= 0, c.opens);
    if (handle < 0) continue;
    ::tcgetattr(pty.Slave(), &settings);
    EXPECT_EQ(::cfgetospeed(&settings), c.speed);
    otool_CLOSE(handle);
  }
}

TEST(TerminalPortName, AFileThatIsNotATerminalIsRefused) {
  EXPECT_EQ(otool_OPEN(L"/dev/null", 0, nullptr), -1);
}

}  // namespace
}  // namespace posprint
