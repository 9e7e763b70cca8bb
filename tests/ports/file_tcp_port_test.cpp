// The file and TCP back-ends: a capture file, and a loopback listener playing a
// network printer.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <utility>

#include "ports/port_io.h"

namespace posprint::test {
namespace {

TEST(FilePort, CapturesTheBytesInAnEmptiedFile) {
  const std::string path = testing::TempDir() + "posprint_file_port.bin";
  std::ofstream(path) << "left over from before";
  const int h = Open("file:" + path);
  ASSERT_GE(h, 0);
  EXPECT_EQ(Write(h, Hex("1B 40")), 2);
  EXPECT_EQ(Write(h, Hex("00 0A 0D FF")), 4);
  EXPECT_EQ(Read(h, 8), "");  // nobody answers
  EXPECT_EQ(otool_CLOSE(h), 1);
  std::ostringstream contents;
  contents << std::ifstream(path, std::ios::binary).rdbuf();
  EXPECT_EQ(ToHex(contents.str()), "1B 40 00 0A 0D FF");
  std::remove(path.c_str());
  EXPECT_EQ(Open("file:/nonexistent-dir/out.bin"), -1);
}

// A network printer on 127.0.0.1: it accepts one connection, reads and answers; every wait
// gives up after 3 seconds.
class Listener {
 public:
  Listener() {
    sockaddr_in address{AF_INET, 0, {htonl(INADDR_LOOPBACK)}, {}};
    socklen_t length = sizeof address;
    const timeval patience{3, 0};
    ::setsockopt(fd_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    ::bind(fd_, reinterpret_cast<sockaddr*>(&address), length);
    ::listen(fd_, 1);
    ::getsockname(fd_, reinterpret_cast<sockaddr*>(&address), &length);
    name_ = "tcp:127.0.0.1:" + std::to_string(ntohs(address.sin_port));
  }
  ~Listener() { ::close(fd_), ::close(peer_); }
  const std::string& Name() const { return name_; }
  bool Accept() {
    peer_ = ::accept(fd_, nullptr, nullptr);
    const timeval patience{3, 0};
    return ::setsockopt(peer_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience) == 0;
  }
  void Send(const std::string& bytes) { ::send(peer_, bytes.data(), bytes.size(), 0); }
  std::string Receive(std::size_t count) {
    char buffer[256];
    std::string got;
    for (ssize_t n = 0; got.size() < count && (n = ::recv(peer_, buffer, sizeof buffer, 0)) > 0;) got.append(buffer, n);
    return got;
  }
  void ClosePeer() { ::close(std::exchange(peer_, -1)); }

 private:
  int fd_ = ::socket(AF_INET, SOCK_STREAM, 0), peer_ = -1;
  std::string name_;
};

TEST(TcpPort, RawBytesBothWaysPurgeAndAClosedPeer) {
  Listener printer;
  const int h = Open(printer.Name());
  ASSERT_GE(h, 0);
  ASSERT_TRUE(printer.Accept());
  EXPECT_EQ(Write(h, "~HS"), 3);
  EXPECT_EQ(printer.Receive(3), "~HS");
  printer.Send(Hex("02 30 0D 0A"));
  EXPECT_EQ(ToHex(Read(h, 10)), "02 30 0D 0A");
  printer.Send("stale");
  ::poll(nullptr, 0, 100);  // loopback delivers at once; a moment more, not asserted on
  EXPECT_EQ(otool_IOCTL(h, kPortPurge, 0), 5);
  otool_IOCTL(h, kPortSetReadTimeout, 50);
  EXPECT_EQ(Read(h, 5), "");
  printer.ClosePeer();
  otool_IOCTL(h, kPortSetReadTimeout, 10000);
  EXPECT_EQ(Read(h, 1), "<failed>");
  EXPECT_EQ(otool_CLOSE(h), 1);
}

TEST(TcpPort, NobodyListeningIsRefused) {
  std::string name;
  {
    Listener gone;
    name = gone.Name();
  }
  EXPECT_EQ(Open(name), -1);
}

}  // namespace
}  // namespace posprint::test
