// SPDX-License-Identifier: MIT
#include "app/SearchController.h"

#include "app/welcome/dialogs/Alert.h"
#include "core/VelmoraSettings.h"
#include "core/whenFinished.h"
#include "detection/ScreenshotFolderResolver.h"
#include "files/ScreenshotActions.h"
#include "files/recent/RecentScreenshotsWindow.h"
#include "imaging/ScreenshotImages.h"
#include "platform/DesktopSearch.h"

#include <QDesktopServices>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{

using namespace std::chrono_literals;

/// Some time after the launch: a session that begins has more urgent work.
constexpr auto startDelay = 5s;

QString consentTitle()
{
    return u"Search the text of your screenshots?"_s;
}

QString consentMessage()
{
    return u"Velmora can remember the text in your screenshots, so that you find them by what was "
           "on the screen. It stays on this computer, where only you can read it. What looks like "
           "a password, a card number, a key or a code is left out. You can delete it all at any "
           "time."_s;
}

constexpr int mostForDesktop = 10;

std::optional<QList<QUrl>> screenshotsIn(const QUrl &folder)
{
    return ScreenshotFolderResolver::readableScreenshotFiles(folder,
                                                             std::numeric_limits<int>::max());
}

} // namespace

SearchController::SearchController(const Services &services, std::function<bool()> isBusy,
                                   QObject *parent)
    : QObject(parent)
    , m_services(services)
    , m_search({services.recognizer, services.power, services.images.budget(), screenshotsIn,
                std::move(isBusy)})
{
    using Place = SearchIndex::Place;
    connect(&services.actions, &ScreenshotActions::movedFile, this,
            [this](const QUrl &from, const QUrl &to) { m_search.moved(from, to, Place::Folder); });
    connect(&services.actions, &ScreenshotActions::trashedFile, this,
            [this](const QUrl &from, const QUrl &to) { m_search.moved(from, to, Place::Trash); });
    m_soon.setSingleShot(true);
    m_soon.callOnTimeout(this, [this] {
        // The user may have agreed or deleted the texts meanwhile.
        if (VelmoraSettings::searchConsent() != SearchConsent::given) {
            m_search.forgetTexts();
            return;
        }
        m_search.keepTexts();
        offerToDesktop();
    });
    connect(&m_services.desktop, &DesktopSearch::openRequested, this,
            [](const QUrl &file) { QDesktopServices::openUrl(file); });
    connect(&m_services.desktop, &DesktopSearch::revealRequested, this, [this](const QUrl &file) {
        ScreenshotActions &actions = m_services.actions;
        actions.reveal(*actions.open(file));
    });
    connect(&m_services.desktop, &DesktopSearch::searchRequested, this,
            &SearchController::windowRequested);
}

SearchController::~SearchController() = default;

void SearchController::start()
{
    // If the program ended while it was deleting the texts, some may be left.
    if (VelmoraSettings::searchConsent() != SearchConsent::notAsked)
        m_soon.start(startDelay);
}

void SearchController::attend(RecentScreenshotsWindow &window)
{
    if (m_window == &window)
        return;
    m_window = &window;
    connect(&window, &RecentScreenshotsWindow::searchPaused, this, [this, &window] {
        if (VelmoraSettings::searchConsent() == SearchConsent::notAsked)
            ask(window);
    });
    connect(&window, &RecentScreenshotsWindow::textsWanted, this, [this, &window] { ask(window); });
    connect(&window, &RecentScreenshotsWindow::deletionWanted, this, &SearchController::forget);
}

void SearchController::ask(RecentScreenshotsWindow &window)
{
    auto *alert =
        new Alert(consentTitle(), consentMessage(), {u"Remember Text"_s, u"Names Only"_s}, &window);
    connect(alert, &QDialog::accepted, this, &SearchController::keep);
    connect(alert, &QDialog::rejected, this,
            [] { VelmoraSettings::setSearchConsent(SearchConsent::refused); });
    alert->open();
}

void SearchController::keep()
{
    VelmoraSettings::setSearchConsent(SearchConsent::given);
    m_search.keepTexts();
    offerToDesktop();
}

/// The desktop is offered the search only while texts may be kept.
void SearchController::offerToDesktop()
{
    DesktopSearch::Source source;
    source.find = [this](const QString &words, const DesktopSearch::Source::Results &answer) {
        whenFinished(m_search.find(words, mostForDesktop), this,
                     [answer](const QList<SearchHit> &hits) {
                         QList<DesktopSearch::Result> results;
                         for (const SearchHit &hit : hits)
                             results.append({hit.url, hit.line});
                         answer(results);
                     });
    };
    source.thumbnail = [this](const QUrl &file, QSize bounds,
                              const DesktopSearch::Source::Picture &answer) {
        m_thumbnails.add([this, file, bounds, answer]() -> WorkQueue::Outcome {
            const ScreenshotImages::Held held = m_services.images.hold(file);
            return [this, held, bounds, answer] {
                whenFinished(m_services.images.thumbnail(held, bounds), this, answer);
            };
        });
    };
    m_services.desktop.offer(source);
}

/// A user who wants it again finds the button in the same place.
void SearchController::forget()
{
    VelmoraSettings::setSearchConsent(SearchConsent::refused);
    m_search.forgetTexts();
    m_services.desktop.withdraw();
}
