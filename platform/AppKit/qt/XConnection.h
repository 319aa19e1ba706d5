#pragma once

#include <memory>

struct xcb_connection_t;

struct XDisconnect {
    void operator()(xcb_connection_t* connection) const;
};

/// A connection to an X server.
using XConnection = std::unique_ptr<xcb_connection_t, XDisconnect>;

/// Connects to the X server that DISPLAY names. Null when it refuses, when it does not reply within five
/// seconds, and without libxcb, which Qt's plugin for X needs too.
XConnection openXConnection();
