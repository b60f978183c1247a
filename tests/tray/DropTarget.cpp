// SPDX-License-Identifier: MIT
// Another program's window that accepts drops. It writes one line per event: "ready", "over" with
// the actions that the drag offers, and "dropped" with a JSON object of the data it received.
//
// usage: drop_target X Y WIDTH HEIGHT

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QTextStream>
#include <QUrl>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace
{

void print(const QString &line)
{
    QTextStream(stdout) << line << Qt::endl;
}

class DropTarget : public QWidget
{
public:
    DropTarget() { setAcceptDrops(true); }

protected:
    void dragEnterEvent(QDragEnterEvent *event) override
    {
        print(u"over %1"_s.arg(event->possibleActions().toInt()));
        event->acceptProposedAction();
    }

    void dropEvent(QDropEvent *event) override
    {
        const QMimeData &dropped = *event->mimeData();
        QJsonObject formats;
        for (const QString &format : dropped.formats())
            formats.insert(format, QString::fromUtf8(dropped.data(format)));
        QJsonArray urls;
        for (const QUrl &url : dropped.urls())
            urls.append(url.toString());
        const QJsonObject got{
            {u"formats"_s, formats}, {u"urls"_s, urls}, {u"action"_s, int(event->dropAction())}};
        event->acceptProposedAction();
        print(u"dropped "_s + QString::fromUtf8(QJsonDocument(got).toJson(QJsonDocument::Compact)));
    }

    void paintEvent(QPaintEvent *) override
    {
        if (!std::exchange(m_painted, true))
            print(u"ready"_s);
    }

private:
    bool m_painted = false;
};

} // namespace

int main(int count, char **arguments)
{
    QApplication application(count, arguments);
    const QStringList given = application.arguments();
    if (given.size() != 5)
        return 2;
    DropTarget target;
    target.setWindowFlag(Qt::FramelessWindowHint);
    target.setAttribute(Qt::WA_ShowWithoutActivating);
    target.setGeometry(given[1].toInt(), given[2].toInt(), given[3].toInt(), given[4].toInt());
    target.show();
    return application.exec();
}
