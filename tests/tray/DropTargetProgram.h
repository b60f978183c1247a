// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRect>
#include <QTest>
#include <QWidget>

#include <functional>
#include <optional>

/// A window of another process that accepts drops, and the mouse that drags something there.
class DropTargetProgram
{
public:
    static constexpr QRect place{900, 500, 300, 200};

    DropTargetProgram()
    {
        QObject::connect(&m_process, &QProcess::readyReadStandardOutput, [this] { read(); });
        m_process.start(QString::fromUtf8(DROP_TARGET),
                        {QString::number(place.x()), QString::number(place.y()),
                         QString::number(place.width()), QString::number(place.height())});
    }

    ~DropTargetProgram()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(DropTargetProgram)

    /// The rest of the line that begins with this word; nothing while there is no such line.
    std::optional<QString> output(const QString &word) const
    {
        return m_lines.contains(word) ? std::optional(m_lines[word]) : std::nullopt;
    }

    QJsonObject whatWasDropped() const
    {
        return QJsonDocument::fromJson(output(QStringLiteral("dropped"))->toUtf8()).object();
    }

    /// Called when a drag enters the window, which happens during QDrag::exec().
    std::function<void()> onOver;

    /// Drags from there into the window, and does not let go.
    static void dragFrom(QPoint start)
    {
        xdotool(moveTo(start) + press() + moveTo(start + QPoint(4, 0)) +
                moveTo(start + QPoint(40, 30)) + moveTo(place.center()) +
                moveTo(place.center() + QPoint(5, 5)));
    }

    static void dragFrom(const QWidget &widget)
    {
        dragFrom(widget.mapToGlobal(widget.rect().center()));
    }

    static void letGo() { xdotool(release()); }

    static QStringList moveTo(QPoint point)
    {
        return {QStringLiteral("mousemove"), QString::number(point.x()),
                QString::number(point.y())};
    }
    static QStringList press() { return {QStringLiteral("mousedown"), QStringLiteral("1")}; }
    static QStringList release() { return {QStringLiteral("mouseup"), QStringLiteral("1")}; }

private:
    /// Does not wait for the result: this process may be in the middle of a drag.
    static void xdotool(const QStringList &arguments)
    {
        QVERIFY(QProcess::startDetached(QStringLiteral("xdotool"), arguments));
    }

    void read()
    {
        while (m_process.canReadLine()) {
            const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
            const QString word = line.section(QLatin1Char(' '), 0, 0);
            m_lines.insert(word, line.section(QLatin1Char(' '), 1));
            if (word == QStringLiteral("over") && onOver)
                onOver();
        }
    }

    QProcess m_process;
    QHash<QString, QString> m_lines;
};
