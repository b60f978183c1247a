// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/DecodedPicture.h"
#include "imaging/Overview.h"
#include "imaging/PictureBudget.h"

#include <QImageIOHandler>
#include <QSize>

#include <memory>
#include <optional>

/// Takes a picture from its decoder, row by row, and keeps what the limits allow: however large it
/// is, the rows that are not kept cost nothing. One thread.
class PictureSink
{
public:
    /// Pictures of more pixels than this are refused: six times two 8K screens, and one to two
    /// seconds of decoding.
    static constexpr qint64 maximumPixels = 400'000'000;

    enum class Alpha { None, Straight, Premultiplied };
    /// Top to bottom, each once; or in any order, as often as the decoder likes.
    enum class Order { Downwards, Any };

    struct Layout {
        QSize size;
        Alpha alpha = Alpha::None;
        Order order = Order::Downwards;
        bool isTurned = false; ///< will be turned, which needs its memory once more for a moment
    };

    PictureSink(const PictureLimits &limits, std::shared_ptr<PictureBudget> budget);

    /// Call it first. False when the picture must not be decoded: it is too large, or there is no
    /// memory for it.
    ///
    /// @param decoderBytes what the decoder itself needs until it is done
    bool begin(const Layout &layout, qint64 decoderBytes);

    /// Where the decoder writes this row, one QRgb per pixel.
    QRgb *row(int y);

    /// The row is complete. Called for each row, from top to bottom.
    void finishRow(int y);

    /// Call it once, when all rows are complete and the decoder has freed its memory. `turns` are
    /// what makes the picture upright.
    DecodedPicture takePicture(QImageIOHandler::Transformations turns = {});

    /// More than 0 when the budget had no room for this many bytes, but may have it later.
    qint64 lackingBytes() const { return m_lackingBytes; }

private:
    QSize size() const { return m_layout.size; }
    bool isHuge() const;
    qint64 rowBytes() const;
    qint64 heldBytes() const;
    bool reserve(qint64 bytes);

    PictureLimits m_limits;
    std::shared_ptr<PictureBudget> m_budget;
    std::shared_ptr<PictureBudget::Reservation> m_reservation;
    qint64 m_lackingBytes = 0;
    Layout m_layout;
    bool m_isOpaque = true;
    int m_heldRows = 0;
    std::shared_ptr<unsigned char> m_memory; ///< the first rows, then one for all others
    std::optional<Overview> m_overview;
};
