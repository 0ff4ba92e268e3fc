// Test support for the serial link: a pseudo-terminal pair whose one end is
// the port "COMn" the library opens, and whose other end the test holds as the
// control at the far end of the line. The only place of this suite that talks
// to the operating system.
//
// Linux: the test holds the master of a pair from posix_openpt; KORVALEN_COM<n>
// names the slave. Under Wine: socat makes two linked pairs, one slave linked
// as the Wine prefix's dosdevices/com<n>, the other in the temporary folder,
// opened by the test. Elsewhere (real Windows) there is no pair to make.
#pragma once

#include <string>

namespace korvalen::testing {

class SerialPeer {
 public:
  SerialPeer();
  ~SerialPeer();
  SerialPeer(const SerialPeer&) = delete;
  SerialPeer& operator=(const SerialPeer&) = delete;

  // Why there is no pair ("" when there is one).
  const std::string& unavailable() const { return unavailable_; }
  int port() const { return port_; }

  bool Write(const std::string& bytes);
  // Reads until `count` bytes came or timeout_ms passed without any.
  std::string Read(std::size_t count, int timeout_ms);
  void Close();

  // Linux: the master descriptor, for looking at the port's termios state.
  int master() const { return static_cast<int>(handle_); }

 private:
  std::string unavailable_;
  int port_ = 0;
  long long handle_ = -1;
};

}  // namespace korvalen::testing
