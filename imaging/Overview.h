// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSize>

#include <vector>

/// Scales a picture down while its rows come in from top to bottom: each pixel is the mean of a
/// square. Premultiplied pixels stay premultiplied.
class Overview
{
public:
    /// Uses the smallest squares with which a picture of this size has at most `maximumPixels`.
    Overview(QSize size, qint64 maximumPixels);

    /// In bytes, for everything that it will hold.
    qint64 memory() const;

    void addRow(const QRgb *row);

    /// Call it after all rows were added. A null image when there was no memory.
    QImage picture(QImage::Format format) const;

private:
    void writeRow();

    QSize m_source;
    int m_side = 1; ///< of a square
    QSize m_size;
    QImage m_picture;
    std::vector<quint32> m_sums; ///< of each channel of each square
    int m_rowsInSums = 0;
    int m_nextRow = 0;
};
