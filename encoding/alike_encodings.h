// Encodings that have several numbers.
#ifndef ENCODING_ALIKE_ENCODINGS_H_
#define ENCODING_ALIKE_ENCODINGS_H_

// The lowest number under which streams convert just as under this one: the number itself, unless
// rows say the same of another encoding. Reads the table texts, which takes a moment for
// double-byte encodings. Any thread may call.
int firstAlikeCodePage(int codePage);

#endif  // ENCODING_ALIKE_ENCODINGS_H_
