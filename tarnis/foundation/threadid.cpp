#include "tarnis/foundation/threadid_p.h"

#if defined(__linux__)
#include <sys/syscall.h>
#include <unistd.h>
#else
#include <QThread>
#endif

namespace tarnis {

unsigned long long currentThreadNumber()
{
#if defined(__linux__)
    return static_cast<unsigned long long>(::syscall(SYS_gettid));
#else
    return static_cast<unsigned long long>(reinterpret_cast<quintptr>(QThread::currentThreadId()));
#endif
}

} // namespace tarnis
