#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Kills a writing process, at random moments and within each of its writes, and looks at what it leaves.

An export leaves the old file or the new one, a stream a file with every frame that was acknowledged and none other;
both open in h5py as they are.
"""
import argparse
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time

import h5py
import numpy

FRAMES = 41


class Kills:
    def __init__(self, writer, folder):
        self.writer = writer
        self.folder = pathlib.Path(folder)
        self.path = self.folder / "run.qfi"
        self.faults = 0
        self.kills = 0
        self.fell_back = 0

    def start(self, work, *arguments, **environment):
        command = [self.writer, work, str(self.path), *map(str, arguments)]
        return subprocess.Popen(command, stdout=subprocess.PIPE, text=True, env={**os.environ, **environment})

    @staticmethod
    def last_number(process):
        lines = process.communicate()[0].split()
        return int(lines[-1]) if lines else 0

    def fault(self, text):
        self.faults += 1
        print("FAULT:", text, flush=True)

    def check(self, what, work, number):
        result = subprocess.run([self.writer, work, str(self.path), str(number)], capture_output=True, text=True)
        if result.returncode != 0:
            self.fault(f"{what}: {result.stderr.strip()}")

    def check_with_h5py(self, what, at_least):
        try:
            with h5py.File(self.path, "r") as file:
                sets = [group for group in [file, *file.values()] if isinstance(group, h5py.Group) and "frame" in group]
                places = numpy.sort(numpy.concatenate([[], *(rows_of(group) for group in sets)]))
            if len(places) < at_least or not numpy.array_equal(places, numpy.arange(len(places))):
                self.fault(f"{what}: h5py finds the frames {places}, {at_least} were acknowledged")
        except (OSError, RuntimeError, KeyError, AssertionError) as error:
            self.fault(f"{what}: h5py: {error}")

    def look_at_stream(self, what, acknowledged):
        """A stream that was killed before its first frame has not yet got its name."""
        if not self.path.exists():
            if acknowledged > 0:
                self.fault(f"{what}: {acknowledged} frames were acknowledged, there is no file")
            parts = list(self.folder.glob("*.part"))
            if not parts or parts[0].stat().st_size == 0:
                return
            parts[0].rename(self.path)
            if not h5py.is_hdf5(self.path):
                return
        self.fell_back += self.path.read_bytes()[:8] == bytes(8)
        self.check(what, "check-stream", acknowledged)
        self.check_with_h5py(what, acknowledged)

    def clear(self):
        for path in self.folder.iterdir():
            path.unlink()

    def stream_at_random(self, longest):
        self.clear()
        frames = FRAMES + random.randint(0, 1)
        process = self.start("stream", frames)
        time.sleep(random.uniform(0, longest))
        process.kill()
        self.kills += 1
        self.look_at_stream(f"stream of {frames} frames", self.last_number(process))

    def export_at_random(self, longest):
        process = self.start("export")
        time.sleep(random.uniform(0, longest))
        process.kill()
        self.kills += 1
        done = self.last_number(process)
        if done > 0:
            self.check("export", "check-export", done)
        elif self.path.exists():
            self.check_with_h5py("export", 1)

    def stream_at_write(self, write, frames):
        self.clear()
        process = self.start("stream", frames, KILL_AT_WRITE=str(write))
        acknowledged = self.last_number(process)
        if process.returncode == 0:
            return False
        self.kills += 1
        self.look_at_stream(f"stream of {frames} frames, write {write}", acknowledged)
        return True


def rows_of(group):
    """The places of the frames of a set; all its data has to be readable, and every dimension to have its scale."""
    datasets = {name: data for name, data in group.items() if isinstance(data, h5py.Dataset)}
    values = {name: data[...] for name, data in datasets.items()}
    for data in datasets.values():
        if not h5py.h5ds.is_scale(data.id):
            assert all(len(dimension) == 1 for dimension in data.dims), f"{data.name} lacks a scale"
    return values["frame"]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("writer", help="the program KillWriter")
    parser.add_argument("--random", type=int, default=500, help="kills at random moments of streaming and of export each")
    parser.add_argument("--step", type=int, default=1, help="of the writes of a stream every so many-th is cut off")
    parser.add_argument("--seed", type=int, default=None)
    arguments = parser.parse_args()
    seed = arguments.seed if arguments.seed is not None else random.randrange(1 << 30)
    random.seed(seed)
    with tempfile.TemporaryDirectory() as folder:
        kills = Kills(arguments.writer, folder)
        began = time.monotonic()
        kills.start("stream", FRAMES).communicate()
        whole = time.monotonic() - began
        for _ in range(arguments.random):
            kills.stream_at_random(1.1 * whole)
        at_random, by_twin = kills.kills, kills.fell_back
        kills.clear()
        for _ in range(arguments.random):
            kills.export_at_random(3 * whole)
        exports = kills.kills - at_random
        write = random.randint(1, arguments.step)
        while kills.stream_at_write(write, 12 + write % 2):
            write += arguments.step
        print(f"seed {seed}: {at_random} streams killed at random ({by_twin} in the midst of their table of contents), "
              f"{exports} exports killed at random, {kills.kills - at_random - exports} streams killed within a write "
              f"({kills.fell_back - by_twin}): {kills.faults} faults")
        return 1 if kills.faults else 0


if __name__ == "__main__":
    sys.exit(main())
