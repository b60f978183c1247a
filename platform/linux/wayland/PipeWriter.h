// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/Descriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

/// Writes bytes into a pipe as fast as the reader takes them, then closes it. Gives up when the
/// reader is gone or takes nothing for half a minute. Deletes itself. Main thread.
class PipeWriter : public QObject
{
public:
    PipeWriter(Descriptor pipe, QByteArray bytes, QObject *parent);

private:
    void write();

    Descriptor m_pipe;
    QByteArray m_bytes;
    qsizetype m_written = 0;
    QSocketNotifier m_notifier;
    QTimer m_patience;
};
