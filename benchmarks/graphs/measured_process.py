"""Runs a command on some processors and prints what it took as JSON: measured_process.py 0,1 COMMAND...

A process of its own, because the peak memory of a process includes that of the one which started it. Where the system
allows it the command goes before all other programs, so that a busy machine does not decide who waits.
"""

import json
import os
import subprocess
import sys
import time


def run(processors, command):
    """From outside. Gives {"seconds", "processorSeconds", "megabytes", "output"}; raises when the command fails.

    A Python program finds the modules that this one finds.
    """
    measured = [sys.executable, "-B", os.path.abspath(__file__), ",".join(map(str, processors)), *command]
    environment = os.environ | {"PYTHONPATH": os.pathsep.join(sys.path)}
    result = subprocess.run(measured, stdout=subprocess.PIPE, text=True, check=True, env=environment)
    return json.loads(result.stdout)


def main():
    processors, *command = sys.argv[1:]
    os.sched_setaffinity(0, {int(number) for number in processors.split(",")})
    go_before_others()
    start = time.perf_counter()
    with subprocess.Popen(command, stdout=subprocess.PIPE, text=True) as process:
        output = process.stdout.read()
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    seconds = time.perf_counter() - start
    print(json.dumps({"seconds": seconds, "processorSeconds": usage.ru_utime + usage.ru_stime,
                      "megabytes": usage.ru_maxrss / 1024, "output": output}))
    sys.exit(process.returncode)


def go_before_others():
    try:
        os.sched_setscheduler(0, os.SCHED_RR, os.sched_param(os.sched_get_priority_min(os.SCHED_RR)))
    except OSError:
        pass  # then it takes turns with them


if __name__ == "__main__":
    main()
