// SPDX-License-Identifier: MIT
#pragma once

#include "tests/tray/TrayRig.h"
#include "tray/TrayController.h"

#include <memory>

/// A tray that keeps its rows until they are dismissed, with a record of its callbacks.
class ControllerFixture
{
protected:
    void begin();
    void end();

    /// Creates a screenshot and shows it under its own name.
    QUuid add(const char *file);

    /// Has the row's file renamed, and waits for the outcome.
    void suggest(const QUuid &id, const char *name);

    /// Gives the panel keyboard focus.
    static void activate();

    /// Replaces the name in a row's field by typing.
    static void type(QWidget *row, const char *typed);
    /// Waits for the outcome.
    void click(QWidget *row, const char *accessibleName);

    /// Whether the server soon has the panel with this corner, and keeps it there: a window manager
    /// may move it.
    static bool comesToRestAt(QPoint corner);

    /// Top to bottom.
    static QStringList names();
    static QStringList badges();

    std::unique_ptr<TrayRig> m_rig;
    std::unique_ptr<TrayController> m_tray;
    /// One line per callback, with the names of the files.
    QStringList m_calls;

private:
    void record(const char *what, const QList<QUrl> &urls);
};
