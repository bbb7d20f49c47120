// The one way in which tests wait: for a condition, while Qt's events run, with a limit that only a failure reaches.
#pragma once

#include <QDeadlineTimer>

#include <functional>

namespace tarnis::testing {

/// Generous: a loaded machine, or a sanitizer, makes everything ten times slower.
inline constexpr int timeoutMs = 60000;

/// A loop that waits: `for (Waiting waiting; !condition && waiting.next();)`.
class Waiting {
public:
    Waiting();
    /// Runs the calling thread's Qt events for a moment; false after timeoutMs.
    bool next();

private:
    QDeadlineTimer m_deadline;
};

/// Runs the calling thread's Qt events until `condition` holds; false after timeoutMs.
bool eventually(const std::function<bool()>& condition);
/// Waits without Qt events, so that nothing arrives that other threads have queued; false after timeoutMs.
bool eventuallyWithoutEvents(const std::function<bool()>& condition);

} // namespace tarnis::testing

/// For sources that include <QTest>. They evaluate their arguments many times, as QTRY_VERIFY and QTRY_COMPARE do,
/// which give up after five seconds: a loaded machine does reach them, and with Qt 6.8 they narrow integers.
#define TRY_VERIFY(condition)                                                                                          \
    do {                                                                                                               \
        for (tarnis::testing::Waiting waiting; !(condition) && waiting.next();) { }                                    \
        QVERIFY(condition);                                                                                            \
    } while (false)
#define TRY_VERIFY2(condition, description)                                                                            \
    do {                                                                                                               \
        for (tarnis::testing::Waiting waiting; !(condition) && waiting.next();) { }                                    \
        QVERIFY2(condition, description);                                                                              \
    } while (false)
#define TRY_COMPARE(actual, expected)                                                                                  \
    do {                                                                                                               \
        for (tarnis::testing::Waiting waiting; !((actual) == (expected)) && waiting.next();) { }                       \
        QCOMPARE(actual, expected);                                                                                    \
    } while (false)
