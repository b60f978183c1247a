// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/CompositorClipboard.h"

#include "platform/linux/wayland/PipeWriter.h"

#include <wlr-data-control-client.h>

#include <QDeadlineTimer>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

using namespace std::chrono_literals;

constexpr uint32_t newestVersion = 2;
constexpr auto answerLimit = 100ms;

/// The names under which programs ask for plain text.
constexpr QStringView textNames[] = {u"text/plain;charset=utf-8", u"UTF8_STRING", u"TEXT",
                                     u"STRING"};

QStringList offeredTypes(const QMimeData &data)
{
    QStringList types = data.formats();
    if (data.hasText()) {
        for (const QStringView name : textNames)
            types.append(name.toString());
    }
    return types;
}

bool isText(const QString &mimeType)
{
    return std::find(std::begin(textNames), std::end(textNames), mimeType) != std::end(textNames);
}

/// The newer protocol is the older one under other names, of which only the manager's is ever sent.
const wl_interface &newerManagerInterface()
{
    static const wl_interface interface = [] {
        wl_interface renamed = zwlr_data_control_manager_v1_interface;
        renamed.name = "ext_data_control_manager_v1";
        return renamed;
    }();
    return interface;
}

} // namespace

CompositorClipboard::CompositorClipboard()
{
    connect(&m_connection, &WaylandConnection::globalsKnown, this, &CompositorClipboard::begin);
}

CompositorClipboard::~CompositorClipboard()
{
    release();
    if (m_device)
        zwlr_data_control_device_v1_destroy(m_device);
    if (m_manager)
        zwlr_data_control_manager_v1_destroy(m_manager);
    if (m_seat)
        wl_seat_destroy(m_seat);
    m_connection.flush();
}

void CompositorClipboard::begin()
{
    using Device = zwlr_data_control_device_v1;
    using Offer = zwlr_data_control_offer_v1;
    // What other programs put on the clipboard is not read.
    static const auto drop = [](void *, Device *, Offer *offer) {
        if (offer)
            zwlr_data_control_offer_v1_destroy(offer);
    };
    static const zwlr_data_control_device_v1_listener listener = {
        .data_offer = [](void *, Device *, Offer *) {},
        .selection = drop,
        .finished = [](void *, Device *) {},
        .primary_selection = drop,
    };
    m_manager = m_connection.bind<zwlr_data_control_manager_v1>(newerManagerInterface(), 1);
    if (!m_manager)
        m_manager = m_connection.bind<zwlr_data_control_manager_v1>(
            zwlr_data_control_manager_v1_interface, newestVersion);
    m_seat = m_connection.bind<wl_seat>(wl_seat_interface, 1);
    if (!m_manager || !m_seat)
        return;
    m_device = zwlr_data_control_manager_v1_get_data_device(m_manager, m_seat);
    zwlr_data_control_device_v1_add_listener(m_device, &listener, nullptr);
    m_connection.flush();
}

bool CompositorClipboard::offer(std::unique_ptr<QMimeData> data)
{
    // The new source replaces the old one, so that the clipboard is never empty in between.
    zwlr_data_control_source_v1 *const former = std::exchange(m_source, nullptr);
    m_data = std::move(data);
    addSource();
    if (former)
        zwlr_data_control_source_v1_destroy(former);
    return isHeard() && m_source;
}

void CompositorClipboard::addSource()
{
    using Source = zwlr_data_control_source_v1;
    static const zwlr_data_control_source_v1_listener listener = {
        .send =
            [](void *data, Source *, const char *mimeType, int descriptor) {
                static_cast<CompositorClipboard *>(data)->send(QString::fromUtf8(mimeType),
                                                               descriptor);
            },
        .cancelled = [](void *data,
                        Source *) { static_cast<CompositorClipboard *>(data)->release(); },
    };
    m_source = zwlr_data_control_manager_v1_create_data_source(m_manager);
    zwlr_data_control_source_v1_add_listener(m_source, &listener, this);
    for (const QString &type : offeredTypes(*m_data))
        zwlr_data_control_source_v1_offer(m_source, type.toUtf8().constData());
    zwlr_data_control_device_v1_set_selection(m_device, m_source);
}

void CompositorClipboard::clear()
{
    zwlr_data_control_device_v1_set_selection(m_device, nullptr);
    release();
    isHeard();
}

void CompositorClipboard::release()
{
    if (m_source)
        zwlr_data_control_source_v1_destroy(std::exchange(m_source, nullptr));
    m_data.reset();
}

/// Whether the compositor has processed all requests so far.
bool CompositorClipboard::isHeard()
{
    bool isDone = false;
    static const wl_callback_listener listener = {
        .done = [](void *data, wl_callback *, uint32_t) { *static_cast<bool *>(data) = true; },
    };
    wl_callback *const callback = m_connection.sync();
    wl_callback_add_listener(callback, &listener, &isDone);
    m_connection.flush();
    const QDeadlineTimer deadline(answerLimit);
    while (!isDone && m_connection.waitForInput(deadline)) {
    }
    wl_callback_destroy(callback);
    return isDone;
}

void CompositorClipboard::send(const QString &mimeType, int descriptor)
{
    const QString format = isText(mimeType) ? u"text/plain"_s : mimeType;
    new PipeWriter(Descriptor(descriptor), m_data ? m_data->data(format) : QByteArray(), this);
}
