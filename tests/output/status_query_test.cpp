// The shared status query: the answer, the flags it leaves for each way a query can go,
// and the port settings it puts back.
#include "frame/status_query.h"
#include "output/output_test.h"
#include "platform/otool.h"

namespace posprint::test {
namespace {

// stale: bytes already on the line; reply: the printer's answer to each request, after
// delayMs (the query waits 100 ms). answer -1: left as it was. ready: what PortReady says.
TEST(StatusQuery, FlagsForEachOutcome) {
  using S = ScriptedContext;
  const Purge kNo = Purge::kNo, kFirst = Purge::kFirst;
  const struct {
    std::string stale, reply; int delayMs; Purge purge; int result, answer; std::uint32_t flags; std::string sent;
    std::function<void(S&)> arrange = [](S&) {};
    bool ready = true;
  } cases[] = {
      {"", "\x12", 0, kNo, 1, 0x12, 0x100, "10 04 02"}, {"", "", 0, kNo, 0, -1, 0x110, "10 04 02"},  // silent
      {"", "\x12", 150, kNo, 0, -1, 0x110, "10 04 02"}, {"", "\x12", 80, kNo, 1, 0x12, 0x100, "10 04 02"},
      {"\x55\x55", "\x12", 0, kFirst, 1, 0x12, 0x120, "10 04 02"},  // unsolicited bytes purged, then answered
      {"\x55", "", 0, kFirst, 0, -1, 0x130, "10 04 02"},           // unsolicited bytes purged, then silence
      {"\x55", "\x12", 0, kNo, 1, 0x55, 0x100, "10 04 02"},        // without the purge a stale byte answers
      {"", "\x13", 0, kFirst, 1, 0x13, 0x100, "10 04 02"},         // the purge of an empty line sets nothing
      // Earlier query flags cleared, other bits kept.
      {"", std::string(1, '\0'), 0, kNo, 1, 0x00, 0x0F00, "10 04 02", [](S& s) { s.ctx.statusFlags = 0x0F31; }},
      // The request not sent whole, or a port that is not ready: nothing is read.
      {"", "", 0, kNo, 0, -1, 0x01, "10 04", [](S& s) { s.port.ShortWriteAt(1, 2); }},
      {"", "", 0, kNo, 0, -1, 0x01, "", [](S& s) { s.port.Vanish(); }},
      {"", "", 0, kFirst, 0, -1, 0x01, "", [](S& s) { s.port.Vanish(); }},
      {"", "", 0, kFirst, 0, -1, 0x01, "", [](S& s) { s.ctx.handle = -1; }, false},
      {"", "", 0, kNo, 0, -1, 0x01, "", [](S& s) { s.ctx.handle = 999; }, false},
      {"", "", 0, kNo, 0, -1, 0x01, "", [](S& s) { otool_CLOSE(s.ctx.handle); }, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    ScriptedContext line;
    if (!c.stale.empty()) line.port.Answer(c.stale);
    if (!c.reply.empty()) {
      line.port.OnWrite([&c](ScriptedPort& p, const std::string&) { p.Answer(c.reply, c.delayMs); });
    }
    c.arrange(line);
    EXPECT_EQ(PortReady(line.ctx), c.ready);
    std::uint8_t answer = 0xEE;
    EXPECT_EQ(QueryStatusByte(line.ctx, "\x10\x04\x02", &answer, c.purge), c.result);
    EXPECT_EQ(answer, c.answer < 0 ? 0xEE : c.answer);
    EXPECT_EQ(line.ctx.statusFlags, c.flags);
    EXPECT_EQ(line.Sent(), c.sent);
    EXPECT_EQ(line.port.Reads() > 0, c.sent == "10 04 02");
  }
}

// XON/XOFF is off while the answer is awaited (an XOFF can be a status byte); the state
// word and time-out come back after.
TEST(StatusQuery, PortSettingsPutBack) {
  const struct { int state; bool answered; } cases[] = {
      {kPortStateXonXoff | 0x40, true}, {kPortStateXonXoff | 0x40, false}, {0x40, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.state << (c.answered ? " answered" : " silent"));
    ScriptedContext line;
    otool_IOCTL(line.ctx.handle, kPortSetState, c.state);
    otool_IOCTL(line.ctx.handle, kPortSetReadTimeout, 6000);
    bool flowControlDuringQuery = true;
    line.port.OnWrite([&](ScriptedPort& p, const std::string&) {
      flowControlDuringQuery = p.FlowControl();
      if (c.answered) p.Answer("\x13");
    });
    std::uint8_t answer = 0;
    EXPECT_EQ(QueryStatusByte(line.ctx, "\x10\x04\x04", &answer, Purge::kFirst), c.answered ? 1 : 0);
    EXPECT_EQ(answer, c.answered ? 0x13 : 0);
    EXPECT_FALSE(flowControlDuringQuery);
    EXPECT_EQ(line.port.FlowControl(), (c.state & kPortStateXonXoff) != 0);
    int state = 0, timeout = 0;
    otool_IOCTL(line.ctx.handle, kPortGetState, &state);
    otool_IOCTL(line.ctx.handle, kPortGetReadTimeout, &timeout);
    EXPECT_EQ(state, c.state);
    EXPECT_EQ(timeout, 6000);
  }
}

}  // namespace
}  // namespace posprint::test
