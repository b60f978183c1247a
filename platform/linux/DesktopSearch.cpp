// SPDX-License-Identifier: MIT
#include "platform/DesktopSearch.h"

#include "platform/linux/desktop-search/FoundResults.h"
#include "platform/linux/desktop-search/GnomeSearchProvider.h"
#include "platform/linux/desktop-search/KdeRunner.h"

#include <QDBusConnection>

using namespace Qt::StringLiterals;

namespace
{

/// The bus has this name only while the desktop is answered, so the desktop never asks or starts a
/// program that has no answer.
QString busName()
{
    return u"app.velmora.Velmora.Search"_s;
}

/// Answers GNOME Shell and KRunner on the session bus.
class SearchOnBus : public DesktopSearch
{
public:
    void offer(const Source &source) override
    {
        if (m_results)
            return;
        m_results = std::make_unique<FoundResults>(source);
        m_gnome = std::make_unique<GnomeSearchProvider>(*m_results);
        m_kde = std::make_unique<KdeRunner>(*m_results);
        connect(m_gnome.get(), &GnomeSearchProvider::openRequested, this,
                &DesktopSearch::openRequested);
        connect(m_gnome.get(), &GnomeSearchProvider::searchRequested, this,
                &DesktopSearch::searchRequested);
        connect(m_kde.get(), &KdeRunner::openRequested, this, &DesktopSearch::openRequested);
        connect(m_kde.get(), &KdeRunner::revealRequested, this, &DesktopSearch::revealRequested);
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.registerObject(u"/app/velmora/Velmora/SearchProvider"_s, m_gnome.get(),
                           QDBusConnection::ExportScriptableSlots);
        bus.registerObject(u"/app/velmora/Velmora/Runner"_s, m_kde.get(),
                           QDBusConnection::ExportScriptableSlots);
        bus.registerService(busName());
    }

    /// A deleted object leaves the bus by itself.
    void withdraw() override
    {
        if (m_results)
            QDBusConnection::sessionBus().unregisterService(busName());
        m_kde.reset();
        m_gnome.reset();
        m_results.reset();
    }

private:
    std::unique_ptr<FoundResults> m_results;
    std::unique_ptr<GnomeSearchProvider> m_gnome;
    std::unique_ptr<KdeRunner> m_kde;
};

} // namespace

std::unique_ptr<DesktopSearch> makeDesktopSearch()
{
    return std::make_unique<SearchOnBus>();
}
