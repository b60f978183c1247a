// SPDX-License-Identifier: MIT
#pragma once

#include "files/WorkQueue.h"
#include "search/ScreenshotSearch.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

class DesktopSearch;
class RecentScreenshotsWindow;
class ScreenshotActions;
class ScreenshotImages;

/// Connects the search with the program's other parts: it learns what happens to screenshots, and
/// keeps their texts as far as the user has agreed. Main thread.
class SearchController : public QObject
{
    Q_OBJECT
public:
    struct Services {
        std::shared_ptr<TextRecognizer> recognizer;
        std::shared_ptr<PowerSource> power;
        ScreenshotActions &actions;
        ScreenshotImages &images;
        DesktopSearch &desktop;
    };

    /// The services that are references must outlive this object. `isBusy` tells whether a new
    /// screenshot is waiting for its name.
    SearchController(const Services &services, std::function<bool()> isBusy,
                     QObject *parent = nullptr);
    ~SearchController() override;

    /// Call it at the launch: what the user has agreed to continues a while later.
    void start();

    /// Where screenshots are saved from now on.
    void setFolder(const QUrl &folder) { m_search.setFolder(folder); }

    ScreenshotSearch &search() { return m_search; }

    /// Asks in this window, once, whether texts may be kept; further calls change nothing.
    void attend(RecentScreenshotsWindow &window);

    /// A new screenshot has arrived.
    void arrived(const QUrl &file, const QString &application)
    {
        m_search.arrived(file, application);
    }

Q_SIGNALS:
    /// The user wants to continue the search in the program's window.
    void windowRequested(const QString &words);

private:
    void offerToDesktop();
    void ask(RecentScreenshotsWindow &window);
    void keep();
    void forget();

    Services m_services;
    ScreenshotSearch m_search;
    QPointer<RecentScreenshotsWindow> m_window;
    QTimer m_soon;
    WorkQueue m_thumbnails;
};
