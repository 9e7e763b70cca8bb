// An in-memory port for tests: records every write, answers reads from a script,
// and can fail the open, the close, the N-th write, or stay silent.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace posprint {

class ScriptedPort {
 public:
  ScriptedPort();   // registers itself under Name() until destroyed
  ~ScriptedPort();
  ScriptedPort(const ScriptedPort&) = delete;
  ScriptedPort& operator=(const ScriptedPort&) = delete;

  // The port name to open, such as L"script:3".
  const std::wstring& Name() const { return name_; }

  // Queues an answer; each read returns at most one answer (an answer is one burst
  // of bytes followed by a quiet line). delayMs: the answer arrives that long after
  // it is first waited for; a read whose time-out is shorter gets nothing yet (it returns
  // at once) and the delay still to run shrinks by that time-out. A read asking for
  // fewer bytes than the answer holds takes the first ones; the rest stays queued.
  // A purge (request 2560) discards the answers that have arrived (no delay left).
  void Answer(const std::string& bytes, int delayMs = 0);
  // Called with every write (as it went on the line); may queue answers.
  void OnWrite(std::function<void(ScriptedPort&, const std::string& written)> responder);

  void FailOpen(bool fail = true) { failOpen_ = fail; }
  void FailClose(bool fail = true) { failClose_ = fail; }
  // The n-th write (1-based, counting every otool_WRITE) accepts only `accepted` bytes.
  void ShortWriteAt(int n, int accepted = 0) { shortWriteAt_ = n; shortAccepted_ = accepted; }
  // From now on every read and write fails at once, as with an unplugged cable.
  void Vanish() { vanished_ = true; }

  // Everything written, in order, as one byte string (as it went on the line).
  const std::string& Written() const { return written_; }
  // Each otool_WRITE call's bytes, in order.
  const std::vector<std::string>& Writes() const { return writes_; }
  void ClearWritten() { written_.clear(); writes_.clear(); }
  bool IsOpen() const { return open_; }
  int Opens() const { return opens_; }  // successful opens
  int Purges() const { return purges_; }
  int Reads() const { return reads_; }
  bool FlowControl() const { return xonXoff_; }
  std::size_t PendingAnswers() const { return answers_.size(); }

  // Used by the back-end.
  struct Pending { std::string bytes; int delayMs; };
  bool failOpen_ = false, failClose_ = false, vanished_ = false, open_ = false, xonXoff_ = false;
  int shortWriteAt_ = 0, shortAccepted_ = 0, writeCount_ = 0, opens_ = 0, purges_ = 0, reads_ = 0;
  std::deque<Pending> answers_;
  std::string written_;
  std::vector<std::string> writes_;
  std::function<void(ScriptedPort&, const std::string&)> responder_;

 private:
  std::wstring name_;
};

}  // namespace posprint
