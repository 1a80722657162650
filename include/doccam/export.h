/* Marks what the shared library exports; everything else is hidden. */
#ifndef DOCCAM_EXPORT_H
#define DOCCAM_EXPORT_H

#define DOCCAM_API __attribute__((visibility("default")))

#endif
