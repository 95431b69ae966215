// A shared library of a later version of the interface.
int oxaqry_abi_version(void) { return 2; }
const char* oxaqry_version(void) { return "9.1.0"; }
const char* oxaqry_last_error(void) { return ""; }
