// Reading and writing a non-blocking file descriptor the way a printer line needs it:
// shared by the terminal-device and TCP back-ends.
#pragma once

namespace posprint {

// Waits for up to count bytes: returns when count arrived, when data has started and the
// line then stayed quiet for kPortInterByteGapMs, or at timeoutMs with what arrived.
// -1 when the far end is gone (hang-up, I/O error, end of stream) before any byte came.
int ReadWithGap(int fd, char* buffer, int count, int timeoutMs);

// Writes until every byte was accepted or timeoutMs passed; returns the count accepted
// (short only on a time-out or a failure after some bytes), -1 when nothing could be
// written because the far end is gone. `socket` sends without raising SIGPIPE.
int WriteAll(int fd, const char* buffer, int count, int timeoutMs, bool socket);

// Discards input that has arrived but was not read; the count discarded, or -1.
int DiscardPendingInput(int fd, bool terminal);

}  // namespace posprint
