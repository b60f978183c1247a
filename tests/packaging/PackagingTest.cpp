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

using namespace Qt::StringLiterals;

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
                                    {u"--install"_s, QStringLiteral(BUILD_FOLDER), u"--prefix"_s,
                                     m_prefix.path(), u"--component"_s, u"desktop"_s});
        QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.output));
        m_entry = shared(u"applications/app.velmora.Velmora.desktop"_s);
    }

    void theDesktopEntryIsValid()
    {
        const Outcome outcome = run(u"desktop-file-validate"_s, {m_entry});
        QCOMPARE(outcome.output, QString());
        QCOMPARE(outcome.exitCode, 0);
    }

    void theMetadataAreValid()
    {
        const Outcome outcome =
            run(u"appstreamcli"_s, {u"validate"_s, u"--no-net"_s,
                                    shared(u"metainfo/app.velmora.Velmora.metainfo.xml"_s)});
        QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.output));
    }

    void theIconsAreFoundByTheirName()
    {
        // Every system has the theme's own description.
        QIcon::setThemeSearchPaths({shared(u"icons"_s), u"/usr/share/icons"_s});
        QIcon::setThemeName(u"hicolor"_s);
        const QString name = valuesOf(m_entry, u"Icon"_s).value(u"Desktop Entry"_s);
        QCOMPARE(name, u"app.velmora.Velmora"_s);
        QVERIFY(coverage(QIcon::fromTheme(name), 64) > 0.5);
        const double symbolic = coverage(QIcon::fromTheme(name + u"-symbolic"_s), 64);
        QVERIFY2(symbolic > 0.2 && symbolic < 0.6, qPrintable(QString::number(symbolic)));
    }

    void theSymbolicIconIsMadeOfSurfacesAlone()
    {
        // Desktops give such an icon their own colour, but only to its surfaces.
        QFile icon(shared(u"icons/hicolor/symbolic/apps/app.velmora.Velmora-symbolic.svg"_s));
        QVERIFY(icon.open(QFile::ReadOnly));
        QVERIFY(!icon.readAll().contains("stroke"));
    }

    void eachActionReachesTheRunningProgramByItsCommandLine()
    {
        QProcess program;
        program.start(QStringLiteral(INSTANCE_PROCESS), QStringList());
        QCOMPARE(nextLine(program), u"runs"_s);
        const QMap<QString, QString> commands = valuesOf(m_entry, u"Exec"_s);
        const QStringList actions = valuesOf(m_entry, u"Actions"_s)
                                        .value(u"Desktop Entry"_s)
                                        .split(u';', Qt::SkipEmptyParts);
        QCOMPARE(actions.size(), 5);
        for (const QString &action : actions) {
            QStringList words =
                QProcess::splitCommand(commands.value(u"Desktop Action "_s + action));
            const QString executable = words.takeFirst();
            QCOMPARE(run(executable, words).exitCode, 0);
            QCOMPARE(nextLine(program), u"action "_s + action);
        }
        program.kill();
        program.waitForFinished();
    }

    void theBusStartsTheProgramThatWasInstalled()
    {
        const QString program = m_prefix.filePath(u"bin/velmora"_s);
        QVERIFY(QDir().mkpath(QFileInfo(program).path()));
        QVERIFY(QFile::copy(QStringLiteral(INSTANCE_PROCESS), program));
        QVERIFY(!valuesOf(m_entry, u"DBusActivatable"_s).isEmpty());

        // A session of its own that knows what is installed under the prefix.
        qputenv("XDG_DATA_DIRS", shared(QString()).toUtf8());
        const Outcome outcome =
            run(u"dbus-run-session"_s,
                QStringList{u"--"_s} +
                    QProcess::splitCommand(
                        valuesOf(m_entry, u"Exec"_s).value(u"Desktop Action recent"_s)));
        QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.output));
        QVERIFY2(outcome.output.contains(u"\n()"_s), qPrintable(outcome.output));
    }

private:
    QString shared(const QString &name) const { return m_prefix.filePath(u"share/"_s + name); }

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
