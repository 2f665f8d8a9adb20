// The processes of a session of the kernel: a program that was started in a session of its own,
// and what it started.
#pragma once

#include <sys/types.h>

#include <vector>

namespace tockwise {

/// The living processes of the session that began with the process leader, whatever process group
/// they are in. Reads /proc. Any thread.
std::vector<pid_t> processesOfSession(pid_t leader);

/// Sends the signal to each of them; whether there were any.
bool signalSession(pid_t leader, int signal);

} // namespace tockwise
