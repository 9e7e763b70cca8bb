// The shared status query: the answer, the flags it leaves for each way a query can go,
// and the port settings it puts back.
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "frame/status_query.h"
#include "platform/otool.h"
#include "support/bytes.h"

namespace posprint::test {
namespace {

void AnswerEachRequest(ScriptedPort& port, const std::string& answer, int delayMs = 0) {
  port.OnWrite([answer, delayMs](ScriptedPort& p, const std::string&) { p.Answer(answer, delayMs); });
}

struct Case {
  const char* name;
  std::function<void(ScriptedContext&)> arrange;
  Purge purge;
  int result;
  int answer;  // -1: left as it was
  std::uint32_t flags;
  std::string sent;
};

TEST(StatusQuery, FlagsForEachOutcome) {
  const std::vector<Case> cases = {
      {"answered", [](ScriptedContext& s) { AnswerEachRequest(s.port, "\x12"); }, Purge::kNo, 1, 0x12, 0x100,
       "10 04 02"},
      {"silent printer", [](ScriptedContext&) {}, Purge::kNo, 0, -1, 0x110, "10 04 02"},
      {"answer later than the query time-out", [](ScriptedContext& s) { AnswerEachRequest(s.port, "\x12", 150); },
       Purge::kNo, 0, -1, 0x110, "10 04 02"},
      {"answer within the query time-out", [](ScriptedContext& s) { AnswerEachRequest(s.port, "\x12", 80); },
       Purge::kNo, 1, 0x12, 0x100, "10 04 02"},
      {"line took part of the request", [](ScriptedContext& s) { s.port.ShortWriteAt(1, 2); }, Purge::kNo, 0, -1,
       0x01, "10 04"},
      {"port vanished", [](ScriptedContext& s) { s.port.Vanish(); }, Purge::kNo, 0, -1, 0x01, ""},
      {"port vanished, purge first", [](ScriptedContext& s) { s.port.Vanish(); }, Purge::kFirst, 0, -1, 0x01, ""},
      {"no port", [](ScriptedContext& s) { s.ctx.handle = -1; }, Purge::kFirst, 0, -1, 0x01, ""},
      {"handle of no open port", [](ScriptedContext& s) { s.ctx.handle = 999; }, Purge::kNo, 0, -1, 0x01, ""},
      {"unsolicited bytes purged, then answered",
       [](ScriptedContext& s) {
         s.port.Answer("\x55\x55");
         AnswerEachRequest(s.port, "\x12");
       },
       Purge::kFirst, 1, 0x12, 0x120, "10 04 02"},
      {"unsolicited bytes purged, then silence", [](ScriptedContext& s) { s.port.Answer("\x55"); }, Purge::kFirst,
       0, -1, 0x130, "10 04 02"},
      {"without the purge a stale byte is taken as the answer",
       [](ScriptedContext& s) {
         s.port.Answer("\x55");
         AnswerEachRequest(s.port, "\x12");
       },
       Purge::kNo, 1, 0x55, 0x100, "10 04 02"},
      {"purge of an empty line sets nothing", [](ScriptedContext& s) { AnswerEachRequest(s.port, "\x13"); },
       Purge::kFirst, 1, 0x13, 0x100, "10 04 02"},
      {"earlier query flags cleared, other bits kept",
       [](ScriptedContext& s) {
         s.ctx.statusFlags = 0x0F31;
         AnswerEachRequest(s.port, std::string(1, '\0'));
       },
       Purge::kNo, 1, 0x00, 0x0F00, "10 04 02"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ScriptedContext line;
    c.arrange(line);
    std::uint8_t answer = 0xEE;
    EXPECT_EQ(QueryStatusByte(line.ctx, "\x10\x04\x02", &answer, c.purge), c.result);
    EXPECT_EQ(answer, c.answer < 0 ? 0xEE : c.answer);
    EXPECT_EQ(line.ctx.statusFlags, c.flags);
    EXPECT_EQ(line.Sent(), c.sent);
  }
}

TEST(StatusQuery, ShortWriteReadsNothing) {
  ScriptedContext line;
  line.port.ShortWriteAt(1, 0);
  std::uint8_t answer = 0;
  EXPECT_EQ(QueryStatusByte(line.ctx, "\x10\x04\x02", &answer, Purge::kNo), 0);
  EXPECT_EQ(line.port.Reads(), 0);
}

// XON/XOFF is off while the answer is awaited; time-out and flow control come back after.
TEST(StatusQuery, PortSettingsPutBack) {
  for (bool answered : {true, false}) {
    SCOPED_TRACE(answered ? "answered" : "silent");
    ScriptedContext line;
    const int handle = line.ctx.handle;
    ASSERT_EQ(otool_IOCTL(handle, kPortSetState, kPortStateXonXoff | 0x40), 0);
    ASSERT_EQ(otool_IOCTL(handle, kPortSetReadTimeout, 6000), 0);
    bool flowControlDuringQuery = true;
    line.port.OnWrite([&](ScriptedPort& p, const std::string&) {
      flowControlDuringQuery = p.FlowControl();
      if (answered) p.Answer("\x13");  // XOFF as a status byte
    });
    std::uint8_t answer = 0;
    EXPECT_EQ(QueryStatusByte(line.ctx, "\x10\x04\x02", &answer, Purge::kFirst), answered ? 1 : 0);
    if (answered) {
      EXPECT_EQ(answer, 0x13);
    }
    EXPECT_FALSE(flowControlDuringQuery);
    EXPECT_TRUE(line.port.FlowControl());
    int state = 0, timeout = 0;
    ASSERT_EQ(otool_IOCTL(handle, kPortGetState, &state), 0);
    ASSERT_EQ(otool_IOCTL(handle, kPortGetReadTimeout, &timeout), 0);
    EXPECT_EQ(state, kPortStateXonXoff | 0x40);
    EXPECT_EQ(timeout, 6000);
  }
}

TEST(StatusQuery, StateWordWithoutFlowControlIsLeftAlone) {
  ScriptedContext line;
  ASSERT_EQ(otool_IOCTL(line.ctx.handle, kPortSetState, 0x40), 0);
  AnswerEachRequest(line.port, "\x12");
  std::uint8_t answer = 0;
  EXPECT_EQ(QueryStatusByte(line.ctx, "\x10\x04\x04", &answer, Purge::kNo), 1);
  int state = 0;
  ASSERT_EQ(otool_IOCTL(line.ctx.handle, kPortGetState, &state), 0);
  EXPECT_EQ(state, 0x40);
  EXPECT_EQ(line.Sent(), "10 04 04");
}

TEST(PortReady, OpenPortOnly) {
  ScriptedContext line;
  EXPECT_TRUE(PortReady(line.ctx));
  PortContext none;
  EXPECT_FALSE(PortReady(none));
  PortContext stranger;
  stranger.handle = 999;
  EXPECT_FALSE(PortReady(stranger));
  PortContext closed;
  ScriptedPort port;
  closed.handle = otool_OPEN(port.Name().c_str(), 0, nullptr);
  ASSERT_GE(closed.handle, 0);
  ASSERT_EQ(otool_CLOSE(closed.handle), 1);
  EXPECT_FALSE(PortReady(closed));
}

}  // namespace
}  // namespace posprint::test
