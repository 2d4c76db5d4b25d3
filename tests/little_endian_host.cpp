// Linked to tests of what EncConvert does: they say what it does on a little-endian host, and have
// one of another kind answer as such. What it does on a big-endian host big_endian_test says.
#include "support/zv_base.h"

namespace {
[[maybe_unused]] const bool g_answersSo = (zvSetBigEndianForTesting(false), true);
}
