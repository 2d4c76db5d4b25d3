"""Columns of Arrow, of pyarrow, pandas, polars and DuckDB."""

import pytest

import encconv
import encconv.arrow

pa = pytest.importorskip("pyarrow")

TEXTS = ["Grüße", "", None, "x" * 300, "日本", "naïve café façade", "ﬁ", "é" * 12] * 9
KINDS = [(pa.binary(), pa.string()), (pa.large_binary(), pa.large_string()),
         (pa.binary_view(), pa.string_view())]  # fmt: skip
ENCODINGS = ["utf-16le", "utf-8", "gb18030", "iso-2022-jp-3"]


def bytes_of(texts, encoding):
    return [None if text is None else encconv.encode(text, encoding, "replace") for text in texts]


@pytest.mark.parametrize("binary, string", KINDS, ids=str)
@pytest.mark.parametrize("encoding", ENCODINGS)
def test_columns(binary, string, encoding):
    data = bytes_of(TEXTS, encoding)
    texts = [None if item is None else encconv.decode(item, encoding) for item in data]
    whole = pa.array(data, binary)
    for begin, end in ((0, len(data)), (5, 50), (7, 8), (2, 3), (4, 4)):
        part = encconv.arrow.decode(whole[begin:end], encoding)
        part.validate(full=True)
        assert part.type == string and part.to_pylist() == texts[begin:end]
        back = encconv.arrow.encode(pa.array(texts, string)[begin:end], encoding)
        back.validate(full=True)
        assert back.type == binary and back.to_pylist() == data[begin:end]
    chunks = pa.chunked_array([whole[:9], whole[9:9], whole[9:]])
    decoded = encconv.arrow.decode(chunks, encoding)
    assert decoded.num_chunks == 3 and decoded.to_pylist() == texts
    assert encconv.arrow.decode(pa.chunked_array([], binary), encoding).type == string
    assert encconv.arrow.decode(pa.nulls(5, binary), encoding).null_count == 5


def test_what_cannot_be_converted():
    column = pa.array([b"ok", None, b"a\x81 b"], pa.binary())
    with pytest.raises(UnicodeDecodeError) as caught:
        encconv.arrow.decode(column, "shift_jis")
    assert (caught.value.start, caught.value.__notes__) == (1, ["value 2 of the array"])
    for errors in ("ignore", "replace", "backslashreplace"):
        expected = [None if b is None else encconv.decode(b, "shift_jis", errors)
                    for b in column.to_pylist()]  # fmt: skip
        assert encconv.arrow.decode(column, "shift_jis", errors).to_pylist() == expected
    texts = pa.array(["\ufeffa", "€", "\u301c"])
    assert encconv.arrow.encode(texts, "shift_jis", "xmlcharrefreplace").to_pylist() == [
        b"&#65279;a", b"&#8364;", b"&#12316;",
    ]  # fmt: skip
    assert encconv.arrow.encode(texts, "utf-16le").to_pylist()[0] == b"\xff\xfea\0"
    for wrong in (pa.array([1]), pa.array(["a"]), [b"a"], pa.array([b"a"]).dictionary_encode()):
        with pytest.raises(TypeError):
            encconv.arrow.decode(wrong, "utf-8")
    with pytest.raises(LookupError):
        encconv.arrow.decode(column, "no such")


def test_fixed_size_values():
    column = pa.array([b"\xc1\xc2", None, b"\xc3\xc4"], pa.binary(2))
    assert encconv.arrow.decode(column[1:], "ibm037").to_pylist() == [None, "CD"]


def test_plain_capsules():
    column = encconv.arrow.decode(pa.table({"a": [b"\x81"]})["a"].combine_chunks(), "ibm037")
    assert column.to_pylist() == ["a"]

    class Exporter:
        def __init__(self, array):
            self.array = array

        def __arrow_c_array__(self, requested_schema=None):
            return self.array.__arrow_c_array__(requested_schema)

    made = encconv.arrow.decode(Exporter(pa.array([b"\x81", None])), "ibm037")
    assert isinstance(made, encconv.arrow.Array) and len(made) == 2 and made.null_count == 1
    for _ in range(2):  # as often as one likes
        assert pa.array(made).to_pylist() == ["a", None]
    kept = pa.array(made)
    del made
    assert kept.to_pylist() == ["a", None]


def test_pandas():
    pd = pytest.importorskip("pandas")
    series = pd.Series([b"\xc1", None, b"\xc2"], index=[5, 6, 7], name="letter")
    decoded = encconv.arrow.decode(series, "ibm037")
    assert decoded.name == "letter" and list(decoded.index) == [5, 6, 7]
    assert decoded[5] == "A" and pd.isna(decoded[6])
    assert encconv.arrow.encode(decoded, "ibm037")[7] == b"\xc2"
    arrow = series.astype(pd.ArrowDtype(pa.binary()))
    assert list(encconv.arrow.decode(arrow, "ibm037").dropna()) == ["A", "B"]


def test_polars():
    pl = pytest.importorskip("polars")
    series = pl.Series("letter", [b"\xc1", None, b"\xc2" * 20])
    decoded = encconv.arrow.decode(series, "ibm037")
    assert decoded.name == "letter" and decoded.to_list() == ["A", None, "B" * 20]
    assert encconv.arrow.encode(decoded, "ibm037").to_list() == series.to_list()


def test_duckdb():
    duckdb = pytest.importorskip("duckdb")
    connection = duckdb.connect()
    connection.create_function(
        "from_ebcdic",
        lambda column: encconv.arrow.decode(column, "ibm037"),
        ["BLOB"],
        "VARCHAR",
        type="arrow",
    )
    rows = connection.sql(r"select from_ebcdic('\xC1\xC2'::blob) as name").fetchall()
    assert rows == [("AB",)]
