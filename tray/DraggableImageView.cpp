// SPDX-License-Identifier: MIT
#include "tray/DraggableImageView.h"

#include "tray/DragPace.h"

#include <QApplication>
#include <QDrag>
#include <QMouseEvent>

#include <chrono>

using namespace std::chrono_literals;

namespace
{

/// File managers copy a dropped file after the drop, perhaps after a look at the other files there.
constexpr auto timeToRead = 5s;

} // namespace

DraggableImageView::DraggableImageView(const QUrl &fileURL, MakeDrag makeDrag, QWidget *parent)
    : ImageView(parent), m_fileURL(fileURL), m_makeDrag(std::move(makeDrag))
{
    m_afterDrop.setSingleShot(true);
    m_afterDrop.setInterval(timeToRead);
    m_afterDrop.callOnTimeout(this, &DraggableImageView::handedOver);
}

void DraggableImageView::setFileURL(const QUrl &url)
{
    m_fileURL = url;
    if (m_dragged)
        m_dragged->setFile(url);
    Q_EMIT fileURLChanged(url);
}

void DraggableImageView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_press = {event->position().toPoint(), event->globalPosition().toPoint()};
}

void DraggableImageView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_press || !(event->buttons() & Qt::LeftButton))
        return;
    // On the screen, because the row may move under the pointer when another one arrives.
    const QPoint way = event->globalPosition().toPoint() - m_press->onScreen;
    if (way.manhattanLength() < QApplication::startDragDistance())
        return;
    const QPoint from = m_press->inView;
    m_press.reset();
    drag(from);
}

void DraggableImageView::mouseReleaseEvent(QMouseEvent *)
{
    m_press.reset();
}

void DraggableImageView::drag(QPoint from)
{
    if (image().isNull())
        return;
    m_dragged = m_makeDrag(m_fileURL).release();

    // The row may be removed during the drag; the window stays.
    auto *drag = new QDrag(window());
    drag->setMimeData(m_dragged);
    drag->setPixmap(picture());
    drag->setHotSpot(from);
    DragPace pace;
    QTimer::singleShot(0, &pace, &DragPace::begin);
    m_isDragging = true;
    const QPointer self(this);
    const Qt::DropAction action = drag->exec(Qt::CopyAction);
    if (!self)
        return;
    m_isDragging = false;
    if (action == Qt::IgnoreAction)
        Q_EMIT handedOver();
    else
        m_afterDrop.start();
}
