// The scripted port that every driver test talks to: what it records, what it answers,
// and the faults it can stage.
#include <vector>

#include "platform/scripted_port.h"
#include "ports/port_io.h"

namespace posprint::test {
namespace {

using Strings = std::vector<std::string>;

TEST(ScriptedPort, RecordsWritesAndStagesFaults) {
  ScriptedPort port;
  port.ShortWriteAt(3, 1);
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  EXPECT_TRUE(port.IsOpen());
  EXPECT_EQ(Write(h, Hex("1B 40")), 2);
  EXPECT_EQ(Write(h, "AB\r\n"), 4);
  EXPECT_EQ(Write(h, "CD"), 1);  // the third write takes one byte
  EXPECT_EQ(ToHex(port.Written()), "1B 40 41 42 0D 0A 43");
  EXPECT_EQ(port.Writes(), (Strings{Hex("1B 40"), "AB\r\n", "C"}));
  port.FailClose();
  EXPECT_EQ(otool_CLOSE(h), 0);
  EXPECT_EQ(Write(h, "X"), 1);  // still open, the handle still works
  port.FailClose(false);
  EXPECT_EQ(otool_CLOSE(h), 1);
  EXPECT_FALSE(port.IsOpen());
  port.FailOpen();
  EXPECT_EQ(otool_OPEN(port.Name().c_str(), 0, nullptr), -1);
  EXPECT_EQ(port.Opens(), 1);
  port.FailOpen(false);
  const int again = otool_OPEN(port.Name().c_str(), 0, nullptr);
  port.Answer("never read");
  port.Vanish();  // unplugged: reads and writes fail at once
  EXPECT_EQ(Write(again, "X"), -1);
  EXPECT_EQ(Read(again, 4), "<failed>");
  EXPECT_EQ(ToHex(port.Written()), "1B 40 41 42 0D 0A 43 58");  // nothing more went out
  otool_CLOSE(again);
  int gone = -1;
  {
    ScriptedPort destroyed;
    gone = otool_OPEN(destroyed.Name().c_str(), 0, nullptr);
  }
  EXPECT_EQ(Write(gone, "X"), -1);
  EXPECT_EQ(otool_CLOSE(gone), 1);
}

// Each read takes at most one answer (a burst), or the first bytes of it; a delayed answer
// comes to the read that waits long enough; a purge discards only what has arrived.
TEST(ScriptedPort, Answers) {
  ScriptedPort port;
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  port.Answer("A");
  port.Answer("BCDE");
  EXPECT_EQ(Read(h, 10), "A");
  EXPECT_EQ(Read(h, 2), "BC");
  EXPECT_EQ(Read(h, 10), "DE");
  EXPECT_EQ(Read(h, 10), "");
  EXPECT_EQ(port.Reads(), 4);
  otool_IOCTL(h, kPortSetReadTimeout, 100);
  port.Answer("OK", 250);
  EXPECT_EQ(Read(h, 2) + Read(h, 2), "");  // 150, then 50 ms still to run
  EXPECT_EQ(Read(h, 2), "OK");
  otool_IOCTL(h, kPortSetReadTimeout, 300);
  port.Answer("late", 300);
  EXPECT_EQ(Read(h, 4), "late");  // a delay equal to the time-out arrives in time
  port.Answer("xyz");
  port.Answer("on its way", 5000);
  EXPECT_EQ(otool_IOCTL(h, kPortPurge, 0), 3);
  EXPECT_EQ(port.Purges(), 1);
  EXPECT_EQ(port.PendingAnswers(), 1u);
  otool_CLOSE(h);
}

// The responder sees each write as it went on the line and may queue the answer.
TEST(ScriptedPort, Responder) {
  ScriptedPort port;
  Strings seen;
  port.OnWrite([&seen](ScriptedPort& p, const std::string& written) {
    seen.push_back(written);
    if (written == Hex("10 04 01")) p.Answer(Hex("16"));
  });
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  Write(h, "text");
  EXPECT_EQ(Read(h, 1), "");
  Write(h, Hex("10 04 01"));
  EXPECT_EQ(ToHex(Read(h, 1)), "16");
  EXPECT_EQ(seen, (Strings{"text", Hex("10 04 01")}));
  otool_CLOSE(h);
}

}  // namespace
}  // namespace posprint::test
