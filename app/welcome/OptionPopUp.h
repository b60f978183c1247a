// SPDX-License-Identifier: MIT
#pragma once

#include "core/VelmoraSettings.h"

#include <QComboBox>

/// A pop-up button with the titles of all cases of an option, in order.
class OptionPopUp : public QComboBox
{
    Q_OBJECT
public:
    template <typename Option>
    explicit OptionPopUp(Option current, QWidget *parent = nullptr) : OptionPopUp(parent)
    {
        for (const OptionCase<Option> &entry : optionCases<Option>()) {
            addItem(entry.title);
            if (entry.option == current)
                setCurrentIndex(count() - 1);
        }
    }

protected:
    /// The wheel scrolls the page around the pop-up and never changes the setting.
    void wheelEvent(QWheelEvent *event) override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit OptionPopUp(QWidget *parent);
    void pick(int index);
};
