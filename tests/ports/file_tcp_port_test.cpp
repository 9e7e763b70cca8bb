// The file and TCP back-ends: a capture file, and a loopback listener playing a
// network printer.
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/otool.h"
#include "ports/port_io.h"
#include "support/bytes.h"

namespace posprint {
namespace {

using test::Hex;
using test::Read;
using test::Write;
using test::ToHex;

std::wstring Wide(const std::string& text) { return std::wstring(text.begin(), text.end()); }

std::string FileContents(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream all;
  all << in.rdbuf();
  return all.str();
}

TEST(FilePort, CapturesTheBytesFromAnEmptiedFile) {
  const std::string path = testing::TempDir() + "posprint_file_port.bin";
  std::ofstream(path) << "left over from before";
  const int h = otool_OPEN(Wide("file:" + path).c_str(), 0, nullptr);
  ASSERT_GE(h, 0);
  EXPECT_EQ(Write(h, Hex("1B 40")), 2);
  EXPECT_EQ(Write(h, Hex("00 0A 0D FF")), 4);
  EXPECT_EQ(Read(h, 8), "");  // nobody answers
  EXPECT_EQ(otool_CLOSE(h), 1);
  EXPECT_EQ(ToHex(FileContents(path)), "1B 40 00 0A 0D FF");
  std::remove(path.c_str());
}

TEST(FilePort, DirectoryThatDoesNotExistIsRefused) {
  EXPECT_EQ(otool_OPEN(L"file:/nonexistent-dir/out.bin", 0, nullptr), -1);
}

// A listening socket on 127.0.0.1 with an ephemeral port.
class Listener {
 public:
  Listener() {
    fd_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    ::bind(fd_, reinterpret_cast<sockaddr*>(&address), length);
    ::listen(fd_, 1);
    ::getsockname(fd_, reinterpret_cast<sockaddr*>(&address), &length);
    port_ = ntohs(address.sin_port);
  }
  ~Listener() {
    if (peer_ >= 0) ::close(peer_);
    if (fd_ >= 0) ::close(fd_);
  }
  std::wstring Name() const { return Wide("tcp:127.0.0.1:" + std::to_string(port_)); }
  bool Accept() {
    pollfd p{fd_, POLLIN, 0};
    if (::poll(&p, 1, 3000) != 1) return false;
    peer_ = ::accept(fd_, nullptr, nullptr);
    return peer_ >= 0;
  }
  void Send(const std::string& bytes) { ::send(peer_, bytes.data(), bytes.size(), 0); }
  std::string Receive(std::size_t count) {
    std::string got;
    while (got.size() < count) {
      pollfd p{peer_, POLLIN, 0};
      if (::poll(&p, 1, 3000) != 1) break;
      char buffer[256];
      const ssize_t n = ::recv(peer_, buffer, sizeof buffer, 0);
      if (n <= 0) break;
      got.append(buffer, static_cast<std::size_t>(n));
    }
    return got;
  }
  void ClosePeer() {
    ::close(peer_);
    peer_ = -1;
  }
  void StopListening() {
    ::close(fd_);
    fd_ = -1;
  }

 private:
  int fd_ = -1, peer_ = -1, port_ = 0;
};

TEST(TcpPort, RawBytesBothWays) {
  Listener printer;
  const int h = otool_OPEN(printer.Name().c_str(), 0, nullptr);
  ASSERT_GE(h, 0);
  ASSERT_TRUE(printer.Accept());
  EXPECT_EQ(Write(h, "~HS"), 3);
  EXPECT_EQ(printer.Receive(3), "~HS");
  printer.Send(Hex("02 30 0D 0A"));
  EXPECT_EQ(ToHex(Read(h, 10)), "02 30 0D 0A");
  EXPECT_EQ(otool_CLOSE(h), 1);
}

TEST(TcpPort, PurgeDiscardsWhatArrived) {
  Listener printer;
  const int h = otool_OPEN(printer.Name().c_str(), 0, nullptr);
  ASSERT_TRUE(printer.Accept());
  printer.Send("stale");
  // Loopback delivers at once, but give the stack a moment without asserting on time.
  pollfd wait{-1, 0, 0};
  ::poll(&wait, 0, 100);
  EXPECT_EQ(otool_IOCTL(h, kPortPurge, 0), 5);
  otool_IOCTL(h, kPortSetReadTimeout, 50);
  EXPECT_EQ(Read(h, 5), "");
  otool_CLOSE(h);
}

TEST(TcpPort, ClosedPeerFailsTheRead) {
  Listener printer;
  const int h = otool_OPEN(printer.Name().c_str(), 0, nullptr);
  ASSERT_TRUE(printer.Accept());
  printer.ClosePeer();
  otool_IOCTL(h, kPortSetReadTimeout, 10000);
  EXPECT_EQ(Read(h, 1), "<failed>");
  otool_CLOSE(h);
}

TEST(TcpPort, NobodyListeningIsRefused) {
  Listener printer;
  const std::wstring name = printer.Name();
  printer.StopListening();
  EXPECT_EQ(otool_OPEN(name.c_str(), 0, nullptr), -1);
}

}  // namespace
}  // namespace posprint
