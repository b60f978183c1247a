// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DraggedFile.h"
#include "style/ImageView.h"

#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

/// A picture that can be dragged into other programs as a copy of its file. Without a picture
/// nothing can be dragged. Main thread.
class DraggableImageView : public ImageView
{
    Q_OBJECT
public:
    /// Makes what a drag of a file carries.
    using MakeDrag = std::function<std::unique_ptr<DraggedFile>(const QUrl &file)>;

    DraggableImageView(const QUrl &fileURL, MakeDrag makeDrag, QWidget *parent = nullptr);

    QUrl fileURL() const { return m_fileURL; }

    /// The file has moved. A drag in progress carries the new location from now on.
    void setFileURL(const QUrl &url);

    /// Whether another program may be about to read the file by the path that a drag has told it:
    /// during a drag and for five seconds after a drop.
    bool isHandingOver() const { return m_isDragging || m_afterDrop.isActive(); }

Q_SIGNALS:
    void fileURLChanged(const QUrl &url);
    /// isHandingOver() has become false.
    void handedOver();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    struct Press {
        QPoint inView;
        QPoint onScreen;
    };

    void drag(QPoint from);

    QUrl m_fileURL;
    const MakeDrag m_makeDrag;
    std::optional<Press> m_press;
    QPointer<DraggedFile> m_dragged;
    bool m_isDragging = false;
    QTimer m_afterDrop;
};
