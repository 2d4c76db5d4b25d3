// Targets with a mapping table, and what the targets of streams have in common.
#include <new>

#include "encoding/stream/target.h"
#include "encoding/stream/target_kinds.h"

bool StreamTarget::encodeBytes(const unsigned char* bytes, std::uint32_t count, Behind /*behind*/,
                               DataBuffer& out, EncodeResult& result) {
  result.used = count;
  return out.append(bytes, count);
}

bool StreamTarget::toBytes(const std::uint16_t* units, std::uint32_t count, DataBuffer& bytes,
                           bool& fits) {
  EncodeResult result;
  const bool ok = encode(units, count, Behind::kNothing, bytes, result);
  fits = result.misfits.isEmpty();
  return ok;
}

bool StreamTarget::holds(const std::uint16_t* units, std::uint32_t count, bool& fits) {
  DataBuffer scratch;
  return toBytes(units, count, scratch, fits);
}

bool StreamTarget::leaveShift(DataBuffer& /*out*/) { return true; }

namespace {

// UTF-8 and the code pages with a table.
class TableTarget final : public StreamTarget {
 public:
  TableTarget(int codePage, EngineLegs& legs) : m_codePage(codePage), m_encoder(codePage, legs) {}

  bool encode(const std::uint16_t* units, std::uint32_t count, Behind /*behind*/, DataBuffer& out,
              EncodeResult& result) override {
    return m_encoder.encode(units, count, out, result);
  }
  int bytesCodePage() const override { return m_codePage; }

 private:
  int m_codePage;
  TextEncoder m_encoder;
};

}  // namespace

std::unique_ptr<StreamTarget> makeTableTarget(int codePage, EngineLegs& legs) {
  return std::unique_ptr<StreamTarget>(new (std::nothrow) TableTarget(codePage, legs));
}
