"""Dividing files into pieces which tasks read on their own."""

from __future__ import annotations

from dataclasses import dataclass

from .. import _native, find_cut
from ._files import File, Parts, list_files
from ._options import Settings, TextForm

# A task costs a tenth of a second before it reads anything, so that Spark's own pieces are of 128 MiB.
# Those of less than 1 GiB are smaller, for the sake of workers that would have none.
_LEAST_PIECE = 16 << 20
_MOST_PIECE = 128 << 20
_ENOUGH_PIECES = 8
_WINDOW = 1 << 16  # in which a cut is looked for at first
_WALK = 8 << 20


@dataclass(frozen=True, slots=True)
class Piece:
    """Nominal bounds of a part of a file; those of text move on to the next line.

    ``is_last``: it goes to the end of the file.
    """

    path: str
    size: int  #: of the file
    begin: int
    end: int

    @property
    def is_last(self) -> bool:
        return self.end >= self.size


def find_line(parts: Parts, size: int, form: TextForm, offset: int, most: int = 0) -> int | None:
    """The first place at or behind offset where a line begins that can be read on its own; the size
    of the file where there is none. Nothing where none is in sight within ``most`` bytes.
    """
    if offset <= 0:
        return 0
    if offset >= size:
        return size
    begin = max(0, offset - _WINDOW)
    end = offset + _WINDOW
    while True:
        window = parts.read(begin, min(end, size))
        at: int | None = offset - begin
        while at is not None:
            at = find_cut(window, form.encoding, at, position=begin, behind_line=True)
            if at is not None:
                if window[max(0, at - form.unit) : at] in form.line_ends:
                    return begin + at
                at += 1
        if end >= size:
            return size
        if most and end - offset > most:
            return None
        end = offset + (end - offset) * 4


def _record_starts(parts: Parts, file: File, format: str, distance: int) -> list[int]:
    """Places where a record, or a block, begins, about ``distance`` bytes apart: found by walking
    along the descriptor words.
    """
    walk = _native.RecordStarts(format, distance)
    for begin in range(0, file.size, _WALK):
        walk.push(parts.read(begin, min(begin + _WALK, file.size)))
    return walk.starts


def _bounds(file: File, settings: Settings, size: int) -> list[int]:
    if file.size <= size:
        return [0, file.size]
    if settings.records.startswith("fixed:"):
        length = int(settings.records[len("fixed:") :])
        step = max(1, size // length) * length
        return [*range(0, file.size, step), file.size]
    with Parts(file.path) as parts:
        if settings.records:
            starts = _record_starts(parts, file, settings.records, size)
            return [0, *starts, file.size]
        form = TextForm.of(settings.encoding, parts.read(0, 4))
        # An encoding that shows nowhere where a piece may begin is read in one.
        if find_line(parts, file.size, form, size, most=size) is None:
            return [0, file.size]
    return [*range(0, file.size, size), file.size]


def pieces_of(file: File, settings: Settings, size: int) -> list[Piece]:
    """The pieces of a file, of about ``size`` bytes."""
    bounds = _bounds(file, settings, size)
    return [Piece(file.path, file.size, *pair) for pair in zip(bounds, bounds[1:])]


def plan(settings: Settings) -> list[list[Piece]]:
    """What tasks read: pieces of large files, and small files together."""
    return plan_files([file for path in settings.paths for file in list_files(path)], settings)


def plan_files(files: list[File], settings: Settings) -> list[list[Piece]]:
    """As ``plan``, of files that were listed."""
    total = sum(file.size for file in files)
    size = settings.piece_size or min(max(total // _ENOUGH_PIECES, _LEAST_PIECE), _MOST_PIECE)
    tasks: list[list[Piece]] = []
    room = 0
    for file in files:
        for piece in pieces_of(file, settings, size):
            if not tasks or piece.end - piece.begin > room:
                tasks.append([])
                room = size
            tasks[-1].append(piece)
            room -= piece.end - piece.begin
    return tasks
