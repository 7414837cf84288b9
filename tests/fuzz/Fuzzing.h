#pragma once

#include <QString>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What every target has: libFuzzer calls it with one input after the other.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

/// Ends the run when something that must hold does not; libFuzzer then keeps the input.
inline void Require(bool holds, const char *what, QStringView found = {})
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n%s\n", what, found.toUtf8().constData());
    std::abort();
}
