#pragma once

#include <cstddef>
#include <cstdint>

namespace marlune::link {

// Sizes the program and the controller maker's library agree on.
inline constexpr std::size_t kAddressBufferSize = 256;  // address text handed to open, NUL included
inline constexpr std::size_t kSendBufferSize = 256;     // request frame, NUL included
inline constexpr std::size_t kReceiveBufferSize = 6001; // reply frame as the library writes it

// The controller maker's library: exactly three operations with its signatures.
// Every implementation (simulator, TCP, serial port, the vendor's own library) keeps them
// and never blocks for ever: a dead peer is a failed call.
class MarluneCom {
public:
    virtual ~MarluneCom() = default;

    // Opens a link of `kind` (1 USB, 2 Ethernet, 3 virtual COM port). `address` is a
    // NUL-terminated buffer of kAddressBufferSize bytes that the library may rewrite.
    // A result above 0 is a handle; anything else is a failure.
    virtual std::int32_t open(std::int32_t kind, std::int32_t mode, char* address) = 0;

    // Ends the use of `handle`. The result has no meaning.
    virtual std::int32_t close(std::int32_t kind, std::int32_t handle) = 0;

    // One request frame (NUL-terminated, command and CR) and its whole reply, written into
    // `reply`, which has room for kReceiveBufferSize bytes. The reply ends at a NUL or 0x04.
    // A result whose low 16 bits are all zero is a failure.
    virtual std::int32_t sendRecv(std::int32_t kind, std::int32_t handle, const char* request, char* reply) = 0;
};

} // namespace marlune::link
