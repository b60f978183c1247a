// SPDX-License-Identifier: MIT
#include "files/UndoHistory.h"

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype maximumActions = 10;

} // namespace

QString UndoHistory::title() const
{
    if (m_actions.isEmpty())
        return u"Undo Last Action"_s;
    return m_actions.last().kind == UndoableAction::Kind::Rename ? u"Undo Rename"_s
                                                                 : u"Undo Trash"_s;
}

void UndoHistory::push(const UndoableAction &action)
{
    m_actions.append(action);
    if (m_actions.size() > maximumActions)
        m_actions.removeFirst();
    Q_EMIT changed();
}

std::optional<UndoableAction> UndoHistory::takeNewest()
{
    if (m_actions.isEmpty())
        return std::nullopt;
    const UndoableAction action = m_actions.takeLast();
    Q_EMIT changed();
    return action;
}

void UndoHistory::remove(const UndoableAction &action)
{
    const qsizetype newest = m_actions.lastIndexOf(action);
    if (newest >= 0)
        m_actions.removeAt(newest);
    Q_EMIT changed();
}
