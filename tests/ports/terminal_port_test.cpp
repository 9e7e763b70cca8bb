// The terminal-device back-end against a real pseudo-terminal whose far end plays the
// printer. These tests take real milliseconds (a pty is a real line); the time bounds only
// catch a hang.
#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <thread>

#include "ports/port_io.h"
#include "support/pty_printer.h"

namespace posprint::test {
namespace {

class TerminalPort : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(printer->Ok()) << printer->Error();
    handle = Open(printer->PortName());
    ASSERT_GE(handle, 0);
  }
  void TearDown() override { otool_CLOSE(handle); }
  // What the printer received, once `count` bytes are in or waitMs passed.
  std::string Received(std::size_t count, int waitMs = 2000) {
    printer->WaitForBytes(count, waitMs);
    return printer->Received();
  }

  std::unique_ptr<PtyPrinter> printer = std::make_unique<PtyPrinter>();
  int handle = -1;
};

TEST_F(TerminalPort, RawBytesBothWaysAndReadsEndAtTheCountOrAGap) {
  const std::string bytes = Hex("00 0A 0D 11 13 1B 7F FF 0D 0A");
  EXPECT_EQ(Write(handle, bytes), 10);
  EXPECT_EQ(ToHex(Received(10)), "00 0A 0D 11 13 1B 7F FF 0D 0A");
  printer->Send(bytes + "ABCDEF");
  EXPECT_EQ(ToHex(Read(handle, 10)), "00 0A 0D 11 13 1B 7F FF 0D 0A");  // nothing translated
  EXPECT_EQ(Read(handle, 4), "ABCD");
  EXPECT_EQ(Read(handle, 4), "EF");
  EXPECT_EQ(ToHex(Received(11, 100)), ToHex(bytes));  // nothing echoed back to the printer

  otool_IOCTL(handle, kPortSetReadTimeout, 2000);
  std::thread answers([this] {
    printer->Send("first");
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    printer->Send("second");
  });
  EXPECT_EQ(Read(handle, 64), "first");  // the quiet line ends the read
  EXPECT_EQ(Read(handle, 64), "second");
  answers.join();
  otool_IOCTL(handle, kPortSetReadTimeout, 50);
  EXPECT_EQ(Read(handle, 1), "");  // a silent line times out with nothing
}

TEST_F(TerminalPort, ClosedFarEndFailsAtOnce) {
  otool_IOCTL(handle, kPortSetReadTimeout, 10000);
  otool_IOCTL(handle, kPortSetWriteTimeout, 10000);
  printer.reset();  // only the port holds the line now
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Read(handle, 1), "<failed>");
  EXPECT_EQ(Write(handle, "X"), -1);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
}

TEST_F(TerminalPort, ScramblingXorsBothWays) {
  const int key[] = {0x15A, 0}, off[] = {0};  // only the low byte of the key counts
  ASSERT_EQ(otool_IOCTL(handle, kPortScramble, static_cast<const void*>(key)), 0);
  Write(handle, Hex("00 41 FF"));
  EXPECT_EQ(ToHex(Received(3)), "5A 1B A5");
  printer->Send(Hex("5A 1B"));
  EXPECT_EQ(ToHex(Read(handle, 2)), "00 41");
  otool_IOCTL(handle, kPortScramble, static_cast<const void*>(off));
  Write(handle, Hex("00 41"));
  EXPECT_EQ(ToHex(Received(5)), "5A 1B A5 00 41");
}

TEST_F(TerminalPort, XoffFromThePrinterHoldsOutputUntilXon) {
  // The harness's line starts without start and stop characters; a serial line has DC1, DC3.
  const int line = ::open(printer->PortName().c_str(), O_RDWR | O_NOCTTY);
  termios settings{};
  ::tcgetattr(line, &settings);
  settings.c_cc[VSTART] = 0x11, settings.c_cc[VSTOP] = 0x13;
  ::tcsetattr(line, TCSANOW, &settings);
  ::close(line);
  ASSERT_EQ(otool_IOCTL(handle, kPortSetState, kPortStateXonXoff), 0);
  printer->Send(Hex("13") + "M");  // once the marker is read, the line has seen the XOFF
  ASSERT_EQ(Read(handle, 1), "M");
  otool_IOCTL(handle, kPortSetWriteTimeout, 5000);
  bool heldBack = false;
  std::thread xon([this, &heldBack] {
    heldBack = !printer->WaitForBytes(1, 150);
    printer->Send(Hex("11"));
  });
  EXPECT_EQ(Write(handle, "abc"), 3);  // waits out the pause, whole once the printer sent XON
  xon.join();
  EXPECT_TRUE(heldBack);
  EXPECT_EQ(Received(3), "abc");
  printer->Send(Hex("11 41 13 11"));  // the flow-control bytes are the line's, not data
  EXPECT_EQ(ToHex(Read(handle, 4)), "41");
  ASSERT_EQ(otool_IOCTL(handle, kPortSetState, 0), 0);
  printer->Send(Hex("13 42"));
  EXPECT_EQ(ToHex(Read(handle, 4)), "13 42");
}

TEST_F(TerminalPort, PurgeDiscardsWhatArrivedAndCountsIt) {
  const int line = ::open(printer->PortName().c_str(), O_RDWR | O_NOCTTY);  // to see the input queue
  ASSERT_GE(line, 0);
  printer->Send("12345");
  int pending = 0;
  for (int i = 0; i < 200 && pending < 5; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    ::ioctl(line, FIONREAD, &pending);
  }
  ::close(line);
  EXPECT_EQ(otool_IOCTL(handle, kPortPurge, 0), 5);
  otool_IOCTL(handle, kPortSetReadTimeout, 50);
  EXPECT_EQ(Read(handle, 5), "");
}

// The speed after the '@'; the pty starts at 38400. A rate the driver does not offer fails.
TEST(TerminalPortName, BaudRateAfterTheAtSign) {
  const struct { const char* suffix; speed_t speed; } cases[] = {
      {"", B38400}, {"@9600", B9600}, {"@115200", B115200}, {"@12345", 0}, {"@", 0}, {"@96OO", 0}, {"@-9600", 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.suffix);
    PtyPrinter printer;
    const int line = ::open(printer.PortName().c_str(), O_RDWR | O_NOCTTY);
    termios settings{};
    ::tcgetattr(line, &settings);
    ::cfsetspeed(&settings, B38400);
    ::tcsetattr(line, TCSANOW, &settings);
    const int handle = Open(printer.PortName() + c.suffix);
    EXPECT_EQ(handle >= 0, c.speed != 0);
    ::tcgetattr(line, &settings);
    EXPECT_EQ(::cfgetospeed(&settings), c.speed ? c.speed : B38400);
    otool_CLOSE(handle);
    ::close(line);
  }
  EXPECT_EQ(Open("/dev/null"), -1);  // not a terminal
}

}  // namespace
}  // namespace posprint::test
