"""convert, its reports and treatments, and the command."""

import unicodedata

import pytest

import encconv


def _has(character, encoding):
    try:
        return bool(encconv.encode(character, encoding))
    except UnicodeError:
        return False


def test_letters_are_composed_as_unicode_does():
    pairs = {}
    for letter in map(chr, range(0xA0, 0x10000)):
        parts = unicodedata.decomposition(letter).split()
        if len(parts) == 2 and not parts[0].startswith("<"):
            apart = chr(int(parts[0], 16)) + chr(int(parts[1], 16))
            if unicodedata.normalize("NFC", apart) == letter:
                pairs[apart] = letter
    marks = {apart[1] for apart in pairs}
    seen = set()
    # What is composed is what an encoding has as one letter only.
    for encoding in (e.number for e in encconv.encodings() if e.can_encode):
        lacking = {mark for mark in marks if not _has(mark, encoding)} if _has("\n", encoding) else set()
        here = [t for t in pairs if t[1] in lacking and t not in seen and _has(pairs[t], encoding)]
        seen.update(here)
        composed = encconv.convert("\n".join(here).encode(), "utf-8", encoding, "compose")
        assert composed == encconv.encode("\n".join(pairs[t] for t in here), encoding), encoding
    assert len(seen) > len(pairs) / 2


def test_conversion_and_report():
    assert encconv.convert("Ж€".encode(), "utf-8", "cp1251") == b"\xc6\x88"
    assert encconv.convert(b"a", "ascii", "utf-16le", byte_order_mark=True) == b"\xff\xfea\0"
    with pytest.raises(encconv.ConversionError, match="byte offset 3, line 2: .* lacks U\\+20AC") as e:
        encconv.convert("ab\n€".encode(), "utf-8", "latin1")
    assert e.value.output == b"ab\n" and e.value.problem.character == "€"
    with pytest.raises(ValueError, match="on_error"):
        encconv.convert(b"", "utf-8", "utf-8", "maybe")
    report = encconv.decode_report(b"a\xff\n\xffb" * 5, "utf-8", most=3)
    assert report.problem_count == 10 and len(report.problems) == 3 and report.complete
    assert [(p.offset, p.line) for p in report.problems] == [(1, 1), (3, 2), (6, 2)]
    assert not encconv.decode_report(b"a\xff", "utf-8", "stop").complete
    found = encconv.detect(b"\x89PNG\r\n\x1a\n" + bytes(50))
    assert (found.kind, found.encoding) == ("binary", None)
    assert len(encconv.encodings()) > 480


def test_the_command_converts_piece_by_piece(tmp_path, capfdbinary):
    from encconv.__main__ import main

    text = "日本語テキスト\n" * 150000  # some pieces, which end within characters
    source, target = tmp_path / "source", tmp_path / "target"
    source.write_bytes(text.encode("cp932"))
    assert main(["-f", "cp932", "-t", "euc-jp", str(source), "-o", str(target)]) == 0
    assert target.read_bytes() == text.encode("euc_jp")
    assert main(["-t", "utf-16le", "--bom", str(source), str(source), "-o", str(target)]) == 0
    assert target.read_bytes() == (b"\xff\xfe" + 2 * text.encode("utf-16le"))
    # What stops it is told with its place, and a file keeps what it had.
    source.write_bytes(text.encode("cp932") + b"\x81")
    assert main(["-f", "cp932", str(source), "-o", str(target)]) == 1
    place = f"byte offset {len(text.encode('cp932'))}, line 150001: 81 is no text in cp932"
    assert capfdbinary.readouterr().err.decode() == f"encconv: {source}: {place}\n"
    assert target.read_bytes().startswith(b"\xff\xfe") and len(list(tmp_path.iterdir())) == 2
    assert main(["-f", "cp932", str(source)]) == 1
    assert capfdbinary.readouterr().out.decode() == text
