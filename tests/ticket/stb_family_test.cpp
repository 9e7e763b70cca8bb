// The family's command layer on its own: setting frames with their checksums, the cuts,
// the end of a roll ticket and the code tables.
#include "drivers/ticket/stb_family/stb_commands.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

namespace {

using posprint::test::ScriptedContext;
using namespace StbFamily;

TEST(StbFamily, SettingFramesCarryTheirChecksum) {
  struct Case {
    std::uint8_t setting, value;
    const char* sent;
  };
  const Case cases[] = {
      {0x01, 0x01, "1D FF 0A 32 01 01 5A"}, {0x01, 0x00, "1D FF 0A 32 01 00 59"},
      {0x10, 0x00, "1D FF 0A 32 10 00 68"}, {0x10, 0x01, "1D FF 0A 32 10 01 69"},
      {0x09, 0x01, "1D FF 0A 32 09 01 62"}, {0x09, 0x00, "1D FF 0A 32 09 00 61"},
      {0x0A, 0x01, "1D FF 0A 32 0A 01 63"}, {0x0F, 0x04, "1D FF 0A 32 0F 04 6B"},
      {0x0F, 0x02, "1D FF 0A 32 0F 02 69"}, {0x0F, 0xFF, "1D FF 0A 32 0F FF 66"},  // the sum wraps
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.sent);
    ScriptedContext line;
    EXPECT_EQ(stb_SettingFrame(line.ctx, c.setting, c.value), kSuccess);
    EXPECT_EQ(line.Sent(), c.sent);
  }
}

TEST(StbFamily, Cuts) {
  struct Case {
    Cut cut;
    const char* sent;
  };
  const Case cases[] = {
      {Cut::kFull, "1B 69"},
      {Cut::kPartial, "1B 6D"},
      {Cut::kRetract, "1B 28 76 64 00 1B 69 1B 28 76 9C FF"},
      {Cut::kNone, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.sent);
    ScriptedContext line;
    EXPECT_EQ(stb_Cut(line.ctx, c.cut), kSuccess);
    EXPECT_EQ(line.Sent(), c.sent);
  }
}

TEST(StbFamily, RetractingCutFailsWhenAnyPartIsShort) {
  for (int write = 1; write <= 3; ++write) {
    SCOPED_TRACE(write);
    ScriptedContext line;
    line.port.ShortWriteAt(write, 1);
    EXPECT_EQ(stb_CutRetract(line.ctx), kFailure);
    EXPECT_EQ(line.port.Writes().size(), 3u);  // every part is still tried
  }
}

TEST(StbFamily, FeedAndCut) {
  struct Case {
    int feeds, cutType;
    const char* sent;
  };
  const Case cases[] = {{2, 0, "0A 0A"}, {0, 1, "1B 6D"}, {1, 2, "0A 1B 69"}, {0, 3, ""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.sent);
    ScriptedContext line;
    line.port.ShortWriteAt(1);  // unchecked: a short feed does not stop the ticket
    EXPECT_EQ(stb_FeedAndCut(line.ctx, c.feeds, c.cutType), kSuccess);
  }
  ScriptedContext line;
  stb_FeedAndCut(line.ctx, 3, 0);
  EXPECT_EQ(line.port.Writes().size(), 3u);  // one LF a write
}

TEST(StbFamily, CodeTables) {
  struct Case {
    int codePage;
    PrinterResult result;
    const char* sent;
  };
  const Case cases[] = {{8, kSuccess, "1B 74 00"}, {12, kSuccess, "1B 74 13"}, {0, kFailure, ""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.codePage);
    ScriptedContext line;
    EXPECT_EQ(stb_SelectCodeTable(line.ctx, c.codePage), c.result);
    EXPECT_EQ(line.Sent(), c.sent);
  }
}

TEST(StbFamily, SetupStopsAtAMissingAnswer) {
  ScriptedContext line;
  EXPECT_EQ(stb_Setup(line.ctx, {{0x09, 1, true}, {0x0F, 4, false}}), kFailure);
  EXPECT_EQ(line.Sent(), "1B 40 1D FF 0A 32 09 01 62");
  ScriptedContext answered;
  answered.port.Answer(std::string(1, '\0'));
  EXPECT_EQ(stb_Setup(answered.ctx, {{0x09, 1, true}, {0x0F, 4, false}}), kSuccess);
  EXPECT_EQ(answered.Sent(), "1B 40 1D FF 0A 32 09 01 62 1D FF 0A 32 0F 04 6B");
}

}  // namespace
