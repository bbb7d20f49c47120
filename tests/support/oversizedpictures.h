// For programs with cases that request pictures too large for the memory. Include it in one source of a program.
#pragma once

#ifdef __SANITIZE_ADDRESS__
/// With the sanitizer, such a picture must be null too, not an error.
extern "C" const char* __asan_default_options() // NOLINT(bugprone-reserved-identifier)
{
    return "allocator_may_return_null=1";
}
#endif
