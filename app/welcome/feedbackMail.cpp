// SPDX-License-Identifier: MIT
#include "app/welcome/feedbackMail.h"

#include "core/VelmoraIdentity.h"
#include "platform/SystemWords.h"

#include <QString>

namespace
{

QString encoded(const QString &text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

} // namespace

QUrl feedbackMail()
{
    const QString subject = QStringLiteral("Velmora feedback");
    const QString body = QStringLiteral("Hi Velmora team,\n\nWhat I tried:\n\nWhat felt "
                                        "confusing:\n\nWhat I expected:\n\n") +
                         SystemWords::systemQuestion.here() + u'\n';
    return QUrl(QStringLiteral("mailto:") + velmoraFeedbackAddress() + QStringLiteral("?subject=") +
                encoded(subject) + QStringLiteral("&body=") + encoded(body));
}
