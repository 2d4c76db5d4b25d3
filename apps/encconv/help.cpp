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
standard input is read; without -o the result goes to standard output. Without
-f or -t, but not without both, the encoding of the locale is meant; on
Windows it is the ANSI code page.

  -f, --from FROM          encoding of the input; "auto" finds it out
      --guess              with -f auto: be content with a doubtful encoding
  -t, --to TO              encoding of the output
  -o, --output OUTPUT      write to a file, which is replaced only on success
      --in-place[=SUFFIX]  replace each file; SUFFIX keeps the old one
      --output-dir DIR     write each file under its name into DIR
      --preserve-time      give what replaces a file the time of the old one
  -r, --recursive          convert what is in directories
      --include GLOB       of these only files with such names, like "*.txt"
  -j, --jobs N             convert N files, or parts of a large file, at once (0:
                           one a processor)
      --on-error TREATMENT what to do with input that cannot be converted
                           (--help errors)
  -c                       leave it out, as --on-error drop
      --strict             exit status 1 when input was treated or approximated
      --report FILE        list every such place in a file (with --json as JSON)
      --bom[=keep|add|remove]
                           byte order mark: as the input has it, always, never
      --newline lf|crlf|cr|keep
                           make all line ends the same
      --pdf-passthrough    copy files that begin "%PDF-1"
      --ebcdic-newline lf|nl|keep
                           line ends of EBCDIC text (--help mainframe)
      --records FORM       the input is in records: fixed:N, rdw or bdw; without
                           --fields each becomes a line (--help mainframe)
      --record-length N    the same as --records fixed:N
      --to-records FORM    the output is in records, bdw:N with blocks of N bytes
      --fields LAYOUT      a record is a row of a table: "NAME POSITION LENGTH TYPE,
                           ...", or @FILE (--help fields)
      --as csv|json|json-strings
                           form of the table
      --trim               drop the blanks at the end of each record or text
  -q, -s, --quiet          no progress line and no closing line
  -v, --verbose            tell of each file the encodings, sizes and speed

      --detect             show which encoding each FILE seems to have;
                           --brief the name alone, --json for programs
      --trace              trace garbled text back: what it was, and which
                           encodings were mixed up; --brief the text alone
  -l, --list [FILTER]      show the encodings; with --json for programs
      --chart CODEPAGE     show a code page; with --html FILE as a page
  -h, --help [TOPIC]       show this, or a topic: errors, files, encodings,
                           iconv, mainframe, fields, detect,
                           charts, status
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
  hex               write a character as &#xHHHH; with its code point, and bytes
                    that are no text as <0xHH>, which is no character reference
  alternate=NAME    read malformed bytes in the encoding NAME; write characters
                    that the output lacks as their bytes in NAME
  raw               copy the bytes of the input

In front of a treatment may stand, each with a comma behind it, what to try
first for a character that the output encoding does not have:

  compose           the one character that a letter and the marks behind it make,
                    as for file names of Macs
  best-fit          the similar character that Windows writes in that encoding:
                    a for a with ogonek, an ASCII letter for a full-width one;
                    for EUC-JP and GSM, which Windows lacks, a list of our own
  translit          text that says the same in characters that the output has:
                    ss for a sharp s, EUR for the euro sign, letters without
                    accents, Greek and Cyrillic ones as Latin ones

They are tried in this order; alone they mean that nothing else is done:
best-fit is best-fit,stop.

Some encodings have no place for a character but write another for it without
being asked: Shift_JIS a backslash for the yen sign, a space for a no-break
space. These, best fits and transliterations are characters that were
approximated.

With any treatment but stop the whole input is converted, a closing line says
how many places were affected and where the first one was, and how many
characters were approximated, and the exit status is 0; --strict makes it 1,
--quiet leaves out the line.

--report FILE writes a line for every place, however many there are: file,
offset in bytes, line, bytes, character, encoding. With --json each line is a
JSON object; a byte of a file name that is no UTF-8 is there the escape of
U+DC00 + byte. FILE may be - when the text itself goes elsewhere.

Examples:
  encconv -f utf-8 -t windows-1252 --on-error hex page.html
  encconv -f utf-8 -t windows-1250 --on-error best-fit,substitute notes.txt
  encconv -f utf-8 -t euc-jp --on-error compose,best-fit names.txt
  encconv -f utf-8 -t us-ascii --on-error translit,substitute=? notes.txt
  encconv -f utf-8 -t utf-8 --on-error substitute --strict log.txt
  encconv -f utf-8 -t utf-8 --on-error alternate=windows-1252 mixed.txt
)"},
    {"files",
     R"(Several input files are converted one after the other into one output. A file
that is missing ends the run before anything is written there; a directory is
reported and passed over.

  -o OUTPUT      The result is written beside OUTPUT under a temporary name and
                 renamed when all went well. Devices, pipes, and a file that
                 standard output or error goes to, are written directly; - is
                 standard output, and a symbolic link is written through.
                 OUTPUT must not be one of the inputs.
  --in-place     Each FILE is replaced by its converted text. Its owner, access
                 rights, access control list and extended attributes stay, and
                 its time of modification becomes the present one. A file that
                 the conversion does not change is not touched. One that cannot
                 be converted, that has other hard links, or that cannot be
                 given what it had, is left alone with a reason, and the others
                 are still converted.
                 --in-place=.old keeps the original as FILE.old; where there is
                 a FILE.old already, FILE is left alone.
  --output-dir   Each FILE is converted to DIR/NAME. DIR is made when missing.
  --preserve-time
                 With either, files keep their time of modification.
  -j N           N threads: with --in-place and --output-dir, so many files are
                 converted at once, fewer where the limit of open files
                 (ulimit -n) asks for it; of a large file, or standard input
                 that is one, so many parts. All is written and told as by one.
  --job-size BYTES
                 What a thread takes of a large file at a time.
  --recursive    Directories stand for the files in them and below, without
                 symbolic links, files that end with the SUFFIX of --in-place,
                 and what is in the DIR of --output-dir, where each gets its
                 name below the directory. --include GLOB, any number of them,
                 chooses files by name.

Input of any length is converted in constant memory. On a terminal a progress
line appears when that takes longer than a second.

Examples:
  encconv -f 1251 -t utf-8 -o all.txt part1.txt part2.txt
  encconv -f gbk -t utf-8 --output-dir converted -j 0 *.srt
  encconv -f 1252 -t utf-8 --in-place=.old -r --include "*.txt" notes
)"},
    {"encodings",
     R"(FROM and TO are names or code page numbers: utf-8, UTF8, 65001 and cp65001
mean the same. Case and punctuation do not matter. encconv --list shows every
encoding with all its names, and encconv --list cyrillic those that have to do
with the word.

iso-8859-1 and latin1 are what the standard says (code page 819): bytes 80 to 9F
are control characters, and there is no euro sign. Text of the web and of
Windows that is called so is windows-1252; 28591 is Windows's number for that
reading.
euc-jp has JIS X 0212 in three bytes; the table that Windows has under the name
is cp51932.

utf-16 and utf-32 without le or be read the byte order mark, and are little
endian without one; they write little endian without a mark. A mark is taken
off the input, but stays where both encodings are the same.

  --bom=add     the output begins with the mark of utf-8, utf-16 or utf-32;
                --bom means the same
  --bom=keep    it does if the input does
  --bom=remove  it does not, even where both encodings are the same

Line ends stay as they are, unless --newline lf, crlf or cr makes each CR LF, CR
alone and LF alone the same.
)"},
    {"iconv",
     R"(What users of iconv know means the same here, but for what this page says.

  -f, --from-code, -t, --to-code, -o, -l, --list, -c, -s, --silent
  -t NAME//IGNORE    leave out what cannot be converted, as -c
  -t NAME//TRANSLIT  transliterate what the output lacks, or write "?", as
                     --on-error translit,substitute=?, in every locale; bytes
                     that are no text in the input end the file
  no -f, or no -t    the encoding of the locale; on Windows the ANSI code page

  -t utf-16          writes little endian without a mark, where iconv writes a
  -t utf-32          mark in front: use --bom, or utf-16le, utf-16be
  -o OUTPUT          is replaced only when all went well
  -c                 has a closing line that says how much was left out, unless
                     -s is given, and exit status 0, as in glibc 2.36 (that of
                     //IGNORE is 0 too); --strict makes it 1
  exit status        is 2 for wrong usage and for files that cannot be read

Names are those of --list; iconv knows more. Where tables differ, those here are
of Windows, such as cp932 for shift_jis.
)"},
    {"mainframe",
     R"(EBCDIC has two line ends: NL (byte 15), which mainframe files use, and LF (byte
25). Most code pages read NL as U+0085, which few programs take for a line end.

  --ebcdic-newline lf    NL becomes a plain newline when EBCDIC is read, and a
                         newline becomes NL when EBCDIC is written
  --ebcdic-newline nl    every line end, NL or LF, becomes NL: U+0085 when
                         EBCDIC is read, byte 15 when it is written
  --ebcdic-newline keep  both are converted as the code page says; the default

Files in records have no line ends. Each record is converted on its own and ends
a line; --to-records makes a record of each line, filled with blanks. Both
together convert records to records.

  --records fixed:N      records of N bytes, and a shorter rest
  --records rdw          variable-length records, each behind its record
                         descriptor word; spanned ones are joined
  --records bdw          the same in blocks with block descriptor words
  --record-length N      the same as --records fixed:N
  --to-records fixed:N | rdw | bdw | bdw:N
                         of the output; bdw:N makes blocks of N bytes at most,
                         32760 without N
  --trim                 drop the blanks at the end of each record, or line

A descriptor word that cannot be right, and a line that is too long for a record,
end the file with a message that has record, byte offset and bytes. With another
treatment than stop (--help errors) lines are cut between two characters, and of
damaged records everything is taken that can still be told apart.

Examples:
  encconv -f ibm1047 -t utf-8 --records fixed:80 --trim cards.dat
  encconv -f ibm037 -t utf-8 --records bdw report.vb -o report.txt
  encconv -f utf-8 -t ibm037 --to-records rdw report.txt -o report.rdw
)"},
    {"fields",
     R"(--fields LAYOUT says which fields a record has, so that packed and binary numbers
become what they mean: with --records a table is made of the records, with
--to-records records of a table. LAYOUT is the fields, or @FILE with them: one a
line or separated by commas, each NAME POSITION LENGTH TYPE. Positions are those
of bytes and count from 1, behind the descriptor word; + is right behind the field
before. # begins a comment.

  text                   characters
  packed                 two digits a byte and a sign: 12 34 5C
  zoned                  a digit a byte, the sign in the last: F1 F2 C3
  binary                 an integer of 1 to 8 bytes, the highest first

Options stand behind colons, as in packed:scale=2:unsigned.

  scale=N                the last N digits are decimals
  unsigned               no sign; signed is the default
  digits=N               refuse to write more, though there is room
  leading, separate      zoned: the sign is with the first digit; is a byte
  ascii, ebcdic          zoned: digits are 30 to 39, F0 to F9; as -f or -t is
  little                 binary: the lowest byte comes first
  encoding=NAME          text: another encoding than that of the record

  --as csv               with a header, as RFC 4180 has it (also its line ends;
                         --newline lf makes others); the default
  --as json              a JSON object a line, numbers with all their digits
  --as json-strings      the same with numbers in quotes
  --trim                 drop the blanks at the end of texts

A field behind the end of a short record is null: nothing in CSV, where an empty
text is "". Bytes that no field covers are not in the table, and are blanks in
records made of it.

Digits and signs that are none, numbers and texts that do not fit, and missing
numbers end the file with a message that has record, field, byte offset and
bytes. With another treatment than stop such a number is null, and blanks when
written; such a text is cut between two characters.

Example:
  encconv -f ibm037 -t utf-8 --records bdw --fields @accounts.fields --trim \
          accounts.vb -o accounts.csv
  encconv -f utf-8 -t ibm037 --to-records bdw --fields @accounts.fields \
          accounts.csv -o accounts.vb
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

encconv --trace FILE... is for text that was read in a wrong encoding and written
again, so that its bytes are right and its letters are not ("cafÃ©" for "café").
It tries which encodings were mixed up, also several times over, shows the
likeliest texts, how sure it is, and the commands that mend the file. -f names
the encoding of the file, by default UTF-8. --brief writes the likeliest text, or
the text as it is. The exit status is 1 when nothing suggests that it is garbled.
)"},
    {"charts",
     R"(encconv --chart CODEPAGE shows a code page as a grid of 16 by 16: the row is the
high digit of the byte, the column the low one. Codes of two and more bytes
follow, with one grid for all that begin alike; those of EBCDIC pages with shifts
too. Unicode and encodings with escape sequences have no chart.

  (blank)  no character         <   read, but written as another code
  PU       private use          NUL, NBS ...    what cannot be seen

Below the grids are the characters that are written but read as another one.

encconv --chart CODEPAGE --html FILE writes a page for a browser instead (to
standard output for -), with code points, a search box, and light and dark
colours.
)"},
    {"status",
     R"(Exit status:
  0  done; every character was converted, or treated as --on-error says
  1  input that could not be converted (under --on-error stop, or --strict),
     an encoding that --detect could not find out, or a --list filter that
     nothing matches
  2  wrong usage, an unknown encoding, a file that cannot be read or written

When several files fail the highest status is returned. When what reads the
output ends early, the signal SIGPIPE ends encconv quietly.
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
