#include "host/packets.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace zelhost {
namespace {

// Both sides are processes of one program on one machine.
constexpr std::size_t kLengthSize = sizeof(std::uint64_t);
constexpr std::size_t kHeadSize = 1 + kLengthSize;

}  // namespace

std::string to_bytes(const Packet& packet) {
  const std::uint64_t length = packet.text.size();
  std::string bytes(kHeadSize, packet.kind);
  std::memcpy(&bytes[1], &length, kLengthSize);
  return bytes + packet.text;
}

void PacketAssembler::take(std::string_view bytes) {
  bytes_.append(bytes);
}

std::optional<Packet> PacketAssembler::next() {
  const std::string_view rest = std::string_view(bytes_).substr(begin_);
  if (rest.size() < kHeadSize) return std::nullopt;
  std::uint64_t length = 0;
  std::memcpy(&length, &rest[1], kLengthSize);
  if (rest.size() - kHeadSize < length) return std::nullopt;
  Packet packet = {rest[0], std::string(rest.substr(kHeadSize, length))};
  begin_ += kHeadSize + length;
  if (begin_ == bytes_.size()) {
    // One long text does not keep its memory for ever.
    bytes_ = {};
    begin_ = 0;
  }
  return packet;
}

std::optional<Packet> receive(int socket, PacketAssembler& assembler) {
  for (;;) {
    if (std::optional<Packet> packet = assembler.next()) return packet;
    std::array<char, 65536> buffer;
    const ssize_t got = recv(socket, buffer.data(), buffer.size(), 0);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return std::nullopt;
    assembler.take({buffer.data(), static_cast<std::size_t>(got)});
  }
}

bool send_whole(int socket, const Packet& packet) {
  const std::string bytes = to_bytes(packet);
  std::string_view rest = bytes;
  while (!rest.empty()) {
    // No SIGPIPE, which programs that this process starts would inherit ignored.
    const ssize_t sent = send(socket, rest.data(), rest.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) continue;
    if (sent <= 0) return false;
    rest.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

}  // namespace zelhost
