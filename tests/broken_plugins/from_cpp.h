/* What a plug-in in C needs of C++: arrays that a host can free, and exceptions. */
#ifndef TESTS_BROKEN_PLUGINS_FROM_CPP_H
#define TESTS_BROKEN_PLUGINS_FROM_CPP_H

#ifdef __cplusplus
#include <cstdint>
extern "C" {
#else
#include <stdint.h>
#endif

/* All 0, from new[]. */
float* new_floats(int length);
int32_t* new_integers(int length);

void throw_error(const char* what);
void throw_number(void);

#ifdef __cplusplus
}
#endif

#endif
