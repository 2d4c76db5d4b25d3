"""Reads and writes mappings (encoding/tables/mappings/README.md)."""

from pathlib import Path

DIRECTORY = Path(__file__).resolve().parent.parent / "encoding" / "tables" / "mappings"
PER_LINE = 16


class Mapping:
    """Codes are bytes, values are tuples of scalar values.

    both, read and write map a code to its values: for text both ways, only read, only written
    (for write a list of values each). removed has the codes that stand for nothing.
    """

    def __init__(self, comment="", over=None):
        self.comment = comment
        self.over = over
        self.has_gb18030_rest = False
        self.both = {}
        self.read = {}
        self.write = {}
        self.removed = set()

    def save(self, name):
        lines = [f"# {line}".rstrip() for line in self.comment.splitlines()]
        if self.over is not None:
            lines.append(f"over {self.over}")
        if self.has_gb18030_rest:
            lines.append("gb18030-rest")
        removed = [code.hex().upper() for code in sorted(self.removed, key=_order)]
        lines += [f"remove {' '.join(removed[i:i + PER_LINE])}"
                  for i in range(0, len(removed), PER_LINE)]
        lines += _lines("", self.both)
        lines += _lines("> ", self.read)
        for code, several in sorted(self.write.items()):
            for values in sorted(several):
                lines.append(f"< {code.hex().upper()} {_text(values)}")
        (DIRECTORY / f"{name}.map").write_text("\n".join(lines) + "\n", encoding="ascii")


def _order(code):
    return len(code), code


def _text(values):
    return "+".join(f"{value:04X}" for value in values)


def _lines(prefix, codes):
    """Lines of neighbouring codes."""
    lines = []
    line, following = None, None
    for code, values in sorted(codes.items(), key=lambda item: _order(item[0])):
        if code == following and len(line) < PER_LINE:
            line.append(_text(values))
        else:
            line = [_text(values)]
            lines.append((f"{prefix}{code.hex().upper()}", line))
        following = code[:-1] + bytes([code[-1] + 1]) if code[-1] < 0xFF else None
    return [" ".join([code, *texts]) for code, texts in lines]


def load(name):
    """The mapping of a file, as it stands there: what it lies over is not read."""
    mapping = Mapping()
    comments = []
    for line in (DIRECTORY / f"{name}.map").read_text(encoding="ascii").splitlines():
        words = line.split()
        if not words:
            continue
        if words[0].startswith("#"):
            comments.append(line[2:])
            continue
        if words[0] == "over":
            mapping.over = words[1]
            continue
        if words[0] == "gb18030-rest":
            mapping.has_gb18030_rest = True
            continue
        kind = words.pop(0) if words[0] in ("remove", "<", ">") else ""
        code = bytes.fromhex(words[0])
        if kind == "remove":
            mapping.removed.update(bytes.fromhex(word) for word in words)
            continue
        for offset, word in enumerate(words[1:]):
            if word == "-":
                continue
            place = code[:-1] + bytes([code[-1] + offset])
            values = tuple(int(value, 16) for value in word.split("+"))
            if kind == "<":
                mapping.write.setdefault(place, []).append(values)
            else:
                (mapping.read if kind == ">" else mapping.both)[place] = values
    mapping.comment = "\n".join(comments)
    return mapping
