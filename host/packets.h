// Texts between processes, each with its kind and length before it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zelhost {

struct Packet {
  /// Whoever sends and receives agree on it.
  char kind = 0;
  std::string text;

  friend bool operator==(const Packet&, const Packet&) = default;
};

/// As it goes over a socket or through a pipe.
std::string to_bytes(const Packet& packet);

/// Puts packets together from bytes as they come.
class PacketAssembler {
 public:
  void take(std::string_view bytes);
  /// The next one that is complete.
  std::optional<Packet> next();

 private:
  std::string bytes_;
  // Until here they have been handed out.
  std::size_t begin_ = 0;
};

/// Waits for a packet over a stream socket. @return none if the other side has gone.
std::optional<Packet> receive(int socket, PacketAssembler& assembler);

/// @return whether the other side is still there.
bool send_whole(int socket, const Packet& packet);

}  // namespace zelhost
