// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// Standard output, and messages on standard error. Not thread-safe.
///
/// Libraries write complaints about damaged pictures directly to standard error; while this object
/// exists, those are discarded.
class Console
{
public:
    Console();
    ~Console();
    Q_DISABLE_COPY_MOVE(Console)

    /// Writes to standard output at once. False if that fails, now or in an earlier call.
    bool print(const QByteArray &bytes);

    /// Prints one line on standard error, after the command's name.
    void complain(const QByteArray &text);

    /// Sets a status line that always stays at the bottom of the terminal; an empty text removes
    /// it. Does nothing unless standard error is a terminal.
    void setStatusLine(const QByteArray &text);

    bool isTerminal() const { return m_isTerminal; }

    /// Characters per line of the terminal.
    int width() const;

private:
    void eraseStatusLine();
    void drawStatusLine();

    int m_errors; ///< the original standard error
    bool m_isTerminal;
    bool m_outputShares; ///< standard output is a terminal, too
    bool m_outputFails = false;
    QByteArray m_statusLine;
};
