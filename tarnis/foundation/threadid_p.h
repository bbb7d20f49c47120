// The operating system's number of the calling thread.
#pragma once

namespace tarnis {

/// The number that the system's own tools show (gettid on Linux). Unique among the threads that live.
unsigned long long currentThreadNumber();

} // namespace tarnis
