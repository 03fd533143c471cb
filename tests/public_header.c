/* The public headers, as a host in C sees them; public_header.cc compiles the same in C++. */
#include "px/output_routines.h"
#include "px/vcard_io.h"
#include "px/vcrd.h"

/* The one record of the interface that the filter itself never makes. */
typedef char SizeOfInfo[sizeof(VcardInfo) == 30 ? 1 : -1];
