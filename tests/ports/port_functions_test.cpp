// The port functions above every back-end: handles, control requests, the state word,
// and the choice of back-end by the port name.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/otool.h"
#include "platform/port_backend.h"
#include "platform/scripted_port.h"

namespace posprint {
namespace {

TEST(PortFunctions, InvalidHandlesFail) {
  ScriptedPort port;
  const int closed = otool_OPEN(port.Name().c_str(), 0, nullptr);
  ASSERT_EQ(otool_CLOSE(closed), 1);
  const int c = 5;
  int out = 0;
  char buffer[4];
  for (int handle : {-1, closed, 100000}) {
    SCOPED_TRACE(handle);
    EXPECT_EQ(otool_READ(handle, buffer, 4), -1);
    EXPECT_EQ(otool_WRITE(handle, "A", 1), -1);
    EXPECT_EQ(otool_IOCTL(handle, kPortSetReadTimeout, 10), -1);
    EXPECT_EQ(otool_IOCTL(handle, kPortGetReadTimeout, &out), -1);
    EXPECT_EQ(otool_IOCTL(handle, kPortSetWriteTimeout, static_cast<const void*>(&c)), -1);
    EXPECT_EQ(otool_CLOSE(handle), 0);
  }
}

TEST(PortFunctions, UnknownPortNamesDoNotOpen) {
  for (const wchar_t* name : {L"script:999999", L"script:", L"script:x", L"file:",
                              L"/nonexistent/ttyS0", L"tcp:nohost", L"tcp::9100", L""}) {
    SCOPED_TRACE(testing::PrintToString(std::wstring(name)));
    EXPECT_EQ(otool_OPEN(name, 0, nullptr), -1);
  }
  EXPECT_EQ(otool_OPEN(nullptr, 0, nullptr), -1);
}

TEST(PortFunctions, ClosedSlotIsReused) {
  ScriptedPort a, b, c;
  const int ha = otool_OPEN(a.Name().c_str(), 0, nullptr);
  const int hb = otool_OPEN(b.Name().c_str(), 0, nullptr);
  EXPECT_NE(ha, hb);
  otool_CLOSE(ha);
  EXPECT_EQ(otool_OPEN(c.Name().c_str(), 0, nullptr), ha);
  otool_CLOSE(ha);
  otool_CLOSE(hb);
}

TEST(PortFunctions, TimeoutsDefaultToOneSecondAndFollowTheRequests) {
  ScriptedPort port;
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  int read = 0, write = 0;
  ASSERT_EQ(otool_IOCTL(h, kPortGetReadTimeout, &read), 0);
  ASSERT_EQ(otool_IOCTL(h, kPortGetWriteTimeout, &write), 0);
  EXPECT_EQ(read, 1000);
  EXPECT_EQ(write, 1000);

  const int writeMs = 5000;
  EXPECT_EQ(otool_IOCTL(h, kPortSetReadTimeout, 300), 0);
  EXPECT_EQ(otool_IOCTL(h, kPortSetWriteTimeout, static_cast<const void*>(&writeMs)), 0);
  otool_IOCTL(h, kPortGetReadTimeout, &read);
  otool_IOCTL(h, kPortGetWriteTimeout, &write);
  EXPECT_EQ(read, 300);
  EXPECT_EQ(write, 5000);

  EXPECT_EQ(otool_IOCTL(h, kPortSetReadTimeout, -5), -1);
  otool_IOCTL(h, kPortGetReadTimeout, &read);
  EXPECT_EQ(read, 300);
  otool_CLOSE(h);
}

TEST(PortFunctions, StateWordKeepsItsBitsAndSwitchesXonXoff) {
  ScriptedPort port;
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  int word = -1;
  otool_IOCTL(h, kPortGetState, &word);
  EXPECT_EQ(word, 0);
  EXPECT_FALSE(port.FlowControl());

  EXPECT_EQ(otool_IOCTL(h, kPortSetState, 2), 0);  // the TM295's "XONXOFF"
  EXPECT_TRUE(port.FlowControl());

  const int withLineFlag = 0x102;
  EXPECT_EQ(otool_IOCTL(h, kPortSetState, static_cast<const void*>(&withLineFlag)), 0);
  otool_IOCTL(h, kPortGetState, &word);
  EXPECT_EQ(word, 0x102);
  EXPECT_TRUE(port.FlowControl());

  otool_IOCTL(h, kPortSetState, 0x100);
  otool_IOCTL(h, kPortGetState, &word);
  EXPECT_EQ(word, 0x100);
  EXPECT_FALSE(port.FlowControl());
  otool_CLOSE(h);
}

TEST(PortFunctions, RequestsAcceptedAndRefused) {
  struct Case {
    const char* name;
    int request;
    int expected;
  };
  const Case cases[] = {
      {"input buffer size is accepted", kPortSetInputBuffer, 0},
      {"purge of an empty line", kPortPurge, 0},
      {"unknown request", 1234, -1},
      {"a get request in value form", kPortGetReadTimeout, -1},
  };
  ScriptedPort port;
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(otool_IOCTL(h, c.request, 10), c.expected);
  }
  int out = 0;
  const int in = 0;
  EXPECT_EQ(otool_IOCTL(h, 1234, &out), -1);
  EXPECT_EQ(otool_IOCTL(h, kPortGetState, static_cast<const void*>(&in)), -1);
  EXPECT_EQ(otool_IOCTL(h, kPortGetState, static_cast<void*>(nullptr)), -1);
  EXPECT_EQ(otool_IOCTL(h, kPortSetReadTimeout, static_cast<const void*>(nullptr)), -1);
  otool_CLOSE(h);
}

// A back-end that only remembers what followed its prefix.
class NamedBackend : public PortBackend {
 public:
  explicit NamedBackend(std::string tag) : tag_(std::move(tag)) {}
  int Read(char* buffer, int count, int) override {
    const int n = std::min(count, static_cast<int>(tag_.size()));
    tag_.copy(buffer, static_cast<std::size_t>(n));
    return n;
  }
  int Write(const char*, int count, int) override { return count; }
  int Purge() override { return 0; }
  bool Close() override { return true; }

 private:
  std::string tag_;
};

std::string ReadTag(const wchar_t* name) {
  const int h = otool_OPEN(name, 0, nullptr);
  if (h < 0) return "<not opened>";
  char buffer[32];
  const int n = otool_READ(h, buffer, sizeof buffer);
  otool_CLOSE(h);
  return std::string(buffer, static_cast<std::size_t>(std::max(n, 0)));
}

TEST(PortFunctions, LongestRegisteredPrefixWins) {
  RegisterPortKind("demo:", [](const std::string& rest) {
    return std::make_unique<NamedBackend>("short " + rest);
  });
  RegisterPortKind("demo:long:", [](const std::string& rest) {
    return std::make_unique<NamedBackend>("long " + rest);
  });
  EXPECT_EQ(ReadTag(L"demo:abc"), "short abc");
  EXPECT_EQ(ReadTag(L"demo:long:xyz"), "long xyz");
  EXPECT_EQ(ReadTag(L"demo:lon"), "short lon");

  RegisterPortKind("demo:", [](const std::string&) { return nullptr; });  // replaces
  EXPECT_EQ(ReadTag(L"demo:abc"), "<not opened>");
  RegisterPortKind("demo:long:", nullptr);  // removes
  RegisterPortKind("demo:", nullptr);
  EXPECT_EQ(ReadTag(L"demo:long:xyz"), "<not opened>");  // falls to the terminal kind
}

}  // namespace
}  // namespace posprint
