// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

/// The editable file name. While it is not being edited, a long name is elided in the middle, and
/// its tool tip shows all of it. It handles the editing keys itself, with Control as well as Meta.
/// Main thread.
class FilenameTextField : public QLineEdit
{
    Q_OBJECT
public:
    explicit FilenameTextField(const QString &name, QWidget *parent = nullptr);

Q_SIGNALS:
    /// The user has pressed a mouse button in the field.
    void pressed();

    /// The user has changed the text, or started to compose a character.
    void edited();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// Select all, copy, paste or cut, for A, C, V or X with exactly Control or exactly Meta. False
    /// for every other key.
    bool performEditingKey(const QKeyEvent &event);

    QRect textArea() const;
    bool isCut() const;
    QString wholeNameToolTip() const;
    void paintBackground();
    void paintElided();
};
