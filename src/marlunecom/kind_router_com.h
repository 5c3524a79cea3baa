#pragma once

#include "link/marlune_com.h"

#include <array>
#include <cstdint>
#include <memory>

namespace marlune::marlunecom {

// Routes each call by its link kind to the implementation for that kind: 1 the simulated
// controller, 2 TCP, 3 the serial port. A call of any other kind fails without reaching one.
// The kind goes on unchanged, so that each handle is closed by the implementation that
// opened it.
class KindRouterCom final : public link::MarluneCom {
public:
    KindRouterCom(std::unique_ptr<link::MarluneCom> usb, std::unique_ptr<link::MarluneCom> ethernet,
                  std::unique_ptr<link::MarluneCom> serial);

    std::int32_t open(std::int32_t kind, std::int32_t mode, char* address) override;
    std::int32_t close(std::int32_t kind, std::int32_t handle) override;
    std::int32_t sendRecv(std::int32_t kind, std::int32_t handle, const char* request, char* reply) override;

    // The implementation for `kind`, or nullptr for a kind that has none.
    link::MarluneCom* route(std::int32_t kind) const;

private:
    std::array<std::unique_ptr<link::MarluneCom>, 3> byKind_;
};

} // namespace marlune::marlunecom
