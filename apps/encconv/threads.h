// The threads that the tool works on.
#ifndef APPS_ENCCONV_THREADS_H_
#define APPS_ENCCONV_THREADS_H_

#include <cstddef>
#include <functional>

namespace tool {

// Runs work on so many threads at once, this one among them, or on as many as there are to be had;
// returns when all have done it. What is thrown by one of them is thrown here behind that, the first
// of several.
void runOnThreads(std::size_t count, const std::function<void()>& work);

}  // namespace tool

#endif  // APPS_ENCCONV_THREADS_H_
