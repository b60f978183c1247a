// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

/// The field for the words to search for: rounded, with a magnifying glass. Main thread.
class SearchField : public QLineEdit
{
    Q_OBJECT
public:
    explicit SearchField(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
