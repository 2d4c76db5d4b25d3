"""What independent converters map: the C library, ICU, Python, Perl and the JDK.

Each peer says for every code of a structure which values it reads, and for every scalar value which
code it writes: read_all(structure) and write_all(sequences) give a dictionary each, from codes
(bytes) to values (tuples of scalar values), and back.

A structure has patterns, each a list of the bytes that a code may have at each place. A code that
begins with a shorter code is none. With shifts (EBCDIC) codes of one byte stand alone, those of two
between SO and SI.
"""

import ctypes
import ctypes.util
import glob
import itertools
import re
import subprocess
from pathlib import Path

SCALARS = [*range(0xD800), *range(0xE000, 0x110000)]
NOTHING = ctypes.c_size_t(-1).value
SO, SI = b"\x0E", b"\x0F"


class Structure:
    def __init__(self, *patterns, shifts=False):
        self.text = " ".join(patterns) + (" shifts" if shifts else "")
        self.patterns = [[_places(place) for place in pattern.split(",")] for pattern in patterns]
        self.shifts = shifts

    def codes(self, is_code):
        """All codes; is_code says whether the beginning of one is a code already."""
        for pattern in self.patterns:
            for beginning in pattern[0]:
                yield from self._behind(bytes([beginning]), pattern[1:], is_code)

    def _behind(self, beginning, places, is_code):
        if not places:
            yield beginning
            return
        if not self.shifts and is_code(beginning):
            return
        for byte in places[0]:
            yield from self._behind(beginning + bytes([byte]), places[1:], is_code)

    def in_text(self, code):
        """How a text has the code, on its own."""
        return SO + code + SI if self.shifts and len(code) == 2 else code

    def of_text(self, text):
        if self.shifts and text[:1] == SO and text[-1:] == SI:
            return text[1:-1]
        return text


def _places(text):
    first, _, last = text.partition("-")
    return range(int(first, 16), int(last or first, 16) + 1)


class _OneByOne:
    """A peer that is asked code by code, and for lines of characters."""

    def read_all(self, structure):
        read = {}

        def is_code(code):
            return code in read

        for code in structure.codes(is_code):
            if structure.shifts and code in (SO, SI):
                continue
            values = self._read(structure.in_text(code))
            if values and not (len(code) > 1 and not structure.shifts and code[:1] in read):
                read[code] = tuple(map(ord, values))
        return read

    def write_all(self, structure, sequences):
        write = {}
        newline = self._write("\n")
        for begin in range(0, len(SCALARS), 0x400):
            some = SCALARS[begin:begin + 0x400]
            texts = []
            if newline:
                texts = self._write_some("".join(chr(value) + "\n" for value in some))
                texts = texts.split(newline)[:-1]
            if len(texts) != len(some):  # the newline, and other values with its code
                texts = [self._write(chr(value)) for value in some]
            write.update(((value,), structure.of_text(text))
                         for value, text in zip(some, texts) if text)
        for values in sequences:
            text = self._write("".join(map(chr, values)))
            if text:
                write[values] = structure.of_text(text)
        return write


class PythonPeer(_OneByOne):
    name = "Python"

    def __init__(self, charset):
        self._charset = charset

    def _read(self, text):
        try:
            return text.decode(self._charset)
        except UnicodeDecodeError:
            return None

    def _write(self, text):
        try:
            return text.encode(self._charset)
        except UnicodeEncodeError:
            return None

    def _write_some(self, text):
        return text.encode(self._charset, "ignore")


class IconvPeer(_OneByOne):
    name = "C library"
    _libc = ctypes.CDLL(None)
    _libc.iconv_open.restype = ctypes.c_void_p
    _libc.iconv.restype = ctypes.c_size_t

    def __init__(self, charset):
        self._reader = self._open("UTF-32LE", charset)
        self._writer = self._open(charset, "UTF-32LE")
        self._ignorer = self._open(charset + "//IGNORE", "UTF-32LE")

    def _open(self, to, source):
        descriptor = self._libc.iconv_open(to.encode(), source.encode())
        if descriptor == NOTHING:
            raise LookupError(f"iconv does not convert {source} to {to}")
        return ctypes.c_void_p(descriptor)

    def _convert(self, descriptor, data, ignore=False):
        self._libc.iconv(descriptor, None, None, None, None)
        size = 4 * len(data) + 64
        source = ctypes.create_string_buffer(data, len(data))
        target = ctypes.create_string_buffer(size)
        source_at = ctypes.c_void_p(ctypes.addressof(source))
        target_at = ctypes.c_void_p(ctypes.addressof(target))
        source_left = ctypes.c_size_t(len(data))
        target_left = ctypes.c_size_t(size)
        room = (ctypes.byref(target_at), ctypes.byref(target_left))
        while source_left.value:
            left = source_left.value
            result = self._libc.iconv(descriptor, ctypes.byref(source_at),
                                      ctypes.byref(source_left), *room)
            if result == NOTHING and not (ignore and source_left.value < left):
                return None
        self._libc.iconv(descriptor, None, None, *room)  # what a composing converter held back
        return target.raw[:size - target_left.value]

    def _read(self, text):
        result = self._convert(self._reader, text)
        return None if result is None else result.decode("utf-32-le")

    def _write(self, text):
        return self._convert(self._writer, text.encode("utf-32-le"))

    def _write_some(self, text):
        return self._convert(self._ignorer, text.encode("utf-32-le"), ignore=True)


class Iso2022Peer(_OneByOne):
    """A character set that the C library has behind a designation only."""
    name = "C library"

    def __init__(self, charset, designation):
        self._peer = IconvPeer(charset)
        self._designation = designation

    def _read(self, text):
        return self._peer._read(self._designation + text)

    def _write(self, text):
        result = self._peer._write(text) or b""
        return result[len(self._designation):-1] if result.startswith(self._designation) else None


class IcuPeer(_OneByOne):
    name = "ICU"
    _path = max(glob.glob("/usr/lib/*/libicuuc.so.*"), key=len, default=None) or \
        ctypes.util.find_library("icuuc")
    _version = re.search(r"\.so\.(\d+)", _path).group(1)
    _library = ctypes.CDLL(_path)

    def _function(self, name):
        return getattr(self._library, f"{name}_{self._version}")

    def __init__(self, charset):
        self._converter = self._open(charset, "STOP")
        self._ignorer = self._open(charset, "SKIP")
        self._to_units = self._function("ucnv_toUChars")
        self._from_units = self._function("ucnv_fromUChars")

    def _open(self, charset, callback):
        error = ctypes.c_int(0)
        opener = self._function("ucnv_open")
        opener.restype = ctypes.c_void_p
        converter = ctypes.c_void_p(opener(charset.encode(), ctypes.byref(error)))
        if error.value > 0 or not converter:
            raise LookupError(f"ICU has no converter {charset}")
        for kind in ("To", "From"):
            self._function(f"ucnv_set{kind}UCallBack")(
                converter, self._function(f"UCNV_{kind.upper()}_U_CALLBACK_{callback}"), None, None,
                None, ctypes.byref(error))
        self._function("ucnv_setFallback")(converter, ctypes.c_byte(1))
        return converter

    def _read(self, text):
        error = ctypes.c_int(0)
        target = (ctypes.c_uint16 * 16)()
        count = self._to_units(self._converter, target, 16, text, len(text), ctypes.byref(error))
        if error.value > 0:
            return None
        return bytes(target)[:2 * count].decode("utf-16-le")

    def _write(self, text, converter=None):
        error = ctypes.c_int(0)
        data = text.encode("utf-16-le")
        target = ctypes.create_string_buffer(4 * len(data) + 16)
        count = self._from_units(converter or self._converter, target, len(target), data,
                                 len(data) // 2, ctypes.byref(error))
        return None if error.value > 0 or count == 0 else target.raw[:count]

    def _write_some(self, text):
        return self._write(text, self._ignorer)


class _Dumping:
    """A peer whose own program prints a charset: lines of "read" or "write", code, values."""

    def __init__(self, charset):
        self._charset = charset
        self._lines = None

    def _dump(self, structure):
        if self._lines is None:
            command = [*self.command, self._charset, *structure.text.split()]
            output = subprocess.run(command, capture_output=True, check=True, text=True).stdout
            self._lines = []
            for line in output.splitlines():
                kind, code, values = line.split()
                values = tuple(int(value, 16) for value in values.split("+"))
                self._lines.append((kind, bytes.fromhex(code), values))
        return self._lines

    def read_all(self, structure):
        return {code: values for kind, code, values in self._dump(structure) if kind == "read"}

    def write_all(self, structure, _):
        return {values: structure.of_text(code)
                for kind, code, values in self._dump(structure) if kind == "write"}


class JdkPeer(_Dumping):
    name = "JDK"
    command = ["java", str(Path(__file__).with_name("PrintCharset.java"))]


class PerlPeer(_Dumping):
    name = "Perl"
    command = ["perl", str(Path(__file__).with_name("print_charset.pl"))]


class Known:
    """Mappings that were made from another peer, in the place of a peer."""

    def __init__(self, name, read, write):
        self.name, self._read, self._write = name, read, write

    def read_all(self, _):
        return self._read

    def write_all(self, *_):
        return self._write
