// For programs whose cases ask for pictures beyond the memory. Include it in one source of a program.
#pragma once

#ifdef __SANITIZE_ADDRESS__
/// Such a picture is null there too, not a fault of the program.
extern "C" const char* __asan_default_options() // NOLINT(bugprone-reserved-identifier)
{
    return "allocator_may_return_null=1";
}
#endif
