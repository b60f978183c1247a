// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

/// Where the words to search for are typed: a rounded field with a magnifying glass. Main thread.
class SearchField : public QLineEdit
{
    Q_OBJECT
public:
    explicit SearchField(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
