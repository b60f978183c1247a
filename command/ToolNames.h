// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// File names as screenshot tools give them. Any thread; pure.
namespace ToolNames
{

/// Whether the name, with its extension, is one that a tool gives by itself: the moment of the
/// screenshot, alone or after the tool's word for a screenshot in one of its languages, and perhaps
/// a counter. Whatever else stands in a name was written by somebody.
bool isToolName(const QString &name);

} // namespace ToolNames
