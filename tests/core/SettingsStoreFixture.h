// SPDX-License-Identifier: MIT
#pragma once

#include "core/SettingsStore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <functional>
#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// A store in an empty folder, and what other programs see of it.
class SettingsStoreFixture
{
protected:
    static constexpr auto patience = std::chrono::seconds(10);
    static inline const QString key = u"trayDuration"_s;
    static inline const QString other = u"zOther"_s;

    static void clear()
    {
        QDir(folder()).removeRecursively();
        QVERIFY(QDir().mkpath(folder()));
    }
    void begin() { m_store = std::make_unique<SettingsStore>(u"store"_s); }
    void end() { m_store.reset(); }

    QString value() const { return m_store->value(key).toString(); }

    static QString folder() { return qEnvironmentVariable("XDG_CONFIG_HOME") + u"/velmora"_s; }
    static QString path() { return folder() + u"/store.conf"_s; }
    static QByteArray encoded(const QString &name) { return QFile::encodeName(name); }

    /// Empty if it is no ordinary file.
    static QByteArray content(const QString &name = path())
    {
        struct stat status = {};
        QFile file(name);
        return ::lstat(encoded(name).constData(), &status) == 0 && S_ISREG(status.st_mode) &&
                       file.open(QFile::ReadOnly)
                   ? file.readAll()
                   : QByteArray();
    }
    static void fill(const QString &name, const QByteArray &text)
    {
        QFile file(name);
        QVERIFY(file.open(QFile::WriteOnly) && file.write(text) == text.size());
    }

    static qint64 millisecondsOf(const std::function<void()> &work)
    {
        QElapsedTimer timer;
        timer.start();
        work();
        return timer.elapsed();
    }

    std::unique_ptr<SettingsStore> m_store;
};
