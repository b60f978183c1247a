// SPDX-License-Identifier: MIT
#include "app/welcome/dialogs/FolderPanel.h"

#include <QAbstractItemView>
#include <QShortcut>

using namespace Qt::StringLiterals;

FolderPanel::FolderPanel(const QUrl &start, QWidget *window)
    : QFileDialog(window, u"Choose Screenshot Folder"_s)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    setFileMode(QFileDialog::Directory);
    setOptions(QFileDialog::ShowDirsOnly | QFileDialog::ReadOnly);
    setSupportedSchemes({u"file"_s});
    setLabelText(QFileDialog::Accept, u"Use Folder"_s);
    setDirectoryUrl(start);
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    leaveFilesAlone();
}

/// Not QFileDialog's own version: that one runs an event loop while it waits for an answer to a
/// complaint, and the window and this panel may end meanwhile.
void FolderPanel::accept()
{
    QDialog::accept(); // NOLINT(bugprone-parent-virtual-call)
}

/// Menus and drags run such loops too, and offer more than choosing.
void FolderPanel::leaveFilesAlone()
{
    const auto views = findChildren<QAbstractItemView *>();
    for (QAbstractItemView *view : views) {
        view->setContextMenuPolicy(Qt::NoContextMenu);
        view->setDragDropMode(QAbstractItemView::NoDragDrop);
    }
}
