// SPDX-License-Identifier: MIT
#pragma once

#include "app/VelmoraApp.h"
#include "core/VelmoraSettings.h"
#include "filesystem/FileUrls.h"
#include "platform/Platform.h"
#include "search/SearchStore.h"
#include "tests/fakes/FakeFrontmostApplication.h"
#include "tests/fakes/FakePasteboard.h"
#include "tests/fakes/FakeTextRecognizer.h"
#include "tests/files/LogTail.h"
#include "tray/ScreenshotRowView.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;

/// The coordinator on the real platform, except for what the test controls.
class AppRig
{
public:
    AppRig() : platform(nativePlatform())
    {
        frontmost = new FakeFrontmostApplication;
        frontmost->inFront = {u"Safari"_s, u"org.example.Safari"_s};
        platform.frontmostApplication.reset(frontmost);
        recognizer = new FakeTextRecognizer;
        recognizer->setLines({u"Harvest festival invitation"_s});
        platform.textRecognizer.reset(recognizer);
        pasteboard = new FakePasteboard;
        platform.pasteboard.reset(pasteboard);
    }
    ~AppRig() { recognizer->letRead(); }

    /// Removes what earlier tests have left behind: settings, screenshots and their texts.
    static void clear()
    {
        VelmoraSettings::open().clear();
        QDir(folder()).removeRecursively();
        QDir().mkpath(folder());
        QDir(SearchStore::defaultFolder()).removeRecursively();
    }

    void launch()
    {
        app = std::make_unique<VelmoraApp>(platform);
        app->applicationDidFinishLaunching();
    }

    /// Saves a picture into the watched folder, as a tool does.
    QUrl take(const QString &name, QSize size = {320, 200}) const
    {
        const QString path = folder() + u'/' + name;
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        picture.save(path);
        return FileUrls::fromPath(path);
    }

    /// The same on another thread: another program's disk calls must not count as ours.
    void takeAside(const QString &name) const
    {
        const std::unique_ptr<QThread> tool(QThread::create([this, name] { take(name); }));
        tool->start();
        tool->wait();
    }

    static QString folder() { return QDir::homePath() + u"/Desktop"_s; }

    static QStringList filesInFolder() { return QDir(folder()).entryList(QDir::Files); }

    static QList<ScreenshotRowView *> rows()
    {
        QList<ScreenshotRowView *> rows;
        for (const QWidget *window : QApplication::topLevelWidgets())
            rows += window->findChildren<ScreenshotRowView *>();
        return rows;
    }

    /// The file name of the topmost row; empty without a row.
    static QString newestName()
    {
        const QList<ScreenshotRowView *> shown = rows();
        const auto newest =
            std::min_element(shown.begin(), shown.end(), [](const auto *one, const auto *other) {
                return one->y() < other->y();
            });
        return newest == shown.end() ? QString() : (*newest)->fileURL().fileName();
    }

    /// Whether the row has something to undo.
    static bool canUndo(const ScreenshotRowView &row)
    {
        const auto buttons = row.findChildren<QPushButton *>();
        return std::any_of(buttons.begin(), buttons.end(), [&row](const QPushButton *button) {
            return button->text() == u"Undo" && button->isVisibleTo(&row);
        });
    }

    static QWidget *windowTitled(const QString &title)
    {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (window->windowTitle() == title && window->isVisible())
                return window;
        }
        return nullptr;
    }

    Platform platform;
    FakeFrontmostApplication *frontmost;
    FakeTextRecognizer *recognizer;
    FakePasteboard *pasteboard;
    std::unique_ptr<VelmoraApp> app;
    LogTail log;
};
