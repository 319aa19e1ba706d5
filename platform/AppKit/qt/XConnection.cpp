#include "XConnection.h"

#include <chrono>
#include <cstdlib>
#include <dlfcn.h>
#include <future>
#include <thread>

namespace {

/// Enough for a server at the far end of a slow network.
constexpr std::chrono::seconds kReplyTimeout{5};

/// The functions of libxcb, with which Qt's plugin for X connects as well: both read address and authority in
/// the same way. Loaded at run time, so that machines without X do not need the library, and never unloaded.
struct XCB {
    using Connect = xcb_connection_t* (*)(const char*, int*);
    using HasError = int (*)(xcb_connection_t*);
    using Disconnect = void (*)(xcb_connection_t*);

    void* library = dlopen("libxcb.so.1", RTLD_LAZY | RTLD_LOCAL);
    Connect connect = function<Connect>("xcb_connect");
    HasError hasError = function<HasError>("xcb_connection_has_error");
    Disconnect disconnect = function<Disconnect>("xcb_disconnect");

    static const XCB& shared()
    {
        static const XCB xcb;
        return xcb;
    }
    bool isComplete() const { return connect && hasError && disconnect; }

private:
    template <class Function> Function function(const char* name) const
    {
        return library ? reinterpret_cast<Function>(dlsym(library, name)) : nullptr;
    }
};

} // namespace

void XDisconnect::operator()(xcb_connection_t* connection) const
{
    XCB::shared().disconnect(connection);
}

XConnection openXConnection()
{
    const char* const display = std::getenv("DISPLAY");
    if (!display || !*display || !XCB::shared().isComplete())
        return nullptr;

    // xcb_connect waits for the server's reply without limit, so it runs on a thread of its own. After the
    // timeout the thread is abandoned; a connection that it opens later closes when it ends.
    std::packaged_task<XConnection()> connect([] {
        XConnection connection(XCB::shared().connect(nullptr, nullptr));
        return XCB::shared().hasError(connection.get()) == 0 ? std::move(connection) : nullptr;
    });
    auto reply = connect.get_future();
    std::thread(std::move(connect)).detach();
    return reply.wait_for(kReplyTimeout) == std::future_status::ready ? reply.get() : nullptr;
}
