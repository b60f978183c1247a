// SPDX-License-Identifier: MIT
#pragma once

#include "style/FloatingWindow.h"

#include <QUrl>

class GeneralSection;
class BehaviorSection;
class DesktopLimits;
class QScrollArea;
class WelcomeFooter;

/// What the welcome window shows: the state at the time when it is built.
struct WelcomeState {
    QUrl folder;
    bool instantModeOn = false;
    bool startsAtLogin = false;
    bool keyHasFixedFolder = false;
    /// Outlives the window, which follows it.
    const DesktopLimits &limits;
};

/// The program's one window for its status and its settings. It is a snapshot that is not
/// refreshed, except for what turns out to be missing on the desktop: a new state needs a new
/// window. It changes nothing itself; it signals what the user asks for. On a screen that is too
/// low for all of it, its content scrolls. Main thread.
class WelcomeWindow : public FloatingWindow
{
    Q_OBJECT
public:
    /// Reads the user's three options from `VelmoraSettings`, everything else from `state`.
    explicit WelcomeWindow(const WelcomeState &state, QWidget *parent = nullptr);

    /// No control has the focus when the window appears.
    void setVisible(bool visible) override;

Q_SIGNALS:
    void instantModeRequested();
    void startAtLoginChanged(bool on);
    void changeFolderRequested();
    /// Indices of the picked options in `optionCases()`. Emitted for every pick, even when the
    /// option stays the same.
    void copyBehaviorPicked(int index);
    void trayDurationPicked(int index);
    void trayPositionPicked(int index);
    void recentScreenshotsRequested();
    void doneRequested();
    void feedbackRequested();

protected:
    void fitInto(const QSize &room) override;

private:
    QWidget *makeContent(const WelcomeState &state);
    void connectGeneral(const GeneralSection &general);
    void connectBehavior(const BehaviorSection &behavior);
    void connectFooter(const WelcomeFooter &footer);

    QScrollArea *m_scrollArea;
};
