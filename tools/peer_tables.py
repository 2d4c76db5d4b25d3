"""Whole tables of the single-byte encodings of other converters, and their names.

The converters are those of tools/peers.py, and the JDK and Perl's Encode, which are asked once for
everything that they have.
"""

import encodings
import encodings.aliases
import functools
import glob
import gzip
import pathlib
import pkgutil
import re
import subprocess

from peers import IconvPeer, IcuPeer, PythonPeer

HERE = pathlib.Path(__file__).resolve().parent

PERL_PROGRAM = r"""
use Encode; binmode STDOUT;
for my $name (Encode->encodings(":all")) {
  my $encoding = Encode::find_encoding($name) or next;
  print "C $name\n";
  next if $name =~ /^(utf|ucs|MIME|null|iso-2022|hz|7bit|.*-raw$|big5|euc|gb|cp9[345]|johab|shiftjis|Mac(Jap|Kor|Chi)|gsm|iso-ir-165)/i;
  for my $code (0 .. 255) {
    my $text = eval { $encoding->decode(chr($code), Encode::FB_CROAK) };
    next unless defined $text && length $text;
    printf "D %02X %s\n", $code, join " ", map { sprintf "%04X", ord } split //, $text;
  }
  for my $unit (0 .. 0xD7FF, 0xE000 .. 0xFFFD) {
    my $code = eval { $encoding->encode(chr($unit), Encode::FB_CROAK) };
    printf "E %04X %02X\n", $unit, ord $code if defined $code && length $code == 1;
  }
}
"""


class Table:
    """One encoding: what each byte is read as (scalar values), and what each value is written as."""

    def __init__(self):
        self.reads = {}
        self.writes = {}

    def both_ways(self):
        return {byte: values for byte, values in self.reads.items()
                if len(values) == 1 and self.writes.get(values[0]) == byte}

    def only_read(self):
        both = self.both_ways()
        return {byte: values for byte, values in self.reads.items() if byte not in both}

    def only_written(self):
        both = self.both_ways()
        return {value: byte for value, byte in self.writes.items()
                if both.get(byte) != (value,)}


def _asked(peer):
    """The table of a peer that is asked character by character; None: not one byte each."""
    table = Table()
    for byte in range(256):
        text = peer.decode(bytes([byte]))
        if text:
            table.reads[byte] = tuple(map(ord, text))
    for unit in (*range(0xD800), *range(0xE000, 0x10000)):
        code = peer.encode(unit)
        if code is None:
            continue
        if len(code) != 1:
            return None
        table.writes[unit] = code[0]
    return table


def _dumped(text):
    """Of what DumpCharsets.java and PERL_PROGRAM print: {name: (aliases, table)}."""
    charsets = {}
    for line in text.splitlines():
        kind, key, *words = line.split()
        if kind == "C":
            table = Table()
            charsets[key] = (words, table)
        elif kind == "D":
            units = b"".join(int(word, 16).to_bytes(4, "big") for word in words)
            text = units.decode("utf-32-be", "surrogatepass")
            text = text.encode("utf-16-be", "surrogatepass").decode("utf-16-be")
            table.reads[int(key, 16)] = tuple(map(ord, text))
        else:
            table.writes[int(key, 16)] = int(words[0], 16)
    return charsets


class Glibc:
    name = "glibc"

    @staticmethod
    @functools.cache
    def names():
        """{name: aliases}, as the configuration of the modules has them."""
        files = glob.glob("/usr/lib/*/gconv/gconv-modules") + \
            glob.glob("/usr/lib/*/gconv/gconv-modules.d/*.conf")
        listed = subprocess.run(["iconv", "-l"], check=True, capture_output=True, text=True).stdout
        names, target = {}, {}
        for file in files:
            for line in pathlib.Path(file).read_text().splitlines():
                words = [word.rstrip("/") for word in line.split()]
                if words[:1] == ["alias"]:
                    target[words[1]] = words[2]
                elif words[:1] == ["module"] and words[1] not in ("INTERNAL", "ISO-10646/UCS4"):
                    names.setdefault(words[1], [])
        for alias, name in target.items():
            while name in target:
                name = target[name]
            names.setdefault(name, []).append(alias)
        known = {*names, *target}
        for line in listed.splitlines():
            name = line.strip().rstrip("/")
            if name and name not in known:
                names[name] = []
        return names

    @staticmethod
    def table(charset):
        return _asked(IconvPeer(charset))


class Icu:
    name = "ICU"

    @staticmethod
    @functools.cache
    def names():
        listed = subprocess.run(["uconv", "-l", "--canon"], check=True, capture_output=True,
                                text=True).stdout
        names = {}
        for line in listed.splitlines()[1:]:
            word = line.split("{")[0].strip()
            if line.startswith("\t"):
                aliases.append(word)
            else:
                aliases = names[word] = []
        return names

    @staticmethod
    def table(charset):
        return _asked(IcuPeer(charset))


class Python:
    name = "Python"

    @staticmethod
    @functools.cache
    def names():
        names = {module.name: [] for module in pkgutil.iter_modules(encodings.__path__)
                 if module.name not in ("aliases", "charmap", "undefined", "mbcs", "oem")}
        for alias, name in encodings.aliases.aliases.items():
            names.setdefault(name, []).append(alias)
        return names

    @staticmethod
    def table(charset):
        return _asked(PythonPeer(charset))


class Jdk:
    name = "JDK"

    @staticmethod
    @functools.cache
    def _charsets():
        return _dumped(subprocess.run(["java", str(HERE / "DumpCharsets.java")], check=True,
                                      capture_output=True, text=True).stdout)

    @classmethod
    def names(cls):
        return {name: aliases for name, (aliases, _) in cls._charsets().items()}

    @classmethod
    def table(cls, charset):
        table = cls._charsets()[charset][1]
        return table if table.reads else None


class Perl(Jdk):
    name = "Perl"

    @staticmethod
    @functools.cache
    def _charsets():
        return _dumped(subprocess.run(["perl", "-e", PERL_PROGRAM], check=True,
                                      capture_output=True, text=True).stdout)


class Charmap:
    """The descriptions of character sets that come with glibc's locales. iconv lacks some of them."""
    name = "charmap"
    _directory = pathlib.Path("/usr/share/i18n/charmaps")

    @classmethod
    def _text(cls, charset):
        return gzip.decompress((cls._directory / f"{charset}.gz").read_bytes()).decode("latin-1")

    @classmethod
    def names(cls):
        names = {}
        for file in cls._directory.glob("*.gz"):
            text = cls._text(file.stem)
            names[file.stem] = re.findall(r"^% alias (\S+)", text, re.M)
        return names

    @classmethod
    def table(cls, charset):
        table = Table()
        for line in cls._text(charset).splitlines():
            value, code = re.search(r"<U([0-9A-F]{4,})>", line), re.search(r"\s((?:/x\w\w)+)\s", line)
            if not value or not code:
                continue
            if len(code[1]) != len("/x00"):
                return None
            byte, value = int(code[1][2:], 16), int(value[1], 16)
            if byte == 0 and value != 0 and charset != "ISO_11548-1":
                continue  # how the older descriptions say that a character is lacking
            table.reads[byte] = (value,)
            if not line.startswith("%IRREVERSIBLE%"):  # only read
                table.writes.setdefault(value, byte)
        return table


PEERS = {peer.name: peer for peer in (Glibc, Icu, Python, Jdk, Perl, Charmap)}
