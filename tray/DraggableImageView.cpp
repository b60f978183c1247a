// SPDX-License-Identifier: MIT
#include "tray/DraggableImageView.h"

#include "filesystem/FileUrls.h"
#include "tray/DragPace.h"

#include <QApplication>
#include <QDrag>
#include <QMouseEvent>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

/// Describes the dragged file to other programs: its URL, its plain path for those that want text,
/// and its name for those that create a file of their own from the data.
void describe(const QUrl &file, QMimeData &data)
{
    data.setUrls({file});
    data.setText(file.toLocalFile());
    data.setData(u"application/x-kde-suggestedfilename"_s,
                 FileUrls::lastPathComponent(file).toUtf8());
}

} // namespace

DraggableImageView::DraggableImageView(const QUrl &fileURL, QWidget *parent)
    : ImageView(parent), m_fileURL(fileURL)
{
}

void DraggableImageView::setFileURL(const QUrl &url)
{
    m_fileURL = url;
    if (m_dragged)
        describe(url, *m_dragged);
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
    m_dragged = new QMimeData;
    describe(m_fileURL, *m_dragged);

    // The row may be removed during the drag; the window stays.
    auto *drag = new QDrag(window());
    drag->setMimeData(m_dragged);
    drag->setPixmap(picture());
    drag->setHotSpot(from);
    DragPace pace;
    QTimer::singleShot(0, &pace, &DragPace::begin);
    drag->exec(Qt::CopyAction);
}
