// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>
#include <optional>

/// Whether the system starts this program when the user signs in. Main thread.
class LoginItem
{
public:
    virtual ~LoginItem() = default;

    /// The real state, read afresh.
    virtual bool isEnabled() const = 0;

    /// @return the failure's description, or nothing.
    virtual std::optional<QString> setEnabled(bool enabled) = 0;
};

std::unique_ptr<LoginItem> makeLoginItem();
