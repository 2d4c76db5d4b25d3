/* Makes tens of thousands of calls of iconv and prints what came of them, a line for each case: its
 * name and a checksum of every result, errno, pointer and byte. compare.py sets the lines of two
 * programs beside each other: this one with the C library's iconv and with ours, also with another
 * C library.
 *
 *   calls            every case
 *   calls NAME...    these, call by call
 */
#include <errno.h>
#include <iconv.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* The encodings, each with a text in UTF-8 that it holds. */
static const struct {
  const char* name;
  const char* text;
} kEncodings[] = {
    {"UTF-8", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z\xE6\x97\xA5~"},
    {"ASCII", "Plain text."},
    {"ISO-8859-1", "a\xC3\xA9\xC3\xBF\xC2\xA0z"},
    {"ISO-8859-15", "a\xE2\x82\xAC\xC3\xA9z"},
    {"CP1252", "\xE2\x82\xACuro \xE2\x80\x9Cx\xE2\x80\x9D"},
    {"KOI8-R", "\xD0\x9F\xD1\x80\xD0\xB8 ve"},
    {"IBM037", "Ebcdic \xC3\xA9"},
    {"UTF-16", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z"},
    {"UTF-16LE", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z"},
    {"UTF-16BE", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z"},
    {"UTF-32", "a\xC3\xA9\xF0\x9F\x98\x80z"},
    {"UTF-32LE", "a\xC3\xA9\xF0\x9F\x98\x80z"},
    {"UTF-32BE", "a\xC3\xA9\xF0\x9F\x98\x80z"},
    {"UCS-2", "a\xC3\xA9\xE2\x82\xACz"},
    {"UCS-4", "a\xC3\xA9\xF0\x9F\x98\x80z"},
    {"WCHAR_T", "a\xC3\xA9\xF0\x9F\x98\x80z"},
    {"UNICODE", "a\xC3\xA9\xE2\x82\xACz"},
    {"UTF-7", "a\xC3\xA9+\xE6\x97\xA5\xE6\x9C\xAC-z"},
    {"SHIFT_JIS", "\xE6\x97\xA5\xE6\x9C\xAC \xEF\xBD\xB1z"},
    {"CP932", "\xE6\x97\xA5\xE6\x9C\xAC \xE2\x91\xA0\xEF\xBD\xB1z"},
    {"EUC-JP", "\xE6\x97\xA5\xE6\x9C\xAC \xEF\xBD\xB1\xE4\xB8\x82z"},
    {"ISO-2022-JP", "a\xE6\x97\xA5\xE6\x9C\xAC z\xE6\x97\xA5"},
    {"GB2312", "\xE4\xB8\xAD\xE6\x96\x87 z"},
    {"GBK", "\xE4\xB8\xAD\xE6\x96\x87\xE4\xB8\x82 z"},
    {"GB18030", "\xE4\xB8\xAD\xC3\xBF\xF0\x9F\x98\x80z"},
    {"BIG5", "\xE4\xB8\xAD\xE6\x96\x87 z"},
    {"BIG5-HKSCS", "\xE4\xB8\xAD\xC3\x8A\xCC\x84\xC3\x8Az"},
    {"EUC-TW", "\xE4\xB8\xAD\xE6\x96\x87 z"},
    {"EUC-KR", "\xED\x95\x9C\xEA\xB8\x80 z"},
    {"CP949", "\xED\x95\x9C\xEA\xB0\x82 z"},
    {"JOHAB", "\xED\x95\x9C\xEA\xB8\x80 z"},
    {"ISO-2022-KR", "a\xED\x95\x9C\xEA\xB8\x80 z"},
    {"ISO-2022-CN", "a\xE4\xB8\xAD\xE6\x96\x87 z"},
    {"EUC-JISX0213", "\xE6\x97\xA5\xE3\x81\x8B\xE3\x82\x9Az\xE3\x81\x8B"},
    {"CP1258", "Vi\xE1\xBB\x87t z"},
    {"TCVN", "Vi\xE1\xBB\x87t z"},
    {"TSCII",
     "\xE0\xAE\xA4\xE0\xAE\xAE\xE0\xAE\xBF\xE0\xAE\xB4\xE0\xAF\x8D \xE0\xAE\x95\xE0\xAF\x8A"
     "\xE0\xAE\xA3\xE0\xAF\x8D\xE0\xAE\x9F\xE0\xAF\x81 z"},
};
enum { kCount = sizeof kEncodings / sizeof *kEncodings };

/* Characters that some targets lack, and bytes that are text nowhere. */
static const char* const kStrange[] = {"\xE2\x82\xAC",     "\xE2\x80\x9C", "\xC3\xA9",
                                       "\xF0\x9F\x98\x80", "\xEF\xBB\xBF", "\xC2\xA5"};
static const char* const kBroken[] = {"\xFF", "\x80", "\xC3", "\xED\xA0\x80", "\x1B", "\x8F\xFF"};
static const char* const kSuffixes[] = {"",
                                        "//IGNORE",
                                        "//TRANSLIT",
                                        "//translit//ignore",
                                        "//IGNORE//TRANSLIT",
                                        "//NON_IDENTICAL_DISCARD",
                                        "//Ignore//Non_Identical_Discard//Translit"};
#define COUNT(list) (sizeof(list) / sizeof *(list))

static char g_name[200];
static int g_isShown;
static int g_wantedCount;
static char** g_wanted;
static unsigned long long g_sum;

static void note(const void* bytes, size_t count) {
  const unsigned char* p = bytes;
  while (count-- != 0) g_sum = (g_sum ^ *p++) * 0x100000001B3ull;
}

/* Begins a case; 0: nobody asked for it. */
static int begin(void) {
  g_sum = 0xCBF29CE484222325ull;
  g_isShown = g_wantedCount != 0;
  for (int i = 0; i < g_wantedCount; ++i) {
    if (strcmp(g_wanted[i], g_name) == 0) return printf("%s\n", g_name);
  }
  return g_wantedCount == 0;
}
static void end(void) {
  if (!g_isShown) printf("%s %016llx\n", g_name, g_sum);
}

/* Errors have other numbers elsewhere. */
static const char* errorName(int error) {
  return error == 0        ? "0"
         : error == E2BIG  ? "E2BIG"
         : error == EILSEQ ? "EILSEQ"
         : error == EINVAL ? "EINVAL"
         : error == EBADF  ? "EBADF"
                           : "?";
}

enum { kRoom = 512, kGuard = 32 };

/* One call, noted; a null text ends the text. Nothing may be written behind the room. */
static size_t call(iconv_t cd, char** in, size_t* left, size_t room, int* error) {
  char out[kRoom + kGuard];
  memset(out, 0x5A, sizeof out);
  char* next = out;
  size_t roomLeft = room;
  const char* const before = in == NULL ? NULL : *in;
  errno = 0;
  const size_t result = iconv(cd, in, left, &next, &roomLeft);
  *error = errno;
  const long shown[4] = {(long)result, in == NULL ? 0 : (long)(*in - before), (long)(next - out),
                         (long)roomLeft};
  note(shown, sizeof shown);
  note(errorName(*error), strlen(errorName(*error)));
  note(out, (size_t)(next - out));
  for (size_t i = room; i < sizeof out; ++i) {
    if (out[i] != 0x5A) {
      printf("%s wrote behind the room\n", g_name);
      exit(1);
    }
  }
  if (g_isShown) {
    printf("  room %zu: result %ld %s, read %ld, wrote", room, shown[0], errorName(*error),
           shown[1]);
    for (const char* p = out; p != next; ++p) printf(" %02x", (unsigned char)*p);
    printf("\n");
  }
  return result;
}

/* Goes on until all is read or nothing goes on any more, then ends the text. */
static void drain(iconv_t cd, char* in, size_t left, size_t room) {
  int error;
  for (int calls = 0; calls < 300; ++calls) {
    const size_t before = left;
    const size_t result = call(cd, &in, &left, room, &error);
    if (result != (size_t)-1) break;
    if (error == E2BIG && left == before) room = kRoom; /* not even one character fits */
    if (error == EINVAL) break;
    if (error == EILSEQ) {
      if (left == 0) break;
      ++in; /* as programs do that go on behind an error */
      --left;
    }
  }
  call(cd, NULL, NULL, kRoom, &error);
}

static iconv_t open2(const char* to, const char* suffix, const char* from) {
  char code[100];
  snprintf(code, sizeof code, "%s%s", to, suffix);
  return iconv_open(code, from);
}

/* A text in an encoding, by the library's own words; its length, or 0. */
static size_t encode(const char* name, const char* utf8, size_t length, char* out, size_t room) {
  const iconv_t cd = iconv_open(name, "UTF-8");
  if (cd == (iconv_t)-1) return 0;
  char* in = (char*)utf8;
  char* next = out;
  size_t left = length;
  const size_t whole = room;
  const int good = iconv(cd, &in, &left, &next, &room) != (size_t)-1 &&
                   iconv(cd, NULL, NULL, &next, &room) != (size_t)-1;
  iconv_close(cd);
  return good ? whole - room : 0;
}

/* All that can be done with one text between two encodings. */
static void tryText(const char* from, const char* to, const char* suffix, const char* kind,
                    char* text, size_t length, int isShort) {
  const size_t largest = isShort ? 12 : 40;
  int error;
  for (size_t room = 0; room <= largest; ++room) {
    snprintf(g_name, sizeof g_name, "%s>%s%s/%s/room-%zu", from, to, suffix, kind, room);
    if (!begin()) continue;
    const iconv_t cd = open2(to, suffix, from);
    if (cd != (iconv_t)-1) drain(cd, text, length, room);
    if (cd != (iconv_t)-1) iconv_close(cd);
    end();
  }
  for (size_t cut = 0; cut <= length; ++cut) {
    snprintf(g_name, sizeof g_name, "%s>%s%s/%s/cut-%zu", from, to, suffix, kind, cut);
    if (!begin()) continue;
    const iconv_t cd = open2(to, suffix, from);
    if (cd != (iconv_t)-1) {
      char* in = text;
      size_t left = cut;
      call(cd, &in, &left, kRoom, &error);
      drain(cd, in, length - (size_t)(in - text), kRoom);
      iconv_close(cd);
    }
    end();
  }
  if (isShort) return;
  for (size_t cut = 0; cut <= length; ++cut) {
    snprintf(g_name, sizeof g_name, "%s>%s%s/%s/reset-%zu", from, to, suffix, kind, cut);
    if (!begin()) continue;
    const iconv_t cd = open2(to, suffix, from);
    if (cd != (iconv_t)-1) {
      char* in = text;
      size_t left = cut;
      call(cd, &in, &left, kRoom, &error);
      for (size_t room = 0; room <= 4; ++room) {
        if (call(cd, NULL, NULL, room, &error) != (size_t)-1) break;
      }
      drain(cd, text, length, kRoom);
      in = text;
      left = length / 2;
      call(cd, &in, &left, kRoom, &error);
      iconv(cd, NULL, NULL, NULL, NULL);
      drain(cd, text, length, kRoom);
      iconv_close(cd);
    }
    end();
  }
}

static void tryPair(int from, int to) {
  const char* const source = kEncodings[from].name;
  const char* const target = kEncodings[to].name;
  char text[400], utf8[400], kind[40];
  /* What both hold, in the middle of ASCII. */
  const char* const held = to == 0 ? kEncodings[from].text : kEncodings[to].text;
  size_t length = encode(source, held, strlen(held), text, sizeof text);
  if (length != 0) tryText(source, target, "", "text", text, length, 0);
  for (size_t s = 0; s < COUNT(kSuffixes); ++s) {
    for (size_t i = 0; i < COUNT(kStrange); ++i) {
      snprintf(utf8, sizeof utf8, "ab%sc", kStrange[i]);
      length = encode(source, utf8, strlen(utf8), text, sizeof text);
      snprintf(kind, sizeof kind, "strange-%zu", i);
      if (length != 0) tryText(source, target, kSuffixes[s], kind, text, length, 1);
    }
    if (s > 1 && s != 5) continue;
    for (size_t i = 0; i < COUNT(kBroken); ++i) {
      length = encode(source, "ab", 2, text, sizeof text);
      if (length == 0) continue;
      memcpy(text + length, kBroken[i], strlen(kBroken[i]));
      length += strlen(kBroken[i]);
      length += encode(source, "cd", 2, text + length, sizeof text - length);
      snprintf(kind, sizeof kind, "broken-%zu", i);
      tryText(source, target, kSuffixes[s], kind, text, length, 1);
    }
  }
}

int main(int argc, char** argv) {
  g_wantedCount = argc - 1;
  g_wanted = argv + 1;
  for (int i = 0; i < kCount; ++i) {
    tryPair(i, 0);
    tryPair(0, i);
  }
  /* And some without UTF-8 on either side. */
  for (int i = 0; i + 1 < kCount; ++i) tryPair(i, i + 1);
  return 0;
}
