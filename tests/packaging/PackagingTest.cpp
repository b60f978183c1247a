// SPDX-License-Identifier: MIT
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace
{

constexpr int patience = 15'000;

struct Outcome {
    int exitCode = -1;
    QString output;
};

Outcome run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(patience))
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAll()).trimmed()};
}

/// The first value of the key in each group of a desktop entry.
QMap<QString, QString> valuesOf(const QString &path, const QString &key)
{
    QMap<QString, QString> values;
    QFile file(path);
    QString group;
    if (!file.open(QFile::ReadOnly))
        return values;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
        if (line.startsWith(u'['))
            group = line.mid(1).chopped(1);
        else if (line.startsWith(key + u'='))
            values.insert(group, line.mid(key.size() + 1));
    }
    return values;
}

/// How much of the icon is painted, from 0 to 1.
double coverage(const QIcon &icon, int size)
{
    const QImage image = icon.pixmap(size).toImage().convertToFormat(QImage::Format_ARGB32);
    int painted = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            painted += qAlpha(image.pixel(x, y)) > 127 ? 1 : 0;
    }
    return image.isNull() ? 0 : painted / double(image.width() * image.height());
}

} // namespace

class PackagingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_prefix.isValid());
        const Outcome outcome = run(QStringLiteral(CMAKE_PROGRAM),
                                    {QStringLiteral("--install"), QStringLiteral(BUILD_FOLDER),
                                     QStringLiteral("--prefix"), m_prefix.path(),
                                     QStringLiteral("--component"), QStringLiteral("desktop")});
        QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.output));
        m_entry = shared(QStringLiteral("applications/app.velmora.Velmora.desktop"));
    }

    void theDesktopEntryIsValid()
    {
        const Outcome outcome = run(QStringLiteral("desktop-file-validate"), {m_entry});
        QCOMPARE(outcome.output, QString());
        QCOMPARE(outcome.exitCode, 0);
    }

    void theMetadataAreValid()
    {
        const Outcome outcome =
            run(QStringLiteral("appstreamcli"),
                {QStringLiteral("validate"), QStringLiteral("--no-net"),
                 shared(QStringLiteral("metainfo/app.velmora.Velmora.metainfo.xml"))});
        QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.output));
    }

    void theIconsAreFoundByTheirName()
    {
        // Every system has the theme's own description.
        QIcon::setThemeSearchPaths(
            {shared(QStringLiteral("icons")), QStringLiteral("/usr/share/icons")});
        QIcon::setThemeName(QStringLiteral("hicolor"));
        const QString name =
            valuesOf(m_entry, QStringLiteral("Icon")).value(QStringLiteral("Desktop Entry"));
        QCOMPARE(name, QStringLiteral("app.velmora.Velmora"));
        QVERIFY(coverage(QIcon::fromTheme(name), 64) > 0.5);
        const double symbolic = coverage(QIcon::fromTheme(name + QStringLiteral("-symbolic")), 64);
        QVERIFY2(symbolic > 0.2 && symbolic < 0.6, qPrintable(QString::number(symbolic)));
    }

    void theSymbolicIconIsMadeOfSurfacesAlone()
    {
        // Desktops give such an icon their own colour, but only to its surfaces.
        QFile icon(
            shared(QStringLiteral("icons/hicolor/symbolic/apps/app.velmora.Velmora-symbolic.svg")));
        QVERIFY(icon.open(QFile::ReadOnly));
        QVERIFY(!icon.readAll().contains("stroke"));
    }

    void eachActionReachesTheRunningProgramByItsCommandLine()
    {
        QProcess program;
        program.start(QStringLiteral(INSTANCE_PROCESS), QStringList());
        QCOMPARE(nextLine(program), QStringLiteral("runs"));
        const QMap<QString, QString> commands = valuesOf(m_entry, QStringLiteral("Exec"));
        const QStringList actions = valuesOf(m_entry, QStringLiteral("Actions"))
                                        .value(QStringLiteral("Desktop Entry"))
                                        .split(u';', Qt::SkipEmptyParts);
        QCOMPARE(actions.size(), 5);
        for (const QString &action : actions) {
            QStringList words =
                QProcess::splitCommand(commands.value(QStringLiteral("Desktop Action ") + action));
            const QString executable = words.takeFirst();
            QCOMPARE(run(executable, words).exitCode, 0);
            QCOMPARE(nextLine(program), QStringLiteral("action ") + action);
        }
        program.kill();
        program.waitForFinished();
    }

    void theBusStartsTheProgramThatWasInstalled()
    {
        const QString program = m_prefix.filePath(QStringLiteral("bin/velmora"));
        QVERIFY(QDir().mkpath(QFileInfo(program).path()));
        QVERIFY(QFile::copy(QStringLiteral(INSTANCE_PROCESS), program));
        QVERIFY(!valuesOf(m_entry, QStringLiteral("DBusActivatable")).isEmpty());

        // A session of its own that knows what is installed under the prefix.
        qputenv("XDG_DATA_DIRS", shared(QString()).toUtf8());
        const Outcome outcome =
            run(QStringLiteral("dbus-run-session"),
                QStringList{QStringLiteral("--")} +
                    QProcess::splitCommand(valuesOf(m_entry, QStringLiteral("Exec"))
                                               .value(QStringLiteral("Desktop Action recent"))));
        QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.output));
        QVERIFY2(outcome.output.contains(QStringLiteral("\n()")), qPrintable(outcome.output));
    }

private:
    QString shared(const QString &name) const
    {
        return m_prefix.filePath(QStringLiteral("share/") + name);
    }

    static QString nextLine(QProcess &program)
    {
        while (!program.canReadLine()) {
            if (!program.waitForReadyRead(patience))
                break;
        }
        return QString::fromUtf8(program.readLine()).trimmed();
    }

    QTemporaryDir m_prefix;
    QString m_entry;
};

VELMORA_WIDGETS_TEST(PackagingTest)
#include "PackagingTest.moc"
