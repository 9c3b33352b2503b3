# SPDX-License-Identifier: Apache-2.0
"""What Examples/read_native.py reads by itself is what the library reads.

usage: read_native_test.py Examples NativeFilePeer qf
"""
import glob
import json
import math
import os
import re
import subprocess
import sys
import tempfile
import unittest

import numpy


def run(*arguments):
    return subprocess.run(arguments, check=True, capture_output=True).stdout


def printed(text):
    """As qf prints texts: half a character, which JSON cannot hold, is replaced."""
    return re.sub("[\ud800-\udfff]", "\ufffd", text)


def listed(value):
    """As qf prints values: lists, colours as red, green, blue, null for what is no number."""
    if isinstance(value, str):
        return printed(value)
    values = numpy.atleast_1d([] if value is None else value)
    if values.dtype.names:
        values = numpy.stack([values[name] for name in ("red", "green", "blue")], -1)
    return [one if math.isfinite(one) else None for one in values.ravel().tolist()]


def scale(values):
    factor, offset = listed([values.factor, values.offset])
    return {"factor": factor, "offset": offset, "unit": printed(values.unit),
            "description": printed(values.description)}


def described(attributes):
    return {printed(name): listed(value) for name, value in attributes.items()}


class ReadNativeTest(unittest.TestCase):
    def check_planes(self, path, index, frame):
        for name, component in frame.components.items():
            stored = component.planes()[..., :3] if component.planes().ndim == 4 else component.planes()
            for z, plane in enumerate(stored):
                theirs = run(QF, "dump", path, "--raw", f"--frame={index}", f"--component={name}", f"--z={z}")
                self.assertEqual(plane.tobytes(), theirs, (name, z))

    def check(self, path):
        name, attributes, frames = read_native.read(path)
        theirs = json.loads(run(QF, "info", "-v", "--json", path))[0]
        self.assertEqual(printed(name), theirs["name"])
        self.assertEqual(described(attributes), theirs["attributes"])
        self.assertEqual(len(frames), len(theirs["frames"]))
        for index, (frame, their) in enumerate(zip(frames, theirs["frames"])):
            self.assertEqual(frame.size, [their["width"], their["height"], their["depth"]])
            self.assertEqual(frame.grid, their.get("grid", [1, 1, 1]))
            self.assertEqual({axis: scale(frame.scales[axis.lower()]) for axis in "xyzI"}, their["scales"])
            self.assertEqual(described(frame.attributes), their["attributes"])
            self.assertEqual([(title, scale(component.scale)) for title, component in frame.components.items()],
                             [(component["name"], component["scale"]) for component in their["components"]])
            if index % 3 == 0:
                self.check_planes(path, index, frame)

    def test_all_samples_are_read_as_the_library_reads_them(self):
        with tempfile.TemporaryDirectory() as directory:
            run(PEER, "write", directory)
            paths = sorted(glob.glob(os.path.join(directory, "sample-*.packed.qfi")))
            paths += [os.path.join(directory, f"vectors.{form}.qfi") for form in ("plain", "streamed", "torn")]
            self.assertGreater(len(paths), 10)
            for path in paths:
                with self.subTest(file=os.path.basename(path)):
                    self.check(path)


if __name__ == "__main__":
    QF, PEER, examples = (sys.argv.pop() for _ in range(3))
    sys.path.insert(0, examples)
    sys.dont_write_bytecode = True
    import read_native
    unittest.main()
