#include "encoding/detect/trial.h"

#include <new>

#include "encoding/codecs/encoding_row.h"
#include "encoding/codecs/mapping_files.h"

namespace detection {

bool Trial::read(std::span<const Piece> pieces, int codePage) {
  const EncodingRow* const row = findEncodingRow(codePage);
  if (row != nullptr && !hasImages(*row)) return false;
  StreamSettings settings;
  settings.from = codePage;
  settings.to = 1200;
  settings.treatment = StreamTreatment::kDrop;
  m_out.clear();
  m_malformed = 0;
  for (const Piece& piece : pieces) {
    StreamStatus status = m_stream.begin(settings);
    if (status == StreamStatus::kNoDecoder) return false;
    if (status == StreamStatus::kGood) {
      status = m_stream.push(piece.bytes.data(), piece.bytes.size(), m_out);
    }
    if (status == StreamStatus::kGood && !piece.isCut) status = m_stream.finish(m_out);
    if (status != StreamStatus::kGood) throw std::bad_alloc();  // nothing else can be in the way
    m_malformed += m_stream.errorCount();
  }
  return true;
}

}  // namespace detection
