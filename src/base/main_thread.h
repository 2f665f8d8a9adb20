// Work on shared state belongs to the main thread; whoever stands elsewhere waits for it.
#pragma once

#include <functional>

namespace tockwise {

/// Runs work on the application's main thread and returns when it is done: directly when the
/// caller is on it (or when there is no application object yet), else dispatched to it while
/// the caller waits. Any thread.
void runOnMainThread(const std::function<void()>& work);

} // namespace tockwise
