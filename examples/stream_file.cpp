// stream_file FROM TO [TREATMENT] <INPUT >OUTPUT: converts input of any size in constant memory.
#include <cstdio>
#include <string>
#include <vector>

#include "encconv/encconv.h"

namespace {

bool write(std::string& output) {
  const bool ok = std::fwrite(output.data(), 1, output.size(), stdout) == output.size();
  output.clear();
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  encconv::Options options;
  if (argc < 3 || argc > 4 || (argc == 4 && !encconv::parse_on_error(argv[3], options))) {
    std::fprintf(stderr, "usage: stream_file FROM TO [stop|drop|substitute|hex|raw]\n");
    return 2;
  }
  encconv::StreamConverter stream(argv[1], argv[2], options);
  std::vector<char> piece(64 * 1024);
  std::string output;
  bool ok = stream.status() == encconv::Status::ok;
  while (ok) {
    const std::size_t size = std::fread(piece.data(), 1, piece.size(), stdin);
    if (size == 0) break;
    ok = stream.push({piece.data(), size}, output);
    ok = write(output) && ok;
  }
  ok = ok && stream.finish(output);
  ok = write(output) && ok;
  if (!ok) std::fprintf(stderr, "stream_file: %s\n", encconv::describe(stream.status()).data());
  if (const auto problem = stream.first_problem()) {
    std::fprintf(stderr, "stream_file: %llu pieces not converted, the first in line %llu\n",
                 static_cast<unsigned long long>(stream.problem_count()),
                 static_cast<unsigned long long>(problem->line));
  }
  return ok ? 0 : 1;
}
