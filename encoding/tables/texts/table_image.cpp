#include "encoding/tables/texts/table_image.h"

#include "support/content_coding.h"
#include "support/norvane_bzip2.h"
#include "support/zv_base.h"

namespace {

// Zero bytes behind the image. Readers go up to the terminators of its sections; in an image
// without them the last record reaches at most 3 bytes past the end, and the terminators that
// follow it take at most 5 more.
constexpr unsigned char kPadding[8] = {};

}  // namespace

void unpackTableImage(const char* tableText, DataBuffer& image) {
  DataBuffer decoded;
  const char format = tableText[0];
  const char* base64 = tableText + 1;
  if (!ContentCoding().decodeBase64ToDb(base64, static_cast<unsigned int>(zvStrLen(base64)),
                                        decoded)) {
    if (decoded.hasFailed()) image.latchFailure();
    return;
  }
  if (format == 'x') {
    image.append(decoded);
  } else {
    NorvaneBzip2().unBzipWithHeader(decoded, image, nullptr);
  }
  if (image.getSize() != 0) image.append(kPadding, sizeof kPadding);
}
