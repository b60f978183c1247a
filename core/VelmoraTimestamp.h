#pragma once

#include <QDateTime>
#include <QString>

/// The stamp that log lines and fallback names carry: "yyyyMMdd-HHmmss" in the user's locale and
/// the system's time zone, for instance 20260115-093012.
QString velmoraTimestamp(const QDateTime &moment = QDateTime::currentDateTime());
