#pragma once

class QGridLayout;
class QWidget;

/// The welcome window stands on three columns of one width.
constexpr int columnCount = 3;

/// A layout of these columns, without margins; the widget owns it.
QGridLayout *makeColumns(QWidget *owner);
