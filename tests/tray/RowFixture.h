// SPDX-License-Identifier: MIT
#pragma once

#include "files/TrashResult.h"
#include "tests/tray/TrayRig.h"
#include "tray/ScreenshotRowAction.h"

#include <QList>
#include <QUuid>

#include <memory>

class FilenameTextField;
class PaletteView;
class QWidget;
class ScreenshotRowView;

/// One row in an active window, with a screenshot "Shot.png" and the name "app-screen.png".
class RowFixture
{
protected:
    RowFixture();
    ~RowFixture();

    void begin();
    void end();

    /// Another row instead, with this screenshot.
    void show(const QUrl &url);

    FilenameTextField *name() const;
    BezelButton *button(const char *accessibleName) const;
    QString status() const;

    // Each waits for the outcome, and returns nothing if the row's callback is not called.

    std::optional<RenameResult> rename();
    std::optional<TrashResult> trash();
    std::optional<QUrl> undo(const UndoableAction &action);
    void suggest(const char *name);

    /// Replaces the name in the field by typing.
    void type(const char *typed);

    /// The actions of one kind that the row has sent.
    template <typename What>
    QList<What> sent() const
    {
        QList<What> found;
        for (const ScreenshotRowAction &action : m_actions) {
            if (const auto *what = std::get_if<What>(&action.what))
                found.append(*what);
        }
        return found;
    }

    std::unique_ptr<TrayRig> m_rig;
    std::unique_ptr<PaletteView> m_window;
    ScreenshotRowView *m_row = nullptr;
    QUuid m_id;
    QUrl m_url;
    QList<ScreenshotRowAction> m_actions;
};
