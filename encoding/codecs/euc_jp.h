// EUC-JP with JIS X 0212; the codec itself is read through its row.
#ifndef ENCODING_CODECS_EUC_JP_H_
#define ENCODING_CODECS_EUC_JP_H_

// Frees the tables that the codec made on first use. Must not overlap any conversion.
void releaseEucJpTables();

#endif  // ENCODING_CODECS_EUC_JP_H_
