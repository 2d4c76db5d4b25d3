/* The calls of libencconv_iconv: those of iconv(3), and those of the other GNU library of that
 * name. A program that is compiled with the C library's own <iconv.h> needs no other header: it
 * links with -lencconv_iconv, or is started with LD_PRELOAD=libencconv_iconv.so.
 *
 * Any thread may call any function; a descriptor belongs to one thread at a time. */
#ifndef ENCCONV_ICONV_H_
#define ENCCONV_ICONV_H_

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifndef _ICONV_H
typedef void* iconv_t;
#endif

/* A descriptor for text from one encoding to another, or (iconv_t)-1 with errno set to EINVAL (a
 * name is not known) or ENOMEM. The names are those of the C library of GNU and all that encconv
 * knows; "" and "char" are the encoding of the locale. Behind the name of the target may stand, in
 * any case and order, //TRANSLIT, //IGNORE and //NON_IDENTICAL_DISCARD. */
iconv_t iconv_open(const char* tocode, const char* fromcode);

/* Converts, and moves both pointers behind what is done. Returns how many characters were not
 * converted as they are, or (size_t)-1 with errno set to E2BIG (the room is used up), EILSEQ (at
 * the input is what is no text or has no place) or EINVAL (the input ends within a character).
 * Without input it ends the text: writes what leaves the shift state, if there is room to write to,
 * and begins anew. */
size_t iconv(iconv_t cd, char** inbuf, size_t* inbytesleft, char** outbuf, size_t* outbytesleft);

/* Releases a descriptor; 0. */
int iconv_close(iconv_t cd);

/* The same under the names of the other library; //IGNORE leaves out without an error there. */
iconv_t libiconv_open(const char* tocode, const char* fromcode);
size_t libiconv(iconv_t cd, char** inbuf, size_t* inbytesleft, char** outbuf, size_t* outbytesleft);
int libiconv_close(iconv_t cd);

/* Asks or tells a descriptor; 0, or -1 with errno set to EINVAL. The argument is an int, which is
 * read or written. ICONV_TRIVIALP: whether nothing but a copy is made. */
#define ICONV_TRIVIALP 0
#define ICONV_GET_TRANSLITERATE 1
#define ICONV_SET_TRANSLITERATE 2
#define ICONV_GET_DISCARD_ILSEQ 3
#define ICONV_SET_DISCARD_ILSEQ 4
int iconvctl(iconv_t cd, int request, void* argument);
int libiconvctl(iconv_t cd, int request, void* argument);

/* Calls a function once for each encoding, with all its names, until it returns something else than
 * 0. */
void iconvlist(int (*do_one)(unsigned int namescount, const char* const* names, void* data),
               void* data);
void libiconvlist(int (*do_one)(unsigned int namescount, const char* const* names, void* data),
                  void* data);

/* The preferred name of an encoding, or the name itself where it is not known. */
const char* iconv_canonicalize(const char* name);

#ifdef __cplusplus
}
#endif

#endif /* ENCCONV_ICONV_H_ */
