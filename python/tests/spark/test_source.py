"""The data source without a cluster: what its tasks give, one after another."""

import io
import json
import pathlib

import pytest

pytest.importorskip("pyspark")

import encconv  # noqa: E402
import fsspec  # noqa: E402
from fsspec.implementations.memory import MemoryFileSystem  # noqa: E402
import pyarrow  # noqa: E402
from encconv import records  # noqa: E402
from encconv.spark import DamagedInput, EncconvDataSource  # noqa: E402
from pyspark.sql.datasource import CaseInsensitiveDict  # noqa: E402
from pyspark.sql.types import StructType  # noqa: E402

from samples import DATA, TEXTS, lines_of, run_tool, write_lines, write_records  # noqa: E402


def source(path, **options):
    given = {name: str(value) for name, value in options.items()}
    return EncconvDataSource(CaseInsensitiveDict({"path": str(path), **given}))


def read(path, schema=None, **options):
    data_source = source(path, **options)
    reader = data_source.reader(schema or data_source.schema())
    batches = [batch for task in reader.partitions() for batch in reader.read(task)]
    return pyarrow.Table.from_batches(batches)


@pytest.mark.parametrize("encoding", TEXTS)
@pytest.mark.parametrize("piece", [997, 10_000, 10_000_000])
def test_lines_do_not_depend_on_pieces(tmp_path, encoding, piece):
    path = write_lines(tmp_path / "text", encoding, 700 if piece < 1000 else 3000)
    table = read(path, encoding=encoding, pieceSize=piece)
    expected = run_tool("-f", encoding, "-t", "utf-8", path).decode()
    assert "\n".join(table["value"].to_pylist()) + "\n" == expected.removeprefix("\ufeff")
    # Each line begins where the column says.
    data = path.read_bytes()
    offsets = table["offset"].to_pylist()
    some = range(0, len(offsets) - 1, 97)
    for i in some:
        line = encconv.decode(data[offsets[i] : offsets[i + 1]], _without_mark(encoding))
        assert line.rstrip("\n") == table["value"][i].as_py()
    assert set(table["problems"].to_pylist()) == {0}


def _without_mark(encoding):
    return "utf-16le" if encoding == "utf-16" else encoding


@pytest.mark.parametrize(
    "encoding, data, expected",
    [
        ("cp037", b"\xc1\x15\xc2\x25\xc3", ["A", "B", "C"]),
        ("cp1047", b"\xc1\x15\xc2\x25\xc3\x0d\x25", ["A", "B", "C"]),
        ("utf-8", "a\r\nb\n\nc\u0085d\n".encode(), ["a", "b", "", "c\x85d"]),
        ("utf-16", b"\xfe\xff\x00a\x00\n\x0a\x0a\x00\n", ["a", "\u0a0a"]),
        ("utf-8", b"\xef\xbb\xbfa", ["a"]),
        ("cp932", b"", []),
        ("utf-7", b"a+AAo-b\nc\n", ["a", "b", "c"]),
    ],
)
def test_line_ends(tmp_path, encoding, data, expected):
    path = tmp_path / "text"
    path.write_bytes(data)
    table = read(path, encoding=encoding) if data else None
    assert (table["value"].to_pylist() if data else []) == expected


@pytest.mark.parametrize("format", ["fixed:100", "rdw", "bdw", "bdw:500"])
def test_records_do_not_depend_on_pieces(tmp_path, format):
    path = write_records(tmp_path / "records", "cp930", format, 2000)
    plain = format.split(":")[0] if format.startswith("bdw") else format
    expected = run_tool("-f", "cp930", "-t", "utf-8", "--records", plain, "--trim", path).decode()
    for piece in (1000, 30_000, 10_000_000):
        table = read(path, encoding="cp930", records=plain, trim="true", pieceSize=piece)
        assert "\n".join(table["value"].to_pylist()) + "\n" == expected
        assert table["offset"].to_pylist() == sorted(table["offset"].to_pylist())


@pytest.mark.parametrize("name, format, encoding", [("accounts.vb.37", "bdw", "cp037")])
def test_fields_are_typed_columns(name, format, encoding):
    layout = DATA / "accounts.fields"
    table = read(DATA / name, encoding=encoding, records=format, fields=f"@{layout}", trim="true")
    with open(DATA / name, "rb") as file:
        expected = list(records.read_rows(file, format, layout.read_text(), encoding))
    own = table.drop_columns(["file", "offset", "problems", "first_problem"]).to_pylist()
    assert own == expected and len(own) > 3
    kinds = {field.name: str(field.type) for field in table.schema}
    assert kinds["balance"] == "decimal128(11, 2)" and kinds["visits"] == "int64"


def test_damage_is_told_with_file_and_offset(tmp_path):
    path = tmp_path / "text"
    lines = lines_of("cp932", 3000)
    data = encconv.encode("".join(line + "\n" for line in lines[:2000]), "cp932")
    path.write_bytes(data + b"ab\x81\ncd\xff\xfd\n" + data)
    with pytest.raises(DamagedInput, match=f"{path}, byte offset {len(data) + 2}: 81 is no text"):
        read(path, encoding="cp932", pieceSize=20_000)
    table = read(path, encoding="cp932", errors="hex", pieceSize=20_000)
    text = run_tool("-f", "cp932", "-t", "utf-8", "--on-error", "hex", path).decode()
    assert "\n".join(table["value"].to_pylist()) + "\n" == text
    damaged = [row for row in table.to_pylist() if row["problems"]]
    assert [row["offset"] for row in damaged][0] == len(data)
    assert damaged[0]["first_problem"].startswith(f"byte offset {len(data) + 2}: 81")
    assert sum(row["problems"] for row in damaged) == text.count("<0x")


def test_damaged_records_are_told(tmp_path):
    path = tmp_path / "records"
    layout = "id 1 3 zoned:unsigned, balance 4 2 packed:scale=1"
    file = io.BytesIO()
    records.write_rows(file, [{"id": i, "balance": 1} for i in range(9)], "rdw", layout)
    good = file.getvalue()
    path.write_bytes(good + bytes.fromhex("00090000 f0fff1f1 01") + b"\x00\x02\x00\x00")
    options = {"encoding": "cp037", "records": "rdw", "fields": layout}
    with pytest.raises(DamagedInput, match=f"{path}, byte offset {len(good) + 4}: field 'id'"):
        read(path, **options)
    rows = read(path, errors="drop", **options).to_pylist()
    assert [row["id"] for row in rows] == [*range(9), None, None]
    assert rows[9]["problems"] == 2 and "'id'" in rows[9]["first_problem"]
    assert f"byte offset {len(good) + 9}" in rows[10]["first_problem"]


class Hosted(MemoryFileSystem):
    """Files on a host, which is in their names, and which must be known to find them."""

    protocol = "hosted"

    @classmethod
    def _strip_protocol(cls, path):
        return fsspec.utils.infer_storage_options(path)["path"].rstrip("/")

    @staticmethod
    def _get_kwargs_from_urls(path):
        known = fsspec.utils.infer_storage_options(path)
        return {name: known[name] for name in ("host", "port", "username") if name in known}

    def __init__(self, host, port, username, **options):
        super().__init__(host=host, port=port, username=username, **options)


def test_names_of_files_keep_their_host():
    fsspec.register_implementation("hosted", Hosted, clobber=True)
    folder = "hosted://mary@node:9870/land"
    Hosted("node", 9870, "mary").pipe_file("/land/x.txt", b"one\ntwo\n")
    for path in folder, f"{folder}/*.txt", f"{folder}/x.txt":
        table = read(path, encoding="utf-8", pieceSize="4")
        assert table["value"].to_pylist() == ["one", "two"]
        assert table["file"].to_pylist() == [f"{folder}/x.txt"] * 2


def test_files_by_directory_glob_and_memory(tmp_path):
    for name in ("a.txt", "b.txt", "sub/c.txt", "_hidden", ".dot", "_temporary-1/d.txt"):
        (tmp_path / name).parent.mkdir(exist_ok=True)
        (tmp_path / name).write_bytes(f"{name}\n".encode())

    def values(path):
        return read(path, encoding="utf-8")["value"].to_pylist()

    assert values(tmp_path) == ["a.txt", "b.txt", "sub/c.txt"]
    assert values(tmp_path / "*.txt") == ["a.txt", "b.txt"]
    fsspec.filesystem("memory").pipe_file("/place/x.txt", encconv.encode("é\n", "cp500"))
    table = read("memory://place/x.txt", encoding="cp500")
    assert table["value"].to_pylist() == ["é"] and "memory://" in table["file"][0].as_py()
    with pytest.raises(FileNotFoundError):
        values(tmp_path / "none")
    with pytest.raises(FileNotFoundError):
        values(tmp_path / "*.none")


@pytest.mark.parametrize(
    "options, message",
    [
        ({}, "encoding is required"),
        ({"encoding": "none-such"}, "none-such"),
        ({"encoding": "cp037", "recordLength": "no"}, "recordLength"),
        ({"encoding": "cp037", "records": "rdx"}, "rdx"),
        ({"encoding": "cp037", "fields": "a 1 1 text"}, "fields need records"),
        ({"encoding": "cp037", "records": "rdw", "fields": "a 0 1 text"}, "a"),
        ({"encoding": "cp037", "error": "drop"}, "no option error"),
        ({"encoding": "cp037", "errors": "never"}, "never"),
    ],
)
def test_options_that_are_wrong_are_told(tmp_path, options, message):
    (tmp_path / "x").write_bytes(b"\xc1\x15")
    with pytest.raises((ValueError, LookupError), match=message):
        read(tmp_path / "x", **options)


def test_schema_may_have_fewer_columns(tmp_path):
    path = write_lines(tmp_path / "text", "cp932", 10)
    table = read(path, StructType().add("offset", "long").add("value", "string"), encoding="cp932")
    assert table.column_names == ["offset", "value"] and table.num_rows == 10
    with pytest.raises(ValueError, match="no column text"):
        read(path, StructType().add("text", "string"), encoding="cp932")


@pytest.mark.parametrize(
    "options, encoding",
    [
        ({}, "cp932"),
        ({}, "utf-16"),
        ({"newline": "nl"}, "cp930"),
        ({}, "iso-2022-jp"),
        ({"records": "rdw"}, "cp930"),
        ({"recordLength": 120, "trim": "true"}, "cp037"),
    ],
)
def test_what_is_written_is_read(tmp_path, options, encoding):
    values = [line.rstrip() for line in lines_of(encoding, 500)]
    options = {"encoding": encoding, **options}
    writing = {name: value for name, value in options.items() if name != "trim"}
    folder = tmp_path / "out"
    writer = source(folder, **writing).writer(StructType().add("value", "string"), False)
    batches = [
        pyarrow.RecordBatch.from_pydict({"value": values[i : i + 100]}) for i in range(0, 500, 100)
    ]
    failed = writer.write(iter(batches[:2]))
    writer.abort([failed, None])
    with pytest.raises(RuntimeError, match="the job of this task has ended"):
        writer.write(iter(batches))
    assert list(folder.iterdir()) == []
    writer = source(folder, **writing).writer(StructType().add("value", "string"), False)
    messages = [writer.write(iter(batches)), writer.write(iter([]))]
    writer.commit(messages)
    assert sorted(p.name[:5] for p in folder.iterdir()) == ["_SUCC", "part-"]
    del options["newline" if "newline" in options else "encoding"]
    table = read(folder, **{"encoding": encoding, **options})
    assert [value.rstrip() for value in table["value"].to_pylist()] == values
    # Again, in place of what is there.
    again = source(folder, **writing).writer(StructType().add("value", "string"), True)
    again.commit([again.write(iter(batches[:1]))])
    assert read(folder, **{"encoding": encoding, **options}).num_rows == 100


def test_rows_are_written_as_records(tmp_path):
    layout = (DATA / "accounts.fields").read_text()
    options = {"encoding": "cp037", "records": "rdw", "fields": layout}
    table = read(DATA / "accounts.vb.37", encoding="cp037", records="bdw", fields=layout)
    own = table.drop_columns(["file", "offset", "problems", "first_problem"])
    schema = StructType()
    for name in own.column_names:
        schema = schema.add(name, "string")
    writer = source(tmp_path / "out", **options).writer(schema, False)
    writer.commit([writer.write(iter(own.to_batches()))])
    back = read(tmp_path / "out", **options)
    assert back.drop_columns(["file", "offset", "problems", "first_problem"]) == own


@pytest.mark.parametrize("records_", ["", "rdw"])
def test_a_task_that_fails_leaves_nothing(tmp_path, records_):
    options = {"encoding": "cp037", **({"records": records_} if records_ else {})}
    writer = source(tmp_path / "out", **options).writer(StructType().add("value", "string"), False)
    batch = pyarrow.RecordBatch.from_pydict({"value": ["fine", "語"]})
    with pytest.raises(ValueError, match="row 2 of the task: .*U\\+8A9E"):
        writer.write(iter([batch]))
    assert [p.name for p in (tmp_path / "out").rglob("*") if p.is_file()] == ["_job"]

    def ending():
        yield pyarrow.RecordBatch.from_pydict({"value": ["fine"]})
        writer.abort([])

    with pytest.raises(RuntimeError, match="the job of this task has ended"):
        writer.write(ending())
    assert list((tmp_path / "out").iterdir()) == []


def test_stream_reads_each_file_once(tmp_path):
    write_lines(tmp_path / "1", "cp932", 5)
    data_source = source(tmp_path, encoding="cp932")
    reader = data_source.streamReader(data_source.schema())
    first = json.loads(json.dumps(reader.latestOffset()))
    write_lines(tmp_path / "2", "cp932", 7)

    def rows(start, end):
        return sum(b.num_rows for t in reader.partitions(start, end) for b in reader.read(t))

    second = reader.latestOffset()
    assert rows(reader.initialOffset(), first) == 5
    assert rows(first, second) == 7
    assert rows(second, second) == 0


def test_guide_names_every_option():
    from encconv.spark import _options

    guide = (pathlib.Path(__file__).resolve().parents[3] / "docs" / "spark.md").read_text().lower()
    for option in _options._KNOWN - {"path"}:
        assert f"`{option}`" in guide, option
