// SPDX-License-Identifier: MIT
#pragma once

/// Makes one visitor for std::visit from a lambda per alternative.
template <typename... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
// Some compilers do not deduce this of an aggregate yet.
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;
