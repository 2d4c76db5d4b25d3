// The kernels: every form against the scalar one, and the scalar one against the standards.
#include "encoding/kernels/kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "encoding/kernels/cpu_dispatch.h"
#include "tests/guarded_memory.h"

namespace {

using fast::KernelResult;
using fast::Kernels;
using std::string;
using Byte = unsigned char;

std::mt19937& random() {
  static std::mt19937 engine(20240501);
  return engine;
}
unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random()() % limit); }
unsigned int between(unsigned int low, unsigned int high) { return low + below(high - low + 1); }

string unitText(unsigned int unit) {
  return {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
}

using Run = std::function<KernelResult(const Kernels&, const Byte*, const Byte*, Byte*, Byte*)>;
// A random character of one of ten kinds. Kind 9 is one that stops the kernel, or garbage.
using MakeCharacter = std::function<string(unsigned int kind)>;

struct Case {
  const char* name;
  Run run;
  MakeCharacter character;
};

const std::vector<string> badUtf8 = {"\x80",         "\xC0\x80",         "\xC1\x81",
                                     "\xC3",         "\xE0\x9F\xBF",     "\xE2\x82",
                                     "\xED\xA0\x80", "\xED\xBF\xBF",     "\xF0\x8F\xBF\xBF",
                                     "\xF0\x9F\x98", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80",
                                     "\xFF"};

string utf8Character(unsigned int kind) {
  const auto continuation = [] { return static_cast<char>(between(0x80, 0xBF)); };
  switch (kind) {
    case 9:
      return badUtf8[below(static_cast<unsigned int>(badUtf8.size()))];
    case 8:
      return {'\xF1', continuation(), continuation(), continuation()};
    case 7:
      return below(2) != 0 ? "\xF4\x8F\xBF\xBF" : "\xF0\x90\x80\x80";
    case 6:
      return {static_cast<char>(between(0xE1, 0xEC)), continuation(), continuation()};
    case 5:
      return below(2) != 0 ? "\xED\x9F\xBF" : "\xE0\xA0\x80";
    case 4:
    case 3:
      return {static_cast<char>(between(0xC2, 0xDF)), continuation()};
    default:
      return {static_cast<char>(below(0x80))};
  }
}

string utf16Character(unsigned int kind) {
  switch (kind) {
    case 9:
      return unitText(below(2) != 0 ? 0 : between(0xD800, 0xDFFF));
    case 8:
    case 7:
      return unitText(between(0xD800, 0xDBFF)) + unitText(between(0xDC00, 0xDFFF));
    case 6:
      return unitText(below(2) != 0 ? between(0x800, 0xD7FF) : between(0xE000, 0xFFFF));
    case 5:
      return unitText(between(0x4E00, 0x4EFF));
    case 4:
    case 3:
      return unitText(between(0x80, 0x7FF));
    default:
      return unitText(between(1, 0x7F));
  }
}

string utf32Character(unsigned int kind) {
  static constexpr unsigned int bad[] = {0xD800, 0xDFFF, 0x110000, 0x1D800, 0xFFFF0041};
  unsigned int scalar = kind < 5 ? below(0xD800) : kind < 7 ? between(0xE000, 0x10FFFF) : 'a';
  if (kind == 9) scalar = bad[below(5)];
  return unitText(scalar & 0xFFFF) + unitText(scalar >> 16);
}

string byteCharacter(unsigned int kind) {
  if (kind == 9) return {static_cast<char>(below(2) * below(256))};
  return {static_cast<char>(kind < 4 ? between(1, 127) : between(1, 255))};
}

string pairCharacter(unsigned int kind) {
  if (kind < 4) return byteCharacter(0);
  if (kind > 7) return byteCharacter(9);
  return {static_cast<char>(kind < 7 ? between(0x81, 0x9F) : between(0xE0, 0xFC)),
          static_cast<char>(between(0x40, 0xFC))};
}

// Words between shifts, and what is right on either side of them.
string shiftedCharacter(unsigned int kind) {
  const auto pair = [] {
    const unsigned int first = below(9) == 0 ? 0x21 : between(0x30, 0x7E);
    return string{static_cast<char>(first), static_cast<char>(between(0x21, 0x7E))};
  };
  static const string bad[] = {"\x1B",         "\x80",         "\xA1\xA1",    "\x0E\x22\x21",
                               "\x0E\x30\x0F", "\x0E\x30\x20", "\x0E\x7F\x30"};
  switch (kind) {
    case 9:
      return bad[below(7)];
    case 8:
      return below(2) != 0 ? "\x0E" : "\x0F";
    case 7:
      return string("\x0E") + pair();
    case 6:
    case 5:
    case 4: {
      string word = "\x0E";
      for (unsigned int left = between(1, 4); left != 0; --left) word += pair();
      return word += "\x0F ";
    }
    default:
      return pair();
  }
}

// Random tables: nearly everything is mapped, to characters of all lengths.
template <class Table>
struct Tables {
  explicit Tables(bool isAscii) : table(std::make_unique<Table>()) { fill(*table, isAscii); }
  std::shared_ptr<Table> table;

  static std::uint16_t unit() {
    const string character = utf16Character(below(7));
    return static_cast<std::uint16_t>(static_cast<Byte>(character[0]) |
                                      static_cast<Byte>(character[1]) << 8);
  }
  static void fill(fast::SingleByteDecoder& table, bool isAscii) {
    for (unsigned int i = 0; i < 256; ++i) {
      // ASCII, if in another order.
      table.units[i] = i < 0x80 ? static_cast<std::uint16_t>(isAscii ? i : i ^ 1) : unit();
    }
    table.units[0] = table.units[0x9B] = 0;
    table.prepare();
  }
  static void fill(fast::ByteMap& table, bool isAscii) {
    for (unsigned int i = 0; i < 256; ++i) {
      table.bytes[i] = static_cast<std::uint8_t>(isAscii && i < 0x80 ? i : between(1, 255));
    }
    table.bytes[0] = table.bytes[0x9B] = 0;
  }
  static void fill(fast::SingleByteEncoder& table, bool isAscii) {
    for (unsigned int i = 0; i < 65536; ++i) {
      table.bytes[i] = static_cast<std::uint8_t>(isAscii && i < 0x80 ? i : between(1, 255));
    }
    // As in the most western code pages.
    for (unsigned int i = 0xA0; isAscii && i < 0x100; ++i)
      table.bytes[i] = static_cast<std::uint8_t>(i);
    for (unsigned int i = 0xD800; i < 0xD900; ++i) table.bytes[i] = 0;
    table.bytes[0] = 0;
    table.prepare();
  }
  static void fill(fast::DoubleByteDecoder& table, bool withHoles) {
    for (unsigned int i = 0x4000; i < 0xFE00; ++i) {
      const bool isLead = (i & 0xFF) > 0xDF || ((i & 0xFF) > 0x80 && (i & 0xFF) < 0xA0);
      if (isLead && !(withHoles && below(20) == 0)) table.units[i] = unit();
    }
    for (unsigned int i = 0x80; i < 0xF0; ++i) table.singles[i] = unit();
    table.prepare();
  }
  static void fill(fast::DoubleByteEncoder& table, bool isAscii) {
    for (unsigned int i = 0; i < 65536; ++i) {
      const unsigned int code = below(4) != 0 ? between(0x100, 0xFFFF) : between(1, 0xFF);
      table.codes[i] = static_cast<std::uint16_t>(isAscii && i < 0x80 ? i : code);
    }
    for (unsigned int i = 0xD800; i < 0xD900; ++i) table.codes[i] = 0;
    table.codes[0] = 0;
    table.prepare();
  }
};

std::vector<Case> cases() {
  std::vector<Case> result;
  const auto withoutTable = [&](const char* name, fast::Kernel* Kernels::*member,
                                const MakeCharacter& character) {
    result.push_back({name,
                      [member](const Kernels& form, const Byte* in, const Byte* inEnd, Byte* out,
                               Byte* outEnd) { return (form.*member)(in, inEnd, out, outEnd); },
                      character});
  };
  withoutTable("utf8ToUtf16", &Kernels::utf8ToUtf16, utf8Character);
  withoutTable("utf16ToUtf8", &Kernels::utf16ToUtf8, utf16Character);
  withoutTable("swapUtf16", &Kernels::swapUtf16, utf16Character);
  withoutTable("utf32ToUtf16", &Kernels::utf32ToUtf16, utf32Character);
  withoutTable("utf16ToUtf32", &Kernels::utf16ToUtf32, utf16Character);
  withoutTable("utf8ToUtf32", &Kernels::utf8ToUtf32, utf8Character);
  withoutTable("utf32ToUtf8", &Kernels::utf32ToUtf8, utf32Character);
  result.push_back(
      {"wellFormedUtf8",
       [](const Kernels& form, const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd) {
         const Byte* const seenEnd = in + std::min(inEnd - in, outEnd - out);
         const Byte* const stop = form.wellFormedUtf8(in, seenEnd);
         return fast::KernelResult{stop, std::copy(in, stop, out)};
       },
       utf8Character});
  // What follows on the last call goes on in its state.
  struct Reached {
    const Byte* place = nullptr;
    bool inPairs = false;
  };
  result.push_back(
      {"unshiftPairs",
       [reached = std::make_shared<Reached>()](const Kernels& form, const Byte* in,
                                               const Byte* inEnd, Byte* out, Byte* outEnd) {
         if (in != reached->place) *reached = {};
         const KernelResult done = form.unshiftPairs(reached->inPairs, in, inEnd, out, outEnd);
         reached->place = done.in;
         return done;
       },
       shiftedCharacter});
  const auto withTable = [&]<class Table>(const char* name,
                                          fast::TableKernel<Table>* Kernels::*member,
                                          const MakeCharacter& character) {
    for (const bool isAscii : {true, false}) {
      result.push_back(
          {name,
           [member, table = Tables<Table>(isAscii).table](
               const Kernels& form, const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd) {
             return (form.*member)(*table, in, inEnd, out, outEnd);
           },
           character});
    }
  };
  withTable("singleByteToUtf16", &Kernels::singleByteToUtf16, byteCharacter);
  withTable("singleByteToUtf8", &Kernels::singleByteToUtf8, byteCharacter);
  withTable("mapBytes", &Kernels::mapBytes, byteCharacter);
  withTable("utf16ToSingleByte", &Kernels::utf16ToSingleByte, utf16Character);
  withTable("doubleByteToUtf16", &Kernels::doubleByteToUtf16, pairCharacter);
  withTable("utf16ToDoubleByte", &Kernels::utf16ToDoubleByte, utf16Character);
  return result;
}

// Runs of characters of few kinds, of at least size bytes; every second text is without bad ones.
string randomText(const MakeCharacter& character, size_t size) {
  string text;
  const bool clean = below(2) != 0;
  while (text.size() < size) {
    const unsigned int low = below(9);
    const unsigned int high = between(low, 8);
    for (unsigned int left = between(1, 90); left != 0; --left) {
      text += character(!clean && below(50) == 0 ? 9 : between(low, high));
    }
  }
  return text;
}

// Converts with fresh output space of random size for each call, until a call that had enough space
// makes no progress.
string convertInPieces(const Case& test, const Kernels& form, const Byte* in, const Byte* inEnd,
                       const GuardedMemory& memory, const Byte*& stop) {
  string output;
  for (;;) {
    const unsigned int space =
        below(3) == 0 ? below(fast::kKernelSlack) : between(fast::kKernelSlack, 400);
    Byte* const out = memory.end() - space;
    const KernelResult result = test.run(form, in, inEnd, out, memory.end());
    output.append(reinterpret_cast<char*>(out), static_cast<size_t>(result.out - out));
    const bool isStuck = result.in == in && space >= fast::kKernelSlack;
    in = stop = result.in;
    if (isStuck) return output;
  }
}

// The text at either end of memory between guard pages, so that both limits are watched.
template <class Use>
void atBothEnds(const string& text, Use use) {
  static const GuardedMemory input(8192);
  for (Byte* in : {input.begin(), input.end() - text.size()}) {
    std::copy(text.begin(), text.end(), in);
    use(in, in + text.size());
  }
}

void compareWithScalar(const Case& test, const Kernels& form, const string& text) {
  static const GuardedMemory output(65536);
  static const GuardedMemory expected(65536);
  atBothEnds(text, [&](const Byte* in, const Byte* inEnd) {
    const KernelResult wanted =
        test.run(fast::scalarKernels(), in, inEnd, expected.begin(), expected.end());
    const auto size = static_cast<size_t>(wanted.out - expected.begin());
    const string wantedText(reinterpret_cast<char*>(expected.begin()), size);

    const KernelResult got = test.run(form, in, inEnd, output.begin(), output.end());
    const string gotText(reinterpret_cast<char*>(output.begin()),
                         static_cast<size_t>(got.out - output.begin()));
    ASSERT_EQ(got.in - in, wanted.in - in) << test.name << " of " << form.name;
    ASSERT_TRUE(gotText == wantedText) << test.name << " of " << form.name;

    const Byte* stop = in;
    ASSERT_TRUE(convertInPieces(test, form, in, inEnd, output, stop) == wantedText)
        << test.name << " of " << form.name;
    ASSERT_EQ(stop - in, wanted.in - in) << test.name << " of " << form.name;
  });
}

class KernelsTest : public testing::TestWithParam<const Kernels*> {
 protected:
  const Kernels* const m_form = GetParam();
};

TEST_P(KernelsTest, EqualsTheScalarForm) {
  static const std::vector<Case> all = cases();
  for (const Case& test : all) {
    for (unsigned int size = 0; size <= 200; ++size) {
      for (int round = 0; round < 10; ++round) {
        const string text = randomText(test.character, size).substr(0, size);
        ASSERT_NO_FATAL_FAILURE(compareWithScalar(test, *m_form, text));
      }
    }
    for (int round = 0; round < 200; ++round) {
      const string text = randomText(test.character, 1500).substr(0, 1500 + below(20));
      ASSERT_NO_FATAL_FAILURE(compareWithScalar(test, *m_form, text));
    }
    // Each kind of stop at each place of a window, among characters of each length.
    for (unsigned int kind = 0; kind < 9; ++kind) {
      for (unsigned int before = 0; before < 70; ++before) {
        string text;
        for (unsigned int i = 0; i < 140; ++i) text += test.character(i == before ? 9 : kind);
        ASSERT_NO_FATAL_FAILURE(compareWithScalar(test, *m_form, text));
      }
    }
  }
}

TEST_P(KernelsTest, FindsWhatIsNotPairedInUtf16) {
  for (unsigned int round = 0; round < 3000; ++round) {
    string text;
    size_t wanted = string::npos;
    for (unsigned int left = below(round < 1000 ? 40 : 200); left != 0; --left) {
      if (wanted == string::npos && below(200) == 0) {
        wanted = text.size();
        text += unitText(between(0xDC00, 0xDFFF));
      }
      if (wanted == string::npos && below(200) == 0) {
        wanted = text.size();
        text += unitText(between(0xD800, 0xDBFF));
        if (below(2) != 0) break;
        text += unitText(below(0xDC00));
      }
      text += utf16Character(below(9));
    }
    if (below(2) != 0) {
      if (wanted == string::npos) wanted = text.size();
      text += 'a';
    }
    atBothEnds(text, [&](const Byte* in, const Byte* inEnd) {
      ASSERT_EQ(static_cast<size_t>(m_form->pairedUtf16(in, inEnd) - in),
                std::min(wanted, text.size()))
          << testing::PrintToString(text);
    });
  }
}

template <class Value>
void expectCount(fast::Count<Value>* kernel, const string& text) {
  for (const Value value :
       {Value{'\n'}, static_cast<Value>(0x0A000000u >> (32 - sizeof(Value) * 8)), Value{0},
        static_cast<Value>(~Value{0})}) {
    std::uint64_t wanted = 0;
    for (size_t i = 0; i + sizeof value <= text.size(); i += sizeof value) {
      Value found = 0;  // little endian
      for (size_t byte = sizeof value; byte-- != 0;) {
        found =
            static_cast<Value>(found << 8 % (8 * sizeof value) | static_cast<Byte>(text[i + byte]));
      }
      wanted += found == value ? 1 : 0;
    }
    atBothEnds(text, [&](const Byte* in, const Byte* inEnd) {
      ASSERT_EQ(kernel(in, inEnd, value), wanted) << sizeof value << " bytes, of " << text.size();
    });
  }
}

TEST_P(KernelsTest, CountsValues) {
  for (unsigned int round = 0; round < 1000; ++round) {
    string text(round < 300 ? round : below(8192), '\0');
    // Mostly of one byte, so that the numbers of equal values become large.
    for (char& byte : text) byte = below(16) != 0 ? '\n' : static_cast<char>(below(3) - 1);
    for (char& byte : text) byte = round % 3 == 0 && byte == '\n' ? '\xFF' : byte;
    for (size_t i = 0; round % 3 == 1 && i < text.size(); ++i) {
      if (i % (1u << round % 3) != 0) text[i] = '\0';
    }
    expectCount(m_form->countByte, text);
    expectCount(m_form->countUnit, text);
    expectCount(m_form->countScalar, text);
  }
}

TEST_P(KernelsTest, MeasuresUtf8) {
  constexpr unsigned int kLengths[][2] = {{0x7F, 1},   {0x80, 2},   {0x7FF, 2},  {0x800, 3},
                                          {0xD7FF, 3}, {0xD800, 2}, {0xDFFF, 2}, {0xE000, 3},
                                          {0xFFFF, 3}, {0, 1}};
  for (unsigned int count = 0; count < 300; ++count) {
    string text;
    std::uint64_t wanted = 0;
    for (unsigned int i = 0; i < count; ++i) {
      const auto& [unit, length] = kLengths[below(std::size(kLengths))];
      text += unitText(unit);
      wanted += length;
    }
    if (count % 2 != 0) text += '\0';  // half a unit
    atBothEnds(text, [&](const Byte* in, const Byte* inEnd) {
      ASSERT_EQ(m_form->utf8Length(in, inEnd), wanted) << count;
    });
  }
}

INSTANTIATE_TEST_SUITE_P(Forms, KernelsTest, testing::ValuesIn(fast::runnableKernels()),
                         [](const auto& info) { return string(info.param->name); });

string convert(fast::Kernel* kernel, const string& text) {
  std::vector<Byte> out(text.size() * 4 + fast::kKernelSlack);
  const auto* in = reinterpret_cast<const Byte*>(text.data());
  const KernelResult result = kernel(in, in + text.size(), out.data(), out.data() + out.size());
  EXPECT_EQ(result.in, in + text.size());
  return {reinterpret_cast<char*>(out.data()), static_cast<size_t>(result.out - out.data())};
}

TEST(ScalarKernelsTest, CarryEveryScalarValueThroughAllTransforms) {
  const Kernels& form = fast::scalarKernels();
  string utf32;
  for (unsigned int scalar = 1; scalar < 0x110000; ++scalar) {
    if (scalar < 0xD800 || scalar > 0xDFFF) {
      utf32 += unitText(scalar & 0xFFFF) + unitText(scalar >> 16);
    }
  }
  const string utf16 = convert(form.utf32ToUtf16, utf32);
  const string utf8 = convert(form.utf16ToUtf8, utf16);
  EXPECT_EQ(utf16.size(), (0xFFFF - 0x800) * 2 + 0x100000 * 4);
  EXPECT_EQ(utf8.size(), 0x7F + 0x780 * 2 + (0xF800 - 0x800) * 3 + 0x100000 * 4);
  EXPECT_TRUE(convert(form.utf8ToUtf16, utf8) == utf16);
  EXPECT_TRUE(convert(form.utf16ToUtf32, utf16) == utf32);
  EXPECT_TRUE(convert(form.utf8ToUtf32, utf8) == utf32);
  EXPECT_TRUE(convert(form.utf32ToUtf8, utf32) == utf8);
  EXPECT_EQ(convert(form.utf16ToUtf8, unitText(0x20AC) + unitText(0xD83D) + unitText(0xDE00)),
            "\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(ScalarKernelsTest, StopBeforeMalformedUtf8) {
  Byte out[100];
  for (const string& bad : badUtf8) {
    for (const string& text : {"a\xC3\xA4" + bad, "a\xC3\xA4" + bad + "bcd"}) {
      const auto* in = reinterpret_cast<const Byte*>(text.data());
      const KernelResult result =
          fast::scalarKernels().utf8ToUtf16(in, in + text.size(), out, out + sizeof out);
      EXPECT_EQ(result.in - in, 3) << testing::PrintToString(bad);
      EXPECT_EQ(result.out - out, 4);
    }
  }
}

int g_changes = 0;

TEST(DispatchTest, TellsOfEachChange) {
  fast::onKernelsChanged([] { ++g_changes; });
  EXPECT_TRUE(fast::setKernelsForTesting("scalar"));
  EXPECT_FALSE(fast::setKernelsForTesting("mmx"));
  EXPECT_TRUE(fast::setKernelsForTesting(nullptr));
  fast::onKernelsChanged(nullptr);
  EXPECT_TRUE(fast::setKernelsForTesting(nullptr));
  EXPECT_EQ(g_changes, 2);
}

TEST(DispatchTest, TakesTheNamedForm) {
  for (const Kernels* const form : fast::runnableKernels()) {
    EXPECT_TRUE(fast::setKernelsForTesting(form->name));
    EXPECT_EQ(&fast::kernels(), form);
  }
  EXPECT_FALSE(fast::setKernelsForTesting("mmx"));
  EXPECT_TRUE(fast::setKernelsForTesting(nullptr));
}

}  // namespace
