// The operating system's number of the calling thread.
#pragma once

namespace tarnis {

/// The thread id that system tools show (gettid on Linux). Unique among running threads.
unsigned long long currentThreadNumber();

} // namespace tarnis
