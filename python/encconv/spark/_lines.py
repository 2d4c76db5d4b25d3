"""Lines of text as columns."""

from __future__ import annotations

from collections.abc import Iterator
from dataclasses import dataclass

import numpy
import pyarrow

from .. import _native, find_cut
from ._files import Parts
from ._options import Settings, TextForm
from ._pieces import Piece, find_line

_BATCH = 2 << 20  # bytes of text that are decoded at once
_UTF8 = 65001
_TRIES = 16  # line ends that are asked about in one window


@dataclass(frozen=True, slots=True)
class Lines:
    """Lines that were decoded."""

    values: pyarrow.Array
    offsets: numpy.ndarray | None  #: where they begin in the file, if it was asked for
    problems: tuple  #: (offset in the file, message), ascending


def _ends_in(data: bytes, form: TextForm) -> numpy.ndarray:
    """Where the lines of bytes end: behind their line ends."""
    kind = {1: "u1", 2: "<u2", 4: "<u4"}[form.unit]
    units = numpy.frombuffer(data, kind, len(data) // form.unit)
    found = units == int.from_bytes(form.line_ends[0], "little")
    for other in form.line_ends[1:]:
        found |= units == int.from_bytes(other, "little")
    return (numpy.flatnonzero(found) + 1) * form.unit


def _split(text: bytes, form: TextForm) -> pyarrow.Array:
    """The lines of a text in UTF-8, without their ends."""
    if form.has_next_line:
        text = text.replace(b"\xc2\x85", b"\n")
    count, offsets, data = _native.split_lines(text)
    buffers = [None, pyarrow.py_buffer(offsets), pyarrow.py_buffer(data)]
    return pyarrow.Array.from_buffers(pyarrow.utf8(), count, buffers)


def _message(offset: int, data: bytes, encoding: str) -> str:
    return f"byte offset {offset}: {data.hex(' ').upper()} is no text in {encoding}"


class DamagedInput(ValueError):
    """Input that cannot be converted under the treatment ``stop``."""


def stop(path: str, message: str) -> DamagedInput:
    """The exception that ends a task at damaged input."""
    return DamagedInput(f"encconv: {path}, {message}")


def _decode(
    data: bytes, base: int, form: TextForm, settings: Settings, path: str, with_offsets: bool
) -> Iterator[Lines]:
    """Lines of bytes which begin at base in their file; more than one where the line ends in the
    bytes are not all those of the text, as in HZ and UTF-7."""
    text, is_whole, count, _, told = _native.convert(
        data, form.encoding, _UTF8, settings.errors, False, len(data)
    )
    problems = tuple((base + p[0], _message(base + p[0], p[4], form.encoding)) for p in told)
    if not is_whole:
        raise stop(path, problems[0][1])
    values = _split(text, form)
    if not with_offsets:
        yield Lines(values, None, problems)
        return
    starts = numpy.concatenate(([0], _ends_in(data, form)))
    if starts[-1] == len(data):
        starts = starts[:-1]
    if len(starts) == len(values):
        yield Lines(values, starts + base, problems)
        return
    middle = find_cut(data, form.encoding, len(data) // 2, at_cut=True, behind_line=True)
    if middle is None or middle == 0:
        # A line is where the piece begins that can be told apart.
        yield Lines(values, numpy.full(len(values), base), problems)
        return
    yield from _decode(data[:middle], base, form, settings, path, True)
    yield from _decode(data[middle:], base + middle, form, settings, path, True)


def _chunks(piece: Piece, settings: Settings) -> Iterator[tuple[bytes, int, TextForm]]:
    """The bytes of whole lines that begin in a piece, and where they begin."""
    with Parts(piece.path) as parts:
        form = TextForm.of(settings.encoding, parts.read(0, 4))
        begin = find_line(parts, piece.size, form, piece.begin) or form.mark
        end = piece.size if piece.is_last else find_line(parts, piece.size, form, piece.end)
        wanted = _BATCH
        while begin < end:
            data = parts.read(begin, min(begin + wanted, end))
            if not data:
                raise stop(piece.path, f"byte offset {begin}: the file has become shorter")
            if begin + len(data) < end:
                cut = _last_line(data, form, begin)
                if cut is None:
                    wanted *= 2  # a line that is longer
                    continue
                data = data[:cut]
            yield data, begin, form
            begin += len(data)
            wanted = _BATCH


def read_lines(piece: Piece, settings: Settings, with_offsets: bool) -> Iterator[Lines]:
    """The lines that begin in a piece."""
    for data, begin, form in _chunks(piece, settings):
        yield from _decode(data, begin, form, settings, piece.path, with_offsets)


def read_text(piece: Piece, settings: Settings) -> Iterator[bytes]:
    """The lines that begin in a piece, as they are in UTF-8; a line end of EBCDIC is one there."""
    for data, begin, form in _chunks(piece, settings):
        text, is_whole, _, _, told = _native.convert(
            data, form.encoding, _UTF8, settings.errors, False, 1
        )
        if not is_whole:
            offset = begin + told[0][0]
            raise stop(piece.path, _message(offset, told[0][4], form.encoding))
        yield text.replace(b"\xc2\x85", b"\n") if form.has_next_line else text


def _last_line(data: bytes, form: TextForm, position: int) -> int | None:
    """One of the last lines of bytes that can be read on its own: where it begins."""
    size = 1 << 12
    while True:
        begin = max(0, len(data) - size) // form.unit * form.unit
        tail = data[begin:]
        ends = _ends_in(tail, form)
        for at in reversed(ends[-_TRIES:].tolist()):
            found = find_cut(
                tail, form.encoding, at, position=position + begin, at_cut=begin == 0, behind_line=True
            )
            if found == at:
                return begin + at
        if begin == 0:
            return None
        size *= 16
