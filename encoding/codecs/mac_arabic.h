// The pre-pass of Mac Arabic (code page 10004) text.
#ifndef ENCODING_CODECS_MAC_ARABIC_H_
#define ENCODING_CODECS_MAC_ARABIC_H_

#include "support/string_buffer.h"

// Mac Arabic has each of the digits and much of the punctuation twice, once for each writing
// direction. Rewrites length bytes in place so that the table of 10004 can decode them: each run
// of two or more right-to-left bytes is reversed, and the right-to-left forms are folded into
// ASCII. scratch holds one run at a time. False, with the text half rewritten, when memory is
// short.
bool rewriteMacArabic(unsigned char* text, unsigned int length, StringBuffer& scratch);

// True for the bytes that the pre-pass takes as written right to left.
bool isMacArabicRightToLeft(unsigned char byte);

#endif  // ENCODING_CODECS_MAC_ARABIC_H_
