// The scripted port that every driver test talks to: what it records, what it answers,
// and the faults it can stage.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/otool.h"
#include "platform/scripted_port.h"
#include "ports/port_io.h"
#include "support/bytes.h"

namespace posprint {
namespace {

using test::Hex;
using test::Read;
using test::Write;
using test::ToHex;

TEST(ScriptedPort, RecordsEveryWriteAndEachCall) {
  ScriptedPort port;
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  ASSERT_GE(h, 0);
  EXPECT_TRUE(port.IsOpen());
  EXPECT_EQ(Write(h, Hex("1B 40")), 2);
  EXPECT_EQ(Write(h, "AB\r\n"), 4);
  EXPECT_EQ(ToHex(port.Written()), "1B 40 41 42 0D 0A");
  EXPECT_EQ(port.Writes(), (std::vector<std::string>{Hex("1B 40"), "AB\r\n"}));
  EXPECT_EQ(otool_CLOSE(h), 1);
  EXPECT_FALSE(port.IsOpen());
}

TEST(ScriptedPort, ShortWriteAtTheNthWrite) {
  ScriptedPort port;
  port.ShortWriteAt(2, 1);
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  EXPECT_EQ(Write(h, "AB"), 2);
  EXPECT_EQ(Write(h, "CD"), 1);
  EXPECT_EQ(Write(h, "EF"), 2);
  EXPECT_EQ(port.Written(), "ABCEF");
  EXPECT_EQ(port.Writes(), (std::vector<std::string>{"AB", "C", "EF"}));
  otool_CLOSE(h);
}

TEST(ScriptedPort, FailedOpenGivesNoHandle) {
  ScriptedPort port;
  port.FailOpen();
  EXPECT_EQ(otool_OPEN(port.Name().c_str(), 0, nullptr), -1);
  EXPECT_FALSE(port.IsOpen());
  EXPECT_EQ(port.Opens(), 0);
}

TEST(ScriptedPort, FailedCloseKeepsThePortOpenUntilItCloses) {
  ScriptedPort port;
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  port.FailClose();
  EXPECT_EQ(otool_CLOSE(h), 0);
  EXPECT_TRUE(port.IsOpen());
  EXPECT_EQ(Write(h, "X"), 1);  // the handle still works
  port.FailClose(false);
  EXPECT_EQ(otool_CLOSE(h), 1);
  EXPECT_FALSE(port.IsOpen());
}

TEST(ScriptedPort, VanishedPortFailsReadsAndWritesAtOnce) {
  ScriptedPort port;
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  port.Answer("never read");
  port.Vanish();
  EXPECT_EQ(Write(h, "X"), -1);
  EXPECT_EQ(Read(h, 4), "<failed>");
  EXPECT_EQ(port.Written(), "");
  otool_CLOSE(h);
}

TEST(ScriptedPort, DestroyedPortFailsItsHandle) {
  int h = -1;
  {
    ScriptedPort port;
    h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  }
  EXPECT_EQ(Write(h, "X"), -1);
  EXPECT_EQ(otool_CLOSE(h), 1);
}

TEST(ScriptedPort, EachReadTakesAtMostOneAnswer) {
  ScriptedPort port;
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  port.Answer("A");
  port.Answer("BC");
  EXPECT_EQ(Read(h, 10), "A");
  EXPECT_EQ(Read(h, 10), "BC");
  EXPECT_EQ(Read(h, 10), "");
  EXPECT_EQ(port.Reads(), 3);
  otool_CLOSE(h);
}

TEST(ScriptedPort, ShortReadLeavesTheRestQueued) {
  ScriptedPort port;
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  port.Answer("ABCDE");
  EXPECT_EQ(Read(h, 2), "AB");
  EXPECT_EQ(port.PendingAnswers(), 1u);
  EXPECT_EQ(Read(h, 10), "CDE");
  otool_CLOSE(h);
}

TEST(ScriptedPort, DelayedAnswerComesToTheReadThatWaitsLongEnough) {
  ScriptedPort port;
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  otool_IOCTL(h, kPortSetReadTimeout, 100);
  port.Answer("OK", 250);
  EXPECT_EQ(Read(h, 2), "");  // 150 ms still to run
  EXPECT_EQ(Read(h, 2), "");  // 50 ms still to run
  EXPECT_EQ(Read(h, 2), "OK");
  port.Answer("late", 300);
  otool_IOCTL(h, kPortSetReadTimeout, 300);
  EXPECT_EQ(Read(h, 4), "late");  // a delay equal to the time-out arrives in time
  otool_CLOSE(h);
}

TEST(ScriptedPort, ResponderSeesEachWriteAndQueuesTheAnswer) {
  ScriptedPort port;
  std::vector<std::string> seen;
  port.OnWrite([&seen](ScriptedPort& p, const std::string& written) {
    seen.push_back(written);
    if (written == Hex("10 04 01")) p.Answer(Hex("16"));
  });
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  Write(h, "text");
  EXPECT_EQ(Read(h, 1), "");
  Write(h, Hex("10 04 01"));
  EXPECT_EQ(ToHex(Read(h, 1)), "16");
  EXPECT_EQ(seen, (std::vector<std::string>{"text", Hex("10 04 01")}));
  otool_CLOSE(h);
}

TEST(ScriptedPort, PurgeDiscardsArrivedAnswersOnly) {
  ScriptedPort port;
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  port.Answer("xyz");
  port.Answer("on its way", 5000);
  EXPECT_EQ(otool_IOCTL(h, kPortPurge, 0), 3);
  EXPECT_EQ(port.Purges(), 1);
  EXPECT_EQ(port.PendingAnswers(), 1u);
  otool_CLOSE(h);
}

TEST(ScriptedPort, ScramblingShowsOnTheLine) {
  ScriptedPort port;
  port.OnWrite([](ScriptedPort& p, const std::string& written) {
    // The printer, in scrambled mode 0xCB, answers status 12 scrambled too.
    if (written == Hex("DB CF C9")) p.Answer(Hex("D9"));
  });
  const int h = otool_OPEN(port.Name().c_str(), 0, nullptr);
  const int on[] = {0x1CB, 0};  // only the low byte of the key counts
  ASSERT_EQ(otool_IOCTL(h, kPortScramble, static_cast<const void*>(on)), 0);
  Write(h, Hex("10 04 02"));
  EXPECT_EQ(ToHex(port.Written()), "DB CF C9");
  EXPECT_EQ(ToHex(Read(h, 1)), "12");
  const int off[] = {0};
  ASSERT_EQ(otool_IOCTL(h, kPortScramble, static_cast<const void*>(off)), 0);
  port.ClearWritten();
  port.Answer(Hex("D9"));
  Write(h, Hex("10 04 02"));
  EXPECT_EQ(ToHex(port.Written()), "10 04 02");
  EXPECT_EQ(ToHex(Read(h, 1)), "D9");
  otool_CLOSE(h);
}

}  // namespace
}  // namespace posprint
