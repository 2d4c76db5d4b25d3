// Large pages for large texts.
#ifndef SUPPORT_HUGE_PAGES_H_
#define SUPPORT_HUGE_PAGES_H_

#include <cstddef>

// Asks the system to back a block that is about to be written with large pages, where it has them:
// touching the small ones for the first time takes longer than converting into them. Blocks of less
// than 4 MiB are left alone. Nothing but speed depends on it. Any thread may call.
void preferHugePages(void* block, std::size_t size);

#endif  // SUPPORT_HUGE_PAGES_H_
