// posprint emulate's listener: a virtual printer on a TCP port answers a program that
// talks to it through the port layer, and writes each finished ticket to the preview
// directory.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "emulator_helpers.h"
#include "platform/nx_string.h"
#include "platform/otool.h"

namespace emulator_test {
namespace {

// Listen() on a thread of its own, until Stop().
class ListenerThread {
 public:
  explicit ListenerThread(const posprint::emulator::ListenOptions& options)
      : thread_([this, options] {
          const bool ok = posprint::emulator::Listen(options, stop_, [this](const std::string& name) { Ready(name); },
                                                     [this](const std::string& line) { log.push_back(line); }, &error);
          if (!ok) Ready("failed");
        }) {}
  ~ListenerThread() { Stop(); }

  // The port it listens on, once it does; "failed" when it could not.
  std::string Port() {
    std::unique_lock<std::mutex> lock(mutex_);
    readyNow_.wait(lock, [&] { return !port_.empty(); });
    return port_;
  }
  void Stop() {
    stop_ = true;
    if (thread_.joinable()) thread_.join();
  }

  std::string error;
  std::vector<std::string> log;  // read after Stop()

 private:
  void Ready(const std::string& name) {
    std::lock_guard<std::mutex> lock(mutex_);
    port_ = name;
    readyNow_.notify_all();
  }

  std::atomic<bool> stop_{false};
  std::mutex mutex_;
  std::condition_variable readyNow_;
  std::string port_;
  std::thread thread_;
};

TEST(Listener, TcpPrinterAnswersAndWritesEachTicket) {
  const std::string directory = ::testing::TempDir() + "listener_previews";
  ::mkdir(directory.c_str(), 0777);
  std::remove((directory + "/ticket-0001.png").c_str());

  posprint::emulator::ListenOptions options;
  options.model = "TMT70";
  options.listen = "tcp:127.0.0.1:0";
  options.state = PrinterState::kNearEnd;
  options.previewDir = directory;
  ListenerThread listener(options);
  const std::string port = listener.Port();
  ASSERT_NE(port, "failed") << listener.error;
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
  listener.Stop();

  struct stat info {};
  EXPECT_EQ(::stat((directory + "/ticket-0001.png").c_str(), &info), 0);
  ASSERT_FALSE(listener.log.empty());
  EXPECT_EQ(listener.log[0], "printed " + directory + "/ticket-0001.png");
}

// An LX300 out of paper answers what it hears with XOFF.
TEST(Listener, Lx300OutOfPaperSendsXoff) {
  posprint::emulator::ListenOptions options;
  options.model = "LX300";
  options.listen = "pty";
  options.state = PrinterState::kPaperOut;
  ListenerThread listener(options);
  const std::string port = listener.Port();
  ASSERT_NE(port, "failed") << listener.error;
  const int fd = ::open(port.c_str(), O_RDWR | O_NOCTTY);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(::write(fd, "\x1B@", 2), 2);
  pollfd answer{fd, POLLIN, 0};
  ASSERT_EQ(::poll(&answer, 1, 10000), 1) << "no XOFF (a guard against hanging, not a time limit)";
  char byte = 0;
  EXPECT_EQ(::read(fd, &byte, 1), 1);
  EXPECT_EQ(byte, 0x13);
  ::close(fd);
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
