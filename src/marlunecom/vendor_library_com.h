#pragma once

#include "link/marlune_com.h"

#include <cstdint>
#include <memory>
#include <string>

class QLibrary;

namespace marlune::marlunecom {

// The environment variable that names the controller maker's library by its path.
inline constexpr const char* kVendorLibraryVariable = "MARLUNE_COM_LIBRARY";
// The library's own name, looked up on the system's normal library search path.
inline constexpr const char* kVendorLibraryName = "libMarluneCom.so";

// The controller maker's own library, loaded at run time, serving every link kind. Each call
// goes straight to the library with the same arguments; its time-outs are its own. The
// request frame is copied into a send buffer of the library's size first, because the
// library's signature does not promise to leave it alone.
class VendorLibraryCom final : public link::MarluneCom {
public:
    struct Loaded {
        std::unique_ptr<VendorLibraryCom> com; // empty when the library was refused
        std::string reason;                    // why it was refused, for the operator
    };

    // Loads the library at `location`, a path or a bare name for the search path, and takes
    // its three functions; a library that lacks any of them is refused.
    static Loaded load(const std::string& location);

    // Where the library is looked for: $MARLUNE_COM_LIBRARY when set and not empty, otherwise
    // libMarluneCom.so.
    static std::string defaultLocation();

    ~VendorLibraryCom() override;

    std::int32_t open(std::int32_t kind, std::int32_t mode, char* address) override;
    std::int32_t close(std::int32_t kind, std::int32_t handle) override;
    std::int32_t sendRecv(std::int32_t kind, std::int32_t handle, const char* request, char* reply) override;

    // The file that was loaded, as the loader resolved it.
    std::string fileName() const;

private:
    using OpenFunction = int (*)(int kind, int mode, char* address);
    using CloseFunction = int (*)(int kind, int handle);
    using SendRecvFunction = int (*)(int kind, int handle, char* request, char* reply);

    VendorLibraryCom(std::unique_ptr<QLibrary> library, OpenFunction open, CloseFunction close,
                     SendRecvFunction sendRecv);

    std::unique_ptr<QLibrary> library_;
    OpenFunction open_;
    CloseFunction close_;
    SendRecvFunction sendRecv_;
};

} // namespace marlune::marlunecom
