// SPDX-License-Identifier: MIT
#include "tests/tray/ControllerFixture.h"

#include "style/BezelButton.h"
#include "tests/style/AccessibleLeaves.h"
#include "tests/world/TestProgram.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"

#include <QAccessible>
#include <QTest>

using namespace Qt::StringLiterals;
using TrayOnScreen::name;
using TrayOnScreen::panel;
using TrayOnScreen::rows;
using TrayOnScreen::thumbnail;

namespace
{

QAccessibleInterface *accessible(QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(widget);
}

QString nameOf(QWidget *widget)
{
    return accessible(widget)->text(QAccessible::Name);
}

} // namespace

/// What assistive technologies learn about the tray.
class TrayAccessibilityTest : public QObject, ControllerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void theTrayIsAWindowWithAName()
    {
        add("one.png");
        QCOMPARE(accessible(panel())->role(), QAccessible::Window);
        QCOMPARE(nameOf(panel()), u"Velmora"_s);
    }

    void eachRowIsAGroupNamedAfterItsFile()
    {
        add("one.png");
        add("two.png");
        for (ScreenshotRowView *row : rows()) {
            QCOMPARE(accessible(row)->role(), QAccessible::Grouping);
            QCOMPARE(nameOf(row), name(row)->text());
            QWidget *copy = TrayOnScreen::button(row, u"Copy"_s);
            QCOMPARE(nameOf(copy), u"Copy"_s);
            QVERIFY(isWithin(accessible(copy), accessible(row)));
        }
    }

    void aRenamedFileRenamesItsRow()
    {
        const QUuid row = add("one.png");
        m_tray->updateSuggestion(row, u"invoice.png"_s, true);
        QTRY_COMPARE(nameOf(rows().first()), u"invoice.png"_s);
        QCOMPARE(accessible(thumbnail(rows().first()))->text(QAccessible::Description),
                 u"Thumbnail of invoice.png"_s);
    }

    void whatIsTypedIsNoFileYet()
    {
        add("one.png");
        type(rows().first(), "draft");
        QCOMPARE(nameOf(rows().first()), u"one.png"_s);
    }

    void thePictureIsAnImageWithADescription()
    {
        add("one.png");
        QAccessibleInterface *picture = accessible(thumbnail(rows().first()));
        QCOMPARE(picture->role(), QAccessible::Graphic);
        QCOMPARE(picture->text(QAccessible::Name), u"Thumbnail"_s);
        QCOMPARE(picture->text(QAccessible::Description), u"Thumbnail of one.png"_s);
    }

    void itIsReadFromTopToBottomAndFromLeftToRight()
    {
        add("one.png");
        add("two.png");
        add("three.png");
        QTRY_COMPARE(rows().first()->x(), 8);
        const QList<QRect> places = AccessibleLeaves::places(*panel());
        QVERIFY(places.size() >= 3 * 7);
        QVERIFY(AccessibleLeaves::areInReadingOrder(places));
        for (qsizetype row = 0; row < 3; ++row) {
            const QString wanted = name(rows()[row])->text();
            QCOMPARE(accessible(rows().first()->parentWidget())
                         ->child(int(row))
                         ->text(QAccessible::Name),
                     wanted);
        }
    }

private:
    static bool isWithin(QAccessibleInterface *inner, const QAccessibleInterface *outer)
    {
        while (inner && inner->object() != outer->object())
            inner = inner->parent();
        return inner;
    }
};

VELMORA_WIDGETS_TEST(TrayAccessibilityTest)
#include "TrayAccessibilityTest.moc"
