# SPDX-License-Identifier: Apache-2.0
"""Reads .qfi and .qfv files with h5py and numpy alone, as docs/FileFormat.md describes them.

    name, attributes, frames = read_native.read("run.qfv")
    u = frames[3].components["U"]
    speed = u.scale.of(u.planes())      # a plane per z, in units of u.scale.unit

Without our library, and without its checks. By itself it prints what a file holds: read_native.py FILE
"""
import dataclasses
import itertools
import json
import re
import sys
from urllib.parse import unquote

import h5py
import numpy as np

COLOUR = np.dtype([("blue", "u1"), ("green", "u1"), ("red", "u1"), ("reserved", "u1")])
TYPES = {"u8": "u1", "u16": "<u2", "i32": "<i4", "u32": "<u4", "f32": "<f4", "f64": "<f8", "rgb": COLOUR}
RESERVED = {"Conventions", "CLASS", "NAME", "DIMENSION_LIST", "DIMENSION_LABELS", "REFERENCE_LIST", "units",
            "scale_factor", "add_offset"}


@dataclasses.dataclass(frozen=True)
class Scale:
    factor: float = 1.0
    offset: float = 0.0
    unit: str = ""
    description: str = ""

    def of(self, stored):
        return stored * self.factor + self.offset


@dataclasses.dataclass(frozen=True)
class Component:
    dataset: h5py.Dataset
    place: tuple            # row, or row and choice
    role: str               # data, mask, enabled, active or scalar
    scale: Scale            # what holds for its values, its own or the frame's
    has_own_scale: bool

    def planes(self):
        """As stored: [z, y, x], of colours [z, y, x, channel] as red, green, blue and perhaps a fourth."""
        return self.dataset[self.place]


@dataclasses.dataclass(frozen=True)
class Frame:
    kind: str               # image, rgb, vector2c or vector3c
    size: list              # width, height, depth
    grid: list              # spacing of vectors in pixels
    choices: int
    scales: dict            # of x, y, z and i, the intensity
    components: dict        # by name, in the order of the store
    attributes: dict        # text, number, array or None by name


def read(path):
    """Gives the name, the attributes and the frames; pixels are read when asked for."""
    file = h5py.File(path, "r", locking=False)
    if text_of(file.attrs, "qf_format") != "qf-frames" or file.attrs["qf_version"][0] != 1:
        raise ValueError(f"{path} is not a file of frames that this program knows")
    groups = itertools.chain([file], (file.get(f"set{number}") for number in itertools.count(1)))
    sets = itertools.takewhile(lambda group: group is not None and "frame" in group, groups)
    numbered = [pair for group in sets for pair in frames_of(group)]
    frames = [frame for _, frame in sorted(numbered, key=lambda pair: pair[0])]
    return any_text(file.attrs, "qf_name"), buffer_attributes(file), frames


def frames_of(group):
    attributes = group.attrs
    datasets = [group[name] for name in json_of(attributes, "qf_datasets")]
    rows = min(len(dataset) for dataset in [group["frame"], *datasets])
    scales = {axis: usual_scale(group[axis].attrs) if axis in group else Scale() for axis in "xyz"}
    following = [usual_scale(d.attrs) for d in datasets if d.attrs.get("qf_own_scale") == 0]
    scales["i"] = scale_of(json_of(attributes, "qf_scale_i")) if "qf_scale_i" in attributes else [*following, Scale()][0]
    fixed = (text_of(attributes, "qf_frame"), attributes["qf_size"].tolist(), attributes["qf_grid"].tolist(),
             int(attributes["qf_choices"]))
    parts = sorted((part for dataset in datasets for part in components_of(dataset)), key=lambda part: part[0])
    texts = zip(group["frame"], column(group, "frame_scales", rows), column(group, "frame_attributes", rows))
    for row, (number, changes, own_attributes) in enumerate(itertools.islice(texts, rows)):
        changed = json.loads(changes or "{}")
        own_scales = changed.pop("components", {})
        now = scales | {axis: scale_of(scale) for axis, scale in changed.items()}
        components = {}
        for _, name, dataset, choice, role, own, follows in parts:
            if name in own_scales:
                own = scale_of(own_scales[name]) if own_scales[name] else None
            scale = own or (now["i"] if follows else Scale())
            components[name] = Component(dataset, (row, *choice), role, scale, own is not None)
        yield number, Frame(*fixed, now, components, attributes_of(own_attributes))


def components_of(dataset):
    """Place in the frame, name, dataset, index of the choice, role, usual own scale, and whether it follows."""
    attributes = dataset.attrs
    names, places = json_of(attributes, "qf_components"), np.hstack(pieces(attributes, "qf_index"))
    own = usual_scale(attributes) if attributes.get("qf_own_scale") == 1 else None
    for choice, (name, place) in enumerate(zip(names, places)):
        index = (choice,) if len(names) > 1 else ()
        yield place, name, dataset, index, text_of(attributes, "qf_role"), own, "qf_own_scale" in attributes


def column(group, name, rows):
    """The texts of the rows, which stand one behind the other; rows behind their end have none."""
    if name not in group:
        return [""] * rows
    content, ends = group[name][()].tobytes(), group[f"{name}_end"][()]
    texts = [content[begin:end].decode() for begin, end in zip([0, *ends], ends)]
    return texts + [""] * (rows - len(texts))


def usual_scale(attributes):
    shown = {name: f"qf_{name}" if f"qf_{name}" in attributes else name
             for name in ("scale_factor", "add_offset", "units", "long_name")}
    return Scale(float(attributes.get(shown["scale_factor"], 1)), float(attributes.get(shown["add_offset"], 0)),
                 *(any_text(attributes, name, shown[name]) for name in ("units", "long_name")))


def scale_of(values):
    return Scale(*(float(number(value, "f64")) for value in values[:2]), *values[2:])


def attributes_of(text):
    return {name: value_of(*value) for name, value in json.loads(text or "{}").items()}


def value_of(kind, value):
    if kind in ("str", "plane"):
        return value
    element, form = re.fullmatch(r"(\w+)(.*)", kind).groups()
    numbers = np.array([number(one, element) for one in (value if form else [value])],
                       "<u4" if element == "rgb" else TYPES[element]).view(TYPES[element])
    return numbers.reshape(json.loads(form) or -1) if form else numbers[0]


def number(value, element):
    if isinstance(value, str) and value.startswith("0x"):
        return np.array(int(value, 16), "<u4" if element == "f32" else "<u8").view(TYPES[element])[()]
    return float(value) if isinstance(value, str) else value


def buffer_attributes(file):
    own = {name for name in file.attrs if name.startswith("qf_user_")
           or not name.startswith(("qf_", "_")) and name not in RESERVED}
    values = {unquote(name.removeprefix("qf_user_")): file.attrs[name] for name in own}
    found = {name: np.zeros(0, value.dtype) if isinstance(value, h5py.Empty) else
             plain_text(value) if isinstance(value, (bytes, str)) else value for name, value in values.items()}
    others = file["buffer_attributes"][()].tobytes().decode() if "buffer_attributes" in file else ""
    return found | attributes_of(others)


def pieces(attributes, name):
    """A long attribute goes on in NAME_2, NAME_3 …"""
    names = itertools.chain([name], (f"{name}_{number}" for number in itertools.count(2)))
    return [attributes[piece] for piece in itertools.takewhile(lambda piece: piece in attributes, names)]


def json_of(attributes, name):
    return json.loads("".join(plain_text(piece) for piece in pieces(attributes, name)))


def any_text(attributes, name, shown=None):
    exact = f"qf_{name.removeprefix('qf_')}_json"
    return json_of(attributes, exact) if exact in attributes else text_of(attributes, shown or name)


def text_of(attributes, name):
    return plain_text(attributes.get(name, ""))


def plain_text(value):
    return value.decode("utf-8", "replace") if isinstance(value, bytes) else value


def main():
    name, attributes, frames = read(sys.argv[1])
    print(name, attributes)
    for index, frame in enumerate(frames):
        print(index, frame.kind, frame.size, frame.scales["x"], frame.attributes)
        for title, component in frame.components.items():
            print("   ", title, component.dataset.dtype, component.scale)


if __name__ == "__main__":
    main()
