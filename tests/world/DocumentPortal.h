// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>

#include <optional>

/// The desktop's real document portal on the session bus of the test's world, through which
/// sandboxed programs get files. It ends when this object is destroyed.
class DocumentPortal
{
public:
    DocumentPortal();
    ~DocumentPortal();
    Q_DISABLE_COPY_MOVE(DocumentPortal)

    /// Why there can't be one here; nothing if there can.
    static std::optional<QString> obstacle();

    static bool isOnTheBus();

    /// Whether the transfer with this key is open.
    static bool knows(const QByteArray &key);

    /// It no longer answers, though it stays on the bus.
    void freeze();
    void thaw();

    struct Received {
        QString path;
        QByteArray content;
    };
    /// What a sandboxed program receives for the key of a transfer, or without one for the key on
    /// the clipboard. Nothing if it gets no file.
    static std::optional<Received> receive(const std::optional<QByteArray> &key = std::nullopt);

private:
    QProcess m_process;
};
