"""A standalone cluster on loopback: a master, and workers that are bound to a core each."""

from __future__ import annotations

import os
import pathlib
import re
import signal
import subprocess
import sys
import time

import pyspark

# What matters for short runs is that they start.
STARTS_SOON = "-XX:TieredStopAtLevel=1 -XX:+UseSerialGC"
SPARK_HOME = pathlib.Path(pyspark.__file__).parent


class Cluster:
    """Runs processes until stop(). Their groups are in the file PIDS for who must end them when this
    process could not."""

    def __init__(self, folder: pathlib.Path, memory: str = "1g", java_options: str = ""):
        self.folder = folder
        self.memory = memory
        self.java_options = java_options
        self.workers: dict[int, subprocess.Popen] = {}
        folder.mkdir(parents=True, exist_ok=True)
        self.environment = {
            **os.environ,
            "SPARK_HOME": str(SPARK_HOME),
            "SPARK_LOCAL_IP": "127.0.0.1",
            "SPARK_LOCAL_HOSTNAME": "127.0.0.1",
            "PYSPARK_PYTHON": sys.executable,
            "SPARK_WORKER_DIR": str(folder / "work"),
            "SPARK_DAEMON_MEMORY": "256m",
            "SPARK_DAEMON_JAVA_OPTS": STARTS_SOON,
            "SPARK_NO_DAEMONIZE": "1",
        }
        # The driver needs the same.
        os.environ.update(self.environment)
        self.master = self._start("master", [], "deploy.master.Master", "--port", "0", "--webui-port", "0")
        self.url = self._wait("master", r"Starting Spark master at (spark://\S+)")

    def _start(self, name: str, bound: list[str], kind: str, *arguments: str) -> subprocess.Popen:
        log = open(self.folder / f"{name}.log", "w")
        command = [*bound, str(SPARK_HOME / "bin" / "spark-class"), f"org.apache.spark.{kind}"]
        started = subprocess.Popen(
            [*command, "--host", "127.0.0.1", *arguments],
            env=self.environment,
            stdout=log,
            stderr=subprocess.STDOUT,
            start_new_session=True,
        )
        with open(self.folder / "pids", "a") as pids:
            print(started.pid, file=pids)
        return started

    def _wait(self, name: str, pattern: str) -> str:
        log = self.folder / f"{name}.log"
        for _ in range(1200):
            found = re.search(pattern, log.read_text())
            if found:
                return found[found.lastindex or 0]
            time.sleep(0.1)
        raise RuntimeError(f"the {name} does not start:\n{log.read_text()}")

    def start_worker(self, core: int) -> None:
        """Starts a worker on a core."""
        self.workers[core] = self._start(
            f"worker-{core}",
            ["taskset", "-c", str(core)],
            "deploy.worker.Worker",
            *("--cores", "1", "--memory", self.memory, "--webui-port", "0", self.url),
        )
        self._wait(f"worker-{core}", "Successfully registered with master")

    def kill_worker(self, core: int) -> None:
        """Kills a worker and what it runs, as a machine that fails does."""
        self._end(self.workers.pop(core))

    @staticmethod
    def _end(process: subprocess.Popen) -> None:
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.wait()

    def stop(self) -> None:
        """Ends all processes."""
        for process in [*self.workers.values(), self.master]:
            self._end(process)
        self.workers.clear()
        (self.folder / "pids").unlink(missing_ok=True)

    def session(self, **options: str):
        """A session of the cluster."""
        from pyspark.sql import SparkSession

        builder = SparkSession.builder.master(self.url).appName("encconv")
        settings = {
            "spark.driver.host": "127.0.0.1",
            "spark.driver.bindAddress": "127.0.0.1",
            "spark.ui.enabled": "false",
            "spark.log.level": "ERROR",
            "spark.executor.memory": "900m",
            "spark.executor.cores": "1",
            "spark.sql.shuffle.partitions": "2",
            "spark.ui.showConsoleProgress": "false",
            "spark.executor.extraJavaOptions": self.java_options,
            "spark.driver.extraJavaOptions": self.java_options,
            **options,
        }
        for name, value in settings.items():
            builder = builder.config(name, value)
        return builder.getOrCreate()
