// SPDX-License-Identifier: MIT
#include "app/welcome/dialogs/folderRefusal.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

/// Root may open everything, so a test that runs as root becomes another user here.
class AsNobody
{
public:
    explicit AsNobody(const QString &reached) : m_user(::getuid())
    {
        constexpr uid_t nobody = 65534;
        if (m_user != 0)
            return;
        QFile::setPermissions(reached,
                              QFile::permissions(reached) | QFile::ExeGroup | QFile::ExeOther);
        if (::setresuid(nobody, nobody, 0) != 0)
            qFatal("can't become nobody");
    }
    ~AsNobody()
    {
        if (m_user == 0 && ::setresuid(0, 0, 0) != 0)
            qFatal("can't become root again");
    }
    Q_DISABLE_COPY_MOVE(AsNobody)

private:
    uid_t m_user;
};

} // namespace

class FolderRefusalTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    QString refusal(const QUrl &url) const { return folderRefusal(url).value_or(QString()); }

private Q_SLOTS:
    void aFolderOfThisComputerIsTaken()
    {
        QVERIFY(!folderRefusal(QUrl::fromLocalFile(m_folder.path())));
        QVERIFY(!folderRefusal(QUrl::fromLocalFile(m_folder.path() + u"/./"_s)));
        QVERIFY(!folderRefusal(QUrl::fromLocalFile(u"/"_s)));
    }

    void aFolderElsewhereIsRefused_data()
    {
        QTest::addColumn<QString>("url");
        QTest::newRow("sftp") << "sftp://anna@example.org/shots";
        QTest::newRow("share") << "smb://server/shots";
        QTest::newRow("trash") << "trash:///";
        QTest::newRow("phone") << "mtp://phone/shots";
        QTest::newRow("host") << "file://server/shots";
    }

    void aFolderElsewhereIsRefused()
    {
        QFETCH(const QString, url);
        const QString reason = refusal(QUrl(url));
        QVERIFY2(reason.contains(u"is not on this computer"), qUtf8Printable(reason));
    }

    void whatIsNoFolderIsRefused()
    {
        const QString file = m_folder.filePath(u"file"_s);
        QVERIFY(QFile(file).open(QFile::WriteOnly));
        QCOMPARE(refusal(QUrl::fromLocalFile(file)), QString(file + u" is not a folder."_s));
        const QString missing = m_folder.filePath(u"missing"_s);
        QCOMPARE(refusal(QUrl::fromLocalFile(missing)),
                 QString(u"There is no folder "_s + missing + u'.'));
    }

    void aFolderThatCannotBeOpenedIsRefused()
    {
        const QString closed = m_folder.filePath(u"closed"_s);
        QDir().mkpath(closed);
        QFile::setPermissions(closed, {});
        QString reason;
        {
            const AsNobody nobody(m_folder.path());
            reason = refusal(QUrl::fromLocalFile(closed));
        }
        QFile::setPermissions(closed, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(reason, QString(u"You do not have permission to open "_s + closed + u'.'));
    }
};

VELMORA_WIDGETS_TEST(FolderRefusalTest)
#include "FolderRefusalTest.moc"
