// SPDX-License-Identifier: MIT
#include "app/welcome/feedbackMail.h"

#include "core/VelmoraIdentity.h"
#include "platform/SystemWords.h"

#include <QString>

using namespace Qt::StringLiterals;

namespace
{

QString encoded(const QString &text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

} // namespace

QUrl feedbackMail()
{
    const QString subject = u"Velmora feedback"_s;
    const QString body = u"Hi Velmora team,\n\nWhat I tried:\n\nWhat felt "
                         "confusing:\n\nWhat I expected:\n\n"_s +
                         SystemWords::systemQuestion.here() + u'\n';
    return QUrl(u"mailto:"_s + velmoraFeedbackAddress() + u"?subject="_s + encoded(subject) +
                u"&body="_s + encoded(body));
}
