// posprint run against jobs and files that a terminal should never be given but one day
// will be: megabyte texts and attributes, numbers past every limit, garbage instead of
// XML, files it may not read. Each ends with a result line a command (or a message and
// exit status 2 when nothing can run), within its time, without a crash.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "faults/ticket_run.h"
#include "host/host_helpers.h"

namespace posprint::test {
namespace {

const std::string kMegabyte(1 << 20, 'A');
// A quarter of one, for the attributes: enough to overrun every fixed buffer many times.
const std::string kHugeName(1 << 18, 'N');

// A job of one element of every kind, each with texts and attributes far beyond anything
// a printer can print: megabytes of text, numbers beyond 32 bits, names of a megabyte.
std::string HugeJob() {
  const std::string digits(1 << 20, '7');
  return Job(Command("INIT_PRINTER") + Command("START_PRINT") +
             Command("NEWPRINT", "<SINGLEFIELD Justify=\"CENTER\" Font=\"FONTB" + kHugeName + "\"><Field>" +
                                     std::string(1 << 20, 'W') + "</Field></SINGLEFIELD>") +
             Command("NEWPRINT", "<DOUBLEFIELD Margin=\"99999999999\" Char=\"" + kHugeName + "\"><LeftField>" +
                                     kMegabyte + "</LeftField><RightField>" + kHugeName +
                                     "</RightField></DOUBLEFIELD>") +
             Command("NEWPRINT",
                     "<DOUBLEFIELD MarginSx=\"2147483647\" MarginDx=\"-2147483648\"><LeftField>L</LeftField>"
                     "<RightField>R</RightField></DOUBLEFIELD>") +
             Command("NEWPRINT", "<LINE Char=\"" + kHugeName + "\" Width=\"" + kHugeName + "\"/>") +
             Command("NEWPRINT", "<BARCODE Type=\"QR_CODE\" Height=\"99999999999\" ModuleWidth=\"-5\">" + digits +
                                     "</BARCODE>") +
             Command("NEWPRINT", "<BARCODE Type=\"CODE128\" HRI=\"" + kHugeName + "\">" + digits + "</BARCODE>") +
             Command("NEWPRINT", "<LOGO FileName=\"" + kHugeName + ".bmp\" Rotation=\"" + kHugeName + "\"/>") +
             Command("NEWPRINT", "<LINEFEED Value=\"99999999999999999999\"/>") +
             Command("NEWPRINT", "<MOBILEFIELD OffsetY=\"2147483647\" OffsetX=\"-1\" Alignment=\"RIGHT\"><Field>" +
                                     kHugeName + "</Field></MOBILEFIELD>") +
             Command("NEWPRINT", "<CUT Type=\"" + kHugeName + "\"/>") + Command(kHugeName) + Command("STOP_PRINT") +
             Command("STOP_PRINTER"));
}
constexpr std::size_t kHugeJobCommands = 15;

// The bytes that reach the printer stay within what the printer's buffers would take for
// such a ticket; an unbounded output would mean a length taken from the input unchecked.
constexpr std::uintmax_t kMaxOutputBytes = 1 << 20;

class HugeJobOnEveryModel : public ::testing::TestWithParam<const char*> {};

TEST_P(HugeJobOnEveryModel, EveryCommandReturnsAndTheOutputStaysBounded) {
  if (PluginFactory(GetParam()) == nullptr) GTEST_SKIP() << GetParam() << " is not in the driver plug-in yet";
  TempDir dir;
  const std::string job = dir.Write("huge.xml", HugeJob());
  const std::string out = dir.Path() + "/out.bin";
  const std::string model = Narrow(FindIdentity(GetParam())->modelName);
  const ProgramRun run = Posprint({"run", "--model", model, "--port", "file:" + out, "--json", job});
  EXPECT_FALSE(run.timedOut);
  EXPECT_TRUE(run.status == 0 || run.status == 1) << run.status << "\n" << run.err.substr(0, 2000);
  EXPECT_EQ(Lines(run.out).size(), kHugeJobCommands) << run.out.substr(0, 2000);
  EXPECT_LE(std::filesystem::file_size(out), kMaxOutputBytes);
}

INSTANTIATE_TEST_SUITE_P(HostBadInput, HugeJobOnEveryModel, ::testing::ValuesIn(FactoryNames()), ModelName);

// A --json result line as a word of ticket_run.h: "ok", "fail", "6", "ok:102".
std::string Word(const std::string& line) {
  std::vector<int> errors;
  std::istringstream list(line.substr(line.find("\"errors\":[") + 10));
  for (int error; list >> error; list.ignore(1)) errors.push_back(error);
  return Outcome(line.find("\"ok\":true") != std::string::npos, errors);
}

// The TMT70, the reference printer: what each oversized element gives. A text longer than
// the line is cut to it; margins past the line refuse it (6, twice); the LINE pattern is
// cut to the line; a barcode longer than 90 characters is refused before its kind is
// looked at (17, twice); no such logo file (10); at most 29 line feeds; 2147483647 empty
// lines are refused (16); CUT cuts whatever its Type says; an unknown command does nothing.
TEST(HostBadInput, HugeTextsAndAttributesOnTheTmt70) {
  TempDir dir;
  const std::string job = dir.Write("huge.xml", HugeJob());
  const ProgramRun run = Posprint({"run", "--model", "TMT70", "--port", "file:" + dir.Path() + "/out.bin", "--json", job});
  std::string words;
  for (const std::string& line : Lines(run.out)) words += (words.empty() ? "" : " ") + Word(line);
  EXPECT_EQ(words, "ok ok ok 6 6 ok 17 17 10 ok 16 ok ok ok ok") << run.err;
  EXPECT_EQ(run.status, 1);
}

struct BadFileCase {
  const char* name;
  std::string content;     // the job file
  const char* stderrNames;  // a piece of the message
};

// Files that are not jobs at all: each is refused with exit status 2 and a message naming
// the file, before any port is opened.
TEST(HostBadInput, FilesThatAreNotJobs) {
  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "<a>";
  const BadFileCase cases[] = {
      {"binary garbage", std::string("\x7F" "ELF\x02\x01\x01\0\0\0\xFF\xFE", 12) + std::string(4096, '\0'), "job.xml: "},
      {"text, not XML", "INIT_PRINTER\nCHECK\n", "job.xml: "},
      {"truncated in a tag", "<Job><Command name=\"INIT_PRINTER\"/><Command na", "job.xml: "},
      {"a hundred thousand unclosed elements", "<Job>" + deep, "job.xml: "},
  };
  for (const BadFileCase& c : cases) {
    SCOPED_TRACE(c.name);
    TempDir dir;
    const std::string job = dir.Write("job.xml", c.content);
    const ProgramRun run = Posprint({"run", "--model", "TMT70", "--port", "file:" + dir.Path() + "/out.bin", job});
    EXPECT_EQ(run.status, 2) << run.out.substr(0, 500);
    EXPECT_NE(run.err.find(c.stderrNames), std::string::npos) << run.err;
    EXPECT_FALSE(std::filesystem::exists(dir.Path() + "/out.bin"));
  }
}

// Entities declared in a document type are not expanded (the reader skips the DTD), so
// a "billion laughs" document costs nothing: its command names stay as written, and an
// unknown command does nothing.
TEST(HostBadInput, EntityExpansionIsNotDone) {
  std::string dtd = "<!DOCTYPE Job [<!ENTITY lol \"lol\">";
  for (int i = 1; i <= 9; ++i) {
    dtd += "<!ENTITY lol" + std::to_string(i) + " \"";
    for (int j = 0; j < 10; ++j) dtd += "&lol" + (i > 1 ? std::to_string(i - 1) : std::string()) + ";";
    dtd += "\">";
  }
  dtd += "]>";
  TempDir dir;
  const std::string job = dir.Write("job.xml", dtd + Job(Command("&lol9;")));
  const ProgramRun run = Posprint({"run", "--model", "TMT70", "--port", "file:" + dir.Path() + "/out.bin", job});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_LT(run.out.size(), 100u) << run.out.substr(0, 200);
}

// A well-formed job in a deep nest of elements: only the Command's first child is an
// element of the job; what lies below it is read by the drivers as they need it.
TEST(HostBadInput, DeeplyNestedJobElementRunsEveryCommand) {
  std::string nest;
  for (int i = 0; i < 20000; ++i) nest += "<Field>";
  for (int i = 0; i < 20000; ++i) nest += "</Field>";
  TempDir dir;
  const std::string job =
      dir.Write("job.xml", Job(Command("INIT_PRINTER") + Command("NEWPRINT", "<SINGLEFIELD>" + nest + "</SINGLEFIELD>") +
                               Command("NEWPRINT", "<DOUBLEFIELD><LeftField>" + nest + "</LeftField></DOUBLEFIELD>") +
                               Command("STOP_PRINTER")));
  const ProgramRun run = Posprint({"run", "--model", "TMT70", "--port", "file:" + dir.Path() + "/out.bin", "--json", job});
  EXPECT_FALSE(run.timedOut);
  ASSERT_EQ(Lines(run.out).size(), 4u) << run.err;
  EXPECT_NE(Lines(run.out)[2].find("\"errors\":[5]"), std::string::npos) << Lines(run.out)[2];  // no RightField
}

// Files the host may not read: refused with exit status 2 and the file named. (As root
// every file is readable, so the permission case runs only for an ordinary user.)
TEST(HostBadInput, UnreadableFiles) {
  TempDir dir;
  const std::string job = dir.Write("job.xml", Job(Command("INIT_PRINTER")));
  const std::string port = "file:" + dir.Path() + "/out.bin";
  const std::string params = dir.Write("bad.params", std::string("param_CutType=val_\0Partial\n", 27));
  if (::geteuid() != 0) {
    const std::string locked = dir.Write("locked.xml", Job(Command("INIT_PRINTER")));
    ::chmod(locked.c_str(), 0);
    const ProgramRun run = Posprint({"run", "--model", "TMT70", "--port", port, locked});
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("locked.xml"), std::string::npos) << run.err;
  }
  // A FIFO nobody writes to would block a careless reader for ever; /dev/null reads empty.
  const ProgramRun empty = Posprint({"run", "--model", "TMT70", "--port", port, "/dev/null"});
  EXPECT_EQ(empty.status, 2);
  EXPECT_NE(empty.err.find("/dev/null"), std::string::npos) << empty.err;
  // A NUL inside a parameter value: the value is taken as it stands up to the line's end
  // or refused, never read past.
  const ProgramRun nul = Posprint({"run", "--model", "TMT70", "--port", port, "--params", params, job});
  EXPECT_TRUE(nul.status == 0 || nul.status == 2) << nul.err;
}

}  // namespace
}  // namespace posprint::test
