// SPDX-License-Identifier: MIT
#include "style/VelmoraStyle.h"

#include "style/VelmoraAssets.h"
#include "style/VelmoraPalette.h"
#include "style/controlPainting.h"

#include <QComboBox>
#include <QPainter>
#include <QStyleOption>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

using ControlPainting::Bezel;

// All in points.
constexpr int controlHeight = 28;
constexpr int leastButtonWidth = 72;
constexpr int controlSideInset = 12;
constexpr int controlVerticalInset = 4;
constexpr int checkBoxSide = 16;
constexpr int checkBoxLabelSpacing = 8;
constexpr int popUpItemHeight = 26;
constexpr int iconSide = 16;
constexpr int scrollBarWidth = 12;
constexpr int scrollBarShortestHandle = 28;

/// The bar has no arrow buttons: the groove fills it.
QRect scrollBarRect(const QStyleOptionSlider &option, QStyle::SubControl subControl)
{
    const bool horizontal = option.orientation == Qt::Horizontal;
    const int length = horizontal ? option.rect.width() : option.rect.height();
    const int range = std::max(option.maximum - option.minimum, 0);
    const int shortest = std::min(scrollBarShortestHandle, length);
    const auto wanted = qint64(length) * option.pageStep / std::max(range + option.pageStep, 1);
    const int handle = range == 0 ? length : std::clamp(int(wanted), shortest, length);
    const int start = QStyle::sliderPositionFromValue(
        option.minimum, option.maximum, option.sliderPosition, length - handle, option.upsideDown);
    const auto part = [&option, horizontal](int from, int to) {
        return horizontal ? QRect(from, 0, to - from, option.rect.height())
                          : QRect(0, from, option.rect.width(), to - from);
    };
    switch (subControl) {
    case QStyle::SC_ScrollBarGroove:
        return part(0, length);
    case QStyle::SC_ScrollBarSlider:
        return part(start, start + handle);
    case QStyle::SC_ScrollBarSubPage:
        return part(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return part(start + handle, length);
    default:
        return {};
    }
}

bool isDefaultButton(const QStyleOption *option)
{
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
    return button && button->features & QStyleOptionButton::DefaultButton;
}

} // namespace

VelmoraStyle::VelmoraStyle() : QProxyStyle(u"fusion"_s) {}

void VelmoraStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                 QPainter *painter, const QWidget *widget) const
{
    if (element == PE_IndicatorCheckBox) {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        ControlPainting::drawCheckBox(*option, *painter);
        painter->restore();
        return;
    }
    const bool drawnByControl =
        widget && (widget->inherits("QAbstractButton") || widget->inherits("QComboBox"));
    if (element == PE_FrameFocusRect && drawnByControl)
        return;
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void VelmoraStyle::drawControl(ControlElement element, const QStyleOption *option,
                               QPainter *painter, const QWidget *widget) const
{
    if (element == CE_PushButtonBevel) {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        ControlPainting::drawBezel(*option, isDefaultButton(option) ? Bezel::accent : Bezel::plain,
                                   *painter);
        painter->restore();
        return;
    }
    if (element == CE_PushButtonLabel && isDefaultButton(option)) {
        QStyleOptionButton onFill = *qstyleoption_cast<const QStyleOptionButton *>(option);
        onFill.palette.setColor(QPalette::ButtonText, VelmoraPalette::card());
        QProxyStyle::drawControl(element, &onFill, painter, widget);
        return;
    }
    const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    if (element == CE_MenuItem && item && qobject_cast<const QComboBox *>(widget)) {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        ControlPainting::drawPopUpItem(*item, *painter);
        painter->restore();
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void VelmoraStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                      QPainter *painter, const QWidget *widget) const
{
    const auto *comboBox = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    const auto *scrollBar = qstyleoption_cast<const QStyleOptionSlider *>(option);
    const bool isPopUp = control == CC_ComboBox && comboBox && !comboBox->editable;
    if (!isPopUp && (control != CC_ScrollBar || !scrollBar)) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isPopUp) {
        ControlPainting::drawBezel(*option, Bezel::plain, *painter);
        ControlPainting::drawPopUpArrows(*option, *painter);
    } else {
        ControlPainting::drawScrollBar(*scrollBar, scrollBarRect(*scrollBar, SC_ScrollBarSlider),
                                       *painter);
    }
    painter->restore();
}

QRect VelmoraStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                                   SubControl subControl, const QWidget *widget) const
{
    if (control == CC_ScrollBar) {
        if (const auto *scrollBar = qstyleoption_cast<const QStyleOptionSlider *>(option))
            return scrollBarRect(*scrollBar, subControl);
    }
    if (control == CC_ComboBox && subControl == SC_ComboBoxEditField)
        return option->rect.adjusted(controlSideInset - 2, 0, -ControlPainting::popUpArrowWidth, 0);
    return QProxyStyle::subControlRect(control, option, subControl, widget);
}

QSize VelmoraStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                     const QSize &contents, const QWidget *widget) const
{
    const int height = std::max(controlHeight, contents.height() + 2 * controlVerticalInset);
    switch (type) {
    case CT_PushButton:
        return {std::max(leastButtonWidth, contents.width() + 2 * controlSideInset), height};
    case CT_ComboBox:
        return {contents.width() + controlSideInset + ControlPainting::popUpArrowWidth, height};
    case CT_MenuItem:
        if (qobject_cast<const QComboBox *>(widget))
            return {contents.width(), std::max(popUpItemHeight, option->fontMetrics.height() + 6)};
        [[fallthrough]];
    default:
        return QProxyStyle::sizeFromContents(type, option, contents, widget);
    }
}

int VelmoraStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                              const QWidget *widget) const
{
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
        return checkBoxSide;
    case PM_CheckBoxLabelSpacing:
        return checkBoxLabelSpacing;
    case PM_ButtonIconSize:
        return iconSide;
    case PM_ScrollBarExtent:
        return scrollBarWidth;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int VelmoraStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                            QStyleHintReturn *returned) const
{
    if (hint == SH_EtchDisabledText || hint == SH_UnderlineShortcut ||
        hint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

QIcon VelmoraStyle::standardIcon(StandardPixmap icon, const QStyleOption *option,
                                 const QWidget *widget) const
{
    if (icon == SP_MessageBoxInformation)
        return VelmoraAssets::logoImage();
    return QProxyStyle::standardIcon(icon, option, widget);
}
