// Compiled once for all rooms: the headers of Qt Core and of the standard library that most sources
// need. Sources still include what they use; nothing may rely on this file.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFuture>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <QUuid>
