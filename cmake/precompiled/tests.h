// The same as core.h, for test programs.
#pragma once

#include "cmake/precompiled/core.h"

#include <QImage>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
