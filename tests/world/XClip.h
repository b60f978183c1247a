// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

/// The X clipboard as another program sees it, which this program continues to serve meanwhile.
namespace XClip
{

constexpr int patience = 20'000; // milliseconds

/// The clipboard's content in one format; empty when it does not have that format.
inline QByteArray read(const QString &format)
{
    QProcess xclip;
    xclip.start(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-o"_s, u"-target"_s, format});
    if (!QTest::qWaitFor([&xclip] { return xclip.state() == QProcess::NotRunning; }, patience))
        qWarning("xclip does not end");
    return xclip.exitCode() == 0 ? xclip.readAllStandardOutput() : QByteArray();
}

/// The formats in the order offered.
inline QStringList formats()
{
    return QString::fromLatin1(read(u"TARGETS"_s)).split(u'\n', Qt::SkipEmptyParts);
}

/// Another program puts a text there. Its background process may take a while to do so.
inline void take(const QByteArray &text)
{
    QProcess xclip;
    xclip.start(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-i"_s});
    xclip.write(text);
    xclip.closeWriteChannel();
    if (!QTest::qWaitFor([&xclip] { return xclip.state() == QProcess::NotRunning; }, patience))
        qWarning("xclip does not end");
    if (!QTest::qWaitFor([&text] { return read(u"UTF8_STRING"_s) == text; }, patience))
        qWarning("xclip does not take the clipboard");
}

} // namespace XClip
