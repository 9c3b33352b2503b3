// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/ChunkCoder.h"
#include "Core/Buffer/Formats/Hdf5.h"
#include "Core/Buffer/Formats/NativeLayout.h"

#include <memory>
#include <optional>
#include <vector>

namespace BufferApi::Formats::Native
{

/// A file that is read, shared by all planes that still have their pixels in it.
struct OpenFile
{
    explicit OpenFile(Hdf5::File opened) : file(std::move(opened)), bytes(file.size()) {}

    Hdf5::File file;
    unsigned long long bytes;
    CoderPool coders;
};

/// Which plane of a dataset.
struct PlanePosition
{
    unsigned long long row = 0;
    unsigned int choice = 0;
    unsigned int z = 0;
};

/// Extents of a dataset of planes, and where in them a row of pixels lies.
class PlaneGeometry
{
public:
    PlaneGeometry(const ComponentStructure& component, unsigned int depth, unsigned int choices);

    /// Without the frames: [choice,] z, y, x [, channel].
    [[nodiscard]] Hdf5::Extents extents(unsigned long long rows) const;
    [[nodiscard]] Hdf5::Extents offset(const PlanePosition& position, unsigned long long y) const;
    /// Extents of a block of whole rows of one plane, such as a chunk.
    [[nodiscard]] Hdf5::Extents block(unsigned long long rows) const;
    [[nodiscard]] Hdf5::Element element() const noexcept;
    /// Bytes of a row of pixels in the file.
    [[nodiscard]] unsigned long long rowBytes() const noexcept;
    [[nodiscard]] const ComponentStructure& component() const noexcept { return m_component; }
    /// The place of a plane in the order of rows, choices and z.
    [[nodiscard]] unsigned long long indexOf(const PlanePosition& position) const noexcept;
    [[nodiscard]] PlanePosition positionOf(unsigned long long index) const noexcept;
    /// Indices of the dimensions y and x.
    [[nodiscard]] unsigned int dimensionY() const noexcept { return m_choices > 1 ? 3 : 2; }

private:
    [[nodiscard]] Hdf5::Extents withFrameAndPlane(unsigned long long row, unsigned long long choice,
                                                  unsigned long long z) const;

    ComponentStructure m_component;
    unsigned int m_depth;
    unsigned int m_choices;
};

/// Writes the planes of one dataset.
class PlaneWriter
{
public:
    /// \param coder outlives the writer
    PlaneWriter(Hdf5::Group& group, const std::string& name, const PlaneGeometry& geometry, bool isPacked,
                ChunkCoder& coder);

    [[nodiscard]] Hdf5::Dataset& dataset() noexcept { return m_dataset; }
    [[nodiscard]] const PlaneGeometry& geometry() const noexcept { return m_geometry; }
    /// Makes room for so many frames, which HDF5 hears of with the next flush.
    void resize(unsigned long long rows) noexcept { m_rows = rows; }
    void write(const PlanePosition& position, const I_PlaneBase& plane);
    /// Adds the chunks that were written to HDF5's index, all together: after each plane HDF5's code has left
    /// the cache.
    void flush();

private:
    [[nodiscard]] const unsigned char* pixelsOf(const I_PlaneBase& plane);
    [[nodiscard]] const unsigned char* inFileOrder(const unsigned char* pixels, unsigned long long rows);

    struct WrittenChunk
    {
        PlanePosition position;
        unsigned long long y;
        Hdf5::FilePiece place;
    };

    PlaneGeometry m_geometry;
    Hdf5::Dataset m_dataset;
    ChunkCoder& m_coder;
    Scratch m_plane;
    Scratch m_channels;
    unsigned long long m_rows = 0;
    std::vector<WrittenChunk> m_written;
};

/// Reads the planes of one dataset; several threads may read at once.
class PlaneReader
{
public:
    /// Checks extents and chunks against the geometry and the size of the file.
    PlaneReader(Hdf5::Dataset dataset, const PlaneGeometry& geometry, std::shared_ptr<OpenFile> file);

    [[nodiscard]] unsigned long long rows() const noexcept { return m_dataset.extents()[0]; }
    [[nodiscard]] const PlaneGeometry& geometry() const noexcept { return m_geometry; }
    [[nodiscard]] const Hdf5::Dataset& dataset() const noexcept { return m_dataset; }
    void read(const PlanePosition& position, unsigned char* destination) const;

private:
    void checkExtents() const;
    void checkChunks();
    /// The chunks of a plane; none when they are read through HDF5's own filters.
    ///
    /// Once two planes in turn were asked for, the chunks of the next ones are found with them, twice as many
    /// each time: after a plane HDF5's code has left the cache, and what comes second takes a tenth of the
    /// time. Who takes the few planes of a frame from here and there pays for no more than these.
    [[nodiscard]] std::vector<Hdf5::PlacedChunk> findChunks(const PlanePosition& position) const;
    /// Rows of a plane that are found by chunks; 0 when there are no pixels, or HDF5's filters read them.
    [[nodiscard]] unsigned long long rowsInChunks() const noexcept;
    /// Adds `m_ahead` chunks of the planes from this one on, as far as they are found.
    void findAhead(unsigned long long plane) const;
    /// Where the values of a chunk go to.
    struct Target
    {
        unsigned char* values;
        unsigned long long bytes;
        /// Whether its pages have still to be taken from the system.
        bool isFresh;
    };

    void readChunk(const PlanePosition& position, const Hdf5::PlacedChunk& chunk, const Target& target,
                   ChunkCoder& coder) const;
    /// These give the reason when the stored bytes are damaged, null otherwise.
    [[nodiscard]] const char* readCoded(const Hdf5::PlacedChunk& chunk, const Target& target,
                                        ChunkCoder& coder) const;
    [[nodiscard]] const char* readAsItIs(const Hdf5::FilePiece& piece, bool hasChecksum, const Target& target,
                                         ChunkCoder& coder) const;

    // Declared first, so that the file is closed after its dataset.
    std::shared_ptr<OpenFile> m_file;
    Hdf5::Dataset m_dataset;
    PlaneGeometry m_geometry;
    unsigned long long m_chunkRows = 0;
    /// Chunks of planes that follow each other; these are used under the lock of HDF5.
    mutable std::vector<std::vector<Hdf5::PlacedChunk>> m_found;
    mutable unsigned long long m_firstFound = 0;
    mutable unsigned long long m_ahead = 0;
    mutable std::optional<unsigned long long> m_next;
};

} // namespace BufferApi::Formats::Native
