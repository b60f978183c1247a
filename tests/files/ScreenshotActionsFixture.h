// SPDX-License-Identifier: MIT
#pragma once

#include "files/ScreenshotActions.h"
#include "files/UndoHistory.h"
#include "filesystem/FileUrls.h"
#include "filesystem/OpenFile.h"
#include "platform/FileWriters.h"
#include "tests/fakes/FakeDesktopRecords.h"
#include "tests/fakes/FakeFileBrowser.h"
#include "tests/fakes/FakePasteboard.h"
#include "tests/fakes/FakeSystemTrash.h"
#include "tests/files/TestFiles.h"

#include <QDir>
#include <QImage>
#include <QSemaphore>
#include <QTest>

/// A trash that waits until the test lets it continue.
class GatedTrash : public FakeSystemTrash
{
public:
    Trashed trash(const QUrl &file) override
    {
        if (isClosed) {
            hasBegun.release();
            gate.acquire();
        }
        return FakeSystemTrash::trash(file);
    }

    bool isClosed = false;
    QSemaphore hasBegun;
    QSemaphore gate;
};

/// Lets the test pretend that a file is still being written.
class SteeredFileWriters : public FileWriters
{
public:
    Answer writersOf(int descriptor) override
    {
        const std::optional<FileIdentity> file = fileIdentity(descriptor);
        return file && file->serial == written ? Answer::Some : Answer::None;
    }

    std::atomic<quint64> written = 0;
};

/// The actions on real pictures, with a trash and writers that the test controls; keeps the
/// outcomes.
class ScreenshotActionsFixture
{
protected:
    using By = ScreenshotActions::By;
    using Outcome = ScreenshotRename::Outcome;

    void begin()
    {
        m_files = std::make_unique<TestFiles>();
        m_trash.isClosed = false;
        m_writers.written = 0;
        m_pasteboard.contents.reset();
        m_records = {};
        m_images = std::make_unique<ScreenshotImages>(m_writers);
        m_history = std::make_unique<UndoHistory>();
        m_actions = std::make_unique<ScreenshotActions>(
            ScreenshotActions::Services{m_trash, m_pasteboard, m_browser, *m_images, m_records},
            *m_history);
        m_renamed = {};
        m_trashed = {};
        m_undone = {};
        m_copied.reset();
    }
    void end()
    {
        m_trash.gate.release(100);
        m_actions.reset();
        m_images.reset();
        m_trash.gate.tryAcquire(m_trash.gate.available());
    }

    QUrl picture(const QString &name, QColor color = Qt::red) const
    {
        QImage image(64, 40, QImage::Format_RGB32);
        image.fill(color);
        const QUrl url = m_files->url(name);
        if (!image.save(url.toLocalFile(), "PNG"))
            qFatal("can't write a picture");
        return url;
    }
    ScreenshotPointer opened(const QUrl &url)
    {
        const ScreenshotPointer screenshot = m_actions->open(url);
        screenshot->open();
        return screenshot;
    }
    void rename(const ScreenshotPointer &screenshot, const QString &name, By by = By::User)
    {
        m_actions->rename(screenshot, name, by,
                          [this](const ScreenshotRename &rename) { m_renamed = rename; });
    }
    void trash(const ScreenshotPointer &screenshot)
    {
        m_actions->trash(screenshot,
                         [this](const ScreenshotMoves::Trashing &done) { m_trashed = done; });
    }
    void undo(const ScreenshotPointer &screenshot, const UndoableAction &action)
    {
        m_actions->undo(screenshot, action,
                        [this](const std::error_code &error) { m_undone = error; });
    }
    void copy(const ScreenshotPointer &screenshot)
    {
        m_actions->copy(screenshot, CopyBehavior::imageAndFile,
                        [this](bool copied) { m_copied = copied; });
    }
    void finish() { QVERIFY(m_actions->finish(std::chrono::seconds(20))); }
    QStringList names() const
    {
        return QDir(m_files->folder().toLocalFile()).entryList(QDir::Files, QDir::Name);
    }
    std::optional<QUrl> onClipboard() const
    {
        return m_pasteboard.contents ? m_pasteboard.contents->file : std::nullopt;
    }

    std::unique_ptr<TestFiles> m_files;
    GatedTrash m_trash;
    FakePasteboard m_pasteboard;
    FakeFileBrowser m_browser;
    FakeDesktopRecords m_records;
    SteeredFileWriters m_writers;
    std::unique_ptr<ScreenshotImages> m_images;
    std::unique_ptr<UndoHistory> m_history;
    std::unique_ptr<ScreenshotActions> m_actions;
    ScreenshotRename m_renamed;
    ScreenshotMoves::Trashing m_trashed;
    std::error_code m_undone;
    std::optional<bool> m_copied;
};
