#include "support/japanese.h"

#include <atomic>

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"
#include "support/content_coding.h"

namespace {

// FA5C to FC4B in order, then 8145 twice (two positions without a character: the middle dot stands
// in), FA40 to FA49, 81CA, FA55, FA56, FA57.
constexpr char kLastBlock[] =
    "+lz6Xfpe+l/6YPph+mL6Y/pk+mX6Zvpn+mj6afpq+mv6bPpt+m76b/pw+nH6cvpz+nT6dfp2+nf6ePp5+nr6e/p8"
    "+n36fvqA+oH6gvqD+oT6hfqG+of6iPqJ+or6i/qM+o36jvqP+pD6kfqS+pP6lPqV+pb6l/qY+pn6mvqb+pz6nfqe"
    "+p/6oPqh+qL6o/qk+qX6pvqn+qj6qfqq+qv6rPqt+q76r/qw+rH6svqz+rT6tfq2+rf6uPq5+rr6u/q8+r36vvq/"
    "+sD6wfrC+sP6xPrF+sb6x/rI+sn6yvrL+sz6zfrO+s/60PrR+tL60/rU+tX61vrX+tj62fra+tv63Prd+t763/rg"
    "+uH64vrj+uT65frm+uf66Prp+ur66/rs+u367vrv+vD68fry+vP69Pr1+vb69/r4+vn6+vr7+vz7QPtB+0L7Q/tE"
    "+0X7RvtH+0j7SftK+0v7TPtN+077T/tQ+1H7UvtT+1T7VftW+1f7WPtZ+1r7W/tc+137Xvtf+2D7Yfti+2P7ZPtl"
    "+2b7Z/to+2n7avtr+2z7bftu+2/7cPtx+3L7c/t0+3X7dvt3+3j7eft6+3v7fPt9+377gPuB+4L7g/uE+4X7hvuH"
    "+4j7ifuK+4v7jPuN+477j/uQ+5H7kvuT+5T7lfuW+5f7mPuZ+5r7m/uc+537nvuf+6D7ofui+6P7pPul+6b7p/uo"
    "+6n7qvur+6z7rfuu+6/7sPux+7L7s/u0+7X7tvu3+7j7ufu6+7v7vPu9+777v/vA+8H7wvvD+8T7xfvG+8f7yPvJ"
    "+8r7y/vM+837zvvP+9D70fvS+9P71PvV+9b71/vY+9n72vvb+9z73fve+9/74Pvh++L74/vk++X75vvn++j76fvq"
    "++v77Pvt++777/vw+/H78vvz+/T79fv2+/f7+Pv5+/r7+/v8/ED8QfxC/EP8RPxF/Eb8R/xI/En8SvxLgUWBRfpA"
    "+kH6QvpD+kT6RfpG+kf6SPpJgcr6VfpW+lc=";
static_assert(sizeof kLastBlock == 1004 + 1);

std::atomic<const unsigned char*> _sjis_from_2022_lastblock{nullptr};

}  // namespace

bool Japanese::Iso2022ToShiftJis(const unsigned char* data, int length, DataBuffer& out, LogBase&) {
  return convertWhole(codecOf(50220).read, data, length, out);
}

bool Japanese::ShiftJisToIso2022(const unsigned char* data, int length, DataBuffer& out, LogBase&) {
  return convertWhole(codecOf(50220).write, data, length, out);
}

const unsigned char* Japanese::GetSjisFrom2022_LastBlock() {
  const unsigned char* list = _sjis_from_2022_lastblock.load(std::memory_order_acquire);
  if (list != nullptr) return list;
  unsigned int length = 0;
  const unsigned char* decoded =
      ContentCoding().decodeBase64(kLastBlock, sizeof kLastBlock - 1, &length);
  if (decoded == nullptr) return nullptr;
  // Of two threads that come here together one publishes its list and the other takes that.
  if (_sjis_from_2022_lastblock.compare_exchange_strong(list, decoded)) return decoded;
  delete[] decoded;
  return list;
}

void Japanese::releaseLastBlock() { delete[] _sjis_from_2022_lastblock.exchange(nullptr); }
