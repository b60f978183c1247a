// SPDX-License-Identifier: MIT
#pragma once

#include <QIODevice>

/// Reads from an open descriptor without moving the descriptor's position. The caller keeps the
/// descriptor. Open from the start; nothing is buffered.
class DescriptorDevice : public QIODevice
{
public:
    explicit DescriptorDevice(int descriptor);

    qint64 size() const override { return m_size; }

protected:
    qint64 readData(char *to, qint64 maximum) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    int m_descriptor;
    qint64 m_size; ///< as it was at the start
};
