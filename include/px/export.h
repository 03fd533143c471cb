/* Marks what a shared library of px shows to others. Everything else is hidden. */
#ifndef PX_EXPORT_H
#define PX_EXPORT_H

#if defined(__GNUC__)
#define PX_API __attribute__((visibility("default")))
#else
#define PX_API
#endif

#endif
