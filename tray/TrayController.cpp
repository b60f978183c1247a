// SPDX-License-Identifier: MIT
#include "tray/TrayController.h"

#include "core/Overloaded.h"
#include "core/VelmoraSettings.h"
#include "files/ScreenshotActions.h"
#include "filesystem/FileUrls.h"
#include "tray/ArrivalAnimation.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/RowStack.h"
#include "tray/ScreenshotRowView.h"
#include "tray/trayFrame.h"

#include <QApplication>
#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int maximumRows = 3;

} // namespace

TrayController::TrayController(PanelWindow &panelWindow, ScreenshotImages &images,
                               ScreenshotActions &actions, QObject *parent)
    : QObject(parent)
    , m_panelWindow(panelWindow)
    , m_images(images)
    , m_actions(actions)
    , m_screen(panelWindow)
{
    connect(&m_dismissalTasks, &RowDismissals::due, this, &TrayController::removeRow);
    connect(&m_screen, &TrayScreen::changed, this, &TrayController::layoutPanel);
}

TrayController::~TrayController()
{
    for (ScreenshotRowView *row : std::as_const(m_rows))
        row->retire(ScreenshotRowView::TypedName::Forget);
}

void TrayController::createPanel()
{
    m_panel = std::make_unique<FloatingTrayPanel>(m_panelWindow);
    m_stackView = new RowStack;
    m_panel->setContent(m_stackView);
}

QUuid TrayController::addScreenshot(const ScreenshotPointer &screenshot,
                                    const QString &suggestedFilename)
{
    if (!m_panel)
        createPanel();
    const QUuid id = QUuid::createUuid();
    const auto onAction = [controller = QPointer(this)](const ScreenshotRowAction &action) {
        if (controller)
            controller->handle(action);
    };
    auto *row =
        new ScreenshotRowView(id, screenshot, suggestedFilename, {m_actions, m_images}, onAction);
    connect(row, &ScreenshotRowView::nameClicked, m_panel.get(), &FloatingTrayPanel::takeFocus);
    m_rows.insert(id, row);
    m_rowOrder.prepend(id);
    m_stackView->insertAtTop(row);

    trimRows();
    updateFreshness();
    // While the user types a name, the tray stays on their screen.
    if (!m_panel->isActiveWindow())
        m_screen.choose();
    layoutPanel();
    animateArrival(row);
    m_panel->present();
    scheduleDismissal(id);
    return id;
}

/// Starts before the panel is shown, so that the first picture is already part of the animation.
void TrayController::animateArrival(ScreenshotRowView *row)
{
    new ArrivalAnimation(*m_stackView, row);
}

/// A removed row's dismissal stays scheduled; once due, it finds no row.
void TrayController::trimRows()
{
    while (m_rowOrder.size() > maximumRows) {
        ScreenshotRowView *row = m_rows.take(m_rowOrder.takeLast());
        if (!row)
            break;
        takeOut(row);
    }
}

void TrayController::takeOut(ScreenshotRowView *row)
{
    const QUuid id = row->id();
    const bool hasKeyboard = row->isAncestorOf(QApplication::focusWidget());
    row->retire(ScreenshotRowView::TypedName::Commit);
    m_stackView->remove(row);
    if (hasKeyboard && !m_rowOrder.isEmpty())
        m_panel->giveFocusBack();
    if (onRowGone)
        onRowGone(id);
}

void TrayController::updateFreshness()
{
    for (int i = 0; i < m_rowOrder.size(); ++i) {
        if (ScreenshotRowView *row = m_rows.value(m_rowOrder[i]))
            row->setNewest(i == 0);
    }
}

void TrayController::layoutPanel()
{
    if (m_rowOrder.isEmpty())
        return;
    const std::optional<QRect> visible = m_screen.visibleFrame();
    if (!visible)
        return;
    m_panel->place(trayFrame(*visible, int(m_rowOrder.size()), VelmoraSettings::trayPosition()));
}

QList<PanelPlace> TrayController::placesBetween(FileTime from, FileTime to) const
{
    return m_panel ? m_panel->history().between(from, to) : QList<PanelPlace>();
}

void TrayController::scheduleDismissal(const QUuid &id)
{
    m_dismissalTasks.schedule(id, VelmoraSettings::trayDuration());
}

void TrayController::removeRow(const QUuid &id)
{
    ScreenshotRowView *row = m_rows.take(id);
    if (!row)
        return;
    m_dismissalTasks.cancel(id);
    m_rowOrder.removeAll(id);
    takeOut(row);
    if (m_rowOrder.isEmpty()) {
        m_panel->dismiss();
        return;
    }
    updateFreshness();
    layoutPanel();
}

void TrayController::updateSuggestion(const QUuid &itemID, const QString &filename, bool autoRename)
{
    if (ScreenshotRowView *row = m_rows.value(itemID))
        row->updateSuggestedFilename(filename, autoRename);
}

void TrayController::markNaming(const QUuid &itemID)
{
    if (ScreenshotRowView *row = m_rows.value(itemID))
        row->setStatus(u"Reading screen text..."_s);
}

std::optional<QUrl> TrayController::fileURL(const QUuid &itemID) const
{
    const ScreenshotRowView *row = m_rows.value(itemID);
    return row ? std::optional(row->fileURL()) : std::nullopt;
}

void TrayController::commitTypedNames()
{
    for (ScreenshotRowView *row : std::as_const(m_rows))
        row->retire(ScreenshotRowView::TypedName::Commit);
}

bool TrayController::containsScreenshot(const QUrl &url) const
{
    const QUrl wanted = FileUrls::standardized(url);
    return std::any_of(m_rows.begin(), m_rows.end(), [&wanted](const ScreenshotRowView *row) {
        return FileUrls::standardized(row->fileURL()) == wanted;
    });
}

void TrayController::handle(const ScreenshotRowAction &action)
{
    using Action = ScreenshotRowAction;
    if (const auto *done = std::get_if<Action::Renamed>(&action.what)) {
        renamed(done->result);
        return;
    }
    ScreenshotRowView *row = m_rows.value(action.id);
    if (!row)
        return;
    std::visit(Overloaded{
                   [this, row](const Action::Copy &) { copy(*row); },
                   [this, row](const Action::Rename &) {
                       row->renameFile(std::nullopt,
                                       [controller = QPointer(this)](const auto &result) {
                                           if (controller)
                                               controller->renamed(result);
                                       });
                   },
                   [](const Action::Renamed &) {},
                   [this, row](const Action::Reveal &) { m_actions.reveal(*row->screenshot()); },
                   [this, row](const Action::Trash &) { trash(*row); },
                   [this, row](const Action::Undo &undoing) { undo(*row, undoing.action); },
                   [this, row](const Action::Close &) { removeRow(row->id()); },
               },
               action.what);
}

/// The button copies picture and file, whatever the setting for new screenshots.
void TrayController::copy(ScreenshotRowView &row)
{
    m_actions.copy(row.screenshot(), CopyBehavior::imageAndFile,
                   [row = QPointer(&row)](bool copied) {
                       if (row)
                           row->setStatus(copied ? u"Copied"_s : u"Could not copy"_s);
                   });
}

void TrayController::renamed(const RenameResult &result)
{
    if (onRenamed)
        onRenamed(result.newURL);
    if (onRenameUndoable)
        onRenameUndoable(result.oldURL, result.newURL);
}

void TrayController::trash(ScreenshotRowView &row)
{
    row.moveToTrash([controller = QPointer(this), id = row.id()](const TrashResult &result) {
        if (!controller)
            return;
        if (controller->onTrashUndoable)
            controller->onTrashUndoable(result.originalURL, result.trashedURL);
        controller->removeRow(id);
    });
}

void TrayController::undo(ScreenshotRowView &row, const UndoableAction &action)
{
    row.performUndo(action, [controller = QPointer(this), action](const QUrl &url) {
        if (controller && controller->onUndoPerformed)
            controller->onUndoPerformed(action, url);
    });
}
