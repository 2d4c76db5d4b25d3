import os
import pathlib

import pytest

try:
    from cluster import STARTS_SOON, Cluster
except ImportError:
    collect_ignore_glob = ["test_*.py"]  # scripts/spark.sh has what they need


@pytest.fixture(scope="session")
def cluster(tmp_path_factory):
    folder = os.environ.get("ENCCONV_CLUSTER")
    place = pathlib.Path(folder) if folder else tmp_path_factory.mktemp("cluster")
    started = Cluster(place, java_options=STARTS_SOON)
    try:
        for core in (0, 1):
            started.start_worker(core)
        yield started
    finally:
        started.stop()


@pytest.fixture(scope="session")
def spark(cluster):
    session = cluster.session()
    yield session
    session.stop()
