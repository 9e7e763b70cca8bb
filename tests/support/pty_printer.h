// PtyPrinter: a printer at the far end of a pseudo-terminal, for end-to-end tests.
//
// The test hands PortName() (the slave side, "/dev/pts/N") to the driver as its port; a
// thread on the master side plays the printer: it records every byte the driver sends,
// and answers requests through a responder. The line is raw both ways (no echo, no CR/LF
// translation), as a serial line to a printer is. A test runs the host on PortName(),
// calls Stop() when it has exited, and compares ToHex(Received()) with what it expects.
//
// Responder: called on the printer's thread once for every byte received, after that
// byte (descrambled) was appended to `received`; so the byte just in is received.back().
// It returns what the printer answers at that moment ("" for nothing); the answer is
// queued and written without blocking. A responder that needs to see the whole request
// tests the end of `received` (EndsWith), which also makes it answer each request once.
// It runs under the printer's lock: it may call SetScrambleKey, but not the other members.
//
// Scrambling: some ticket printers XOR every byte on the line, both ways, with a key,
// and a driver can switch that on in the middle of a session (for instance after asking
// the printer to take up key 203 with 1B F9 CB). SetScrambleKey may be called from the
// test or from inside the responder: it takes effect from the next byte received and
// for the answer the responder is returning. Received() is what the printer understood
// (descrambled); Line() is what went over the wire.
//
// Stopping: Stop() (and the destructor) wakes the thread through a pipe and joins it; the
// thread never blocks anywhere else, so stopping always returns promptly. The harness
// keeps its own slave descriptor open for its whole life, so the driver's opening and
// closing of the port never ends the session early and no byte sent is lost.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace posprint::test {

class PtyPrinter {
 public:
  using Responder = std::function<std::string(const std::string& received)>;

  PtyPrinter();  // a printer that answers nothing
  explicit PtyPrinter(Responder responder);
  ~PtyPrinter();
  PtyPrinter(const PtyPrinter&) = delete;
  PtyPrinter& operator=(const PtyPrinter&) = delete;

  // False when no pseudo-terminal could be opened (Error() says why).
  bool Ok() const { return !portName_.empty(); }
  const std::string& Error() const { return error_; }
  // The slave's path: the port name to give the driver.
  const std::string& PortName() const { return portName_; }

  // Replaces the responder (thread-safe; takes effect from the next byte).
  void SetResponder(Responder responder);
  // 0: plain line; else every byte both ways is XORed with key's low byte.
  void SetScrambleKey(int key) { key_.store(key & 0xFF); }
  int ScrambleKey() const { return key_.load(); }

  // Bytes sent to the printer by the driver: descrambled / as on the line.
  std::string Received() const;
  std::string Line() const;
  // Waits until at least `count` bytes were received, at most timeoutMs; true if so.
  bool WaitForBytes(std::size_t count, int timeoutMs) const;

  // Unasked bytes from the printer (plain; scrambled with the current key on the way).
  void Send(const std::string& bytes);

  // Stops the printer's thread; what was received stays readable. Idempotent.
  void Stop();
  // Stops the printer and closes its end of the line and the spare slave descriptor: the
  // driver's end then fails every read and write, as a serial line whose cable is pulled.
  void Hangup();

 private:
  void Loop();
  void Take(const char* bytes, std::size_t count);
  void Flush();

  int master_ = -1;
  int slave_ = -1;
  int wake_[2] = {-1, -1};
  std::string portName_;
  std::string error_;
  std::atomic<int> key_{0};
  std::atomic<bool> stopping_{false};

  mutable std::mutex mutex_;
  mutable std::condition_variable arrived_;
  Responder responder_;
  std::string received_;
  std::string line_;
  std::string pending_;  // answers not yet written to the master
  std::thread thread_;
};

// A responder from request/answer pairs: whenever the bytes received end with a request,
// its answer is sent (the first matching pair wins).
PtyPrinter::Responder AnswerRequests(std::vector<std::pair<std::string, std::string>> rules);

bool EndsWith(const std::string& text, const std::string& suffix);

}  // namespace posprint::test
