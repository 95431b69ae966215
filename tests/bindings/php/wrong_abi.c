/* A library of another version of the interface, for the tests of the bindings. */
#include <stdint.h>

int32_t oxaqry_abi_version(void);
const char* oxaqry_version(void);

int32_t oxaqry_abi_version(void) { return 2; }
const char* oxaqry_version(void) { return "9.8.7"; }
