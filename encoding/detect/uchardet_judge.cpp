#include "encoding/detect/uchardet_judge.h"

#ifdef ENCCONV_HAVE_UCHARDET
#include <uchardet/uchardet.h>

#include <memory>
#include <new>
#include <type_traits>
#endif

namespace detection {

#ifdef ENCCONV_HAVE_UCHARDET
std::string askUchardet(std::span<const Piece> pieces) {
  struct Delete {
    void operator()(uchardet_t detector) const { uchardet_delete(detector); }
  };
  const std::unique_ptr<std::remove_pointer_t<uchardet_t>, Delete> detector(uchardet_new());
  if (detector == nullptr) throw std::bad_alloc();
  for (const Piece& piece : pieces) {
    const char* const bytes = reinterpret_cast<const char*>(piece.bytes.data());
    if (uchardet_handle_data(detector.get(), bytes, piece.bytes.size()) != 0) return {};
  }
  uchardet_data_end(detector.get());
  return uchardet_get_charset(detector.get());
}
#else
std::string askUchardet(std::span<const Piece>) { return {}; }
#endif

}  // namespace detection
