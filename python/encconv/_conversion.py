"""Bytes to bytes, reports, detection and the list of encodings."""

from __future__ import annotations

import functools
from collections.abc import Iterable
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any

from . import _native

if TYPE_CHECKING:
    from typing_extensions import Buffer


# ---- Encodings. ----


@dataclass(frozen=True, slots=True)
class Encoding:
    """What is known of an encoding."""

    number: int  #: by which it can be named as well
    name: str  #: its preferred name
    aliases: tuple[str, ...]  #: its other names
    kind: str  #: "unicode", "single-byte", "double-byte", "multi-byte" or "stateful"
    description: str  #: a few words
    can_decode: bool
    can_encode: bool


@functools.cache
def _encodings() -> tuple[Encoding, ...]:
    return tuple(Encoding(*entry) for entry in _native.encodings())


def encodings() -> list[Encoding]:
    """All encodings, in ascending order of number.

    >>> [e.name for e in encodings() if e.number in (37, 932)]
    ['IBM037', 'Shift_JIS']
    """
    return list(_encodings())


@functools.cache
def _by_number() -> dict[int, Encoding]:
    return {encoding.number: encoding for encoding in _encodings()}


def find_encoding(name: str | int) -> Encoding:
    """The encoding of a name or number; LookupError for one that is not known.

    >>> find_encoding('CP-437').description
    'DOS, United States'
    """
    return _by_number()[_native.code_page(name)]


# ---- Conversion with a report. ----


@dataclass(frozen=True, slots=True)
class Problem:
    """A piece of input that could not be converted, or not as it is."""

    offset: int  #: where it begins, in bytes of the input
    line: int  #: of the text, counted from 1
    length: int  #: in bytes
    kind: str  #: "malformed", "unencodable", or "approximated": another character was written
    data: bytes  #: the first bytes of the piece, 16 at most
    character: str | None  #: the one that the target lacks; none when malformed
    written: str  #: what was written for an approximated one


@dataclass(frozen=True, slots=True)
class DecodeReport:
    """A text and what was wrong with its bytes."""

    text: str  #: up to the first problem where that stopped the conversion
    complete: bool  #: all of the bytes were decoded or treated
    problem_count: int
    problems: tuple[Problem, ...]  #: the first of them


class ConversionError(ValueError):
    """Bytes could not be converted; ``problem`` says which, ``output`` is what came before."""

    def __init__(self, problem: Problem, source: str | int, target: str | int, output: bytes):
        what = (
            f"{' '.join(f'{byte:02X}' for byte in problem.data)} is no text in {source}"
            if problem.kind == "malformed"
            else f"{target} lacks U+{ord(problem.character or chr(0)):04X}"
        )
        super().__init__(f"byte offset {problem.offset}, line {problem.line}: {what}")
        self.problem = problem
        self.output = output
        self._names = (source, target)

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (self.problem, *self._names, self.output), self.__dict__


def _problems(entries: Iterable[tuple[Any, ...]]) -> tuple[Problem, ...]:
    return tuple(
        Problem(offset, line, length, kind, data, None if code is None else chr(code), written)
        for offset, line, length, kind, data, code, written in entries
    )


def convert(
    data: Buffer,
    source: str | int,
    target: str | int,
    on_error: str = "stop",
    *,
    byte_order_mark: bool = False,
) -> bytes:
    """Bytes of one encoding as bytes of another.

    ``on_error`` is what the command-line tool takes: ``stop`` (which raises ConversionError),
    ``drop``, ``substitute``, ``substitute=TEXT``, ``hex``, ``alternate=ENCODING`` or ``raw``, with
    ``compose`` and ``best-fit`` in front of it if wanted.

    >>> convert('1 €'.encode(), 'utf-8', 'iso-8859-1', 'hex')
    b'1 &#x20AC;'
    """
    output: bytes
    output, complete, _, _, problems = _native.convert(
        data, source, target, on_error, byte_order_mark, 1
    )
    if not complete:
        raise ConversionError(_problems(problems)[0], source, target, output)
    return output


class Converter:
    """Converts bytes of one encoding to bytes of another, piece by piece.

    ``on_error`` and ``byte_order_mark`` are as in ``convert``; offsets and lines of problems count
    from the first piece on. What ``ConversionError.output`` has is that of the last piece.

    >>> converter = Converter('shift_jis', 'utf-8')
    >>> converter.convert(b'\\x83') + converter.convert(b'\\x65', final=True)
    b'\\xe3\\x83\\x86'
    """

    def __init__(
        self,
        source: str | int,
        target: str | int,
        on_error: str = "stop",
        *,
        byte_order_mark: bool = False,
    ):
        self._conversion = _native.Conversion(source, target, on_error, byte_order_mark)
        self._names = (source, target)

    def convert(self, data: Buffer, final: bool = False) -> bytes:
        """The output of a piece, as far as what follows does not matter to it; ``final`` says that
        nothing follows."""
        output, complete, problems = self._conversion.push(data, final)
        if not complete:
            raise ConversionError(_problems(problems)[0], *self._names, output)
        return output


def decode_report(
    data: Buffer, encoding: str | int, on_error: str = "substitute", *, most: int = 1000
) -> DecodeReport:
    """The text of bytes, with the place of everything that was malformed.

    At most ``most`` problems are told; all are counted. ``on_error`` is as in ``convert``.

    >>> report = decode_report(b'one\\ntwo \\x81 three', 'shift_jis')
    >>> ascii(report.text)
    "'one\\\\ntwo \\\\ufffd three'"
    >>> report.problems[0].line, report.problems[0].offset, report.problems[0].data
    (2, 8, b'\\x81')
    """
    text, complete, count, _, problems = _native.convert(
        data, encoding, None, on_error, False, most
    )
    return DecodeReport(text, complete, count, _problems(problems))


# ---- Cutting a text into pieces. ----


def find_cut(
    data: Buffer,
    encoding: str | int,
    offset: int = 0,
    *,
    position: int = 0,
    at_cut: bool = False,
    behind_line: bool = False,
) -> int | None:
    """The first place at ``offset`` or behind it where a piece of a text can begin on its own.

    ``data`` is the text or any part of it. ``position`` is the place of its first byte in the file;
    ``at_cut`` says that a piece can begin there, as it can at position 0. ``behind_line``: only
    places behind a line end. None where no such place is in sight.

    The pieces of a clean text, decoded apart and joined, are the text.

    >>> data = 'テスト'.encode('shift_jis')
    >>> find_cut(data, 'shift_jis', 3)
    4
    >>> find_cut(data[1:3], 'shift_jis', position=1) is None
    True
    """
    return _native.find_cut(data, encoding, offset, position, at_cut, behind_line)


# ---- Finding out an encoding. ----


@dataclass(frozen=True, slots=True)
class Candidate:
    """An encoding that bytes may be in."""

    number: int  #: 0 for one that cannot be converted
    name: str
    confidence: float  #: from 0 to 1
    evidence: str  #: "mark", "declaration", "structure" or "statistics"
    reason: str  #: a few words


@dataclass(frozen=True, slots=True)
class Detection:
    """What bytes turned out to be."""

    kind: str  #: "empty", "ascii", "text", "binary" or "unknown"
    candidates: tuple[Candidate, ...]  #: the likeliest first
    reason: str  #: where there are none: why

    @property
    def encoding(self) -> str | None:
        """The name of the likeliest if it may be taken without asking anybody, or none."""
        if not self.candidates:
            return None
        first = self.candidates[0]
        return first.name if first.number != 0 and first.confidence >= 0.5 else None


def detect(data: Buffer, *, is_beginning: bool = False) -> Detection:
    """Finds out which encoding a text is in, or that it is no text.

    ``is_beginning``: the text goes on behind the bytes.

    >>> detect('Съешь ещё этих мягких французских булок'.encode('cp1251')).encoding
    'windows-1251'
    """
    kind, candidates, reason = _native.detect(data, is_beginning)
    return Detection(kind, tuple(Candidate(*entry) for entry in candidates), reason)


# ---- Garbled text. ----


@dataclass(frozen=True, slots=True)
class Misreading:
    """Bytes of one encoding that were taken for those of another."""

    written: str  #: the encoding that the bytes were in
    read: str  #: the one that they were taken for


@dataclass(frozen=True, slots=True)
class Origin:
    """A text that may have become a garbled one."""

    text: str
    misreadings: tuple[Misreading, ...]  #: what happened to it, in that order
    confidence: float  #: from 0 to 1


def trace(garbled: str) -> tuple[Origin, ...]:
    """Traces garbled text back: what it was, and which encodings were mixed up.

    The likeliest origin first; none when the text is likelier as it is.

    >>> garbled = 'déjà vu'.encode().decode('cp1252')
    >>> origin = trace(garbled)[0]
    >>> origin.text, origin.misreadings[0]
    ('déjà vu', Misreading(written='UTF-8', read='windows-1252'))
    """

    def name(number: int) -> str:
        return _native.properties(number)[0]

    text = garbled.encode('utf-16', 'surrogatepass').decode('utf-16', 'replace')
    return tuple(
        Origin(origin, tuple(Misreading(name(a), name(b)) for a, b in steps), confidence)
        for origin, steps, confidence in _native.trace(text)
    )
