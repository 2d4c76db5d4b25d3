#include "apps/encconv/help.h"

namespace tool {
namespace {

struct Topic {
  std::string_view name;
  std::string_view text;
};

constexpr Topic kTopics[] = {
    {"",
     R"(Usage: encconv -f FROM -t TO [OPTION...] [FILE...]
Convert text from one character encoding to another. Without FILE, or for -,
standard input is read; without -o the result goes to standard output.

  -f, --from FROM          encoding of the input; "auto" finds it out
      --guess              with -f auto: be content with a doubtful encoding
  -t, --to TO              encoding of the output
  -o, --output OUTPUT      write to a file, which is replaced only on success
      --in-place[=SUFFIX]  replace each file; SUFFIX keeps the old one
      --output-dir DIR     write each file under its name into DIR
  -j, --jobs N             convert up to N files at once (0: one a processor)
      --on-error TREATMENT what to do with input that cannot be converted
                           (--help errors)
      --strict             exit status 1 when input was treated
      --bom                begin the output with a byte order mark
      --pdf-passthrough    copy files that begin "%PDF-1"
      --ebcdic-newline lf|nl|keep
                           line ends of EBCDIC text (--help mainframe)
      --record-length N    end a line after every N bytes of input
      --trim               drop the blanks at the end of each record
  -q, --quiet              no progress line and no closing line
  -v, --verbose            show what the engine does, as its own log tells it

      --detect             show which encoding each FILE seems to have;
                           --brief the name alone, --json for programs
      --list [FILTER]      show the encodings; with --json for programs
      --chart CODEPAGE     show a code page; with --html FILE as a page
  -h, --help [TOPIC]       show this, or a topic: errors, files, encodings,
                           mainframe, detect, charts, status
      --version            show the version

Examples:
  encconv -f shift_jis -t utf-8 letter.txt
  encconv -f utf-16 -t windows-1252 -o plain.txt export.txt
  encconv -f auto -t utf-8 --in-place=.old *.txt
  encconv -f ibm037 -t utf-8 --ebcdic-newline lf < records.dat | less
)"},
    {"errors",
     R"(--on-error TREATMENT says what happens to input that cannot be converted:
bytes that are no text in the input encoding, and characters that the output
encoding does not have.

  stop              end that file at the first such place, with one line that
                    says where and what it is; an -o file stays as it was.
                    This is the default.
  drop              leave it out
  substitute        write U+FFFD, or "?" where the output encoding lacks it
  substitute=TEXT   write TEXT (UTF-8)
  substitute=0xHH.. write these bytes
  hex               write &#xHHHH; with the code point, or with the bytes if
                    there is none
  alternate=NAME    read malformed bytes in the encoding NAME; write characters
                    that the output lacks as their bytes in NAME
  raw               copy the bytes of the input

With any treatment but stop the whole input is converted, a closing line says
how many places were affected and where the first one was, and the exit status
is 0; --strict makes it 1, --quiet leaves out the line.

Examples:
  encconv -f utf-8 -t windows-1252 --on-error hex page.html
  encconv -f utf-8 -t utf-8 --on-error substitute --strict log.txt
  encconv -f utf-8 -t utf-8 --on-error alternate=windows-1252 mixed.txt
)"},
    {"files",
     R"(Several input files are converted one after the other into one output. A file
that is missing ends the run before anything is written.

  -o OUTPUT      The result is written beside OUTPUT under a temporary name and
                 renamed when all went well. Devices and pipes are written
                 directly. OUTPUT must not be one of the inputs.
  --in-place     Each FILE is replaced by its converted text; mode and times
                 stay. A file that cannot be converted is left alone, and the
                 others are still converted. --in-place=.old keeps the original
                 as FILE.old.
  --output-dir   Each FILE is converted to DIR/NAME. DIR is made when missing.
  -j N           With --in-place or --output-dir, N files are converted at once.

Input of any length is converted in constant memory. On a terminal a progress
line appears when that takes longer than a second.

Examples:
  encconv -f 1251 -t utf-8 -o all.txt part1.txt part2.txt
  encconv -f gbk -t utf-8 --output-dir converted -j 0 *.srt
)"},
    {"encodings",
     R"(FROM and TO are names or code page numbers: utf-8, UTF8, 65001 and cp65001
mean the same. Case and punctuation do not matter. encconv --list shows every
encoding with all its names, and encconv --list cyrillic those that have to do
with the word.

utf-16 and utf-32 without le or be read the byte order mark, and are little
endian without one. --bom writes the mark of utf-8, utf-16 and utf-32.
)"},
    {"mainframe",
     R"(EBCDIC has two line ends: NL (byte 15), which mainframe files use, and LF (byte
25). Most code pages read NL as U+0085, which few programs take for a line end.

  --ebcdic-newline lf    NL becomes a plain newline when EBCDIC is read, and a
                         newline becomes NL when EBCDIC is written
  --ebcdic-newline nl    every line end, NL or LF, becomes NL: U+0085 when
                         EBCDIC is read, byte 15 when it is written
  --ebcdic-newline keep  both are converted as the code page says; the default

  --record-length N      files of fixed-length records have no line ends: end a
                         line after every N bytes of input, and after a shorter
                         rest
  --trim                 drop the blanks at the end of each record

Example:
  encconv -f ibm1047 -t utf-8 --record-length 80 --trim cards.dat
)"},
    {"detect",
     R"(encconv --detect FILE... shows for each file the encoding that it seems to have,
how sure that is, why, and which others it may be. Looked at is the first MiB.

  certain    a byte order mark; or ASCII and nothing else
  likely     UTF-8, UTF-16, UTF-32 and ISO-2022 by their form; what the text
             declares (XML, HTML, mail, .po, Python, editors), if it fits; and
             letters that fit one encoding much better than all others
  guess      the letters fit one encoding better than others
  doubtful   there are others that fit nearly as well
  binary     no text: a picture, a program, compressed data
  unknown    none of these; the exit status is 1

A guess can be wrong, above all for short texts and among related encodings.

-f auto converts from what is found out, but leaves binary files alone, and those
whose encoding is doubtful; --guess takes the first encoding then.

--brief shows nothing but the name, for -f, or binary, empty or unknown; --json
an object for each file, on a line of its own.
)"},
    {"charts",
     R"(encconv --chart CODEPAGE shows a code page as a grid of 16 by 16: the row is the
high digit of the byte, the column the low one. Double-byte code pages follow
with one grid for each lead byte.

  (blank)  no character         <   read, but written as another code
  PU       private use          NUL, NBSP ...   what cannot be seen

Below the grids are the characters that are written but read as another one.

encconv --chart CODEPAGE --html FILE writes a page for a browser instead, with
code points, a search box, and light and dark colours.
)"},
    {"status",
     R"(Exit status:
  0  done; every character was converted, or treated as --on-error says
  1  input that could not be converted (under --on-error stop, or --strict),
     an encoding that --detect could not find out, or a --list filter that
     nothing matches
  2  wrong usage, an unknown encoding, a file that cannot be read or written

When several files fail the highest status is returned.
)"},
};

}  // namespace

std::string_view helpText(std::string_view topic) {
  for (const Topic& entry : kTopics) {
    if (entry.name == topic) return entry.text;
  }
  return {};
}

std::string helpTopics() {
  std::string names;
  for (const Topic& entry : kTopics) {
    if (entry.name.empty()) continue;
    if (!names.empty()) names += ", ";
    names += entry.name;
  }
  return names;
}

}  // namespace tool
