#pragma once

#include <cstddef>
#include <functional>

/// Calls `work` with every number below `count`, on all cores and in ascending order as far as that goes.
/// Returns when all calls have ended. What the first failing call threw is thrown; no new ones start then.
void sideBySide(std::size_t count, const std::function<void(std::size_t)>& work);
