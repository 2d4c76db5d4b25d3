#include "apps/encconv/system/temporary_files.h"

namespace tool {

// The system itself takes temporary files away with the process, however that ends:
// files::openTemporary() asks it to.
int watchTemporary(const char*) { return -1; }
void forgetTemporary(int) {}
void removeTemporariesOnSignals() {}

}  // namespace tool
