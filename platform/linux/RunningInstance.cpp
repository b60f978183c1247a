// SPDX-License-Identifier: MIT
#include "platform/RunningInstance.h"

#include "platform/linux/single-instance/ApplicationOnBus.h"
#include "platform/linux/single-instance/ApplicationOnSocket.h"
#include "platform/linux/x11/LaunchToken.h"
#include "platform/linux/x11/StartupNotification.h"
#include "platform/linux/x11/UserTime.h"

#include <functional>

namespace
{

/// Uses the session bus; without one, a lock and a socket.
class LinuxRunningInstance : public RunningInstance
{
public:
    LinuxRunningInstance()
    {
        const auto reopen = [this](const LaunchToken &token) {
            comeForward(token, [this] { Q_EMIT reopened(); });
        };
        connect(&m_onBus, &ApplicationOnBus::activated, this, reopen);
        connect(&m_onSocket, &ApplicationOnSocket::activated, this, reopen);
        connect(&m_onBus, &ApplicationOnBus::actionActivated, this,
                [this](const QString &name, const LaunchToken &token) {
                    comeForward(token, [this, name] { Q_EMIT actionRequested(name); });
                });
    }

    bool claim() override
    {
        const LaunchToken token = LaunchToken::ofThisProcess();
        const ApplicationOnBus::Claim onBus = m_onBus.claim(token);
        if (onBus != ApplicationOnBus::Claim::Impossible)
            return onBus == ApplicationOnBus::Claim::Ours;
        return m_onSocket.claim(token) != ApplicationOnSocket::Claim::Theirs;
    }

private:
    /// Does all that the desktop requires of a window that wants to come to the front.
    void comeForward(const LaunchToken &token, const std::function<void()> &say)
    {
        m_userTime.renew([token, say](quint32) {
            token.adopt();
            say();
            StartupNotification::end(token.startupId);
        });
    }

    UserTime m_userTime;
    ApplicationOnBus m_onBus;
    ApplicationOnSocket m_onSocket;
};

} // namespace

std::unique_ptr<RunningInstance> makeRunningInstance()
{
    return std::make_unique<LinuxRunningInstance>();
}
