"""What only a cluster shows: results beside the tool's, workers that die, SQL, Spark's own readers."""

import doctest
import hashlib
import pathlib
import threading
import time

import pytest

pytest.importorskip("pyspark")

import encconv  # noqa: E402
import encconv.spark  # noqa: E402
from pyspark.errors import PySparkException  # noqa: E402
from pyspark.sql import functions as F  # noqa: E402

from samples import DATA, JAPANESE, lines_of, run_tool, write_lines, write_records  # noqa: E402

MEGABYTE = 1 << 20


def load(spark, path, **options):
    reader = spark.read.format("encconv")
    for name, value in options.items():
        reader = reader.option(name, value)
    return reader.load(str(path))


def text_of(frame) -> bytes:
    """The values in the order of their places, as lines."""
    values = frame.select("file", "offset", "value").toArrow().sort_by("offset")["value"]
    return "".join(f"{value}\n" for value in values.to_pylist()).encode()


@pytest.mark.parametrize(
    "encoding, records",
    [
        ("cp932", ""),
        ("cp037", ""),
        ("gb18030", ""),
        ("utf-16", ""),
        ("cp930", "fixed:100"),
        ("cp930", "rdw"),
        ("cp037", "rdw"),
    ],
)
def test_results_are_those_of_the_tool(spark, tmp_path, encoding, records):
    path = tmp_path / "data"
    if records:
        write_records(path, encoding, records, 20_000)
        expected = run_tool("-f", encoding, "-t", "utf-8", "--records", records, path)
        frame = load(spark, path, encoding=encoding, records=records, pieceSize=300_000)
    else:
        write_lines(path, encoding, 20_000)
        expected = run_tool("-f", encoding, "-t", "utf-8", path).removeprefix(b"\xef\xbb\xbf")
        frame = load(spark, path, encoding=encoding, pieceSize=300_000)
    assert frame.rdd.getNumPartitions() > 3
    assert text_of(frame) == expected


def big_file(path: pathlib.Path, size: int) -> pathlib.Path:
    line = encconv.encode(f"{JAPANESE * 2}\n", "cp932")
    block = line * (MEGABYTE // len(line))
    with open(path, "wb") as file:
        while file.tell() < size:
            file.write(b"%012d " % file.tell() + block)
    return path


class Killer(threading.Thread):
    """Kills a worker when a part of the tasks of a job has ended, and starts it again."""

    def __init__(self, spark, cluster):
        super().__init__()
        self._tracker = spark.sparkContext.statusTracker()
        self._cluster = cluster
        self.killed_at = None
        self.start()

    def run(self):
        for _ in range(6000):
            for stage in self._tracker.getActiveStageIds():
                info = self._tracker.getStageInfo(stage)
                if info and 2 <= info.numCompletedTasks < info.numTasks - 2:
                    self._cluster.kill_worker(1)
                    self.killed_at = (info.numCompletedTasks, info.numTasks)
                    self._cluster.start_worker(1)
                    return
            time.sleep(0.02)


@pytest.fixture(scope="module")
def big(tmp_path_factory):
    return big_file(tmp_path_factory.mktemp("big") / "text.932", 64 * MEGABYTE)


def test_reading_survives_a_worker(spark, cluster, big):
    frame = load(spark, big, encoding="cp932", pieceSize=MEGABYTE)
    killer = Killer(spark, cluster)
    found = text_of(frame)
    killer.join()
    assert killer.killed_at is not None
    expected = run_tool("-f", "cp932", "-t", "utf-8", big)
    assert hashlib.sha256(found).digest() == hashlib.sha256(expected).digest()


def test_writing_survives_a_worker(spark, cluster, big, tmp_path):
    frame = load(spark, big, encoding="cp932", pieceSize=MEGABYTE).select("value")
    killer = Killer(spark, cluster)
    out = tmp_path / "out"
    writer = frame.write.format("encconv").option("encoding", "euc-jp").mode("append")
    writer.save(str(out))
    killer.join()
    assert killer.killed_at is not None
    names = sorted(path.name for path in out.iterdir())
    assert names[0] == "_SUCCESS" and all(name.startswith("part-") for name in names[1:])
    written = b"".join((out / name).read_bytes() for name in names[1:])
    assert written == run_tool("-f", "cp932", "-t", "euc-jp", big)


def test_damage_ends_the_query_with_file_and_offset(spark, tmp_path):
    path = write_lines(tmp_path / "text", "cp932", 5000)
    good = path.stat().st_size
    path.write_bytes(path.read_bytes() + b"ab\x81\n")
    with pytest.raises(PySparkException, match=f"{path}, byte offset {good + 2}: 81 is no text"):
        load(spark, path, encoding="cp932", pieceSize=50_000).count()


def test_failed_write_leaves_nothing(spark, tmp_path):
    frame = spark.createDataFrame([(f"{i} 語",) for i in range(100)], "value string").repartition(4)
    out = tmp_path / "out"
    with pytest.raises(PySparkException, match="lacks U\\+8A9E"):
        frame.write.format("encconv").option("encoding", "cp037").mode("append").save(str(out))
    assert [path for path in out.rglob("*") if path.is_file()] == []


def test_fields_in_sql(spark):
    frame = load(
        spark, DATA / "accounts.vb.37", encoding="cp037", records="bdw", trim="true",
        fields=f"@{DATA / 'accounts.fields'}",
    )  # fmt: skip
    frame.createOrReplaceTempView("accounts")
    row = spark.sql("select id, balance, name from accounts where balance < 0 order by id").first()
    assert (row.id, str(row.balance), row.name) == (32, "-17.05", "O'BRIEN & SONS")


def test_functions_in_python_and_sql(spark):
    encconv.spark.register(spark)
    texts = ["日本", None, "ABC"]
    frame = spark.createDataFrame([(text,) for text in texts], "text string")
    packed = frame.select(encconv.spark.encode("text", "cp930").alias("bytes"))
    assert [row.bytes and bytes(row.bytes) for row in packed.collect()] == [
        text and encconv.encode(text, "cp930") for text in texts
    ]
    back = packed.select(encconv.spark.decode("bytes", "cp930").alias("text"))
    assert [row.text for row in back.collect()] == texts
    packed.createOrReplaceTempView("packed")
    found = spark.sql("select encconv_decode(bytes, 'cp930', 'strict') as t from packed").collect()
    assert [row.t for row in found] == texts
    with pytest.raises(PySparkException, match="cp930"):
        frame.select(encconv.spark.encode(F.lit("語\U0001f600"), "cp930")).collect()


def test_csv_and_json_by_sparks_readers(spark, tmp_path):
    rows = [{"id": i, "name": f"名前 {i}", "note": 'two\nlines, "quoted"'} for i in range(3000)]
    quoted = [f'{r["id"]},{r["name"]},"two\nlines, ""quoted"""' for r in rows]
    csv = "\n".join(["id,name,note", *quoted]) + "\n"
    (tmp_path / "a.csv").write_bytes(encconv.encode(csv, "cp932"))
    made = encconv.spark.read_csv(
        spark, str(tmp_path / "a.csv"), "cp932", str(tmp_path / "work"),
        header=True, multiLine=True, inferSchema=True, escape='"',
    )  # fmt: skip
    assert [row.asDict() for row in made.orderBy("id").collect()] == rows
    json = "".join(f'{{"id": {r["id"]}, "name": "{r["name"]}"}}\n' for r in rows)
    for name, data in (("lines", json), ("array", "[" + json.rstrip().replace("\n", ",\n") + "]")):
        (tmp_path / name).write_bytes(encconv.encode(data, "cp930"))
        made = encconv.spark.read_json(
            spark, str(tmp_path / name), "cp930", str(tmp_path / "work"), multiLine=name == "array"
        )
        assert [row.name for row in made.orderBy("id").collect()] == [r["name"] for r in rows]
    assert not list((tmp_path / "work").glob("*.parts"))


def test_stream(spark, tmp_path):
    (tmp_path / "in").mkdir()
    write_lines(tmp_path / "in" / "1", "gb18030", 100)
    stream = spark.readStream.format("encconv").option("encoding", "gb18030")
    query = (
        stream.load(str(tmp_path / "in"))
        .writeStream.format("memory")
        .queryName("lines")
        .option("checkpointLocation", str(tmp_path / "checkpoint"))
        .trigger(processingTime="200 milliseconds")
        .start()
    )
    try:
        query.processAllAvailable()
        write_lines(tmp_path / "in" / "2", "gb18030", 50)
        query.processAllAvailable()
        values = [row.value for row in spark.sql("select value from lines").collect()]
    finally:
        query.stop()
    assert sorted(values) == sorted(lines_of("gb18030", 100) + lines_of("gb18030", 50))


def test_recipes_of_the_guide(spark, tmp_path):
    guide = pathlib.Path(__file__).resolve().parents[3] / "docs" / "spark.md"
    result = doctest.testfile(
        str(guide),
        module_relative=False,
        encoding="utf-8",
        globs={"spark": spark, "DATA": DATA, "FOLDER": tmp_path},
    )
    assert result.attempted > 10
    assert result.failed == 0
