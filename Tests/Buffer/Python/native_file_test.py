# SPDX-License-Identifier: Apache-2.0
"""Opens the files of the store with the tools that others have, and the other way round.

usage: native_file_test.py NativeFilePeer
"""
import ctypes
import glob
import json
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import warnings
import zlib

import h5py
import netCDF4
import numpy
import xarray

ENGINES = ("h5netcdf", "netcdf4")
NETCDF_DIMENSION = b"This is a netCDF dimension"


def peer(*arguments):
    return subprocess.run([PEER, *arguments], check=False).returncode


def open_dataset(path, engine, **arguments):
    with warnings.catch_warnings():
        warnings.simplefilter("error", UserWarning)
        return xarray.open_dataset(path, engine=engine, **arguments)


def datasets(path):
    """All datasets of a file; reading them goes through the stock filters and their checksums."""
    found = []
    with h5py.File(path, "r") as file:
        file.visititems(lambda name, item: found.append(name) if isinstance(item, h5py.Dataset) else None)
        for name in found:
            yield file[name]


# What h5py does not offer of the library that it uses.
HDF5 = ctypes.CDLL(h5py.h5p.__file__)


def hdf5(function, identifier, *numbers):
    if getattr(HDF5, function)(ctypes.c_int64(identifier.id), *(ctypes.c_uint(number) for number in numbers)) < 0:
        raise RuntimeError(function)


def write_plain(file, pixels):
    """What the page asks for besides the pixels. \\param pixels makes their dataset"""
    values = dict(qf_format="qf-frames", qf_version=[1, 0], qf_frame="image", qf_size=[640, 600, 1],
                  qf_grid=[1, 1, 1], qf_choices=1, qf_datasets='["PIXEL"]')
    for name, value in values.items():
        file.attrs[name] = value
    file["frame"] = numpy.arange(5)
    dataset = pixels(file)
    dataset.attrs["qf_components"] = '["PIXEL"]'
    dataset.attrs["qf_index"] = 0
    return dataset


class NativeFileTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.directory = tempfile.mkdtemp()
        cls.addClassCleanup(shutil.rmtree, cls.directory)
        if peer("write", cls.directory) != 0:
            raise RuntimeError("the files were not written")

    def path(self, name):
        return os.path.join(self.directory, name)

    def pixels(self):
        return numpy.fromfile(self.path("images.raw"), "<u2").reshape(5, 1, 600, 640)

    def test_every_dataset_has_a_checksum_and_scales_on_all_dimensions(self):
        files = glob.glob(self.path("*.qfi"))
        self.assertEqual(len(files), 34)
        for path in files:
            for dataset in datasets(path):
                with self.subTest(file=os.path.basename(path), dataset=dataset.name):
                    self.assertIsNotNone(dataset.chunks)
                    self.assertTrue(dataset.fletcher32 or dataset.compression == "gzip")
                    self.assertFalse(h5py.check_dtype(vlen=dataset.dtype))
                    if not dataset.attrs.get("NAME", b"").startswith(NETCDF_DIMENSION):
                        dataset[...]
                    if not h5py.h5ds.is_scale(dataset.id):
                        for index, dimension in enumerate(dataset.dims):
                            self.assertEqual(len(dimension), 1)
                            self.assertEqual(dimension[0].shape[0], dataset.shape[index])
                            self.assertTrue(h5py.h5ds.is_attached(dataset.id, dimension[0].id, index))

    def test_attributes_have_fixed_length_and_keep_their_order(self):
        for path in glob.glob(self.path("*.qfi")):
            with h5py.File(path, "r") as file:
                self.assertEqual(file.attrs["Conventions"], b"CF-1.8")
                order = []
                h5py.h5a.iterate(file.id, order.append, index_type=h5py.h5.INDEX_CRT_ORDER)
                self.assertEqual(order[:3], [b"Conventions", b"qf_format", b"qf_version"])
                for name in file.attrs:
                    kind = file.attrs.get_id(name).get_type()
                    self.assertFalse(isinstance(kind, h5py.h5t.TypeStringID) and kind.is_variable_str(), name)

    def test_every_group_of_every_file_opens(self):
        for path in sorted(glob.glob(self.path("*.qfi"))):
            with h5py.File(path, "r") as file:
                groups = [None] + [name for name in file if isinstance(file[name], h5py.Group)]
            for engine in ENGINES:
                for group in groups:
                    with self.subTest(file=os.path.basename(path), engine=engine, group=group):
                        # An empty dimension has no values that could be decoded.
                        with open_dataset(path, engine, group=group, decode_cf="Unusual" not in path) as data:
                            data.load()

    def test_images_have_their_pixels_and_coordinates_with_units(self):
        for form in ("packed", "plain", "streamed", "killed", "torn"):
            for engine in ENGINES:
                with self.subTest(form=form, engine=engine):
                    with open_dataset(self.path(f"images.{form}.qfi"), engine) as data:
                        self.assertEqual(data.PIXEL.dtype, numpy.dtype("u2"))
                        numpy.testing.assert_array_equal(data.PIXEL.values, self.pixels())
                        numpy.testing.assert_allclose(data.x.values, numpy.arange(640) * 0.05 - 12)
                        numpy.testing.assert_allclose(data.y.values, numpy.arange(600) * -0.05 + 8)
                        self.assertEqual(data.x.attrs["units"], "mm")
                        self.assertEqual(data.x.attrs["long_name"], "position x")
                        numpy.testing.assert_allclose(data.time.values, 0.001 * numpy.arange(5))
                        self.assertIn("time", data.PIXEL.coords)
                        self.assertEqual(data.attrs["Camera"], "Größe")

    def test_vectors_have_physical_values_choices_and_flags(self):
        for engine in ENGINES:
            with self.subTest(engine=engine):
                with open_dataset(self.path("vectors.packed.qfi"), engine) as data:
                    self.assertEqual(data.u.dims, ("frame", "choice", "z", "y", "x"))
                    self.assertEqual(data.u.attrs["units"], "m/s")
                    expected = 2.5 * 0.25 * numpy.arange(1, 121).reshape(10, 12)
                    numpy.testing.assert_allclose(data.u.values[3, 0, 0], expected)
                    numpy.testing.assert_allclose(data.x.values, numpy.arange(12) * 16 * 0.05 - 12)
                    self.assertEqual(data.enabled.attrs["flag_meanings"], "disabled enabled")
                    self.assertEqual(set(data.u.attrs["ancillary_variables"].split()),
                                     {"enabled", "active_choice", "mask"})
                    self.assertEqual(data.Correlation.shape, (4, 1, 10, 12))

    def test_a_scale_that_differs_between_frames_is_not_shown(self):
        with open_dataset(self.path("sample-ChangingScales.packed.qfi"), "h5netcdf") as data:
            numpy.testing.assert_array_equal(data.x.values, numpy.arange(3))
            self.assertNotIn("units", data.x.attrs)

    def test_one_frame_is_found_by_dask_free_slicing(self):
        with open_dataset(self.path("images.packed.qfi"), "h5netcdf") as data:
            numpy.testing.assert_array_equal(data.PIXEL[3, 0, 10:20].values, self.pixels()[3, 0, 10:20])

    def test_frames_and_attributes_that_netcdf4_appends_come_back(self):
        for form in ("packed", "plain", "streamed", "killed"):
            path = self.path(f"appended.{form}.qfi")
            shutil.copy(self.path(f"images.{form}.qfi"), path)
            with netCDF4.Dataset(path, "a") as data:
                data.set_auto_maskandscale(False)
                data["frame"][5] = 5
                data["PIXEL"][5] = 7
                data.comment = "über"
                data.gain = 2.5
                data.window = numpy.array([32, 16], "i4")
            with h5py.File(path, "a") as file:
                file.attrs["isSeeded"] = True
            self.assertEqual(peer("check-appended", path), 0)

    def test_files_that_others_wrote_anew_come_back(self):
        def rewrite(dataset, **layout):
            arguments = dict(dtype=dataset.dtype, data=dataset[...], maxshape=dataset.maxshape)
            return {**arguments, **layout}

        layouts = {"contiguous": dict(maxshape=None), "chunked": dict(chunks=(2, 1, 7, 11)),
                   "big-endian": dict(dtype=">u2", chunks=True),
                   "checked": dict(chunks=(1, 1, 100, 640), shuffle=True, compression="gzip", fletcher32=True)}
        for name, layout in layouts.items():
            with self.subTest(layout=name):
                path = self.path(f"rewritten-{name}.qfi")
                shutil.copy(self.path("images.packed.qfi"), path)
                with h5py.File(path, "a") as file:
                    old = file["PIXEL"]
                    arguments = rewrite(old, **layout)
                    attributes = {key: value for key, value in old.attrs.items() if key.islower()}
                    del file["PIXEL"]
                    new = file.create_dataset("PIXEL", **arguments)
                    for key, value in attributes.items():
                        new.attrs[key] = value
                self.assertEqual(peer("check-rewritten", path), 0)

    def test_a_file_that_is_written_by_the_page_alone_comes_back(self):
        path = self.path("scratch.made")
        with h5py.File(path, "w") as file:
            file.attrs["qf_format"] = "qf-frames"
            file.attrs["qf_version"] = [1, 0]
            file.attrs["qf_kind"] = "image"
            file.attrs["qf_name"] = ""
            file.attrs["Camera"] = "Größe"
            file.attrs["qf_frame"] = "image"
            file.attrs["qf_size"] = [640, 600, 1]
            file.attrs["qf_grid"] = numpy.array([1, 1, 1], ">u2")
            file.attrs["qf_choices"] = 1
            file.attrs["qf_datasets"] = '["PIXEL"]'
            file.create_dataset("frame", data=numpy.arange(5), dtype=">i2")
            texts = ['{"time":["f64",%r]}' % (0.001 * i) for i in range(5)]
            file["frame_attributes"] = numpy.frombuffer("".join(texts).encode(), "u1")
            file["frame_attributes_end"] = numpy.cumsum([len(text) for text in texts], dtype="i4")
            pixels = file.create_dataset("PIXEL", data=self.pixels())
            pixels.attrs["qf_components"] = '["PIXEL"]'
            pixels.attrs["qf_index"] = 0
            pixels.attrs["qf_role"] = "data"
            with h5py.File(self.path("images.packed.qfi"), "r") as ours:
                for name in ("qf_own_scale", "units", "long_name"):
                    if name in ours["PIXEL"].attrs:
                        pixels.attrs[name] = ours["PIXEL"].attrs[name]
                for axis in "xyz":
                    file[axis] = ours[axis][...]
                    for name in ("scale_factor", "add_offset", "units", "long_name"):
                        if name in ours[axis].attrs:
                            file[axis].attrs[name] = ours[axis].attrs[name]
        self.assertEqual(peer("check-rewritten", path), 0)
        with h5py.File(path, "a") as file:
            for name in ("frame_attributes", "frame_attributes_end", "x", "y", "z"):
                del file[name]
        self.assertEqual(peer("check-plain", path), 0)

    def test_files_with_old_headers_of_any_kind_come_back(self):
        def simple(**layout):
            return lambda file: file.create_dataset("PIXEL", data=self.pixels(), **layout)

        def large_header(file):
            dataset = simple()(file)
            for index in range(300):
                dataset.attrs[f"note {index}"] = numpy.bytes_(b"x" * 60000)
            return dataset

        def named_type(file):
            file["type"] = numpy.dtype(">u2")
            dataset = file.create_dataset("PIXEL", shape=(5, 1, 600, 640), dtype=file["type"], compression=1)
            dataset[...] = self.pixels()
            dataset.attrs.create("note", [3, 4], dtype=file["type"])
            return dataset

        def plain_edges(file, kind="<u2", chunk=(1, 1, 70, 640)):
            properties = h5py.h5p.create(h5py.h5p.DATASET_CREATE)
            properties.set_chunk(chunk)
            properties.set_shuffle()
            properties.set_deflate(1)
            hdf5("H5Pset_chunk_opts", properties, 2)
            space = h5py.h5s.create_simple((5, 1, 600, 640))
            kind = h5py.h5t.py_create(numpy.dtype(kind))
            dataset = h5py.Dataset(h5py.h5d.create(file.id, b"PIXEL", kind, space, dcpl=properties))
            dataset[...] = self.pixels()
            return dataset

        def shared_space(file):
            for name in "abc":
                file.create_dataset(name, shape=(5, 1, 600, 640), dtype="u2", chunks=(1, 1, 600, 640))
            return simple(chunks=(1, 1, 600, 640))(file)

        forms = {"large header": large_header, "named type": named_type, "plain edges": plain_edges,
                 "plain edges within": lambda file: plain_edges(file, ">u2", (2, 1, 70, 90)),
                 "shared space": shared_space, "compressed": simple(compression=1)}
        for name, pixels in forms.items():
            for start in (0, 1024):
                with self.subTest(form=name, start=start):
                    path = self.path("old.made")
                    creation = h5py.h5p.create(h5py.h5p.FILE_CREATE)
                    creation.set_userblock(start)
                    if name == "shared space":
                        hdf5("H5Pset_shared_mesg_nindexes", creation, 1)
                        spaces_and_types = 1 << 1 | 1 << 3
                        hdf5("H5Pset_shared_mesg_index", creation, 0, spaces_and_types, 8)
                    with h5py.File(h5py.h5f.create(path.encode(), fcpl=creation)) as file:
                        write_plain(file, pixels)
                    with open(path, "rb") as file:
                        self.assertNotIn(b"OHDR", file.read())
                    self.assertEqual(peer("check-plain", path), 0)

    def test_chunks_that_were_never_written_have_the_fill_value(self):
        # In the other byte order, since a part that is missing is refused where we read chunks ourselves.
        def pixels(file):
            dataset = file.create_dataset("PIXEL", shape=(5, 1, 600, 640), dtype=">u2", chunks=(1, 1, 100, 640),
                                          compression=1, fillvalue=9)
            dataset[4] = self.pixels()[4]
            return dataset

        path = self.path("unwritten.made")
        with h5py.File(path, "w") as file:
            write_plain(file, pixels)
        self.assertEqual(peer("check-unwritten", path), 0)

    def test_addresses_of_other_sizes_are_refused(self):
        path = self.path("small.made")
        creation = h5py.h5p.create(h5py.h5p.FILE_CREATE)
        creation.set_sizes(4, 4)
        with h5py.File(h5py.h5f.create(path.encode(), fcpl=creation)) as file:
            write_plain(file, lambda file: file.create_dataset("PIXEL", data=self.pixels()))
        self.assertEqual(peer("check-refused", path, "its addresses or lengths do not have 8 bytes"), 0)

    def test_damage_of_a_type_with_a_name_is_refused(self):
        path = self.path("damaged.made")
        with h5py.File(path, "w") as file:
            file["type"] = h5py.enum_dtype({"dark": 0, "bright": 1})
            address = h5py.h5o.get_info(file["type"].id).addr
            write_plain(file, lambda file: file.create_dataset("PIXEL", data=self.pixels()))
            file.attrs.create("light", 1, dtype=file["type"])
        with open(path, "r+b") as file:
            file.seek(address + 16 + 8 + 1)
            file.write(b"\xff\xff")
        self.assertEqual(peer("check-refused", path, "/: its header is damaged"), 0)

    def test_damage_of_chunks_under_filters_of_others_is_refused(self):
        path = self.path("damaged.made")
        chunk = (1, 1, 100, 640)
        shape = struct.pack("<5I", *chunk, 2)
        kind = struct.pack("<BBHIHH", 0x10, 0, 0, 2, 0, 16)
        cases = {"longer chunks": (shape, 9, "PIXEL: its chunks are not those of its filters"),
                 "larger elements": (shape, 16, "PIXEL: its header is damaged"),
                 "larger numbers": (kind, 4, "PIXEL: its header is damaged")}
        for name, (part, distance, reason) in cases.items():
            with self.subTest(damage=name):
                with h5py.File(path, "w") as file:
                    write_plain(file, lambda file: file.create_dataset("PIXEL", data=self.pixels(), chunks=chunk,
                                                                       scaleoffset=0))
                with open(path, "r+b") as file:
                    content = file.read()
                    self.assertEqual(content.count(part), 1)
                    file.seek(content.index(part) + distance)
                    file.write(b"\xff")
                self.assertEqual(peer("check-refused", path, reason), 0)

    def test_a_copy_that_xarray_makes_comes_back(self):
        for name, check in (("images", "check-rewritten"), ("vectors", "check-vectors")):
            for engine in ENGINES:
                with self.subTest(name=name, engine=engine):
                    path = self.path(f"copy-{engine}-{name}.made")
                    with open_dataset(self.path(f"{name}.packed.qfi"), engine, decode_cf=False) as data:
                        data.to_netcdf(path, engine=engine)
                    self.assertEqual(peer(check, path), 0)

    def test_chunks_that_did_not_pass_all_filters_come_back(self):
        for mask in (1, 2, 3):
            path = self.path("masked.made")
            shutil.copy(self.path("images.packed.qfi"), path)
            with h5py.File(path, "a") as file:
                dataset = file["PIXEL"]
                rows = dataset.chunks[2]
                for frame in range(5):
                    for y in range(0, 600, rows):
                        chunk = numpy.zeros((rows, 640), "<u2")
                        chunk[:min(rows, 600 - y)] = self.pixels()[frame, 0, y:y + rows]
                        data = chunk.tobytes()
                        if not mask & 1:
                            data = chunk.view("u1").reshape(-1, 2).T.tobytes()
                        if not mask & 2:
                            data = zlib.compress(data)
                        dataset.id.write_direct_chunk((frame, 0, y, 0), data, mask)
                numpy.testing.assert_array_equal(dataset[...], self.pixels())
            self.assertEqual(peer("check-rewritten", path), 0)

    def test_names_beyond_latin_1_are_readable_and_kept(self):
        with h5py.File(self.path("sample-Attributes.packed.qfi"), "r") as file:
            self.assertEqual(file.attrs["速度"], b"a name that is UTF-8")
            self.assertIn("Ã©", file.attrs)
        with h5py.File(self.path("sample-ScalarFields.packed.qfi"), "r") as file:
            self.assertIn("速度", file)

    def test_json_keeps_the_sign_of_zero_in_other_programs(self):
        with h5py.File(self.path("sample-Attributes.packed.qfi"), "r") as file:
            texts = file["frame_attributes"][()].tobytes()
            first, second = file["frame_attributes_end"][:2]
        floats = json.loads(texts[first:second])["floats"][1]
        self.assertEqual(struct.pack("<f", floats[1]), struct.pack("<f", -0.0))

    def test_promises_that_a_file_cannot_keep_are_refused(self):
        def grow(name, *extents):
            def change(file):
                file[name].resize(extents)
            return change

        def replace(name, **layout):
            def change(file):
                attributes = {key: value for key, value in file[name].attrs.items() if key.islower()}
                del file[name]
                file.create_dataset(name, **layout)
                for key, value in attributes.items():
                    file[name].attrs[key] = value
            return change

        def attribute(owner, name, value):
            def change(file):
                file[owner].attrs[name] = value
            return change

        def remove(name):
            def change(file):
                del file[name]
            return change

        huge = 1 << 40
        larger = "larger than the file can hold"
        cases = {
            "more frames": (grow("PIXEL", huge, 1, 600, 640), larger),
            "more indices": (grow("frame", huge), larger),
            "more text": (grow("frame_attributes", huge), larger),
            "a huge plane": (replace("PIXEL", shape=(5, 1, 1 << 20, 1 << 20), dtype="u2",
                                     chunks=(1, 1, 1, 1 << 20)), larger),
            "an overflow": (replace("PIXEL", shape=(5, 1 << 31, 1 << 31, 1 << 31), dtype="f8",
                                    chunks=(1, 1, 1, 100)), "not those of the frames"),
            "a huge chunk": (replace("PIXEL", shape=(5, 1, 600, 640), maxshape=(None,) * 4, dtype="u2",
                                     chunks=(1000, 1, 1000, 1000), compression="lzf"), larger),
            "no data": (replace("PIXEL", shape=(5, 1, 600, 640), dtype="u2", chunks=(1, 1, 100, 640),
                                compression="gzip"), "a part of the data is missing"),
            "long pixels": (replace("PIXEL", shape=(5, 1, 600, 640), dtype="i8"), "unsupported element"),
            "fractions of frames": (replace("frame", shape=(5,), dtype="f8"), "does not hold integers"),
            "another rank": (replace("PIXEL", shape=(5, 600, 640), dtype="u2"), "3 dimensions where 4 are due"),
            "a row to a chunk": (replace("PIXEL", shape=(5, 1, 10**8, 1), dtype="u1", chunks=(1, 1, 1, 1),
                                         compression="gzip"), "a part of the data is missing"),
            "text for pixels": (replace("PIXEL", shape=(5, 1, 600, 640), dtype="S2"), "unsupported element"),
            "many planes": (attribute("/", "qf_size", [640, 600, 1 << 31]), "not those of the frames"),
            "many choices": (attribute("/", "qf_choices", (1 << 32) - 1), "impossible number of choices"),
            "no choices": (attribute("/", "qf_choices", 0), "impossible number of choices"),
            "a size below 0": (attribute("/", "qf_size", [-1, 600, 1]), "does not hold counts"),
            "a size with a fraction": (attribute("/", "qf_size", [640.5, 600, 1]), "does not hold counts"),
            "two sizes": (attribute("/", "qf_size", [640, 600]), "does not hold 3 numbers"),
            "another version": (attribute("/", "qf_version", [2, 0]), "version 2"),
            "another format": (attribute("/", "qf_format", "other"), "not one of frames"),
            "an unknown kind": (attribute("/", "qf_frame", "tensor"), "unknown kind"),
            "another place": (attribute("/", "qf_datasets", '["/PIXEL"]'), "not a name of a dataset"),
            "no dataset": (remove("PIXEL"), "no dataset 'PIXEL'"),
            "no text": (attribute("/", "qf_datasets", '["PIXEL"'), "at byte"),
        }
        for name, (change, reason) in cases.items():
            with self.subTest(case=name):
                path = self.path("refused.made")
                shutil.copy(self.path("images.packed.qfi"), path)
                with h5py.File(path, "a") as file:
                    change(file)
                self.assertEqual(peer("check-refused", path, reason), 0)

    def test_frames_before_missing_ones_are_read(self):
        for kind in ("packed", "plain"):
            path = self.path("incomplete.made")
            shutil.copy(self.path(f"images.{kind}.qfi"), path)
            with h5py.File(path, "a") as file:
                file["frame"].resize(7, axis=0)
                file["frame"][5:] = [5, 6]
                file["PIXEL"].resize(7, axis=0)
            self.assertEqual(peer("check-incomplete", path), 0)

    def test_attributes_whose_size_overflows_are_refused(self):
        path = self.path("overflow.made")
        # Their product with the bytes of an element is that of one element, modulo 2**64.
        for kind, count in ((">i4", (1 << 62) + 1), ("<u8", (1 << 61) + 1), (">f8", (1 << 61) + 1)):
            with self.subTest(kind=kind):
                with h5py.File(path, "w") as file:
                    file.attrs["qf_format"] = "qf-frames"
                    file.attrs["qf_version"] = [1, 0]
                    file.attrs.create("overflow", [5], dtype=kind)
                with open(path, "r+b") as file:
                    content = file.read()
                    extent_and_maximum = struct.pack("<QQ", 1, 1)
                    file.seek(content.index(extent_and_maximum, content.index(b"overflow\0")))
                    file.write(struct.pack("<QQ", count, count))
                self.assertEqual(peer("check-refused", path, "its header is damaged"), 0)

    def test_a_small_file_without_chunks_that_is_shortened_is_refused(self):
        path = self.path("shortened.made")
        with h5py.File(path, "w", libver="v110") as file:
            values = dict(qf_format="qf-frames", qf_version=[1, 0], qf_frame="image", qf_size=[32, 20, 1],
                          qf_grid=[1, 1, 1], qf_choices=1, qf_datasets='["PIXEL"]')
            for name, value in values.items():
                file.attrs[name] = value
            file["frame"] = [0]
            file["PIXEL"] = numpy.zeros((1, 1, 20, 32), "u2")
            file["PIXEL"].attrs["qf_components"] = '["PIXEL"]'
            file["PIXEL"].attrs["qf_index"] = 0
        self.assertEqual(peer("check-shortened", path), 0)

    def test_data_in_other_files_is_refused(self):
        path = self.path("linked.made")
        for link in (h5py.ExternalLink("images.packed.qfi", "/PIXEL"), h5py.SoftLink("/moved")):
            shutil.copy(self.path("images.packed.qfi"), path)
            with h5py.File(path, "a") as file:
                file.move("PIXEL", "moved")
                file["PIXEL"] = link
            self.assertEqual(peer("check-refused", path, "no dataset 'PIXEL'"), 0)


if __name__ == "__main__":
    PEER = sys.argv.pop(1)
    unittest.main()
