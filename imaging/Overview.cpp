// SPDX-License-Identifier: MIT
#include "imaging/Overview.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace
{

constexpr int channels = 4;

int squares(int length, int side)
{
    return (length + side - 1) / side;
}

} // namespace

Overview::Overview(QSize size, qint64 maximumPixels) : m_source(size)
{
    const double pixels = double(size.width()) * size.height();
    m_side = std::max(1, int(std::sqrt(pixels / double(maximumPixels))));
    do {
        m_size = {squares(size.width(), m_side), squares(size.height(), m_side)};
    } while (qint64(m_size.width()) * m_size.height() > maximumPixels && ++m_side);
}

qint64 Overview::memory() const
{
    const qint64 width = m_size.width();
    return width * m_size.height() * qint64(sizeof(QRgb)) +
           width * channels * qint64(sizeof(quint32));
}

void Overview::addRow(const QRgb *row)
{
    if (m_picture.isNull()) {
        m_picture = QImage(m_size, QImage::Format_ARGB32_Premultiplied);
        m_sums.assign(std::size_t(m_size.width()) * channels, 0);
    }
    quint32 *sum = m_sums.data();
    for (int x = 0; x < m_source.width(); sum += channels) {
        for (const int end = std::min(x + m_side, m_source.width()); x < end; ++x) {
            sum[0] += row[x] & 0xff;
            sum[1] += row[x] >> 8 & 0xff;
            sum[2] += row[x] >> 16 & 0xff;
            sum[3] += row[x] >> 24;
        }
    }
    const bool isLast = m_nextRow * m_side + ++m_rowsInSums == m_source.height();
    if (m_rowsInSums == m_side || isLast)
        writeRow();
}

QImage Overview::picture(QImage::Format format) const
{
    QImage picture = m_picture;
    picture.reinterpretAsFormat(format);
    return picture;
}

void Overview::writeRow()
{
    if (!m_picture.isNull()) {
        auto *row = reinterpret_cast<QRgb *>(m_picture.scanLine(m_nextRow));
        const quint32 *sum = m_sums.data();
        for (int x = 0; x < m_size.width(); ++x, sum += channels) {
            const int columns = std::min(m_side, m_source.width() - x * m_side);
            const auto count = quint32(columns * m_rowsInSums);
            row[x] = (sum[3] / count << 24) | (sum[2] / count << 16) | (sum[1] / count << 8) |
                     (sum[0] / count);
        }
    }
    std::fill(m_sums.begin(), m_sums.end(), 0);
    m_rowsInSums = 0;
    ++m_nextRow;
}
