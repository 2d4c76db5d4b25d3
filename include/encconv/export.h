/**
 * @file
 * Marks what the library shows; everything else in it is hidden. interface/symbols.txt lists what
 * that comes to.
 */
#ifndef ENCCONV_EXPORT_H_
#define ENCCONV_EXPORT_H_

#if defined(_WIN32)
/* Functions of a DLL are found without a word; classes and what is faster with one are not. The
   CMake targets encconv::shared and encconv::encconv say ENCCONV_USES_DLL where it is one. */
#if defined(ENCCONV_BUILDS_DLL)
#define ENCCONV_API __declspec(dllexport)
#elif defined(ENCCONV_USES_DLL)
#define ENCCONV_API __declspec(dllimport)
#else
#define ENCCONV_API
#endif
#define ENCCONV_HIDDEN
#elif defined(__GNUC__)
/** A function or class of the interface. */
#define ENCCONV_API __attribute__((visibility("default")))
/** A part of a class of the interface that is nobody else's. */
#define ENCCONV_HIDDEN __attribute__((visibility("hidden")))
#else
#define ENCCONV_API
#define ENCCONV_HIDDEN
#endif

#endif /* ENCCONV_EXPORT_H_ */
