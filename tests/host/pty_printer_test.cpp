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

struct Port {  // an open port on the printer's line, closed at the end of the test
  explicit Port(const std::string& name) : handle(otool_OPEN(std::wstring(name.begin(), name.end()).c_str(), 0, nullptr)) {
    otool_IOCTL(handle, kPortSetReadTimeout, 2000);
  }
  ~Port() { otool_CLOSE(handle); }
  int Write(const std::string& bytes) { return otool_WRITE(handle, bytes.data(), static_cast<int>(bytes.size())); }
  std::string ReadByte() {
    char byte = 0;
    return otool_READ(handle, &byte, 1) == 1 ? std::string(1, byte) : "";
  }
  int handle;
};

TEST(PtyPrinter, RecordsEveryByteAndFollowsAScrambledModeSwitchedMidSession) {
  PtyPrinter printer;
  // The printer takes up key 203 when it is told so with ESC 0xF9 0xCB (sent in plain).
  printer.SetResponder([&printer](const std::string& received) -> std::string {
    if (EndsWith(received, Hex("1B F9 CB"))) printer.SetScrambleKey(0xCB);
    return EndsWith(received, Hex("10 04 02")) ? Hex("12") : "";
  });
  ASSERT_TRUE(printer.Ok()) << printer.Error();
  Port port(printer.PortName());
  const int key[] = {0xCB};
  // CR, LF, NUL, XON, XOFF and 0xFF cross the line untouched.
  ASSERT_EQ(port.Write(Hex("0D 0A 00 11 13 FF 1B F9 CB")), 9);
  ASSERT_EQ(otool_IOCTL(port.handle, kPortScramble, static_cast<const void*>(key)), 0);
  ASSERT_EQ(port.Write(Hex("10 04 02")), 3);
  EXPECT_EQ(ToHex(port.ReadByte()), "12");  // went over the line as 12 ^ CB = D9
  EXPECT_EQ(ToHex(printer.Line()), "0D 0A 00 11 13 FF 1B F9 CB DB CF C9");
  EXPECT_EQ(ToHex(printer.Received()), "0D 0A 00 11 13 FF 1B F9 CB 10 04 02");
  printer.Stop();
  printer.Stop();  // stopping twice is harmless
  EXPECT_EQ(port.Write(Hex("0A")), 1);  // the line stays open after the printer stopped
}

}  // namespace
}  // namespace posprint::test
