// SPDX-License-Identifier: MIT
#include "tray/ScreenshotRowView.h"

#include "core/VelmoraLog.h"
#include "files/ScreenshotActions.h"
#include "filesystem/FileUrls.h"
#include "style/BezelButton.h"
#include "tray/BadgeLabel.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
#include "tray/RowVeil.h"
#include "tray/StatusLabel.h"
#include "tray/rowStyle.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace
{

constexpr double cornerRadius = 10;

} // namespace

/// One rename, from its request on.
struct ScreenshotRowView::Rename {
    ScreenshotActions::By by;
    /// The text of the name field.
    QString text;
    std::optional<QString> successMessage;
    Renamed renamed;
    int statusNumber = 0;
};

ScreenshotRowView::ScreenshotRowView(const QUuid &id, const ScreenshotPointer &screenshot,
                                     const QString &suggestedFilename, const Services &services,
                                     OnAction onAction)
    : m_id(id)
    , m_screenshot(screenshot)
    , m_services(services)
    , m_onAction(std::move(onAction))
    , m_controls(buildRowControls(this, screenshot->url(), suggestedFilename, services.actions))
    , m_name(*m_controls.filenameField, screenshot)
    , m_status(*m_controls.statusLabel)
    , m_thumbnail(*m_controls.thumbnailView, screenshot, services.images)
    , m_veil(new RowVeil(this))
{
    setCornerRadius(cornerRadius);
    // So that Tab visits the row's controls together and in their order.
    setFocusPolicy(Qt::TabFocus);
    setFocusProxy(m_controls.filenameField);
    connectControls();
    setNewest(true);
}

void ScreenshotRowView::connectControls()
{
    const auto send = [this](auto what) { return [this, what] { m_onAction({m_id, what}); }; };
    using Action = ScreenshotRowAction;
    connect(m_controls.copyButton, &QPushButton::clicked, this, send(Action::Copy()));
    connect(m_controls.revealButton, &QPushButton::clicked, this, send(Action::Reveal()));
    connect(m_controls.trashButton, &QPushButton::clicked, this, send(Action::Trash()));
    connect(m_controls.closeButton, &QPushButton::clicked, this, send(Action::Close()));
    connect(m_controls.undoButton, &QPushButton::clicked, this, &ScreenshotRowView::undoTapped);

    FilenameTextField *field = m_controls.filenameField;
    connect(field, &FilenameTextField::edited, this, [this] { m_name.edited(); });
    connect(field, &FilenameTextField::pressed, this, &ScreenshotRowView::nameClicked);
    connect(field, &QLineEdit::returnPressed, this, &ScreenshotRowView::renameFromField);
    connect(field, &QLineEdit::editingFinished, this, &ScreenshotRowView::renameFromField);
    connect(m_controls.thumbnailView, &DraggableImageView::handedOver, this,
            &ScreenshotRowView::renameAsSuggested);
    connect(m_screenshot.get(), &Screenshot::takesLong, this,
            [this](const QString &work) { m_status.announce(work); });
}

void ScreenshotRowView::setNewest(bool isNewest)
{
    const RowStyle style = rowStyle(isNewest);
    m_controls.freshnessLabel->setText(style.freshness);
    m_controls.freshnessLabel->setColors(style.freshnessText, style.freshnessBackground);
    m_controls.accentView->setFillColor(style.accent);
    setFillColor(style.background);
    setBorder(style.borderWidth, style.border);
    m_veil->setAlpha(style.alpha);
}

void ScreenshotRowView::setArrival(double arrival)
{
    m_veil->setArrival(arrival);
}

void ScreenshotRowView::resizeEvent(QResizeEvent *)
{
    m_veil->setGeometry(rect());
}

void ScreenshotRowView::setStatus(const QString &text)
{
    m_status.showBriefly(text);
}

void ScreenshotRowView::setPendingUndo(const std::optional<UndoableAction> &action)
{
    m_pendingUndo = action;
    m_controls.undoButton->setVisible(action.has_value());
}

void ScreenshotRowView::updateSuggestedFilename(const QString &name, bool autoRename)
{
    if (!m_name.suggest(name) || !autoRename)
        return;
    m_name.keepSuggestion(name);
    if (!m_controls.thumbnailView->isHandingOver())
        renameAsSuggested();
}

void ScreenshotRowView::renameAsSuggested()
{
    if (const std::optional<QString> name = m_name.takeSuggestion())
        requestRename({ScreenshotActions::By::Program, *name, u"Renamed automatically"_s,
                       renameHandler(), m_status.number()});
}

void ScreenshotRowView::renameFile(const std::optional<QString> &successMessage, Renamed renamed)
{
    requestRename({ScreenshotActions::By::User, m_name.text(), successMessage, std::move(renamed),
                   m_status.number()});
}

ScreenshotRowView::Renamed ScreenshotRowView::renameHandler() const
{
    return [id = m_id, onAction = m_onAction](const RenameResult &result) {
        onAction({id, ScreenshotRowAction::Renamed{result}});
    };
}

void ScreenshotRowView::requestRename(const Rename &rename)
{
    const std::optional<QString> name = m_name.beginRename(rename.text);
    if (!name)
        return;
    const auto ended = [row = QPointer(this), rename](const ScreenshotRename &outcome) {
        if (row)
            row->renameEnded(rename, outcome);
        if (outcome.result)
            rename.renamed(*outcome.result);
    };
    m_services.actions.rename(m_screenshot, *name, rename.by, ended);
}

void ScreenshotRowView::renameEnded(const Rename &rename, const ScreenshotRename &ended)
{
    m_name.endRename(rename.text);
    m_status.endAnnouncement();
    m_name.showFilename();
    if (ended.outcome == ScreenshotRename::Outcome::Failed)
        setStatus(u"Rename failed"_s);
    const bool undoes = !m_name.isRenaming() && std::exchange(m_undoesWhenMoved, false);
    if (!ended.result)
        return;
    const auto &[oldURL, newURL] = *ended.result;
    m_controls.thumbnailView->setFileURL(newURL);
    setPendingUndo(UndoableAction::rename(oldURL, newURL));
    if (rename.by == ScreenshotActions::By::User) {
        m_status.show(
            rename.successMessage.value_or(u"Saved as "_s + FileUrls::lastPathComponent(newURL)));
    } else if (rename.statusNumber == m_status.number()) {
        setStatus(*rename.successMessage);
    }
    if (undoes)
        undoTapped();
}

void ScreenshotRowView::moveToTrash(const Trashed &trashed)
{
    if (std::exchange(m_isTrashing, true))
        return;
    const auto ended = [row = QPointer(this), screenshot = m_screenshot,
                        trashed](const ScreenshotMoves::Trashing &outcome) {
        if (row)
            row->trashEnded(outcome);
        if (outcome.result)
            trashed(*outcome.result);
        else
            VelmoraLog::write(u"trash failed %1: %2"_s.arg(
                screenshot->url().toLocalFile(), QString::fromStdString(outcome.error.message())));
    };
    m_services.actions.trash(m_screenshot, ended);
}

void ScreenshotRowView::trashEnded(const ScreenshotMoves::Trashing &ended)
{
    m_isTrashing = false;
    const bool undoes = std::exchange(m_undoesWhenMoved, false);
    m_status.endAnnouncement();
    if (!ended.result) {
        setStatus(u"Trash failed"_s);
        return;
    }
    m_name.forgetTyped();
    m_name.forgetSuggestion();
    m_controls.thumbnailView->setFileURL(ended.result->trashedURL);
    setPendingUndo(UndoableAction::trash(ended.result->originalURL, ended.result->trashedURL));
    m_status.show(u"Moved to Trash"_s);
    if (undoes)
        undoTapped();
}

void ScreenshotRowView::performUndo(const UndoableAction &action, const Restored &restored)
{
    if (std::exchange(m_isUndoing, true))
        return;
    const auto ended = [row = QPointer(this), action, restored](const std::error_code &error) {
        if (row)
            row->undoEnded(action, error);
        if (!error)
            restored(action.before);
    };
    m_services.actions.undo(m_screenshot, action, ended);
}

void ScreenshotRowView::undoEnded(const UndoableAction &action, const std::error_code &error)
{
    m_isUndoing = false;
    m_status.endAnnouncement();
    if (error) {
        setStatus(u"Could not undo"_s);
        return;
    }
    m_controls.thumbnailView->setFileURL(fileURL());
    m_thumbnail.reload();
    m_name.showFilename();
    if (m_pendingUndo == action)
        setPendingUndo(std::nullopt);
    setStatus(u"Restored"_s);
}

void ScreenshotRowView::retire(TypedName typed)
{
    if (typed == TypedName::Commit) {
        if (m_controls.filenameField->hasFocus())
            QGuiApplication::inputMethod()->commit();
        renameFromField();
        renameAsSuggested();
    }
    m_isRetired = true;
}

void ScreenshotRowView::renameFromField()
{
    if (m_name.isTyped() && !m_isRetired)
        renameFile(std::nullopt, renameHandler());
}

/// While the file is being moved, Undo means that move. If the move then fails, nothing is undone.
void ScreenshotRowView::undoTapped()
{
    if (m_name.isRenaming() || m_isTrashing)
        m_undoesWhenMoved = true;
    else if (m_pendingUndo)
        m_onAction({m_id, ScreenshotRowAction::Undo{*m_pendingUndo}});
}

void ScreenshotRowView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape) {
        PaletteView::keyPressEvent(event);
        return;
    }
    m_name.forgetTyped();
    m_onAction({m_id, ScreenshotRowAction::Close()});
}
