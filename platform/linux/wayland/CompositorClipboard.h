// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/wayland/WaylandConnection.h"

#include <QMimeData>
#include <QObject>

#include <memory>

struct wl_seat;
struct zwlr_data_control_device_v1;
struct zwlr_data_control_manager_v1;
struct zwlr_data_control_source_v1;

/// The clipboard of a Wayland compositor that lets every client set it, even without the focus.
/// Main thread.
class CompositorClipboard : public QObject
{
public:
    CompositorClipboard();
    ~CompositorClipboard() override;

    /// False when the compositor does not offer this, and for a moment after the start.
    bool isAvailable() const { return m_device && m_connection.isAlive(); }

    /// Offers the data until another program takes the clipboard; then deletes it. False when the
    /// compositor has not accepted it within a tenth of a second; may block for that long.
    bool offer(std::unique_ptr<QMimeData> data);

    void clear();

private:
    void begin();
    void addSource();
    void release();
    bool isHeard();
    void send(const QString &mimeType, int descriptor);

    WaylandConnection m_connection;
    wl_seat *m_seat = nullptr;
    zwlr_data_control_manager_v1 *m_manager = nullptr;
    zwlr_data_control_device_v1 *m_device = nullptr;
    zwlr_data_control_source_v1 *m_source = nullptr;
    std::unique_ptr<QMimeData> m_data;
};
