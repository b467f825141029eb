// What a fuzz target demands: a property that does not hold ends the run as a crash does.
#pragma once

#include <cstdio>
#include <cstdlib>

#define VORN_FUZZ_CHECK(property)                                                  \
  do {                                                                             \
    if (!(property)) {                                                             \
      std::fprintf(stderr, "%s:%d: Failure: %s\n", __FILE__, __LINE__, #property); \
      std::abort();                                                                \
    }                                                                              \
  } while (false)
