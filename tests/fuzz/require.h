// What a fuzz target demands of the code that it feeds.
#pragma once

#include <cstdlib>

inline void require(bool holds) {
    if (!holds)
        std::abort();
}
