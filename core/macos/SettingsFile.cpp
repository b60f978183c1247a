// SPDX-License-Identifier: MIT
#include "core/SettingsFile.h"

#include <QSettings>

using namespace Qt::StringLiterals;

/// The system's own preference store, which manages its files itself.
struct SettingsFile::Private {
    QSettings store;
    QString path;
    Values values;
};

namespace
{

/// Qt builds a domain's name from a reversed host name and an application name. The program's own
/// domain is its bundle identifier, "app.velmora.Velmora"; other domains go by their own names.
QSettings storeOf(const QString &domain)
{
    const bool isOwn = domain == u"velmora"_s;
    return {QSettings::NativeFormat, QSettings::UserScope, isOwn ? u"velmora.app"_s : u"velmora"_s,
            isOwn ? u"Velmora"_s : domain};
}

} // namespace

SettingsFile::SettingsFile(const QString &domain) : m_private(new Private{storeOf(domain), {}, {}})
{
    m_private->store.setFallbacksEnabled(false);
    m_private->path = m_private->store.fileName();
}

SettingsFile::~SettingsFile() = default;

const QString &SettingsFile::path() const
{
    return m_private->path;
}

const SettingsFile::Values &SettingsFile::read()
{
    m_private->store.sync();
    m_private->values.clear();
    const QStringList keys = m_private->store.allKeys();
    for (const QString &key : keys)
        m_private->values.insert(key, m_private->store.value(key));
    return m_private->values;
}

void SettingsFile::tidy() {}

bool SettingsFile::write(const Changes &changes)
{
    for (auto each = changes.cbegin(); each != changes.cend(); ++each) {
        if (each.value().isValid())
            m_private->store.setValue(each.key(), each.value());
        else
            m_private->store.remove(each.key());
    }
    m_private->store.sync();
    return m_private->store.status() == QSettings::NoError;
}
