// The one way in which tests wait: for a condition, while Qt's events run, with a limit that only a failure reaches.
#pragma once

#include <functional>

namespace tarnis::testing {

/// Generous: a loaded machine, or a sanitizer, makes everything ten times slower.
inline constexpr int timeoutMs = 60000;

/// Runs the calling thread's Qt events until `condition` holds; false after timeoutMs.
bool eventually(const std::function<bool()>& condition);
/// Waits without Qt events, so that nothing arrives that other threads have queued; false after timeoutMs.
bool eventuallyWithoutEvents(const std::function<bool()>& condition);

} // namespace tarnis::testing

/// For sources that include <QTest>. QTRY_VERIFY and QTRY_COMPARE of Qt give up after five seconds, which a loaded
/// machine does reach.
#define TRY_VERIFY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, tarnis::testing::timeoutMs)
#define TRY_VERIFY2(condition, description)                                                                            \
    QTRY_VERIFY2_WITH_TIMEOUT(condition, description, tarnis::testing::timeoutMs)
#define TRY_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, tarnis::testing::timeoutMs)
