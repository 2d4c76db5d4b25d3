/**
 * @file
 * Marks what the library shows; everything else in it is hidden. interface/symbols.txt lists what
 * that comes to.
 */
#ifndef ENCCONV_EXPORT_H_
#define ENCCONV_EXPORT_H_

#if defined(__GNUC__)
/** A function or class of the interface. */
#define ENCCONV_API __attribute__((visibility("default")))
/** A part of a class of the interface that is nobody else's. */
#define ENCCONV_HIDDEN __attribute__((visibility("hidden")))
#else
#define ENCCONV_API
#define ENCCONV_HIDDEN
#endif

#endif /* ENCCONV_EXPORT_H_ */
