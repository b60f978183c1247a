// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QString>

/// The timestamp in log lines and fallback names: "yyyyMMdd-HHmmss" in the user's locale and the
/// system's time zone, for example 20260115-093012.
QString velmoraTimestamp(const QDateTime &moment = QDateTime::currentDateTime());
