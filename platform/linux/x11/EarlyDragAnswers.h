// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>
#include <QMimeData>

#include <xcb/xcb.h>

/// Gives the data of a drag to programs that ask for it while the pointer is still over them.
///
/// Qt refuses them, unless they ask with the very time of the last position that they were told.
/// Mutter does not when it reads for a Wayland program, which then gets empty data. GNOME's file
/// manager (Nautilus 43) asks as soon as the pointer is over its sidebar, and crashes.
///
/// Does nothing where Qt does not show its windows on an X server. Main thread.
class EarlyDragAnswers : public QAbstractNativeEventFilter
{
public:
    /// @param data of the drag, must outlive this object
    explicit EarlyDragAnswers(const QMimeData &data);
    ~EarlyDragAnswers() override;
    Q_DISABLE_COPY_MOVE(EarlyDragAnswers)

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    bool answer(const xcb_selection_request_event_t &request) const;

    /// Of a property.
    struct Value {
        xcb_atom_t type;
        uint8_t unit; ///< in bits
        uint32_t count;
        const void *data;
    };
    void send(const xcb_selection_request_event_t &request, const Value &value) const;

    const QMimeData &m_data;
    xcb_connection_t *const m_connection;
    xcb_atom_t m_dragSelection = XCB_ATOM_NONE;
};
