// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/FollowedSetting.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <gio/gio.h>

using namespace std::chrono_literals;

namespace
{

constexpr auto longestWait = 1s;

/// GLib objects, each with the function that releases it.
template <auto end>
struct Ending {
    template <typename Object>
    void operator()(Object *object) const
    {
        end(object);
    }
};
using Context = std::unique_ptr<GMainContext, Ending<g_main_context_unref>>;
using Loop = std::unique_ptr<GMainLoop, Ending<g_main_loop_unref>>;
using Schema = std::unique_ptr<GSettingsSchema, Ending<g_settings_schema_unref>>;
using Settings = std::unique_ptr<GSettings, Ending<g_object_unref>>;
using Value = std::unique_ptr<GVariant, Ending<g_variant_unref>>;

/// A missing schema or key would end the process, so both are checked first.
Settings settingsWith(const FollowedSetting::Name &name)
{
    GSettingsSchemaSource *const source = g_settings_schema_source_get_default();
    const Schema schema(source ? g_settings_schema_source_lookup(source, name.schema, TRUE)
                               : nullptr);
    if (!schema || !g_settings_schema_has_key(schema.get(), name.key) ||
        !g_settings_schema_get_path(schema.get()))
        return nullptr;
    return Settings(g_settings_new_full(schema.get(), nullptr, nullptr));
}

} // namespace

class FollowedSetting::Private
{
public:
    Private(const Name &name, std::function<void()> changed)
        : m_name(name)
        , m_changed(std::move(changed))
        , m_context(g_main_context_new())
        , m_loop(g_main_loop_new(m_context.get(), FALSE))
        , m_thread([this] { run(); })
    {
    }

    ~Private()
    {
        // Not quit directly: the loop may not be running yet.
        g_main_context_invoke(m_context.get(), quit, m_loop.get());
        m_thread.join();
    }

    std::optional<QString> value() const
    {
        std::unique_lock lock(m_mutex);
        m_answered.wait_for(lock, longestWait, [this] { return m_isAnswered; });
        return m_value;
    }

private:
    static gboolean quit(gpointer loop)
    {
        g_main_loop_quit(static_cast<GMainLoop *>(loop));
        return G_SOURCE_REMOVE;
    }

    static void valueChanged(GSettings *settings, gchar *, gpointer self)
    {
        auto *const d = static_cast<Private *>(self);
        d->read(settings);
        d->m_changed();
    }

    /// GLib reports changes on the thread that has made the settings.
    void run()
    {
        g_main_context_push_thread_default(m_context.get());
        const Settings settings = settingsWith(m_name);
        if (settings) {
            const std::string signal = std::string("changed::") + m_name.key;
            g_signal_connect(settings.get(), signal.c_str(), G_CALLBACK(valueChanged), this);
        }
        read(settings.get());
        g_main_loop_run(m_loop.get());
        g_main_context_pop_thread_default(m_context.get());
    }

    void read(GSettings *settings)
    {
        const Value value(settings ? g_settings_get_value(settings, m_name.key) : nullptr);
        const std::lock_guard lock(m_mutex);
        m_value.reset();
        if (value && g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING))
            m_value = QString::fromUtf8(g_variant_get_string(value.get(), nullptr));
        m_isAnswered = true;
        m_answered.notify_all();
    }

    const Name m_name;
    const std::function<void()> m_changed;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_answered;
    bool m_isAnswered = false;
    std::optional<QString> m_value;
    Context m_context;
    Loop m_loop;
    std::thread m_thread; ///< last, because it uses all the others
};

FollowedSetting::FollowedSetting(const Name &name, std::function<void()> changed)
    : d(std::make_unique<Private>(name, std::move(changed)))
{
}

FollowedSetting::~FollowedSetting() = default;

std::optional<QString> FollowedSetting::value() const
{
    return d->value();
}
