/**
 * @file
 * Marks what the library shows; everything else in it is hidden.
 */
#ifndef ENCCONV_EXPORT_H_
#define ENCCONV_EXPORT_H_

#if defined(__GNUC__)
/** A function or class of the interface. */
#define ENCCONV_API __attribute__((visibility("default")))
#else
#define ENCCONV_API
#endif

#endif /* ENCCONV_EXPORT_H_ */
