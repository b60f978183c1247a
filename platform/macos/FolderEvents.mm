// SPDX-License-Identifier: MIT
#include "platform/FolderEvents.h"

#include <QFile>

#include <dispatch/dispatch.h>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace
{

/// Changes of the folder itself, and its end.
constexpr unsigned long changes =
    DISPATCH_VNODE_WRITE | DISPATCH_VNODE_EXTEND | DISPATCH_VNODE_ATTRIB | DISPATCH_VNODE_RENAME;
constexpr unsigned long end = DISPATCH_VNODE_DELETE | DISPATCH_VNODE_RENAME | DISPATCH_VNODE_REVOKE;

/// A file system object source on the folder. It reports that something has happened but not to
/// which entry, and does not report writes to files that already exist.
class VnodeFolderEvents : public FolderEvents
{
public:
    ~VnodeFolderEvents() override { disarm(); }

    Coverage arm(const QString &folder) override
    {
        disarm();
        const int descriptor =
            ::open(QFile::encodeName(folder).constData(), O_EVTONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0)
            return Coverage::Nothing;
        dispatch_source_t source = dispatch_source_create(
            DISPATCH_SOURCE_TYPE_VNODE, static_cast<uintptr_t>(descriptor), changes | end, m_queue);
        const int watch = m_watch;
        dispatch_source_set_event_handler(source, ^{
          pass(watch, dispatch_source_get_data(source));
        });
        dispatch_source_set_cancel_handler(source, ^{
          ::close(descriptor);
        });
        dispatch_resume(source);
        m_source = source;
        return Coverage::Some;
    }

    void disarm() override
    {
        // Events that an earlier watch has already queued are ignored from now on.
        ++m_watch;
        if (!m_source)
            return;
        dispatch_source_cancel(m_source);
        m_source = nil;
        // When this returns, no handler is running, so none outlives this object.
        dispatch_sync(m_queue, ^{
                      });
    }

private:
    /// From the queue to this object's thread.
    void pass(int watch, unsigned long happened)
    {
        QMetaObject::invokeMethod(
            this, [this, watch, happened] { tell(watch, happened); }, Qt::QueuedConnection);
    }

    void tell(int watch, unsigned long happened)
    {
        if (watch != m_watch)
            return;
        if ((happened & end) == 0) {
            Q_EMIT listAgain();
            return;
        }
        disarm();
        Q_EMIT folderGone();
    }

    dispatch_queue_t m_queue =
        dispatch_queue_create("velmora.folder-events", DISPATCH_QUEUE_SERIAL);
    dispatch_source_t m_source = nil;
    int m_watch = 0;
};

} // namespace

std::unique_ptr<FolderEvents> makeFolderEvents()
{
    return std::make_unique<VnodeFolderEvents>();
}
