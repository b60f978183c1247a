// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// Standard output, and what is said on standard error. One thread.
///
/// Libraries write complaints about damaged pictures directly to standard error; from the making of
/// this object on these go nowhere.
class Console
{
public:
    Console();
    ~Console();
    Q_DISABLE_COPY_MOVE(Console)

    /// Writes to standard output, at once. False when that fails, and from then on.
    bool print(const QByteArray &bytes);

    /// One line on standard error, after the command's name.
    void complain(const QByteArray &text);

    /// A line at the bottom of the terminal that is always the last one; an empty one takes it
    /// away. Only where standard error is a terminal.
    void setStatusLine(const QByteArray &text);

    bool isTerminal() const { return m_isTerminal; }

    /// Characters in a line of the terminal.
    int width() const;

private:
    void eraseStatusLine();
    void drawStatusLine();

    int m_errors; ///< descriptor of standard error as it was
    bool m_isTerminal;
    bool m_outputShares; ///< standard output is a terminal too
    bool m_outputFails = false;
    QByteArray m_statusLine;
};
