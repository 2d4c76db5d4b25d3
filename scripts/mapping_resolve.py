"""What a mapping means in full, with what it lies over, and which lines state a difference."""

import base64
import bz2
import re

from mapping_format import DIRECTORY, Mapping, load

TEXTS = DIRECTORY.parent / "texts"
PRIVATE_USE = range(0xE000, 0xF900)


class Resolved:
    """read maps codes to values, write values to codes, whichever way they are stated."""

    def __init__(self, read=None, write=None):
        self.read = dict(read or {})
        self.write = dict(write or {})

    def __eq__(self, other):
        return self.read == other.read and self.write == other.write

    def count(self):
        """Entries both ways, only read, only written."""
        both = sum(self.write.get(values) == code for code, values in self.read.items())
        return both, len(self.read) - both, len(self.write) - both

    def part(self, length):
        """The codes of a length."""
        return Resolved({code: values for code, values in self.read.items() if len(code) == length},
                        {values: code for values, code in self.write.items() if len(code) == length})


def resolve(name):
    if str(name).isdigit():
        return _table_text(int(name))
    mapping = load(name)
    result = resolve(mapping.over) if mapping.over else Resolved()
    stated = mapping.removed | set(mapping.both) | set(mapping.read)
    result.read = {code: values for code, values in result.read.items() if code not in stated}
    result.write = {values: code for values, code in result.write.items() if code not in stated}
    result.read.update(mapping.read)
    for code, values in mapping.both.items():
        result.read[code] = values
        result.write[values] = code
    for code, several in mapping.write.items():
        result.write.update(dict.fromkeys(several, code))
    return result


def with_rest(listed):
    """Besides what is listed, the codes of four bytes that follow by rule (gb18030-rest)."""
    result = Resolved(listed.read, listed.write)
    values = (value for value in range(0x80, 0x10000)
              if not 0xD800 <= value < 0xE000 and (value,) not in listed.write)
    for count in range(39420):
        code = _counted(count)
        if code not in listed.read:
            value = next(values)
            result.read[code] = value,
            result.write[value,] = code
    for value in range(0x10000, 0x110000):
        result.write[value,] = _counted((0x90 - 0x81) * 12600 + value - 0x10000)
    return result


def without_rest(whole):
    """The codes of four bytes that have to be listed are those that later editions exchanged with
    pairs: private-use values away from the others."""
    listed = {code for code, values in whole.read.items() if len(code) < 4
              or (0xE000 <= values[0] < 0xF900
                  and not bytes.fromhex("8336C739") <= code < bytes.fromhex("8336D030"))}
    result = Resolved({code: whole.read[code] for code in listed},
                      {values: code for values, code in whole.write.items() if code in listed})
    if with_rest(result) != whole:
        raise ValueError("not all codes of four bytes follow the rule")
    return result


def _counted(count):
    return bytes([0x81 + count // 12600, 0x30 + count // 1260 % 10, 0x81 + count // 10 % 126,
                  0x30 + count % 10])


def stated(target, over=None):
    """A Mapping that makes target over the mapping or code page of a name."""
    base = resolve(over) if over else Resolved()
    lines = {code for code in base.read.keys() | target.read.keys()
             if base.read.get(code) != target.read.get(code)}
    lines |= {code for values, code in base.write.items() if values not in target.write}
    lines |= {code for values, code in target.write.items()
              if base.write.get(values) != code and target.read.get(code) == values}
    mapping = Mapping(over=over)
    for code in lines:
        values = target.read.get(code)
        if values is None:
            mapping.removed.add(code)
        elif target.write.get(values) == code:
            mapping.both[code] = values
        else:
            mapping.read[code] = values
    for values, code in target.write.items():
        if target.read.get(code) != values and (base.write.get(values) != code or code in lines):
            mapping.write.setdefault(code, []).append(values)
    return mapping


def _table_text(number):
    """The pairs of a code page's table texts, as docs/code-pages.md has them."""
    result = Resolved({b"\0": (0,)}, {(0,): b"\0"})
    texts = []
    for path in TEXTS.glob("*.cpp"):
        head = path.read_text(encoding="ascii").partition("\n")[0]
        if re.search(rf"code page {number},", head):
            texts.append(("only read" in head, path))
    if not texts:
        raise LookupError(f"code page {number} has no table text")
    for is_only_read, path in sorted(texts):
        is_ascii, pairs = _pairs(path)
        for code, values in pairs:
            if not is_only_read:
                result.write[values] = code
            read = result.read.get(code)
            if read is None or (values > read if len(code) == 1 else
                                read[0] in PRIVATE_USE and values[0] not in PRIVATE_USE):
                result.read[code] = values
        if is_ascii and not is_only_read:
            for byte in range(0x80):
                result.read[bytes([byte])] = (byte,)
                result.write[byte,] = bytes([byte])
    return result


def _pairs(path):
    """Whether a table text is of a code page with ASCII, and its codes and units."""
    source = path.read_text(encoding="ascii").partition("\n")[2].partition("=")[2]
    text = "".join(re.findall(r'"([^"\n]*)"', source))
    image = base64.b64decode(text[1:])
    if text[0] != "x":
        image = bz2.decompress(image[8:])
    pairs = []
    place = 2
    for width in (1, 2):
        code = unit = 0
        while difference := int.from_bytes(image[place:place + width], "little"):
            code = (code + difference) % 256 ** width
            unit = (unit + int.from_bytes(image[place + width:place + width + 2], "little")) % 65536
            pairs.append((code.to_bytes(width, "big"), (unit,)))
            place += width + 2
        place += width
    return image[:1] == b"a", pairs
