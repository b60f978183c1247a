// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/applications/FocusSource.h"

#include <QByteArray>

#include <memory>
#include <unordered_map>

class WaylandConnection;
struct zwlr_foreign_toplevel_handle_v1;
struct zwlr_foreign_toplevel_manager_v1;

/// The window that the compositor calls activated, which compositors like the wlroots ones report
/// to every client. Main thread.
class ToplevelFocusSource : public FocusSource
{
public:
    /// Null when the compositor does not report it. The compositor's globals must be known. The
    /// connection must outlive the source.
    static std::unique_ptr<ToplevelFocusSource> make(WaylandConnection &connection);
    ~ToplevelFocusSource() override;

    bool seesAllWindows() const override { return true; }
    void update() override;

private:
    using Handle = zwlr_foreign_toplevel_handle_v1;

    /// A window's changes arrive one by one and take effect when all have arrived.
    struct Toplevel {
        QByteArray id;
        bool isActivated = false;
    };

    ToplevelFocusSource(WaylandConnection &connection, zwlr_foreign_toplevel_manager_v1 *manager);
    void add(Handle *handle);
    void takeIn(Handle *handle);
    void remove(Handle *handle);
    void report();

    WaylandConnection &m_connection;
    zwlr_foreign_toplevel_manager_v1 *m_manager;
    std::unordered_map<Handle *, Toplevel> m_toplevels;
    Handle *m_active = nullptr;
    bool m_hasChanged = false;
};
