"""The encodings as codecs of Python: open(), incremental ones, and the registry."""

from __future__ import annotations

import codecs
import functools
import io
import os
import sys
from collections.abc import Callable, Iterable
from typing import IO, TYPE_CHECKING, Any, ClassVar, cast

from . import _builtin_names, _native

if TYPE_CHECKING:
    from typing_extensions import Buffer


def _class_attributes(encoding: str | int, label: str | None, python_spans: bool) -> dict[str, Any]:
    if label is None:
        label = encoding if isinstance(encoding, str) else _native.properties(encoding)[0]
    encode, decode, encode_step, decode_step = _native.codec_functions(
        encoding, label, python_spans
    )
    return {
        "encode_whole": encode,
        "decode_whole": decode,
        "_encode_step": encode_step,
        "_decode_step": decode_step,
        "encoding": label,
    }


class _Errors:
    """The name of the error handler: a str, which cannot be deleted."""

    @property
    def errors(self) -> str:
        return self._errors

    @errors.setter
    def errors(self, name: str) -> None:
        if not isinstance(name, str):
            raise TypeError("errors must be a string")
        self._errors = name


def _behind(data: Buffer, used: int) -> bytes:
    """The bytes of a buffer, whatever its items are, behind the first; of those that a handler put
    in there may be more than there are."""
    view = memoryview(data)
    if view.itemsize != 1 or view.ndim != 1:
        view = memoryview(view.tobytes())
    return bytes(view[used:])


class IncrementalDecoder(_Errors, codecs.IncrementalDecoder):
    """Decodes a text piece by piece. The text does not depend on how it is cut.

    >>> decoder = IncrementalDecoder('gb18030')
    >>> decoder.decode(b'\\x81'), decoder.decode(b'\\x30\\x84'), decoder.decode(b'\\x36', final=True)
    ('', '', '¥')
    """

    _decode_step: Callable[[Buffer, str | None, bool, int], tuple[str, int, int]]
    _most_pending: ClassVar[int] = 1 << 20

    def __init__(self, encoding: str | int, errors: str = "strict"):
        super().__init__(errors)
        self.__dict__.update(_class_attributes(encoding, None, False))
        self._pending = b""
        self._state = 0

    def decode(self, input: Buffer, final: bool = False) -> str:
        if self._pending:
            input = self._pending + bytes(input)
        text, used, state = self._decode_step(input, self.errors, final, self._state)
        self._pending = _behind(input, used)
        self._state = state
        return text

    def reset(self) -> None:
        self._pending = b""
        self._state = 0

    def getstate(self) -> tuple[bytes, int]:
        return self._pending, self._state

    def setstate(self, state: tuple[bytes, int]) -> None:
        pending, number = state
        if len(memoryview(pending)) > self._most_pending:
            raise UnicodeError("pending buffer too large")
        # An empty step tells of a state that is none.
        self._decode_step(b"", None, False, number)
        self._pending = bytes(memoryview(pending))
        self._state = number


class IncrementalEncoder(_Errors, codecs.IncrementalEncoder):
    """Encodes a text piece by piece; shift sequences stand where the text as a whole has them.

    >>> encoder = IncrementalEncoder('iso-2022-jp')
    >>> encoder.encode('日') + encoder.encode('本') + encoder.encode('', final=True)
    b'\\x1b$BF|K\\\\\\x1b(B'
    """

    _encode_step: Callable[[str, str | None, bool, int], tuple[bytes, int, int]]
    # Of the text that waits, in UTF-8: the bytes that tell its length, and the most of it.
    _length_bytes: ClassVar[int] = 4
    _most_pending: ClassVar[int] = 1 << 20

    def __init__(self, encoding: str | int, errors: str = "strict"):
        super().__init__(errors)
        self.__dict__.update(_class_attributes(encoding, None, False))
        self._pending = ""
        self._state = self._first_state()

    def _first_state(self) -> int:
        """That of the beginning. 0 is one where text came before: io.TextIOWrapper sets it where it
        appends."""
        try:
            return self._encode_step("", None, True, 0)[2]
        except LookupError:  # only read
            return 0

    def encode(self, input: str, final: bool = False) -> bytes:
        if self._pending:
            input = self._pending + input
        data, used, state = self._encode_step(input, self.errors, final, self._state)
        self._pending = input[used:]
        self._state = state
        return data

    def reset(self) -> None:
        self._pending = ""
        self._state = self._first_state()

    def getstate(self) -> int:
        """From the lowest byte up: the length of the text that waits, that text in UTF-8, and the
        state of the encoding, as the codecs of Python have it."""
        pending = self._pending.encode("utf-8", "surrogatepass")
        packed = len(pending).to_bytes(self._length_bytes, "little") + pending
        return self._state << 8 * len(packed) | int.from_bytes(packed, "little")

    def setstate(self, state: int | str) -> None:
        if not isinstance(state, int):
            raise TypeError("the state must be an int")
        if state < 0:
            raise OverflowError("can't convert negative int to unsigned")
        length_bits = 8 * self._length_bytes
        count = state & ((1 << length_bits) - 1)
        if count > self._most_pending:
            raise UnicodeError("pending buffer too large")
        state >>= length_bits
        packed = state & ((1 << 8 * count) - 1)
        pending = packed.to_bytes(count, "little").decode("utf-8", "surrogatepass")
        number = state >> 8 * count
        self._encode_step("", None, False, number)
        self._pending = pending
        self._state = number


# ---- Streams of the codecs module. ----


class StreamWriter(codecs.StreamWriter):
    """A text stream over a binary one; its classes are made by codec_info()."""

    _encoder_class: type[IncrementalEncoder]

    def __init__(self, stream: Any, errors: str = "strict"):
        super().__init__(stream, errors)
        self._encoder = self._encoder_class(errors)
        self._end: int | None = None  # of what was written, where that can be told

    def write(self, text: str) -> None:
        self._encoder.errors = self.errors
        self.stream.write(self._encoder.encode(text))
        self._end = self._place() if self._encoder.getstate() else None

    def _place(self) -> int | None:
        try:
            return cast(int, cast(Any, self.stream).tell())
        except (AttributeError, OSError, ValueError):
            return None

    def writelines(self, list: Iterable[str]) -> None:
        for line in list:
            self.write(line)

    def reset(self) -> None:
        data = self._encoder.encode("", True)
        if data:
            # The classes of codecs seek before they reset.
            stream: Any = self.stream
            place = self._place()
            is_elsewhere = self._end is not None and place not in (None, self._end)
            if is_elsewhere:
                stream.seek(self._end)
            stream.write(data)
            if is_elsewhere:
                stream.seek(place)
        self._encoder.reset()


class StreamReader(codecs.StreamReader):
    """A text stream over a binary one; its classes are made by codec_info()."""

    _decoder_class: type[IncrementalDecoder]

    def __init__(self, stream: Any, errors: str = "strict"):
        super().__init__(stream, errors)
        self._decoder = self._decoder_class(errors)

    def _read(self, read: Callable[..., bytes], size: int | None) -> str:
        self._decoder.errors = self.errors
        if size is None or size < 0:
            return self._decoder.decode(read(), True)
        while True:
            data = read(size)
            # What is there may be less than a character.
            text = self._decoder.decode(data, not data)
            if text or not data:
                return text
            size = 1

    def read(self, size: int | None = -1, chars: int | None = -1, firstline: bool = False) -> str:
        if size is not None and size < 0 and chars is not None and chars > 0:
            size = chars
        return "" if size == 0 else self._read(self.stream.read, size)

    def readline(self, size: int | None = None, keepends: bool = True) -> str:
        line = "" if size == 0 else self._read(cast(Any, self.stream).readline, size)
        return line if keepends else "".join(line.splitlines(False))

    def readlines(self, sizehint: int | None = None, keepends: bool = True) -> list[str]:
        return self._read(self.stream.read, sizehint or -1).splitlines(True)

    def reset(self) -> None:
        self._decoder.reset()


class _CharacterReader(StreamReader):
    """One that finds lines in the text, where not every byte 0A ends one, or others do so."""

    bytebuffer: bytes

    def __init__(self, stream: Any, errors: str = "strict"):
        super().__init__(stream, errors)
        self._state = 0

    def decode(self, input: Buffer, errors: str | None = "strict", final: bool = False) -> Any:
        text, used, self._state = self._decoder._decode_step(input, errors, final, self._state)
        return text, used

    def read(self, size: int | None = -1, chars: int | None = -1, firstline: bool = False) -> str:
        size = -1 if size is None else size
        chars = -1 if chars is None else chars
        text = codecs.StreamReader.read(self, size, chars, firstline)
        if self.bytebuffer and (size < 0 > chars or (not text and size != 0 != chars)):
            data, self.bytebuffer = self.bytebuffer, b""
            text += self.decode(data, self.errors, True)[0]
        return text

    readline = codecs.StreamReader.readline
    readlines = codecs.StreamReader.readlines

    def reset(self) -> None:
        codecs.StreamReader.reset(self)
        self._state = 0


# ---- The registry. ----


def codec_info(
    encoding: str | int, name: str | None = None, *, label: str | None = None, builtin: bool = False
) -> codecs.CodecInfo:
    """A codec as the registry wants it. ``name`` is what it calls itself; ``label``, what
    exceptions call it; ``builtin``: it takes the place of one of Python's own, and tells handlers of
    the same pieces of bad text as that."""
    if name is None:
        name = encoding if isinstance(encoding, str) else _native.properties(encoding)[0]
    attributes = _class_attributes(encoding, label or name, builtin)

    class Encoder(IncrementalEncoder):
        def __init__(self, errors: str = "strict"):
            codecs.IncrementalEncoder.__init__(self, errors)
            self._pending = ""
            self._state = self._first_state()

    class Decoder(IncrementalDecoder):
        def __init__(self, errors: str = "strict"):
            codecs.IncrementalDecoder.__init__(self, errors)
            self._pending = b""
            self._state = 0

    for made, attribute in ((Encoder, "_encode_step"), (Decoder, "_decode_step")):
        setattr(made, attribute, attributes[attribute])
        setattr(made, "encoding", attributes["encoding"])
    if builtin:
        Decoder._most_pending = Encoder._most_pending = 8
        Encoder._length_bytes = 1
    try:
        has_line_feed = attributes["decode_whole"](b"\n")[0] == "\n"
    except UnicodeDecodeError:
        has_line_feed = False
    is_stateless = _native.properties(encoding)[2]
    attributes_of_streams = {"encode": staticmethod(attributes["encode_whole"])}
    reader_class: type[StreamReader] = _CharacterReader
    if has_line_feed and (builtin or is_stateless):
        reader_class = StreamReader
        attributes_of_streams["decode"] = staticmethod(attributes["decode_whole"])
    reader: Any = type("Reader", (reader_class,), {**attributes_of_streams, "_decoder_class": Decoder})
    attributes_of_streams["decode"] = staticmethod(attributes["decode_whole"])
    writer: Any = type("Writer", (StreamWriter,), {**attributes_of_streams, "_encoder_class": Encoder})
    return codecs.CodecInfo(
        name=name,
        encode=attributes["encode_whole"],
        decode=attributes["decode_whole"],
        incrementalencoder=Encoder,
        incrementaldecoder=Decoder,
        streamreader=reader,
        streamwriter=writer,
    )


_PREFIX = "encconv_"


@functools.cache
def _registered(name: str) -> codecs.CodecInfo | None:
    # The registry gives names in small letters with "_" for blanks, hyphens and more.
    own = name[len(_PREFIX) :] if name.startswith(_PREFIX) else name
    try:
        return codec_info(own, name)
    except LookupError:
        return None


def _search(name: str) -> codecs.CodecInfo | None:
    return _registered(name)


def register() -> None:
    """Makes every encoding a codec of Python: under each of its names with ``encconv_`` in front,
    and under the name itself where Python has no codec of that name.

    >>> register()
    >>> b'\\x83\\x81\\x86Q'.decode('ibm297'), 'ab'.encode('encconv_utf-16le')
    ('caf{', b'a\\x00b\\x00')

    What Python knows goes before: see ``replace_builtin``.
    """
    if not _is_registered():
        codecs.register(_search)
        _searches.append(_search)


_searches: list[Callable[[str], codecs.CodecInfo | None]] = []


def _is_registered() -> bool:
    return _search in _searches


def _replacement(name: str) -> codecs.CodecInfo | None:
    entry = _builtin_names.find(name)
    if entry is None:
        return None
    return codec_info(entry.encoding, entry.name, label=entry.label, builtin=True)


def replace_builtin() -> None:
    """Has the codecs here serve the names that Python has for Chinese, Japanese and Korean text
    and for pages of single bytes.

    Names that were looked up before in the process are replaced too. ``restore_builtin`` undoes it.

    >>> replace_builtin()
    >>> 'テスト'.encode('cp932')
    b'\\x83e\\x83X\\x83g'
    >>> restore_builtin()
    """
    _builtin_names.install(_replacement)


def restore_builtin() -> None:
    """Has Python's own codecs serve their names again."""
    _builtin_names.uninstall()


# ---- Files. ----


def open(
    file: str | bytes | os.PathLike[Any] | int,
    mode: str = "r",
    buffering: int = -1,
    encoding: str | int | None = None,
    errors: str | None = None,
    newline: str | None = None,
    closefd: bool = True,
    opener: Callable[[str, int], int] | None = None,
) -> IO[Any]:
    """The built-in open(), but that text may be in any encoding here; ``encoding="auto"`` finds out
    the encoding of a file that is read.

    >>> import tempfile, os
    >>> path = os.path.join(tempfile.mkdtemp(), 'letter.txt')
    >>> with open(path, 'w', encoding='ibm037') as letter:
    ...     letter.write('Grüße')
    5
    >>> with open(path, 'rb') as letter:
    ...     letter.read()
    b'\\xc7\\x99\\xdcY\\x85'
    >>> with open(path, encoding='ibm037') as letter:
    ...     letter.read()
    'Grüße'
    """
    if "b" in mode or encoding is None:
        name = None if encoding is None else str(encoding)
        return io.open(file, mode, buffering, name, errors, newline, closefd, opener)
    if encoding == "auto":
        if mode not in ("r", "rt"):
            raise ValueError("only a file that is read can tell its encoding")
        encoding = _found_encoding(file)
    register()
    number = _native.code_page(encoding)
    return io.open(
        file, mode, buffering, f"{_PREFIX}{number}", errors, newline, closefd, opener
    )


def _found_encoding(file: object) -> str:
    from ._conversion import detect

    if not isinstance(file, (str, bytes, os.PathLike)):
        raise ValueError("only a file with a path can tell its encoding")
    with io.open(file, "rb") as raw:
        data = raw.read(1 << 20)
        found = detect(data, is_beginning=bool(raw.read(1)))
    if found.encoding is None and found.kind not in ("empty",):
        names = ", ".join(candidate.name for candidate in found.candidates)
        why = f"it may be {names}" if names else found.reason
        raise LookupError(f"the encoding of {os.fsdecode(file)} is not sure: {why}")
    return found.encoding or "utf-8"


assert sys.implementation.name == "cpython"
