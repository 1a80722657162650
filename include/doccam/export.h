/* Marks the symbols that the shared library exports; all others are hidden. */
#ifndef DOCCAM_EXPORT_H
#define DOCCAM_EXPORT_H

#define DOCCAM_API __attribute__((visibility("default")))

#endif
