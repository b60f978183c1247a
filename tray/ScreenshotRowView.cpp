// SPDX-License-Identifier: MIT
#include "tray/ScreenshotRowView.h"

#include "core/VelmoraLog.h"
#include "files/ScreenshotActions.h"
#include "filesystem/FileUrls.h"
#include "naming/ScreenshotNamer.h"
#include "style/BezelButton.h"
#include "style/VelmoraPalette.h"
#include "tray/BadgeLabel.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
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
    , m_status(*m_controls.statusLabel)
    , m_thumbnail(*m_controls.thumbnailView, screenshot, services.images)
    , m_veil(new PaletteView(this))
{
    setCornerRadius(cornerRadius);
    // So that Tab visits the row's controls together and in their order.
    setFocusPolicy(Qt::TabFocus);
    setFocusProxy(m_controls.filenameField);
    m_veil->setAttribute(Qt::WA_TransparentForMouseEvents);
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
    connect(field, &FilenameTextField::edited, this, [this] {
        m_userEditedFilename = true;
        m_hasTypedName = true;
        m_screenshot->setNamedByUser();
    });
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
    m_alpha = style.alpha;
    updateVeil();
}

void ScreenshotRowView::setArrival(double arrival)
{
    m_arrival = arrival;
    updateVeil();
}

/// A translucent row shows the tray's single colour. Painting that colour over the row gives the
/// same pixels, at a fraction of the cost of drawing the row off-screen and blending it.
void ScreenshotRowView::updateVeil()
{
    const double alpha = m_alpha * m_arrival;
    m_veil->setFillColor(VelmoraPalette::withAlpha(VelmoraPalette::tray(), 1 - alpha));
    m_veil->setVisible(alpha < 1);
    m_veil->raise();
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
    if (m_userEditedFilename)
        return;
    m_controls.filenameField->setText(name);
    if (!autoRename)
        return;
    m_suggestedName = name;
    if (!m_controls.thumbnailView->isHandingOver())
        renameAsSuggested();
}

void ScreenshotRowView::renameAsSuggested()
{
    const std::optional<QString> name = std::exchange(m_suggestedName, std::nullopt);
    if (name && !m_userEditedFilename)
        requestRename({ScreenshotActions::By::Program, *name, u"Renamed automatically"_s,
                       renameHandler(), m_status.number()});
}

void ScreenshotRowView::renameFile(const std::optional<QString> &successMessage, Renamed renamed)
{
    requestRename({ScreenshotActions::By::User, m_controls.filenameField->text(), successMessage,
                   std::move(renamed), m_status.number()});
}

ScreenshotRowView::Renamed ScreenshotRowView::renameHandler() const
{
    return [id = m_id, onAction = m_onAction](const RenameResult &result) {
        onAction({id, ScreenshotRowAction::Renamed{result}});
    };
}

void ScreenshotRowView::requestRename(const Rename &rename)
{
    if (m_isRenaming == rename.text)
        return;
    m_hasTypedName = false;
    const QString current = FileUrls::lastPathComponent(fileURL());
    // Sanitising could shorten the current name, because a counter may have made it longer than a
    // typed name may be.
    const QString name =
        rename.text == current ? current : ScreenshotNamer::sanitize(rename.text, current);
    if (name == current && !m_isRenaming) {
        m_controls.filenameField->setText(current);
        return;
    }
    m_isRenaming = rename.text;
    const auto ended = [row = QPointer(this), rename](const ScreenshotRename &outcome) {
        if (row)
            row->renameEnded(rename, outcome);
        if (outcome.result)
            rename.renamed(*outcome.result);
    };
    m_services.actions.rename(m_screenshot, name, rename.by, ended);
}

void ScreenshotRowView::renameEnded(const Rename &rename, const ScreenshotRename &ended)
{
    if (m_isRenaming == rename.text)
        m_isRenaming.reset();
    m_status.endAnnouncement();
    showName();
    if (ended.outcome == ScreenshotRename::Outcome::Failed)
        setStatus(u"Rename failed"_s);
    const bool undoes = !m_isRenaming && std::exchange(m_undoesWhenMoved, false);
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

/// Keeps a name that the user is typing or that the file is being renamed to.
void ScreenshotRowView::showName()
{
    if (!m_hasTypedName && !m_isRenaming)
        m_controls.filenameField->setText(FileUrls::lastPathComponent(fileURL()));
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
    m_hasTypedName = false;
    m_suggestedName.reset();
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
    showName();
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
    if (m_hasTypedName && !m_isRetired)
        renameFile(std::nullopt, renameHandler());
}

/// While the file is being moved, Undo means that move. If the move then fails, nothing is undone.
void ScreenshotRowView::undoTapped()
{
    if (m_isRenaming || m_isTrashing)
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
    m_hasTypedName = false;
    m_onAction({m_id, ScreenshotRowAction::Close()});
}
