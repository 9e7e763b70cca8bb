// posprint emulate's listener: a virtual printer on a TCP port answers a program that
// talks to it through the port layer, and writes each finished ticket to the preview
// directory.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "emulator_helpers.h"
#include "platform/nx_string.h"
#include "platform/otool.h"

namespace emulator_test {
namespace {

TEST(Listener, TcpPrinterAnswersAndWritesEachTicket) {
  const std::string directory = ::testing::TempDir() + "listener_previews";
  ::mkdir(directory.c_str(), 0777);
  std::remove((directory + "/ticket-0001.png").c_str());

  posprint::emulator::ListenOptions options;
  options.model = "TMT70";
  options.listen = "tcp:127.0.0.1:0";
  options.state = PrinterState::kNearEnd;
  options.previewDir = directory;
  std::atomic<bool> stop{false};
  std::mutex mutex;
  std::condition_variable readyNow;
  std::string port, error;
  std::vector<std::string> log;
  std::thread listener([&] {
    const bool ok = posprint::emulator::Listen(
        options, stop,
        [&](const std::string& name) {
          std::lock_guard<std::mutex> lock(mutex);
          port = name;
          readyNow.notify_all();
        },
        [&](const std::string& line) {
          std::lock_guard<std::mutex> lock(mutex);
          log.push_back(line);
        },
        &error);
    if (!ok) {
      std::lock_guard<std::mutex> lock(mutex);
      port = "failed";
      readyNow.notify_all();
    }
  });
  {
    std::unique_lock<std::mutex> lock(mutex);
    readyNow.wait(lock, [&] { return !port.empty(); });
  }
  ASSERT_NE(port, "failed") << error;
  ASSERT_EQ(port.rfind("tcp:127.0.0.1:", 0), 0u) << port;

  const int handle = otool_OPEN(Nx_Stringa::FromUtf8(port).c_str(), 0, nullptr);
  ASSERT_GE(handle, 0);
  otool_IOCTL(handle, kPortSetReadTimeout, 5000);
  const std::string ticket = Hex("10 04 04 48 0A 1D 56 01");  // status, a line, a partial cut
  ASSERT_EQ(otool_WRITE(handle, ticket.data(), static_cast<int>(ticket.size())), static_cast<int>(ticket.size()));
  char answer = 0;
  EXPECT_EQ(otool_READ(handle, &answer, 1), 1);
  EXPECT_EQ(static_cast<unsigned char>(answer), 0x1E) << "roll near its end";
  // The ticket file appears once the cut went through; the printer is asked again so
  // that the check does not race it.
  ASSERT_EQ(otool_WRITE(handle, "\x10\x04\x04", 3), 3);
  EXPECT_EQ(otool_READ(handle, &answer, 1), 1);
  otool_CLOSE(handle);
  stop = true;
  listener.join();

  struct stat info {};
  EXPECT_EQ(::stat((directory + "/ticket-0001.png").c_str(), &info), 0);
  std::lock_guard<std::mutex> lock(mutex);
  ASSERT_FALSE(log.empty());
  EXPECT_EQ(log[0], "printed " + directory + "/ticket-0001.png");
}

TEST(Listener, RefusesWhatItCannotPlay) {
  std::atomic<bool> stop{true};
  std::string error;
  posprint::emulator::ListenOptions options;
  options.model = "TM88";
  options.listen = "pty";
  EXPECT_FALSE(posprint::emulator::Listen(options, stop, nullptr, nullptr, &error));
  EXPECT_EQ(error, "no virtual printer plays the model \"TM88\"");
  options.model = "TMT70";
  options.listen = "serial";
  EXPECT_FALSE(posprint::emulator::Listen(options, stop, nullptr, nullptr, &error));
  EXPECT_EQ(error, "--listen takes pty, pty:LINK or tcp:HOST:PORT, not \"serial\"");
}

}  // namespace
}  // namespace emulator_test
