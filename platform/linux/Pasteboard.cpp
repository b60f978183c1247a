// SPDX-License-Identifier: MIT
#include "platform/Pasteboard.h"

#include "platform/linux/clipboard/FileTransferPortal.h"
#include "platform/linux/clipboard/ScreenshotMimeData.h"
#include "platform/linux/clipboard/TransferableDrag.h"
#include "platform/linux/wayland/CompositorClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPointer>

namespace
{

/// A Wayland compositor lets a program set the clipboard only while it has the focus, which ours
/// does not take, unless the compositor offers a way without it.
class DesktopPasteboard : public Pasteboard
{
public:
    DesktopPasteboard()
    {
        if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
            m_compositor = std::make_unique<CompositorClipboard>();
    }

    void clear() override
    {
        if (isWithCompositor())
            m_compositor->clear();
        else
            QGuiApplication::clipboard()->clear();
    }

    bool write(PasteboardContents contents) override
    {
        auto data = std::make_unique<ScreenshotMimeData>(std::move(contents), m_portal);
        m_written = data.get();
        if (isWithCompositor())
            return m_compositor->offer(std::move(data));
        QGuiApplication::clipboard()->setMimeData(data.release());
        return QGuiApplication::clipboard()->ownsClipboard() && !wouldBeRefused();
    }

    std::unique_ptr<DraggedFile> drag(const QUrl &file) override
    {
        auto drag = std::make_unique<TransferableDrag>(m_portal, file);
        m_dragged = drag.get();
        return drag;
    }

    void fileMoved(const QUrl &from, const QUrl &to) override
    {
        if (m_written)
            m_written->fileMoved(from, to);
        if (m_dragged && m_dragged->file() == from)
            m_dragged->setFile(to);
    }

private:
    /// Qt can't know: a Wayland compositor does not answer.
    static bool wouldBeRefused()
    {
        return QGuiApplication::platformName() == u"wayland" && !QGuiApplication::focusWindow();
    }

    bool isWithCompositor() const { return m_compositor && m_compositor->isAvailable(); }

    FileTransferPortal m_portal;
    std::unique_ptr<CompositorClipboard> m_compositor;
    /// Owned by the clipboard; null as soon as the clipboard holds something else.
    QPointer<ScreenshotMimeData> m_written;
    QPointer<DraggedFile> m_dragged;
};

} // namespace

std::unique_ptr<Pasteboard> makePasteboard()
{
    return std::make_unique<DesktopPasteboard>();
}
