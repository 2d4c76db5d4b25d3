"""A program as users write them, for a type checker: it is checked, and run."""

import io
from decimal import Decimal

import encconv
import encconv.arrow
from encconv import records


def letters(data: bytes) -> str:
    found = encconv.detect(data)
    name: str | None = found.encoding
    text: str = encconv.decode(memoryview(data), name or 932, errors="replace")
    report = encconv.decode_report(data, "shift_jis")
    places: list[tuple[int, int, bytes]] = [(p.line, p.offset, p.data) for p in report.problems]
    return text + str(places)


def pieces(data: bytes) -> bytes:
    decoder = encconv.Decoder("iso-2022-jp")
    text: str = decoder.decode(data) + decoder.decode(b"", final=True)
    pending, number = decoder.getstate()
    encoder = encconv.Encoder("euc-jp", "xmlcharrefreplace")
    written: bytes = encoder.encode(text) + encoder.encode("", final=True)
    state: int = encoder.getstate()
    converter = encconv.Converter("euc-jp", 65001, "hex")
    cut: int | None = encconv.find_cut(data, "iso-2022-jp", 3, behind_line=True)
    assert len(pending) + number + state == 0 and (cut is None or cut > 2)
    return converter.convert(written) + converter.convert(bytearray(), final=True)


def rows() -> list[Decimal]:
    file = io.BytesIO()
    layout = "id 1 3 zoned:unsigned, balance 4 3 packed:scale=2"
    records.write_rows(file, [{"id": 7, "balance": "12.34"}], "rdw", layout, "ibm273")
    file.seek(0)
    balances = [row["balance"] for row in records.read_rows(file, "rdw", layout, "ibm273")]
    return [balance for balance in balances if isinstance(balance, Decimal)]


def column(values: object) -> encconv.arrow.Array | encconv.arrow.ChunkedArray:
    made: encconv.arrow.Array = encconv.arrow.decode(values, "ibm037", errors=None)
    return made


def names() -> list[str]:
    encconv.register()
    page: encconv.Encoding = encconv.find_encoding("ibm1047")
    return [page.name, *page.aliases]


if __name__ == "__main__":
    print(letters(b"\x83e\x83X\x83g"), pieces(b"\x1b$BF|K\\\x1b(B"), rows(), names())
