// The port functions above every back-end: handles, control requests, the state word,
// and the choice of back-end by the port name.
#include <memory>
#include <vector>

#include "platform/port_backend.h"
#include "platform/scripted_port.h"
#include "ports/port_io.h"

namespace posprint::test {
namespace {

TEST(PortFunctions, BadHandlesAndNamesFail) {
  ScriptedPort port;
  const int closed = Open(std::string(port.Name().begin(), port.Name().end()));
  ASSERT_EQ(otool_CLOSE(closed), 1);
  int out = 0;
  for (int handle : {-1, closed, 100000}) {
    SCOPED_TRACE(handle);
    EXPECT_EQ(Read(handle, 4), "<failed>");
    EXPECT_EQ(Write(handle, "A"), -1);
    EXPECT_EQ(otool_IOCTL(handle, kPortSetReadTimeout, 10), -1);
    EXPECT_EQ(otool_IOCTL(handle, kPortGetReadTimeout, &out), -1);
    EXPECT_EQ(otool_CLOSE(handle), 0);
  }
  for (const char* name : {"script:999999", "script:", "script:x", "file:", "/nonexistent/ttyS0", "tcp:nohost",
                           "tcp::9100", ""}) {
    EXPECT_EQ(Open(name), -1) << name;
  }
  EXPECT_EQ(otool_OPEN(nullptr, 0, nullptr), -1);
  ScriptedPort next;
  EXPECT_EQ(otool_OPEN(next.Name().c_str(), 0, nullptr), closed);  // a closed slot is used again
  otool_CLOSE(closed);
}

// Handles are slots of a fixed table: a reused slot starts with the defaults, a full table
// refuses the next port, and closing one frees its slot.
TEST(PortFunctions, HandleTableReusesSlotsAndHasALimit) {
  ScriptedPort port;
  const int first = otool_OPEN(port.Name().c_str(), 0, nullptr);
  ASSERT_GE(first, 0);
  otool_IOCTL(first, kPortSetReadTimeout, 5);
  otool_IOCTL(first, kPortScramble, 0xCB);
  otool_CLOSE(first);
  std::vector<int> handles;
  for (int h; (h = otool_OPEN(port.Name().c_str(), 0, nullptr)) >= 0 && handles.size() < 5000;) handles.push_back(h);
  EXPECT_LE(handles.size(), 1024u);
  EXPECT_GT(handles.size(), 1000u);
  int timeout = 0;
  EXPECT_EQ(otool_IOCTL(first, kPortGetReadTimeout, &timeout), 0);
  EXPECT_EQ(timeout, 1000);  // the reused slot forgot the closed port's settings
  EXPECT_EQ(Write(first, "A"), 1);
  EXPECT_EQ(port.Written(), "A");  // not scrambled any more
  ASSERT_EQ(otool_CLOSE(handles.back()), 1);
  EXPECT_EQ(otool_OPEN(port.Name().c_str(), 0, nullptr), handles.back());
  for (int h : handles) otool_CLOSE(h);
}

// Time-outs and the state word, set in value or pointer form; a get request takes an int*.
TEST(PortFunctions, ControlRequests) {
  ScriptedPort port;
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  auto get = [h](int request) {
    int value = -99;
    return otool_IOCTL(h, request, &value) == 0 ? value : -1;
  };
  EXPECT_EQ(get(kPortGetReadTimeout), 1000);  // one second each at first
  EXPECT_EQ(get(kPortGetWriteTimeout), 1000);
  EXPECT_EQ(get(kPortGetState), 0);
  const int writeMs = 5000, withLineFlag = 0x102, zero = 0;
  EXPECT_EQ(otool_IOCTL(h, kPortSetReadTimeout, 300), 0);
  EXPECT_EQ(otool_IOCTL(h, kPortSetWriteTimeout, static_cast<const void*>(&writeMs)), 0);
  EXPECT_EQ(otool_IOCTL(h, kPortSetReadTimeout, -5), -1);  // refused: the time-out stays
  EXPECT_EQ(get(kPortGetReadTimeout), 300);
  EXPECT_EQ(get(kPortGetWriteTimeout), 5000);
  EXPECT_EQ(otool_IOCTL(h, kPortSetState, 2), 0);  // the TM295's "XONXOFF"
  EXPECT_TRUE(port.FlowControl());
  EXPECT_EQ(otool_IOCTL(h, kPortSetState, static_cast<const void*>(&withLineFlag)), 0);
  EXPECT_EQ(get(kPortGetState), 0x102);  // every bit kept
  EXPECT_TRUE(port.FlowControl());
  EXPECT_EQ(otool_IOCTL(h, kPortSetState, 0x100), 0);
  EXPECT_FALSE(port.FlowControl());
  EXPECT_EQ(otool_IOCTL(h, kPortSetInputBuffer, 10), 0);  // accepted, nothing to do
  EXPECT_EQ(otool_IOCTL(h, kPortPurge, 0), 0);
  EXPECT_EQ(otool_IOCTL(h, 1234, 10), -1);
  EXPECT_EQ(get(1234), -1);
  EXPECT_EQ(otool_IOCTL(h, kPortGetReadTimeout, 10), -1);  // a get request in value form
  EXPECT_EQ(otool_IOCTL(h, kPortGetState, static_cast<const void*>(&zero)), -1);
  EXPECT_EQ(otool_IOCTL(h, kPortGetState, static_cast<void*>(nullptr)), -1);
  EXPECT_EQ(otool_IOCTL(h, kPortSetReadTimeout, static_cast<const void*>(nullptr)), -1);
  otool_CLOSE(h);
}

TEST(PortFunctions, LongestRegisteredPrefixWins) {
  std::string chosen;  // the factories only note that they were asked, and open nothing
  auto kind = [&chosen](std::string tag) -> PortFactory {
    return [&chosen, tag](const std::string& rest) { chosen = tag + rest; return std::unique_ptr<PortBackend>(); };
  };
  auto open = [&chosen](const char* name) {
    chosen.clear();
    EXPECT_EQ(Open(name), -1);
    return chosen;
  };
  RegisterPortKind("demo:", kind("short "));
  RegisterPortKind("demo:long:", kind("long "));
  EXPECT_EQ(open("demo:abc"), "short abc");
  EXPECT_EQ(open("demo:long:xyz"), "long xyz");
  EXPECT_EQ(open("demo:lon"), "short lon");
  RegisterPortKind("demo:", kind("again "));  // replaces
  EXPECT_EQ(open("demo:abc"), "again abc");
  RegisterPortKind("demo:long:", nullptr);  // removes
  RegisterPortKind("demo:", nullptr);
  EXPECT_EQ(open("demo:long:xyz"), "");  // a terminal device now, which does not exist
}

}  // namespace
}  // namespace posprint::test
