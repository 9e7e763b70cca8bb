// The framework's port functions. A port is chosen by its name:
//   /dev/ttyS0, /dev/pts/3, /dev/ttyUSB0@9600   a terminal device (serial port or pseudo-terminal)
//   file:PATH                                    bytes go to a file; reads get nothing
//   tcp:HOST:PORT                                a raw TCP stream (a network printer, port 9100)
//   script:N                                     an in-memory scripted port (tests)
//   sim: / sim:STATE                             the virtual printer, when the host provides one
#pragma once

#include <cstdint>

// Returns a handle (>= 0), or -1 when the port cannot be opened.
int otool_OPEN(const wchar_t* name, int mode, void* event);
// Reads up to count bytes: returns when count bytes arrived, when data had started and the
// line then stayed quiet for the inter-byte gap, or at the read time-out with what arrived.
// Returns the count read (0 on time-out), or -1 when the port failed or vanished.
int otool_READ(int handle, char* buffer, int count);
// Returns only when every byte was accepted or the write time-out passed: the count
// written, which is short only on a real failure; -1 when the port failed or vanished.
int otool_WRITE(int handle, const char* buffer, int count);
// Port control requests (PortRequest); -1 on failure, else a request-specific value >= 0.
int otool_IOCTL(int handle, int request, int value);
int otool_IOCTL(int handle, int request, void* data);
int otool_IOCTL(int handle, int request, const void* data);
// Returns nonzero when the port was closed, 0 when closing failed.
int otool_CLOSE(int handle);

enum PortRequest : int {
  kPortSetInputBuffer = 768,   // accepted, nothing to do on this platform
  kPortSetReadTimeout = 769,   // value or const int*: read time-out in ms
  kPortSetWriteTimeout = 770,  // value or const int*: write time-out in ms
  kPortGetReadTimeout = 513,   // int*: read time-out in ms
  kPortGetWriteTimeout = 514,  // int*: write time-out in ms
  kPortPurge = 2560,           // discard unread input; returns the count of bytes discarded
  kPortGetState = 2053,        // int*: the port state word
  kPortSetState = 2309,        // value or const int*: the port state word
  kPortScramble = 888,         // const int* record; first word K: K != 0 XORs every byte
                               // both ways with K's low byte, K == 0 switches it off
};

// Bits of the port state word.
enum PortStateBit : int {
  kPortStateXonXoff = 0x002,   // software flow control: XOFF from the printer pauses writes
  kPortStateLineFlag = 0x100,  // raised by a status query whose printer stopped answering
};

// The gap after which a read that has started returns what it has.
constexpr int kPortInterByteGapMs = 30;
