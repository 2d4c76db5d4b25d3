"""What independent converters map: the C library, ICU, Python, the JDK, Perl's Encode and nkf.

Each peer says what it reads of a text (bytes) and what it writes for one: read(text) and
write(text), None where it refuses; and all at once, read_all(structure) and write_all(structure,
sequences): a dictionary from codes (bytes) to values (tuples of scalar values), and back. names()
has the peer's encodings with their other names.

A structure has patterns, each a list of the bytes that a code may have at each place. A code that
begins with a shorter code is none. With shifts (EBCDIC) codes of one byte stand alone, those of two
between SO and SI.
"""

import ctypes
import ctypes.util
import encodings
import encodings.aliases
import functools
import glob
import os
import pathlib
import pkgutil
import re
import subprocess

HERE = pathlib.Path(__file__).resolve().parent
SCALARS = [*range(0xD800), *range(0xE000, 0x110000)]
BLOCK = 0x400  # values that are written at once
NOTHING = ctypes.c_size_t(-1).value
SO, SI = b"\x0E", b"\x0F"


class Structure:
    """joins: what a code begins may be a code of its own, of bytes that are read together."""

    def __init__(self, *patterns, shifts=False, joins=False):
        self.text = " ".join(patterns) + (" shifts" if shifts else "")
        self.patterns = [[_places(place) for place in pattern.split(",")] for pattern in patterns]
        self.shifts, self.joins = shifts, joins

    def codes(self, is_code):
        """All codes; is_code says whether the beginning of one is a code already."""
        for pattern in self.patterns:
            for beginning in pattern[0]:
                yield from self._behind(bytes([beginning]), pattern[1:], is_code)

    def _behind(self, beginning, places, is_code):
        if not places:
            yield beginning
            return
        if not (self.shifts or self.joins) and is_code(beginning):
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


@functools.cache
def _blocks():
    """All values, so many at a time: as one text, and as one of lines."""
    texts = ("".join(map(chr, SCALARS[begin:begin + BLOCK]))
             for begin in range(0, len(SCALARS), BLOCK))
    return [(text, "".join(value + "\n" for value in text)) for text in texts]


class OneByOne:
    """A peer that is asked code by code, and for lines of characters: _write_some(text) writes what
    it can of a text."""

    def read_all(self, structure):
        read = {}

        def is_code(code):
            return code in read

        for code in structure.codes(is_code):
            if structure.shifts and code in (SO, SI):
                continue
            values = self.read(structure.in_text(code))
            is_begun = len(code) > 1 and not structure.shifts and code[:1] in read
            if values and (structure.joins or not is_begun):
                read[code] = tuple(map(ord, values))
        return read

    def write_all(self, structure, sequences):
        write = {}
        newline = self.write("\n")
        for text, lines in _blocks():
            if not self._write_some(text):
                continue
            some = list(map(ord, text))
            texts = []
            if newline:
                texts = self._write_some(lines).split(newline)[:-1]
            if len(texts) != len(some):  # the newline, and other values with its code
                texts = [self.write(chr(value)) for value in some]
            write.update(((value,), structure.of_text(text))
                         for value, text in zip(some, texts) if text)
        for values in sequences:
            text = self.write("".join(map(chr, values)))
            if text:
                write[values] = structure.of_text(text)
        return write


class PythonPeer(OneByOne):
    name = "Python"

    def __init__(self, charset):
        self._charset = charset

    @staticmethod
    @functools.cache
    def names():
        names = {module.name: [] for module in pkgutil.iter_modules(encodings.__path__)
                 if module.name not in ("aliases", "charmap", "undefined", "mbcs", "oem")}
        for alias, name in encodings.aliases.aliases.items():
            names.setdefault(name, []).append(alias)
        return names

    def read(self, text):
        try:
            return text.decode(self._charset)
        except UnicodeError:
            return None

    def write(self, text):
        try:
            return text.encode(self._charset)
        except UnicodeError:
            return None

    def _write_some(self, text):
        return text.encode(self._charset, "ignore")


class IconvPeer(OneByOne):
    name = "C library"
    _libc = ctypes.CDLL(None)
    _libc.iconv_open.restype = ctypes.c_void_p
    _libc.iconv.restype = ctypes.c_size_t

    def __init__(self, charset):
        self._reader = self._open("UTF-32LE", charset)
        self._writer = self._open(charset, "UTF-32LE")
        self._ignorer = self._open(charset + "//IGNORE", "UTF-32LE")

    @staticmethod
    @functools.cache
    def names():
        """As the configuration of the modules has them."""
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

    def read(self, text):
        result = self._convert(self._reader, text)
        return None if result is None else result.decode("utf-32-le", "surrogatepass")

    def write(self, text):
        return self._convert(self._writer, text.encode("utf-32-le", "surrogatepass"))

    def _write_some(self, text):
        return self._convert(self._ignorer, text.encode("utf-32-le"), ignore=True) or b""


class Iso2022Peer(OneByOne):
    """A character set that the C library has behind a designation only."""
    name = "C library"

    def __init__(self, charset, designation):
        self._peer = IconvPeer(charset)
        self._designation = designation

    def read(self, text):
        return self._peer.read(self._designation + text)

    def write(self, text):
        result = self._peer.write(text) or b""
        return result[len(self._designation):-1] if result.startswith(self._designation) else None

    def _write_some(self, text):
        return self._peer._write_some(text)


class IcuPeer(OneByOne):
    """has_fallbacks: writes also what ICU marks as a fallback."""
    name = "ICU"
    _path = max(glob.glob("/usr/lib/*/libicuuc.so.*"), key=len, default=None) or \
        ctypes.util.find_library("icuuc")
    _version = re.search(r"\.so\.(\d+)", _path).group(1)
    _library = ctypes.CDLL(_path)

    def _function(self, name):
        return getattr(self._library, f"{name}_{self._version}")

    def __init__(self, charset, has_fallbacks=True):
        self._has_fallbacks = has_fallbacks
        self._converter = self._open(charset, "STOP")
        self._ignorer = self._open(charset, "SKIP")
        self._to_units = self._function("ucnv_toUChars")
        self._from_units = self._function("ucnv_fromUChars")

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
        self._function("ucnv_setFallback")(converter, ctypes.c_byte(self._has_fallbacks))
        return converter

    def read(self, text):
        error = ctypes.c_int(0)
        size = 2 * len(text) + 16
        target = (ctypes.c_uint16 * size)()
        count = self._to_units(self._converter, target, size, text, len(text), ctypes.byref(error))
        if error.value > 0:
            return None
        return bytes(target)[:2 * count].decode("utf-16-le", "surrogatepass")

    def write(self, text, converter=None):
        error = ctypes.c_int(0)
        data = text.encode("utf-16-le", "surrogatepass")
        target = ctypes.create_string_buffer(4 * len(data) + 16)
        count = self._from_units(converter or self._converter, target, len(target), data,
                                 len(data) // 2, ctypes.byref(error))
        return None if error.value > 0 or count == 0 else target.raw[:count]

    def _write_some(self, text):
        return self.write(text, self._ignorer) or b""


class NkfPeer:
    """Writes only, and whole texts: a line for each character."""
    name = "nkf"

    def __init__(self, charset):
        self._charset = charset

    def encode_lines(self, characters):
        text = "\n".join(characters).encode()
        result = subprocess.run(["nkf", "-W", f"--oc={self._charset}", "-x", "-m0"], input=text,
                                capture_output=True, check=True)
        lines = result.stdout.split(b"\n")
        if len(lines) != len(characters):
            raise ValueError(f"nkf made {len(lines)} lines of {len(characters)}")
        return lines


class _Dumping:
    """A peer whose own program, which goes on running, prints what a charset has."""
    _program = None
    _process = None  # which has the program

    def __init__(self, charset):
        self._charset = charset
        self._all = {}

    @classmethod
    def _ask(cls, question):
        """The words of each line of the answer."""
        if cls._process != os.getpid():  # that of the parent is not to be shared
            cls._process = os.getpid()
            cls._program = subprocess.Popen(cls.command, stdin=subprocess.PIPE,
                                            stdout=subprocess.PIPE, text=True)
        cls._program.stdin.write(question + "\n")
        cls._program.stdin.flush()
        lines = []
        for line in cls._program.stdout:
            if line == "end\n":
                return lines
            lines.append(line.split())
        cls._process = None
        raise LookupError(f"{cls.name} cannot answer {question}")

    @classmethod
    @functools.cache
    def names(cls):
        return {words[1]: words[2:] for words in cls._ask("list")}

    @staticmethod
    def _values(text):
        """Of scalar values; surrogates that the program printed one by one are joined."""
        units = "".join(chr(int(value, 16)) for value in text.split("+"))
        return units.encode("utf-16-le", "surrogatepass").decode("utf-16-le", "surrogatepass")

    def read(self, text):
        answer = self._ask(f"{self._charset} text ={text.hex()}")
        return self._values(answer[0][2]) if answer else None

    def write(self, text):
        values = "+".join(f"{ord(value):X}" for value in text)
        answer = self._ask(f"{self._charset} text {values}")
        return bytes.fromhex(answer[0][1]) if answer else None

    def read_some(self, texts):
        """{text: what it is read as} of the texts that are read."""
        answer = self._ask(f"{self._charset} text " + " ".join(f"={text.hex()}" for text in texts))
        return {bytes.fromhex(code): self._values(values) for _, code, values in answer}

    def _asked(self, structure):
        if structure.text not in self._all:
            self._all[structure.text] = [
                (kind, bytes.fromhex(code), tuple(map(ord, self._values(values))))
                for kind, code, values in self._ask(f"{self._charset} {structure.text}")]
        return self._all[structure.text]

    def read_all(self, structure):
        return {code: values for kind, code, values in self._asked(structure) if kind == "read"}

    def write_all(self, structure, _):
        return {values: structure.of_text(code)
                for kind, code, values in self._asked(structure) if kind == "write"}


class JdkPeer(_Dumping):
    name = "JDK"
    command = ["java", str(HERE / "PrintCharsets.java")]


class PerlPeer(_Dumping):
    name = "Perl"
    command = ["perl", str(HERE / "print_charsets.pl")]


PEERS = {peer.name: peer for peer in (IconvPeer, IcuPeer, PythonPeer, JdkPeer, PerlPeer)}
