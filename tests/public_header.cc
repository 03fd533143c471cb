#include "tests/public_header.c"
