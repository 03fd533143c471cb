/* The version of px that a program is compiled with; PxVersion tells the one that it runs with. */
#ifndef PX_VERSION_H
#define PX_VERSION_H

#define PX_VERSION_MAJOR 0
#define PX_VERSION_MINOR 1
#define PX_VERSION_PATCH 0

/* In hexadecimal two digits for each, to be compared: 0x000100 is 0.1.0. */
#define PX_VERSION_NUMBER (PX_VERSION_MAJOR * 0x10000 + PX_VERSION_MINOR * 0x100 + PX_VERSION_PATCH)

/* The same as a text, "0.1.0". */
#define PX_VERSION                  \
  PX_VERSION_TEXT(PX_VERSION_MAJOR) \
  "." PX_VERSION_TEXT(PX_VERSION_MINOR) "." PX_VERSION_TEXT(PX_VERSION_PATCH)
#define PX_VERSION_TEXT(number) PX_VERSION_TEXT_OF(number)
#define PX_VERSION_TEXT_OF(number) #number

#endif
