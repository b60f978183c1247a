// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QTest>

/// The X clipboard as another program sees it, which this program continues to serve meanwhile.
namespace XClip
{

constexpr int patience = 20'000; // milliseconds

/// The clipboard's content in one format; empty when it does not have that format.
inline QByteArray read(const QString &format)
{
    QProcess xclip;
    xclip.start(QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard"),
                                          QStringLiteral("-o"), QStringLiteral("-target"), format});
    if (!QTest::qWaitFor([&xclip] { return xclip.state() == QProcess::NotRunning; }, patience))
        qWarning("xclip does not end");
    return xclip.exitCode() == 0 ? xclip.readAllStandardOutput() : QByteArray();
}

/// The formats in the order offered.
inline QStringList formats()
{
    return QString::fromLatin1(read(QStringLiteral("TARGETS")))
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// Another program puts a text there. Its background process may take a while to do so.
inline void take(const QByteArray &text)
{
    QProcess xclip;
    xclip.start(QStringLiteral("xclip"),
                {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-i")});
    xclip.write(text);
    xclip.closeWriteChannel();
    if (!QTest::qWaitFor([&xclip] { return xclip.state() == QProcess::NotRunning; }, patience))
        qWarning("xclip does not end");
    if (!QTest::qWaitFor([&text] { return read(QStringLiteral("UTF8_STRING")) == text; }, patience))
        qWarning("xclip does not take the clipboard");
}

} // namespace XClip
