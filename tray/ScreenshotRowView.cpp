#include "tray/ScreenshotRowView.h"

#include "core/VelmoraLog.h"
#include "core/whenFinished.h"
#include "files/ScreenshotTrash.h"
#include "files/renameScreenshot.h"
#include "files/reverseAction.h"
#include "filesystem/FileUrls.h"
#include "imaging/ScreenshotImages.h"
#include "naming/ScreenshotNamer.h"
#include "style/BezelButton.h"
#include "style/FileIcon.h"
#include "style/VelmoraPalette.h"
#include "tray/BadgeLabel.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
#include "tray/StatusLabel.h"
#include "tray/rowStyle.h"

#include <QGuiApplication>
#include <QKeyEvent>

namespace
{

constexpr double cornerRadius = 10;

/// Sharp on whichever screen the row comes to stand.
QSize pixelsOf(QSize points)
{
    return points * qGuiApp->devicePixelRatio();
}

} // namespace

ScreenshotRowView::ScreenshotRowView(const QUuid &id, const QUrl &url,
                                     const QString &suggestedFilename, const Services &services,
                                     OnAction onAction)
    : m_id(id)
    , m_fileURL(url)
    , m_services(services)
    , m_onAction(std::move(onAction))
    , m_controls(buildRowControls(this, url, suggestedFilename))
    , m_veil(new PaletteView(this))
{
    setCornerRadius(cornerRadius);
    // Tab then takes the row's controls together, and in their order.
    setFocusPolicy(Qt::TabFocus);
    setFocusProxy(m_controls.filenameField);
    m_veil->setAttribute(Qt::WA_TransparentForMouseEvents);
    connectControls();
    configureThumbnail();
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
    connect(field, &FilenameTextField::edited, this, [this] { m_userEditedFilename = true; });
    connect(field, &FilenameTextField::pressed, this, &ScreenshotRowView::nameClicked);
    connect(field, &QLineEdit::returnPressed, this, &ScreenshotRowView::renameFromField);
    connect(field, &QLineEdit::editingFinished, this, &ScreenshotRowView::renameFromField);
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

/// A row of less than full opacity lets the tray's one colour through. Laying that colour over the
/// row gives the same pixels, at a fraction of what drawing the row aside and blending it costs.
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
    m_controls.statusLabel->showBriefly(text);
}

void ScreenshotRowView::configureThumbnail()
{
    const QSize pixels = pixelsOf(m_controls.thumbnailView->size());
    m_controls.thumbnailView->setImage(fileIcon(m_fileURL).pixmap(pixels, 1).toImage());
    loadThumbnail(Unreadable::LeavesNoImage);
}

void ScreenshotRowView::loadThumbnail(Unreadable unreadable)
{
    const int request = ++m_thumbnailRequest;
    const QSize pixels = pixelsOf(m_controls.thumbnailView->size());
    whenFinished(m_services.images.thumbnail(m_fileURL, pixels), this,
                 [this, request, unreadable](const QImage &image) {
                     const bool isNewest = request == m_thumbnailRequest;
                     if (isNewest && (!image.isNull() || unreadable == Unreadable::LeavesNoImage))
                         m_controls.thumbnailView->setImage(image);
                 });
}

void ScreenshotRowView::moved(const QUrl &url)
{
    m_fileURL = url;
    m_controls.thumbnailView->setFileURL(url);
}

void ScreenshotRowView::updateFileURL(const QUrl &url)
{
    moved(FileUrls::standardized(url));
    loadThumbnail(Unreadable::KeepsTheImage);
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
    const QString message = QStringLiteral("Renamed automatically");
    if (const auto result = renameFile(message)) {
        setStatus(message);
        m_onAction({m_id, ScreenshotRowAction::Renamed{*result}});
    }
}

std::optional<RenameResult>
ScreenshotRowView::renameFile(const std::optional<QString> &successMessage)
{
    if (m_isRenaming)
        return std::nullopt;
    m_isRenaming = true;
    const QString current = FileUrls::lastPathComponent(m_fileURL);
    const QString name = ScreenshotNamer::sanitize(m_controls.filenameField->text(), current);
    const ScreenshotRename rename = renameScreenshot(m_fileURL, name);

    if (rename.result) {
        const auto &[oldURL, newURL] = *rename.result;
        const QString newName = FileUrls::lastPathComponent(newURL);
        moved(newURL);
        m_controls.filenameField->setText(newName);
        setPendingUndo(UndoableAction::rename(oldURL, newURL));
        m_controls.statusLabel->setText(
            successMessage.value_or(QStringLiteral("Saved as ") + newName));
    } else {
        m_controls.filenameField->setText(current);
        if (rename.outcome == ScreenshotRename::Outcome::Failed)
            setStatus(QStringLiteral("Rename failed"));
    }
    m_isRenaming = false;
    return rename.result;
}

std::optional<TrashResult> ScreenshotRowView::moveToTrash()
{
    const ScreenshotTrash::Result trash = ScreenshotTrash::move(m_services.trash, m_fileURL);
    if (!trash.location) {
        VelmoraLog::write(
            QStringLiteral("trash failed %1: %2")
                .arg(m_fileURL.toLocalFile(), QString::fromStdString(trash.error.message())));
        setStatus(QStringLiteral("Trash failed"));
        return std::nullopt;
    }
    const TrashResult result{m_fileURL, *trash.location};
    moved(FileUrls::standardized(result.trashedURL));
    setPendingUndo(UndoableAction::trash(result.originalURL, result.trashedURL));
    m_controls.statusLabel->setText(QStringLiteral("Moved to Trash"));
    return result;
}

std::optional<QUrl> ScreenshotRowView::performUndo(const UndoableAction &action)
{
    if (reverseAction(m_services.trash, action)) {
        setStatus(QStringLiteral("Could not undo"));
        return std::nullopt;
    }
    updateFileURL(action.before);
    m_controls.filenameField->setText(FileUrls::lastPathComponent(m_fileURL));
    setPendingUndo(std::nullopt);
    setStatus(QStringLiteral("Restored"));
    return action.before;
}

void ScreenshotRowView::retire()
{
    m_isRetired = true;
}

void ScreenshotRowView::renameFromField()
{
    if (m_isRetired)
        return;
    if (const auto result = renameFile(std::nullopt))
        m_onAction({m_id, ScreenshotRowAction::Renamed{*result}});
}

void ScreenshotRowView::undoTapped()
{
    if (m_pendingUndo)
        m_onAction({m_id, ScreenshotRowAction::Undo{*m_pendingUndo}});
}

void ScreenshotRowView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        m_onAction({m_id, ScreenshotRowAction::Close()});
    else
        PaletteView::keyPressEvent(event);
}
