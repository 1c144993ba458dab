"""What scripts/fault_test runs: faults.py with many rows and many kills."""

import argparse
import pathlib
import random
import time

from engines import ray_cluster, spark_session
from faults import PHASES, Faults, Ray, Spark


def kill(name, engine, arguments):
    faults = Faults(engine, arguments.folder, arguments.rows, max(arguments.rows // 40, 5000))
    draw = random.Random(23)
    for phase in PHASES:
        begin = time.monotonic()
        faults.check(phase, draw, kills=False)
        alone = time.monotonic() - begin
        killed = runs = 0
        begin = time.monotonic()
        while killed < arguments.times:
            killed += faults.check(phase, draw)
            runs += 1
        each = (time.monotonic() - begin) / runs
        print(f"{name}, {phase}: {killed} kills in {runs} runs, all right; {alone:.1f} s without a kill, {each:.1f} s with one",
              flush=True)


def main():
    parser = argparse.ArgumentParser(prog="scripts/fault_test")
    parser.add_argument("folder", type=lambda text: pathlib.Path(text).absolute())
    parser.add_argument("engines", nargs="*", help="spark, ray; both without one")
    parser.add_argument("--rows", type=int, default=20_000_000)
    parser.add_argument("--times", type=int, default=10)
    arguments = parser.parse_intermixed_args()
    engines = arguments.engines or ["spark", "ray"]
    if not {"spark", "ray"}.issuperset(engines):
        parser.error("the engines are spark and ray")
    if "spark" in engines:
        # An executor that is lost counts as a failure of its tasks, and each run of this test loses some.
        with spark_session("local-cluster[2,1,1024]", **{
                "spark.executor.memory": "1g", "spark.deploy.maxExecutorRetries": "-1",
                "spark.task.maxFailures": "20"}) as session:
            kill("Spark", Spark(session), arguments)
    if "ray" in engines:
        import kelvarin.ray  # noqa: F401
        with ray_cluster():
            kill("Ray", Ray(), arguments)


if __name__ == "__main__":
    main()
