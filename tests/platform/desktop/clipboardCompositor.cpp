// SPDX-License-Identifier: MIT
/// A Wayland compositor that has a seat and the protocol for clipboard managers, and nothing else.
/// Its argument is the path of its socket. Prints "ready" when a program may use the clipboard, and
/// then what is put there: for each format a line of its name and the content, in base64, and
/// "complete" after the last one.

#include <ext-data-control-server.h>

#include <QByteArray>
#include <QList>

#include <cstdio>
#include <memory>
#include <unistd.h>
#include <wayland-server.h>

namespace
{

using Formats = QList<QByteArray>;

void destroy(wl_client *, wl_resource *resource)
{
    wl_resource_destroy(resource);
}

template <typename Implementation>
wl_resource *create(wl_client *client, const wl_interface &interface, uint32_t id,
                    const Implementation *implementation, void *data = nullptr,
                    wl_resource_destroy_func_t destroyed = nullptr)
{
    wl_resource *resource = wl_resource_create(client, &interface, 1, id);
    wl_resource_set_implementation(resource, implementation, data, destroyed);
    return resource;
}

Formats &formatsOf(wl_resource *source)
{
    return *static_cast<Formats *>(wl_resource_get_user_data(source));
}

/// Waits for the client: there is nobody else to serve.
QByteArray contentOf(wl_client *client, wl_resource *source, const QByteArray &format)
{
    int ends[2];
    if (::pipe(ends) != 0)
        return {};
    ext_data_control_source_v1_send_send(source, format.constData(), ends[1]);
    wl_client_flush(client);
    ::close(ends[1]);
    QByteArray content;
    char part[4096];
    for (ssize_t size = 0; (size = ::read(ends[0], part, sizeof part)) > 0;)
        content.append(part, size);
    ::close(ends[0]);
    return content;
}

void print(wl_client *client, wl_resource *source)
{
    const Formats formats = source ? formatsOf(source) : Formats();
    for (const QByteArray &format : formats)
        std::printf("%s %s\n", format.constData(),
                    contentOf(client, source, format).toBase64().constData());
    std::puts("complete");
    std::fflush(stdout);
}

/// After the client has got the answer to its request, which it waits for.
void printSoon(wl_client *client, wl_resource *, wl_resource *source)
{
    struct Selection {
        wl_client *client;
        wl_resource *source;
    };
    static const auto act = [](void *data) {
        const std::unique_ptr<Selection> selection(static_cast<Selection *>(data));
        print(selection->client, selection->source);
    };
    wl_event_loop *loop = wl_display_get_event_loop(wl_client_get_display(client));
    wl_event_loop_add_idle(loop, act, new Selection{client, source});
}

void createSource(wl_client *client, wl_resource *, uint32_t id)
{
    static const struct ext_data_control_source_v1_interface implementation = {
        .offer = [](wl_client *, wl_resource *source,
                    const char *format) { formatsOf(source).append(format); },
        .destroy = destroy,
    };
    create(client, ext_data_control_source_v1_interface, id, &implementation, new Formats,
           [](wl_resource *source) { delete &formatsOf(source); });
}

void createDevice(wl_client *client, wl_resource *, uint32_t id, wl_resource *)
{
    static const struct ext_data_control_device_v1_interface implementation = {
        .set_selection = printSoon,
        .destroy = destroy,
        .set_primary_selection = [](wl_client *, wl_resource *, wl_resource *) {},
    };
    create(client, ext_data_control_device_v1_interface, id, &implementation);
    std::puts("ready");
    std::fflush(stdout);
}

void bindManager(wl_client *client, void *, uint32_t, uint32_t id)
{
    static const struct ext_data_control_manager_v1_interface implementation = {
        .create_data_source = createSource,
        .get_data_device = createDevice,
        .destroy = destroy,
    };
    create(client, ext_data_control_manager_v1_interface, id, &implementation);
}

void bindSeat(wl_client *client, void *, uint32_t, uint32_t id)
{
    static const struct wl_seat_interface implementation = {
        .get_pointer = [](wl_client *, wl_resource *, uint32_t) {},
        .get_keyboard = [](wl_client *, wl_resource *, uint32_t) {},
        .get_touch = [](wl_client *, wl_resource *, uint32_t) {},
        .release = destroy,
    };
    create(client, wl_seat_interface, id, &implementation);
}

} // namespace

int main(int, char *argv[])
{
    wl_display *display = wl_display_create();
    wl_global_create(display, &wl_seat_interface, 1, nullptr, bindSeat);
    wl_global_create(display, &ext_data_control_manager_v1_interface, 1, nullptr, bindManager);
    if (wl_display_add_socket(display, argv[1]) != 0)
        return 1;
    wl_display_run(display);
    return 0;
}
