// The pseudo-terminal printer that every end-to-end test talks to, driven here through
// the port functions as a driver drives it. These tests use a real line; time limits
// only keep a fault from hanging the suite.
#include <gtest/gtest.h>

#include <string>

#include "platform/otool.h"
#include "support/bytes.h"
#include "support/pty_printer.h"

namespace posprint::test {
namespace {

// An open port on the printer's line, closed at the end of the test.
class Port {
 public:
  explicit Port(const std::string& name) {
    const std::wstring wide(name.begin(), name.end());
    handle_ = otool_OPEN(wide.c_str(), 0, nullptr);
    otool_IOCTL(handle_, kPortSetReadTimeout, 2000);
  }
  ~Port() {
    if (handle_ >= 0) otool_CLOSE(handle_);
  }
  int Handle() const { return handle_; }
  int Write(const std::string& bytes) { return otool_WRITE(handle_, bytes.data(), static_cast<int>(bytes.size())); }
  std::string Read(int count) {
    std::string buffer(static_cast<std::size_t>(count), '\0');
    const int got = otool_READ(handle_, buffer.data(), count);
    return got < 0 ? "<failed>" : buffer.substr(0, static_cast<std::size_t>(got));
  }

 private:
  int handle_ = -1;
};

TEST(PtyPrinter, RecordsEveryByteAnswersEachRequestOnceAndSendsUnasked) {
  PtyPrinter printer(AnswerRequests({{Hex("10 04 02"), Hex("12")}, {Hex("10 04 04"), Hex("00")}}));
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  Port port(printer.PortName());
  ASSERT_GE(port.Handle(), 0);
  // CR, LF, NUL, XON, XOFF and 0xFF cross the line untouched; the request arrives in two
  // writes and is answered once, after its last byte.
  ASSERT_EQ(port.Write(Hex("1B 40 0D 0A 00 11 13 FF 10 04")), 10);
  ASSERT_TRUE(printer.WaitForBytes(10, 5000));
  ASSERT_EQ(port.Write(Hex("02")), 1);
  EXPECT_EQ(ToHex(port.Read(1)), "12");
  ASSERT_EQ(port.Write(Hex("10 04 04")), 3);
  EXPECT_EQ(ToHex(port.Read(1)), "00");
  EXPECT_EQ(ToHex(printer.Received()), "1B 40 0D 0A 00 11 13 FF 10 04 02 10 04 04");
  EXPECT_EQ(printer.Line(), printer.Received());
  printer.Send(Hex("13"));
  EXPECT_EQ(ToHex(port.Read(1)), "13");  // unasked, and nothing more was answered
  otool_IOCTL(port.Handle(), kPortSetReadTimeout, 100);
  EXPECT_EQ(port.Read(1), "");
  printer.Stop();
  printer.Stop();  // stopping twice is harmless
  EXPECT_EQ(port.Write(Hex("0A")), 1);  // the line stays open after the printer stopped
}

TEST(PtyPrinter, FollowsAScrambledModeSwitchedMidSession) {
  PtyPrinter printer;
  // The printer takes up key 203 when it is told so with ESC 0xF9 0xCB (sent in plain).
  printer.SetResponder([&printer](const std::string& received) -> std::string {
    if (EndsWith(received, Hex("1B F9 CB"))) printer.SetScrambleKey(0xCB);
    return EndsWith(received, Hex("10 04 02")) ? Hex("12") : "";
  });
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  Port port(printer.PortName());
  const int key[] = {0xCB};
  ASSERT_EQ(port.Write(Hex("1B F9 CB")), 3);
  ASSERT_EQ(otool_IOCTL(port.Handle(), kPortScramble, static_cast<const void*>(key)), 0);
  ASSERT_EQ(port.Write(Hex("10 04 02")), 3);
  EXPECT_EQ(ToHex(port.Read(1)), "12");  // went over the line as 12 ^ CB = D9
  EXPECT_EQ(ToHex(printer.Line()), "1B F9 CB DB CF C9");
  EXPECT_EQ(ToHex(printer.Received()), "1B F9 CB 10 04 02");
}

}  // namespace
}  // namespace posprint::test
