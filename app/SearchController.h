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

/// The search among the program's other parts: it hears of what happens to screenshots, and keeps
/// their texts as far as the user has agreed. Main thread.
class SearchController : public QObject
{
    Q_OBJECT
public:
    struct Services {
        TextRecognizer &recognizer;
        PowerSource &power;
        ScreenshotActions &actions;
        ScreenshotImages &images;
        DesktopSearch &desktop;
    };

    /// They outlive this object. `isBusy` tells whether a new screenshot waits for its name.
    SearchController(const Services &services, std::function<bool()> isBusy,
                     QObject *parent = nullptr);
    ~SearchController() override;

    /// The launch: a while later what the user has agreed to goes on.
    void start();

    /// Where screenshots are saved from now on.
    void setFolder(const QUrl &folder) { m_search.setFolder(folder); }

    ScreenshotSearch &search() { return m_search; }

    /// Asks in this window, once, whether texts may be kept; called again it changes nothing.
    void attend(RecentScreenshotsWindow &window);

    /// A new screenshot has come.
    void arrived(const QUrl &file, const QString &application)
    {
        m_search.arrived(file, application);
    }

Q_SIGNALS:
    /// The user wants to go on searching in the program's window.
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
