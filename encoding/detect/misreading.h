// One step of what garbles text.
#ifndef ENCODING_DETECT_MISREADING_H_
#define ENCODING_DETECT_MISREADING_H_

namespace detection {

// A text in one encoding that was read as if it were in another.
struct Misreading {
  int written = 0;  // the code page that its bytes were in
  int read = 0;     // the one that they were taken for

  bool operator==(const Misreading&) const = default;
};

}  // namespace detection

#endif  // ENCODING_DETECT_MISREADING_H_
