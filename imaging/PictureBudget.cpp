// SPDX-License-Identifier: MIT
#include "imaging/PictureBudget.h"

#include <utility>

PictureBudget::Reservation::Reservation(const std::shared_ptr<PictureBudget> &budget, qint64 bytes)
    : m_budget(budget), m_bytes(bytes)
{
}

PictureBudget::Reservation::~Reservation()
{
    reduceTo(0);
}

void PictureBudget::Reservation::reduceTo(qint64 bytes)
{
    if (bytes < m_bytes)
        m_budget->giveBack(std::exchange(m_bytes, bytes) - bytes);
}

std::shared_ptr<PictureBudget::Reservation> PictureBudget::reserve(qint64 bytes)
{
    const std::lock_guard lock(m_mutex);
    if (m_reserved + bytes > m_total)
        return nullptr;
    m_reserved += bytes;
    return std::make_shared<Reservation>(shared_from_this(), bytes);
}

bool PictureBudget::hasRoom(qint64 bytes) const
{
    const std::lock_guard lock(m_mutex);
    return m_reserved + bytes <= m_total;
}

void PictureBudget::setOnReturn(std::function<void()> onReturn)
{
    const std::lock_guard lock(m_callMutex);
    m_onReturn = std::move(onReturn);
}

void PictureBudget::giveBack(qint64 bytes)
{
    {
        const std::lock_guard lock(m_mutex);
        m_reserved -= bytes;
    }
    const std::lock_guard lock(m_callMutex);
    if (m_onReturn)
        m_onReturn();
}
