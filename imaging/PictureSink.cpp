// SPDX-License-Identifier: MIT
#include "imaging/PictureSink.h"

#include "imaging/pictureMemory.h"

#include <QTransform>

#include <algorithm>

namespace
{

/// No screenshot has longer rows.
constexpr int maximumWidth = 1'000'000;

constexpr qint64 pixelBytes = sizeof(QRgb);

qint64 pixelsIn(QSize size)
{
    return qint64(size.width()) * size.height();
}

/// The same pixels, holding the reservation.
QImage keeping(const QImage &image, const std::shared_ptr<PictureBudget::Reservation> &reservation)
{
    if (image.isNull())
        return {};
    struct Kept {
        QImage image;
        std::shared_ptr<PictureBudget::Reservation> reservation;
    };
    return {image.constBits(),
            image.width(),
            image.height(),
            image.bytesPerLine(),
            image.format(),
            [](void *kept) { delete static_cast<Kept *>(kept); },
            new Kept{image, reservation}};
}

QImage turned(const QImage &image, QImageIOHandler::Transformations turns)
{
    QImage result = image.mirrored(turns.testFlag(QImageIOHandler::TransformationMirror),
                                   turns.testFlag(QImageIOHandler::TransformationFlip));
    if (turns.testFlag(QImageIOHandler::TransformationRotate90))
        result = result.transformed(QTransform().rotate(90));
    return result;
}

QRgb commonBits(const QRgb *row, int width)
{
    QRgb common = 0xffffffffU;
    for (int x = 0; x < width; ++x)
        common &= row[x];
    return common;
}

} // namespace

PictureSink::PictureSink(const PictureLimits &limits, std::shared_ptr<PictureBudget> budget)
    : m_limits(limits), m_budget(std::move(budget))
{
}

bool PictureSink::begin(const Layout &layout, qint64 decoderBytes)
{
    m_layout = layout;
    const int width = size().width();
    if (size().isEmpty() || width > maximumWidth || pixelsIn(size()) > maximumPixels)
        return false;
    if (isHuge() && layout.order == Order::Any)
        return false;
    m_heldRows = isHuge() ? int(m_limits.top / width) : size().height();
    if (isHuge())
        m_overview.emplace(size(), m_limits.overview);
    const qint64 turning = layout.isTurned ? pixelBytes * width * m_heldRows : 0;
    if (!reserve(heldBytes() + decoderBytes + turning))
        return false;
    m_memory = allocatePictureMemory(std::size_t(rowBytes()));
    return m_memory != nullptr;
}

QRgb *PictureSink::row(int y)
{
    return reinterpret_cast<QRgb *>(m_memory.get()) +
           qint64(size().width()) * std::min(y, m_heldRows);
}

void PictureSink::finishRow(int y)
{
    QRgb *const pixels = row(y);
    if (m_layout.alpha != Alpha::None && qAlpha(commonBits(pixels, size().width())) != 0xff) {
        m_isOpaque = false;
        if (m_layout.alpha == Alpha::Straight)
            std::transform(pixels, pixels + size().width(), pixels,
                           [](QRgb pixel) { return qPremultiply(pixel); });
    }
    if (m_overview)
        m_overview->addRow(pixels);
}

DecodedPicture PictureSink::takePicture(QImageIOHandler::Transformations turns)
{
    const auto format = m_isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied;
    const std::shared_ptr<PictureBudget::Reservation> reservation = std::move(m_reservation);
    QImage top =
        turned(pictureIn(std::move(m_memory), {size().width(), m_heldRows}, format), turns);
    reservation->reduceTo(heldBytes());
    top = keeping(top, reservation);
    return {top, m_overview ? turned(m_overview->picture(format), turns) : top};
}

bool PictureSink::isHuge() const
{
    return pixelsIn(size()) > std::max(m_limits.top, m_limits.overview);
}

/// The rows that are kept and, for a huge picture, the one being decoded.
qint64 PictureSink::rowBytes() const
{
    return pixelBytes * size().width() * (m_heldRows + (isHuge() ? 1 : 0));
}

qint64 PictureSink::heldBytes() const
{
    return rowBytes() + (m_overview ? m_overview->memory() : 0);
}

bool PictureSink::reserve(qint64 bytes)
{
    if (bytes > m_budget->total())
        return false;
    m_reservation = m_budget->reserve(bytes);
    m_lackingBytes = m_reservation ? 0 : bytes;
    return m_reservation != nullptr;
}
