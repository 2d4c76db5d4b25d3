// What a program in C++ needs to build and run.
#include <encconv/encconv.h>
#include <encconv/records.h>

#include <iostream>

int main() {
  std::string output;
  encconv::StreamConverter stream("shift_jis", "utf-8");
  const bool streamed = stream.push("\x93", output) && stream.push("\xFA", output) &&
                        stream.finish(output) && output == "\xE6\x97\xA5";
  const encconv::Result whole = encconv::to_utf8("\x80 5", 1252);
  encconv::RecordReader records(*encconv::parse_record_format("fixed:3"));
  records.push("abcdef");
  const bool recorded = records.next() == encconv::RecordStep::record && records.record() == "abc";
  const bool ok = streamed && recorded && whole && whole.text == "\xE2\x82\xAC 5" &&
                  encconv::version() == ENCCONV_VERSION;
  std::cout << (ok ? "ok" : "wrong") << "\n";
  return ok ? 0 : 1;
}
