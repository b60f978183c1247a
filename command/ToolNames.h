// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The file names that screenshot tools choose. Any thread; pure.
namespace ToolNames
{

/// Whether a tool chose this name (with its extension): the time of the screenshot, alone or after
/// the tool's word for a screenshot in one of its languages, possibly with a counter. A name that
/// contains anything else was chosen by a person.
bool isToolName(const QString &name);

} // namespace ToolNames
