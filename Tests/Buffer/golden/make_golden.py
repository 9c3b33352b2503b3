#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes the pictures beside it with programs of others: tifffile, Pillow, ImageMagick and h5py.

Debian: python3-tifffile python3-pil python3-h5py imagemagick. What stands in each picture follows from the
name and the formulas below, which GoldenPicturesTest.cpp repeats.
"""
import json
import pathlib
import struct
import subprocess
import tempfile

import h5py
import numpy as np
import tifffile
from PIL import Image

FOLDER = pathlib.Path(__file__).resolve().parent
SCRATCH = pathlib.Path(tempfile.mkdtemp())


def value(width, height, frame=0):
    x, y = np.meshgrid(np.arange(width, dtype=np.int64), np.arange(height, dtype=np.int64))
    return 37 * x + 101 * y + 13 * x * y + 1000 * frame


def bits(count, width=13, height=7, frame=0):
    return value(width, height, frame) % 2**count


def u8(width=13, height=7, frame=0):
    return bits(8, width, height, frame).astype("u1")


def u16(width=13, height=7, frame=0):
    return bits(16, width, height, frame).astype("u2")


def u32(width=13, height=7, frame=0):
    return (value(width, height, frame) * 2654435761 % 2**32).astype("u4")


def f32(width=13, height=7, frame=0):
    return (value(width, height, frame) / 8 - 100).astype("f4")


def f64(width=13, height=7, frame=0):
    return value(width, height, frame) / 3.0


def rgb(width=13, height=7, frame=0):
    v = value(width, height, frame)
    return np.stack([v % 256, (v + 85) % 256, 3 * v % 256], axis=-1).astype("u1")


def gray_map(count):
    index = np.arange(count)
    return np.stack([(5 * index + 3) % 256] * 3)


def colour_map(count):
    index = np.arange(count)
    return np.stack([(5 * index + 3) % 256, 11 * index % 256, 255 - index])


def tiff(name, data, **options):
    options = {"metadata": None, "software": False} | options
    tifffile.imwrite(FOLDER / name, data, **options)


def tiff_pages(name, pages, **options):
    with tifffile.TiffWriter(FOLDER / name, **options) as writer:
        for page in pages:
            writer.write(page, metadata=None, software=False, contiguous=False)


def tiff_packed(name, count, **options):
    """Rows of bits without gaps: ImageMagick, which can write them, rounds the values on the way."""
    data = bits(count)
    rows = ((data[..., None] >> np.arange(count - 1, -1, -1)) & 1).reshape(len(data), -1).astype("u1")
    tiff(name, np.packbits(rows, axis=1), **options)
    with tifffile.TiffFile(FOLDER / name, mode="r+b") as file:
        file.pages[0].tags["BitsPerSample"].overwrite(count)
        file.pages[0].tags["ImageWidth"].overwrite(data.shape[1])


def magick(name, data, *options, maximum=65535):
    """Gray data scaled to a maximum, as ImageMagick takes it."""
    source = SCRATCH / "source.pgm"
    source.write_bytes(b"P5 %d %d %d\n" % (data.shape[1], data.shape[0], maximum) +
                       data.astype(">u2" if maximum > 255 else "u1").tobytes())
    subprocess.run(["convert", source, *options, "-strip", FOLDER / name], check=True)


def make_tiff():
    for order, byteorder in (("little", "<"), ("big", ">")):
        tiff(f"u16-{order}.tif", u16(), byteorder=byteorder)
        tiff(f"f32-{order}.tif", f32(), byteorder=byteorder)
    tiff("u8.tif", u8())
    tiff("u32.tif", u32())
    tiff("i32-big.tif", u32().view("i4"), byteorder=">")
    tiff("i8.tif", u8().view("i1"))
    tiff("i16.tif", u16().view("i2"))
    tiff("f64-big.tif", f64(), byteorder=">")
    tiff("u16-bigtiff.tif", u16(), bigtiff=True)
    tiff("u16-bigtiff-big.tif", u16(), bigtiff=True, byteorder=">")
    tiff("u8-inverted.tif", 255 - u8(), photometric="miniswhite")
    tiff("u16-inverted.tif", 65535 - u16(), photometric="miniswhite", byteorder=">")
    tiff("u16-tiles.tif", u16(37, 19), tile=(16, 32))
    tiff("rgb.tif", rgb(), photometric="rgb")
    tiff("rgb-separate.tif", np.moveaxis(rgb(), -1, 0).copy(), photometric="rgb", planarconfig="separate")
    tiff("rgb-tiles.tif", rgb(37, 19), photometric="rgb", tile=(16, 16))
    opaque = np.dstack([rgb(), np.full((7, 13), 255, "u1")])
    tiff("rgba-opaque.tif", opaque, photometric="rgb", extrasamples=["unassalpha"])
    opaque[3, 5, 3] = 254
    tiff("rgba-transparent.tif", opaque, photometric="rgb", extrasamples=["unassalpha"])
    tiff("palette-gray.tif", u8(), photometric="palette", colormap=(gray_map(256) * 257).astype("u2"))
    tiff("palette-colour.tif", u8(), photometric="palette", colormap=(colour_map(256) * 257).astype("u2"))
    tiff("palette-8bit-map.tif", u8(), photometric="palette", colormap=colour_map(256).astype("u2"))
    tiff_pages("pages.tif", [u16(), u8(5, 9, 1), f32(2, 3, 2), rgb(3, 2, 3)])
    tiff_pages("pages-bigtiff-big.tif", [u16(frame=i) for i in range(3)], bigtiff=True, byteorder=">")
    tiff("c64-refused.tif", np.ones((2, 3), "c8"))
    tiff("rgb16-refused.tif", np.ones((2, 3, 3), "u2"), photometric="rgb")
    tiff("u64-refused.tif", np.ones((2, 3), "u8"))
    for name, compression in (("lzw", "tiff_lzw"), ("deflate", "tiff_adobe_deflate"), ("packbits", "packbits"),
                              ("lzma-refused", "lzma")):
        Image.fromarray(u8(37, 19)).save(FOLDER / f"u8-{name}.tif", compression=compression)
    Image.fromarray(u8() % 2 == 1).save(FOLDER / "u1.tif")
    for name, data, predictor in (("u16-lzw-predictor", u16(), 2), ("f32-predictor", f32(37, 19), 3),
                                  ("rgb-lzw-predictor", rgb(), 2)):
        Image.fromarray(data).save(FOLDER / f"{name}.tif", compression="tiff_lzw", tiffinfo={317: predictor})
    tiff("u32-deflate-predictor-big.tif", u32(37, 19), compression="zlib", predictor=True, byteorder=">",
         rowsperstrip=4)
    tiff("rgb-separate-deflate-tiles.tif", np.moveaxis(rgb(37, 19), -1, 0).copy(), photometric="rgb",
         planarconfig="separate", compression="zlib", predictor=True, tile=(16, 16))
    packed = ("-depth", "16", "-define", "tiff:predictor=2", "-define", "tiff:rows-per-strip=3", "-endian", "msb")
    magick("u16-lzw-predictor-big.tif", u16(37, 19), *packed, "-compress", "lzw")
    magick("u16-deflate-predictor-big.tif", u16(37, 19), *packed, "-compress", "zip")
    magick("u1-lsb-packbits.tif", bits(1), "-depth", "1", "-type", "bilevel", "-compress", "rle", "-define",
           "tiff:fill-order=lsb", maximum=1)
    for depth in (2, 4):
        magick(f"u{depth}.tif", bits(depth), "-depth", str(depth), "-compress", "none", maximum=2**depth - 1)
    for depth in (10, 12, 14):
        tiff_packed(f"u{depth}.tif", depth)
    tiff_packed("u12-deflate-big.tif", 12, byteorder=">", compression="zlib", rowsperstrip=2)


def make_ome():
    """Two series of one file, as microscopes write them: times of a plane, and a volume."""
    with tifffile.TiffWriter(FOLDER / "pages.ome.tif", ome=True) as writer:
        writer.write(np.stack([u16(frame=i) for i in range(3)]),
                     metadata={"axes": "TYX", "PhysicalSizeX": 0.05, "PhysicalSizeXUnit": "mm"})
        writer.write(np.stack([u16(frame=i) for i in range(3, 5)]), metadata={"axes": "ZYX"})


def make_native(name, libver, text=np.bytes_, **layout):
    """What docs/FileFormat.md asks of a file of images, and no more."""
    with h5py.File(FOLDER / name, "w", libver=(libver, "v110")) as file:
        file.attrs["qf_format"] = text("qf-frames")
        file.attrs["qf_version"] = np.array([1, 0], "i4")
        file.attrs["qf_frame"] = text("image")
        file.attrs["qf_size"] = np.array([13, 7, 1], "u4")
        file.attrs["qf_grid"] = np.array([1, 1, 1], "u4")
        file.attrs["qf_choices"] = np.uint32(1)
        file.attrs["qf_datasets"] = text(json.dumps(["PIXEL"]))
        file.attrs["is_calibrated"] = True
        frames = file.create_dataset("frame", data=np.arange(3), maxshape=(None,), chunks=(128,), compression=1)
        pixels = file.create_dataset("PIXEL", data=np.stack([u16(frame=i)[None] for i in range(3)]),
                                     **({"maxshape": (None, 1, 7, 13), "chunks": (1, 1, 4, 13)} | layout))
        pixels.attrs["qf_components"] = text(json.dumps(["PIXEL"]))
        pixels.attrs["qf_index"] = np.array([0], "u4")
        pixels.attrs["qf_role"] = text("data")
        frames.make_scale("frame")
        pixels.dims[0].attach_scale(frames)


def make_png():
    for depth in (1, 2, 4, 8, 16):
        magick(f"u{depth}.png", bits(depth), "-depth", str(depth), "-define", "png:color-type=0",
               "-define", f"png:bit-depth={depth}", maximum=2**depth - 1)
    magick("u16-interlaced.png", bits(16, 37, 19), "-depth", "16", "-interlace", "PNG")
    magick("u4-interlaced.png", bits(4), "-depth", "4", "-define", "png:color-type=0", "-define", "png:bit-depth=4",
           "-interlace", "PNG", maximum=15)
    Image.fromarray(rgb()).save(FOLDER / "rgb.png")
    Image.fromarray(np.dstack([rgb(), np.full((7, 13), 255, "u1")])).save(FOLDER / "rgba-opaque.png")
    Image.fromarray(np.dstack([rgb(), u8()])).save(FOLDER / "rgba-transparent.png")
    Image.fromarray(np.dstack([u8(), np.full((7, 13), 255, "u1")])).save(FOLDER / "gray-alpha-opaque.png")
    for name, colours in (("gray", gray_map), ("colour", colour_map)):
        palette(u8(), colours).save(FOLDER / f"palette-{name}.png")
    palette(bits(4).astype("u1"), gray_map, 16).save(FOLDER / "palette-gray4.png", bits=4)


def palette(indices, colours, count=256):
    image = Image.fromarray(indices, "P")
    image.putpalette(colours(count).T.astype("u1").tobytes())
    return image


def make_bmp():
    Image.fromarray(u8() % 2 == 1).save(FOLDER / "u1.bmp")
    Image.fromarray(u8()).save(FOLDER / "u8.bmp")
    palette(u8(), colour_map).save(FOLDER / "palette-colour.bmp")
    Image.fromarray(rgb()).save(FOLDER / "rgb.bmp")
    Image.fromarray(np.dstack([rgb(), np.full((7, 13), 255, "u1")])).save(FOLDER / "rgb32.bmp")
    magick("u4.bmp", bits(4), "-depth", "4", "-colors", "16", "-type", "palette", maximum=15)
    subprocess.run(["convert", FOLDER / "u8.bmp", "-compress", "RLE", f"BMP3:{FOLDER / 'u8-rle.bmp'}"], check=True)
    make_runs_of_4_bits("u4-rle.bmp")
    content = bytearray((FOLDER / "u8.bmp").read_bytes())
    start = struct.unpack_from("<I", content, 10)[0]
    rows = [content[start + 16 * y:start + 16 * y + 16] for y in range(7)]
    struct.pack_into("<i", content, 22, -7)
    (FOLDER / "u8-topdown.bmp").write_bytes(content[:start] + b"".join(reversed(rows)))


def make_runs_of_4_bits(name):
    """All kinds of code: four pixels as they are, a run of two values, jumps over 0, ends of rows early."""
    code = b""
    for row in reversed(bits(4).astype("u1")):
        code += bytes([0, 4, row[0] << 4 | row[1], row[2] << 4 | row[3], 2, row[4] << 4 | row[5]])
        for pixel in row[6:]:
            code += bytes([1, pixel << 4]) if pixel else bytes([0, 2, 1, 0])
        code += bytes([0, 0])
    code += bytes([0, 1])
    header = struct.pack("<IiiHHIIiiII", 40, 13, 7, 1, 4, 2, len(code), 0, 0, 16, 0)
    colours = b"".join(bytes([17 * i] * 3 + [0]) for i in range(16))
    start = 14 + len(header) + len(colours)
    (FOLDER / name).write_bytes(struct.pack("<2sIII", b"BM", start + len(code), 0, start) + header + colours + code)


def make_pgm():
    Image.fromarray(u8()).save(FOLDER / "u8.pgm")
    magick("u16.pgm", u16(), "-depth", "16")
    both = (FOLDER / "u8.pgm").read_bytes() + (FOLDER / "u16.pgm").read_bytes()
    (FOLDER / "two-images.pgm").write_bytes(both)
    rows = "\n".join(" ".join(str(v) for v in row) for row in bits(10))
    (FOLDER / "u10-plain.pgm").write_text(f"P2 # plain\n# of 10 bits\n13 # columns\n7\n1023\n{rows}\n")


if __name__ == "__main__":
    make_tiff()
    make_ome()
    make_native("h5py.qfi", "v110", fletcher32=True)
    make_native("h5py-plain.qfi", "v110")
    make_native("h5py-old.qfi", "earliest", fletcher32=True)
    make_native("h5py-texts.qfi", "earliest", text=str, chunks=(2, 1, 7, 5), compression=1, shuffle=True)
    make_png()
    make_bmp()
    make_pgm()
