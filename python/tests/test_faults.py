"""Workers of Spark and Ray that are killed: 500,000 rows, twice in each phase. scripts/fault_test does more of it."""

import random

import pytest
from engines import ray_cluster, spark_session
from faults import PHASES, Faults, Ray, Spark

ROWS, ROWS_IN_SPLIT, TIMES = 500_000, 25_000, 2


def check_phases(faults):
    draw = random.Random(19)
    for phase in PHASES:
        killed = 0
        for _ in range(4 * TIMES):  # a run may end before its worker is killed
            killed += faults.check(phase, draw)
            if killed == TIMES:
                break
        assert killed == TIMES, phase


def test_spark(folder):
    pytest.importorskip("pyspark")
    with spark_session("local-cluster[2,1,512]", **{"spark.executor.memory": "512m"}) as session:
        check_phases(Faults(Spark(session), folder, ROWS, ROWS_IN_SPLIT))


def test_ray(folder):
    pytest.importorskip("ray")
    import kelvarin.ray  # noqa: F401
    with ray_cluster():
        check_phases(Faults(Ray(), folder, ROWS, ROWS_IN_SPLIT))
