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

    /// The actual state, read on each call.
    virtual bool isEnabled() const = 0;

    /// @return a description of the failure, or nothing.
    virtual std::optional<QString> setEnabled(bool enabled) = 0;
};

std::unique_ptr<LoginItem> makeLoginItem();
