// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

/// The editable file name. While nobody edits it, a long name is cut in its middle, and its
/// tool tip says it whole. It handles the editing keys itself, with Control as well as with Meta.
/// Main thread.
class FilenameTextField : public QLineEdit
{
    Q_OBJECT
public:
    explicit FilenameTextField(const QString &name, QWidget *parent = nullptr);

Q_SIGNALS:
    /// The user has pressed the mouse in the field.
    void pressed();

    /// The user has changed the text, or has begun to compose a character.
    void edited();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// Select all, copy, paste or cut, for A, C, V or X with exactly Control or exactly Meta.
    /// False for every other key.
    bool performEditingKey(const QKeyEvent &event);

    QRect textArea() const;
    bool isCut() const;
    QString wholeNameToolTip() const;
    void paintBackground();
    void paintElided();
};
