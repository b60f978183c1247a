// The same as core.h, for the rooms with windows.
#pragma once

#include "cmake/precompiled/core.h"

#include <QApplication>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QWidget>
#include <QWindow>
