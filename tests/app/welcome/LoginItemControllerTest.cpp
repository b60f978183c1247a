// SPDX-License-Identifier: MIT
#include "app/welcome/LoginItemController.h"

#include "platform/LoginItem.h"
#include "tests/fakes/FakeLoginItem.h"
#include "tests/files/LogTail.h"
#include "tests/world/TestProgram.h"

#include <QTest>
#include <QUuid>

using namespace Qt::StringLiterals;

class LoginItemControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theItemIsSwitchedOnAndOff()
    {
        FakeLoginItem item;
        LoginItemController::setEnabled(item, true);
        QVERIFY(item.enabled);
        LoginItemController::setEnabled(item, false);
        QVERIFY(!item.enabled);
    }

    void aStateThatIsAlreadyThereMakesNoCall()
    {
        FakeLoginItem item;
        LoginItemController::setEnabled(item, false);
        item.enabled = true;
        LoginItemController::setEnabled(item, true);
        QCOMPARE(item.calls, 0);
    }

    void aFailureIsLogged()
    {
        FakeLoginItem item;
        item.failure = u"no room "_s + QUuid::createUuid().toString();
        const LogTail log;
        LoginItemController::setEnabled(item, true);
        QCOMPARE(log.messagesWith(*item.failure),
                 QStringList(u"login item failed "_s + *item.failure));
    }
};

VELMORA_EVENTS_TEST(LoginItemControllerTest)
#include "LoginItemControllerTest.moc"
