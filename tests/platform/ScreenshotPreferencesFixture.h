// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenshotPreferences.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <memory>

/// The real preferences on a desktop that the test chooses, with no settings at first.
class ScreenshotPreferencesFixture
{
protected:
    void begin()
    {
        QDir(qEnvironmentVariable("XDG_CONFIG_HOME")).removeRecursively();
        QVERIFY(QDir().mkpath(qEnvironmentVariable("XDG_CONFIG_HOME")));
        for (const char *name : {"GSETTINGS_SCHEMA_DIR", "GSETTINGS_BACKEND", "XDG_CURRENT_DESKTOP",
                                 "XDG_SCREENSHOTS_DIR", "GRIM_DEFAULT_DIR", "HYPRSHOT_DIR",
                                 "KDE_SESSION_VERSION", "TZ"})
            qunsetenv(name);
        qputenv("PATH", m_path);
        m_preferences = makeScreenshotPreferences();
    }

    static QString configPath(const QString &name)
    {
        return qEnvironmentVariable("XDG_CONFIG_HOME") + u'/' + name;
    }
    static QString inHome(const QString &name) { return QDir::homePath() + u'/' + name; }

    static bool writeFile(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
               file.write(content) == content.size();
    }
    static QByteArray readFile(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

    std::unique_ptr<ScreenshotPreferences> m_preferences;

private:
    const QByteArray m_path = qgetenv("PATH");
};
