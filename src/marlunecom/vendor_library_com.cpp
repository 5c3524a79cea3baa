#include "marlunecom/vendor_library_com.h"

#include "marlunecom/reply_frame.h"

#include <QLibrary>
#include <QString>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

namespace marlune::marlunecom {
namespace {

template <typename Function>
Function Resolve(QLibrary& library, const char* name, std::string& missing)
{
    const auto function = reinterpret_cast<Function>(library.resolve(name));
    if (function == nullptr)
        missing += missing.empty() ? name : std::string(", ") + name;
    return function;
}

} // namespace

VendorLibraryCom::Loaded VendorLibraryCom::load(const std::string& location)
{
    auto library = std::make_unique<QLibrary>(QString::fromStdString(location));
    if (!library->load())
        return {nullptr, "cannot load " + location + ": " + library->errorString().toStdString()};

    std::string missing;
    const auto open = Resolve<OpenFunction>(*library, "fnMarluneComOpen", missing);
    const auto close = Resolve<CloseFunction>(*library, "fnMarluneComClose", missing);
    const auto sendRecv = Resolve<SendRecvFunction>(*library, "fnMarluneComSendRecv", missing);
    if (!missing.empty()) {
        const auto file = library->fileName().toStdString();
        library->unload();
        return {nullptr, file + " lacks " + missing};
    }
    return {std::unique_ptr<VendorLibraryCom>(new VendorLibraryCom(std::move(library), open, close, sendRecv)), {}};
}

std::string VendorLibraryCom::defaultLocation()
{
    const char* path = std::getenv(kVendorLibraryVariable);
    return path != nullptr && *path != '\0' ? std::string(path) : std::string(kVendorLibraryName);
}

VendorLibraryCom::VendorLibraryCom(std::unique_ptr<QLibrary> library, OpenFunction open, CloseFunction close,
                                   SendRecvFunction sendRecv)
    : library_(std::move(library)), open_(open), close_(close), sendRecv_(sendRecv)
{}

// The library stays loaded to the end of the process: a maker's library may keep threads or
// handlers of its own that do not survive being unloaded.
VendorLibraryCom::~VendorLibraryCom() = default;

std::int32_t VendorLibraryCom::open(std::int32_t kind, std::int32_t mode, char* address)
{
    return open_(kind, mode, address);
}

std::int32_t VendorLibraryCom::close(std::int32_t kind, std::int32_t handle) { return close_(kind, handle); }

std::int32_t VendorLibraryCom::sendRecv(std::int32_t kind, std::int32_t handle, const char* request, char* reply)
{
    if (request == nullptr || reply == nullptr)
        return 0;
    std::array<char, link::kSendBufferSize> frame{};
    const auto bytes = RequestFrame(request);
    std::memcpy(frame.data(), bytes.data(), std::min(bytes.size(), frame.size() - 1));
    return sendRecv_(kind, handle, frame.data(), reply);
}

std::string VendorLibraryCom::fileName() const { return library_->fileName().toStdString(); }

} // namespace marlune::marlunecom
