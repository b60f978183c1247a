// SPDX-License-Identifier: MIT
#include "tray/FilenameTextField.h"

#include "style/VelmoraPalette.h"
#include "tests/world/TestProgram.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(Qt::KeyboardModifiers)

namespace
{

void copyToClipboard(const QString &copied)
{
    QApplication::clipboard()->setText(copied);
}

QString clipboard()
{
    return QApplication::clipboard()->text();
}

} // namespace

class FilenameTextFieldTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        auto *layout = new QVBoxLayout(m_window.get());
        m_field = new FilenameTextField(u"shot.png"_s);
        m_other = new QLineEdit;
        layout->addWidget(m_field);
        layout->addWidget(m_other);
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_field->setFocus();
        m_field->deselect();
        copyToClipboard(u"clip"_s);
    }

    void theEditingKeysWorkWithControlAndWithMeta_data()
    {
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("Control") << Qt::KeyboardModifiers(Qt::ControlModifier);
        QTest::newRow("Meta") << Qt::KeyboardModifiers(Qt::MetaModifier);
    }

    void theEditingKeysWorkWithControlAndWithMeta()
    {
        QFETCH(const Qt::KeyboardModifiers, modifiers);
        QTest::keyClick(m_field, Qt::Key_A, modifiers);
        QCOMPARE(m_field->selectedText(), u"shot.png"_s);
        QTest::keyClick(m_field, Qt::Key_C, modifiers);
        QCOMPARE(clipboard(), u"shot.png"_s);
        QCOMPARE(m_field->text(), u"shot.png"_s);

        copyToClipboard(u"new"_s);
        QTest::keyClick(m_field, Qt::Key_V, modifiers);
        QCOMPARE(m_field->text(), u"new"_s);
        m_field->selectAll();
        QTest::keyClick(m_field, Qt::Key_X, modifiers);
        QCOMPARE(m_field->text(), QString());
        QCOMPARE(clipboard(), u"new"_s);
    }

    void otherModifiersAreLeftToTheDefault_data()
    {
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("Meta+Shift") << (Qt::MetaModifier | Qt::ShiftModifier);
        QTest::newRow("Meta+Control") << (Qt::MetaModifier | Qt::ControlModifier);
        QTest::newRow("Meta+Alt") << (Qt::MetaModifier | Qt::AltModifier);
        QTest::newRow("Alt") << Qt::KeyboardModifiers(Qt::AltModifier);
    }

    /// A plain line edit shows the default behaviour.
    void otherModifiersAreLeftToTheDefault()
    {
        QFETCH(const Qt::KeyboardModifiers, modifiers);
        m_other->setText(m_field->text());
        for (const auto key : {Qt::Key_A, Qt::Key_V, Qt::Key_C, Qt::Key_X}) {
            for (QLineEdit *field : {static_cast<QLineEdit *>(m_field), m_other}) {
                field->setFocus();
                field->deselect();
                field->setCursorPosition(2);
                QTest::sendKeyEvent(QTest::Click, field, key, QString(), modifiers);
            }
            QCOMPARE(m_field->text(), m_other->text());
            QCOMPARE(m_field->selectedText(), m_other->selectedText());
            QCOMPARE(m_field->selectedText(), QString());
        }
    }

    void aFieldThatIsNotBeingEditedHandlesNoEditingKey()
    {
        m_field->selectAll();
        m_other->setFocus();
        QTest::sendKeyEvent(QTest::Click, m_field, Qt::Key_V, QString(), Qt::MetaModifier);
        QCOMPARE(m_field->text(), u"shot.png"_s);
        QTest::sendKeyEvent(QTest::Click, m_field, Qt::Key_A, QString(), Qt::MetaModifier);
        QCOMPARE(m_field->selectedText(), QString());
        QCOMPARE(clipboard(), u"clip"_s);
    }

    void whateverChangesTheTextByHandIsAnEdit()
    {
        QSignalSpy edited(m_field, &FilenameTextField::edited);
        QTest::keyClicks(m_field, u"x"_s);
        QCOMPARE(edited.size(), 1);
        QTest::keyClick(m_field, Qt::Key_Backspace);
        QCOMPARE(edited.size(), 2);
        QTest::keyClick(m_field, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(edited.size(), 3);
        m_field->selectAll();
        QTest::keyClick(m_field, Qt::Key_X, Qt::MetaModifier);
        QCOMPARE(edited.size(), 4);
    }

    void composingACharacterIsAnEdit()
    {
        QSignalSpy edited(m_field, &FilenameTextField::edited);
        QInputMethodEvent composing(u"に"_s, {});
        QApplication::sendEvent(m_field, &composing);
        QVERIFY(!edited.isEmpty());
        edited.clear();
        QInputMethodEvent committed;
        committed.setCommitString(u"日本"_s);
        QApplication::sendEvent(m_field, &committed);
        QVERIFY(!edited.isEmpty());
        QVERIFY(m_field->text().contains(u"日本"_s));
    }

    void aSuggestionAndMovingAboutAreNoEdits()
    {
        QSignalSpy edited(m_field, &FilenameTextField::edited);
        m_field->setText(u"suggested.png"_s);
        QTest::keyClick(m_field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(m_field, Qt::Key_C, Qt::ControlModifier);
        QTest::keyClick(m_field, Qt::Key_Left);
        QVERIFY(edited.isEmpty());
    }

    void aLongNameIsCutInItsMiddleUnlessItIsBeingEdited()
    {
        const auto drawn = [this](const QString &name) {
            m_field->setText(name);
            m_field->setCursorPosition(0);
            return m_field->grab().toImage();
        };
        m_other->setFocus();
        m_field->setFixedWidth(200);
        QVERIFY(QTest::qWaitFor([this] { return m_field->width() == 200; }));

        // Only the middle differs, which is not visible.
        const QString filling(60, u'm');
        const QString one = u"begin"_s + filling + u"a"_s + filling + u"end.png"_s;
        const QString other = u"begin"_s + filling + u"b"_s + filling + u"end.png"_s;
        QCOMPARE(drawn(one), drawn(other));
        // The beginning and the end are visible.
        QVERIFY(drawn(one) != drawn(u"B"_s + one.mid(1)));
        QVERIFY(drawn(one) != drawn(one.chopped(1) + u"G"_s));

        m_field->setFocus();
        m_field->setText(one);
        m_field->setCursorPosition(int(one.indexOf(u"a"_s)));
        const QImage editing = m_field->grab().toImage();
        m_field->setText(other);
        m_field->setCursorPosition(int(other.indexOf(u"b"_s)));
        QVERIFY(m_field->grab().toImage() != editing);
    }

    void theTextDoesNotMoveWhenTheEditingBegins_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<QString>("name");
        QTest::newRow("even") << 24 << u"shot.png"_s;
        QTest::newRow("odd") << 25 << u"shot.png"_s;
        QTest::newRow("from right to left") << 24 << u"\u05dc\u05e7\u05d8\u05ea.png"_s;
    }

    void theTextDoesNotMoveWhenTheEditingBegins()
    {
        QFETCH(const int, height);
        QFETCH(const QString, name);
        m_field->setFixedHeight(height);
        m_field->setText(name);
        QTRY_COMPARE(m_field->height(), height);
        const int left = name.isRightToLeft() ? m_field->width() - 40 : 0;
        const auto beginning = [&] { return m_field->grab({left, 0, 40, 24}).toImage(); };
        m_field->setFocus();
        m_field->end(false);
        const QImage editing = beginning();
        m_other->setFocus();
        QCOMPARE(beginning(), editing);
    }

    void itLooksTheSameInEveryTheme()
    {
        m_other->setFocus();
        m_field->setText(QString());
        const QColor background = m_field->grab().toImage().pixelColor(100, 12);
        const QColor amber = VelmoraPalette::amber();
        const QColor around = m_window->palette().color(QPalette::Window);
        const auto mixed = [](double front, double back) { return 0.1 * front + 0.9 * back; };
        QVERIFY(std::abs(background.redF() - mixed(amber.redF(), around.redF())) < 0.01);
        QVERIFY(std::abs(background.blueF() - mixed(amber.blueF(), around.blueF())) < 0.01);
        QCOMPARE(m_field->font().pixelSize(), 14);
        QCOMPARE(m_field->font().weight(), QFont::DemiBold);
        QVERIFY(!m_field->hasFrame());
    }

private:
    std::unique_ptr<QWidget> m_window;
    FilenameTextField *m_field = nullptr;
    QLineEdit *m_other = nullptr;
};

VELMORA_WIDGETS_TEST(FilenameTextFieldTest)
#include "FilenameTextFieldTest.moc"
