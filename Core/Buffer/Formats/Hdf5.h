// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/DataType.h"
#include "Core/Buffer/Formats/OutputFile.h"
#include "Core/Common/Raise.h"

#include <QByteArray>
#include <QString>

#include <hdf5.h>

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace BufferApi::Formats
{
class ChunkCoder;
}

/// The part of the HDF5 C library that the store uses, each call wrapped once and checked once.
///
/// The C library is not safe for threads: every call runs under one process-wide lock, taken for this call
/// alone. All failures raise RTE::FileReadError or RTE::FileWriteError with the file's name and the library's
/// own reason; nothing is printed.
namespace BufferApi::Hdf5
{

/// Number of elements along each dimension, slowest first.
using Extents = std::vector<unsigned long long>;

class InputBytes;
struct SharedObjects;
class Storage;

/// Where the library's part of a file begins, behind what another program may have put before; nothing when
/// there is none. \param head the first bytes of the file, in which it has to lie
[[nodiscard]] std::optional<unsigned long long> findStart(const QByteArray& head);

/// Where something lies in the file.
struct FilePiece
{
    unsigned long long address = 0;
    unsigned long long bytes = 0;
};

/// What the datasets and numeric attributes of the native file are made of; little endian in the file.
enum class Element
{
    U8 = DT_BYTE,
    F64 = DT_DOUBLE,
    F32 = DT_FLOAT,
    I32 = DT_INT32,
    U32 = DT_UINT32,
    U16 = DT_WORD,
    I64 = 64
};

template <typename T>
inline constexpr Element elementOf = static_cast<Element>(PixelTypes::number<T>);
template <>
inline constexpr Element elementOf<long long> = Element::I64;

[[nodiscard]] unsigned long long elementSize(Element element) noexcept;

/// The file that a call belongs to; names it in every error.
class FileContext
{
public:
    /// Of a file that is read.
    FileContext(QString path, std::shared_ptr<InputBytes> bytes);
    /// Of a file that is written.
    FileContext(QString path, std::shared_ptr<Storage> storage);
    FileContext(const FileContext&) = delete;
    FileContext& operator=(const FileContext&) = delete;
    ~FileContext();

    [[nodiscard]] const QString& path() const noexcept { return m_path; }
    /// Null for a file that is written.
    [[nodiscard]] InputBytes* input() const noexcept { return m_bytes.get(); }
    /// Null for a file that is read.
    [[nodiscard]] Storage* storage() const noexcept { return m_storage.get(); }
    /// Raises RTE::FileReadError "Cannot read 'path': reason", or RTE::FileWriteError for a file that is
    /// written.
    [[noreturn]] void fail(const QString& reason,
                           RTE::SourceLocation location = RTE::SourceLocation::current()) const;
    /// What went wrong with the bytes of the file in the latest call, whose result does not always tell it;
    /// null if nothing did. To be called under the lock of that call.
    [[nodiscard]] QString takeFailure() const;
    /// Reads of a file that is read what lies at an address of the library, without it but also under its
    /// lock. \throws RTE::FileReadError
    void read(const FilePiece& place, void* destination) const;
    /// Bytes from an address of the library to the end of a file that is read.
    [[nodiscard]] unsigned long long bytesFrom(unsigned long long address) const noexcept;
    /// What many calls for the file need alike, made at first use. To be called under the lock.
    [[nodiscard]] const SharedObjects& shared() const;

private:
    QString m_path;
    std::shared_ptr<InputBytes> m_bytes;
    std::shared_ptr<Storage> m_storage;
    mutable std::unique_ptr<const SharedObjects> m_shared;
};

using ContextPointer = std::shared_ptr<const FileContext>;

/// Owns an identifier of the C library.
class Handle
{
public:
    using Close = herr_t (*)(hid_t);

    Handle() noexcept = default;
    Handle(hid_t id, Close closer) noexcept : m_id(id), m_close(closer) {}
    Handle(Handle&& other) noexcept;
    Handle& operator=(Handle&& other) noexcept;
    ~Handle();

    [[nodiscard]] hid_t get() const noexcept { return m_id; }
    [[nodiscard]] bool isOpen() const noexcept { return m_id != H5I_INVALID_HID; }
    void close() noexcept;
    /// Gives the identifier to the caller, who has to close it.
    [[nodiscard]] hid_t release() noexcept;

private:
    hid_t m_id = H5I_INVALID_HID;
    Close m_close = nullptr;
};

/// The value of an attribute: a text, or a list of numbers.
struct Attribute
{
    enum class Kind
    {
        Text,
        Numbers,
        Other
    };

    Kind kind = Kind::Other;
    Element element = Element::U8;
    /// UTF-8 of a text, or the numbers in the machine's byte order.
    QByteArray bytes;
};

/// Something in a file that has attributes.
class Object
{
public:
    /// \param twin the same object in the twin of a lasting file's table of contents; every change is made in
    /// both
    Object(Handle handle, ContextPointer file, std::string name, Handle twin = {})
        : m_file(std::move(file)), m_name(std::move(name)), m_handle(std::move(handle)),
          m_twin(std::move(twin))
    {
    }

    [[nodiscard]] const FileContext& file() const noexcept { return *m_file; }
    /// The path inside the file, for messages.
    [[nodiscard]] const std::string& name() const noexcept { return m_name; }
    /// Raises as FileContext::fail does, with the object's name before the reason.
    [[noreturn]] void fail(const QString& reason,
                           RTE::SourceLocation location = RTE::SourceLocation::current()) const;

    /// In order of creation where the file tracks it, else by name.
    [[nodiscard]] std::vector<std::string> attributeNames() const;
    [[nodiscard]] Attribute readAttribute(const std::string& name) const;

    /// Writes a text of fixed length; the text must not hold a null character.
    void writeText(const std::string& name, const QByteArray& utf8);
    /// Writes a list; an empty one becomes a null dataspace.
    void writeNumbers(const std::string& name, Element element, const QByteArray& bytes);
    template <typename T>
    void writeNumber(const std::string& name, T value)
    {
        writeScalar(name, elementOf<T>, &value);
    }
    void renameAttribute(const std::string& from, const std::string& to);
    void removeAttribute(const std::string& name);

protected:
    void writeScalar(const std::string& name, Element element, const void* value);

    ContextPointer m_file;
    std::string m_name;
    Handle m_handle;
    Handle m_twin;
};

/// Finds attributes of an object that is read. Which ones there are is asked once, so that those which are
/// missing cost no call each.
class Attributes
{
public:
    /// \param object outlives this
    explicit Attributes(const Object& object) : m_object(object), m_names(object.attributeNames()) {}

    [[nodiscard]] const Object& object() const noexcept { return m_object; }
    [[nodiscard]] const std::vector<std::string>& names() const noexcept { return m_names; }
    [[nodiscard]] std::optional<Attribute> find(const std::string& name) const;
    /// UTF-8; nothing when there is no such attribute or it is no text.
    [[nodiscard]] std::optional<QByteArray> findText(const std::string& name) const;
    /// The numbers of an attribute, whatever their type; nothing when there is none or it holds no numbers.
    [[nodiscard]] std::optional<std::vector<double>> findNumbers(const std::string& name) const;
    /// The first number of the attribute, nothing when there is none.
    [[nodiscard]] std::optional<double> findNumber(const std::string& name) const;

private:
    const Object& m_object;
    std::vector<std::string> m_names;
};

/// How the chunks of a dataset pass through the filters.
struct Filters
{
    bool shuffle = false;
    bool deflate = false;
    bool fletcher32 = false;

    friend auto operator<=>(const Filters&, const Filters&) = default;
};

inline constexpr unsigned long long unlimited = H5S_UNLIMITED;

/// `unlimited` when it does not fit.
[[nodiscard]] unsigned long long saturatingProduct(const Extents& factors,
                                                   unsigned long long product) noexcept;

/// What a dataset is made with.
struct DatasetLayout
{
    Element element = Element::U8;
    Extents extents;
    /// `unlimited` for a dimension that grows.
    Extents maximum;
    Extents chunk;
    Filters filters;
};

/// The bytes of a chunk as they are to be stored.
struct StoredChunk
{
    std::span<const unsigned char> bytes;
    /// So many zeros follow them.
    unsigned long long zeros = 0;
    /// The Fletcher32 of both follows these; it is taken while they are written.
    bool hasChecksum = false;
    /// Where a reader's array will have them.
    unsigned long long memoryOffset = 0;

    [[nodiscard]] unsigned long long size() const noexcept
    {
        return bytes.size() + zeros + (hasChecksum ? sizeof(unsigned int) : 0);
    }
};

/// A chunk in a file.
struct PlacedChunk
{
    FilePiece piece;
    /// Bit n set: the stored bytes did not go through filter n.
    unsigned int filterMask = 0;
};

class Dataset;

/// A dataset and the scale of each of its dimensions.
struct DatasetScales
{
    const Dataset* dataset = nullptr;
    std::vector<const Dataset*> scales;
};

/// An array in a file.
class Dataset : public Object
{
public:
    using Object::Object;
    /// An array that is in the file.
    Dataset(Handle handle, ContextPointer file, std::string name);
    /// An array that was just made. \param twin as for Object
    Dataset(Handle handle, ContextPointer file, std::string name, DatasetLayout layout, Handle twin);

    [[nodiscard]] const Extents& extents() const noexcept { return m_layout.extents; }
    /// The layout; `chunk` is empty when the chunks cannot be read as raw bytes of our kinds, so that
    /// `readThroughLibrary` has to be used.
    [[nodiscard]] const DatasetLayout& layout() const noexcept { return m_layout; }
    void resize(const Extents& extents);
    /// Bytes of a chunk of any kind, which the library takes at once to read of it; 0 when there are no
    /// chunks.
    [[nodiscard]] unsigned long long libraryChunkBytes() const noexcept { return m_chunkBytes; }
    /// True if its values and the index of its chunks are under checksums, as they are in files of ours.
    [[nodiscard]] bool hasChecksums() const;

    /// Where the chunk at this offset lies; nothing when it was never written.
    [[nodiscard]] std::optional<PlacedChunk> findChunk(const Extents& offset) const;
    /// The same for a chunk that nobody has asked for yet: nothing also when it cannot be found.
    [[nodiscard]] std::optional<PlacedChunk> tryFindChunk(const Extents& offset) const;
    /// Reads stored bytes without the lock. Only after `checkUnchanged` it is sure that all of them belong
    /// together.
    void readStored(const FilePiece& piece, void* destination) const;
    void checkUnchanged() const;
    /// Writes the bytes of a chunk, without the lock; the library hears of it by `addChunk`.
    [[nodiscard]] FilePiece storeChunk(const StoredChunk& chunk);
    /// Makes stored bytes the chunk at this offset. \param replaced where it lay, whose space is then used
    /// for others; it must not have the same size, as the library would leave it there
    void addChunk(const Extents& offset, const FilePiece& place,
                  const std::optional<FilePiece>& replaced = {});
    /// Reads a block through the library's own filters, holding the lock meanwhile. \param element of the
    /// destination
    void readThroughLibrary(const Extents& offset, const Extents& count, Element element,
                            void* destination) const;

    /// Makes it a dimension scale. \param title its name, or what netCDF has instead
    void makeScale(const std::string& title);
    void attachScale(const Dataset& scale, unsigned int dimension);
    /// Gives datasets that have no scales yet the scales of all their dimensions; nor may the scales be in
    /// use yet. The same as attaching one by one, but each list of references is written once.
    static void attachScales(std::span<const DatasetScales> all);

private:
    static void attachScalesIn(Handle Object::*table, std::span<const DatasetScales> all);
    void readLayout();
    /// To be called under the lock. \param chunk is set when the library got so far
    herr_t lookUp(const Extents& offset, std::optional<PlacedChunk>& chunk) const;
    /// True for a chunk that was never written. To be called under the lock.
    [[nodiscard]] bool isMissing(const Extents& offset) const;
    /// True for a chunk that reaches beyond the extents.
    [[nodiscard]] bool isOnEdge(const Extents& offset) const;
    [[nodiscard]] Filters readFilters(hid_t properties);
    /// Raises unless the data, which is not in chunks, is as long as the extents say.
    void checkOneBlock(unsigned long long elementBytes, bool maybeUnwritten) const;
    [[nodiscard]] bool describesChunksSafely() const;
    /// Raises unless all chunks that the block touches unpack to the bytes of a chunk.
    void checkChunks(const Extents& offset, const Extents& count) const;
    void checkChunk(const Extents& offset, Formats::ChunkCoder& coder) const;

    DatasetLayout m_layout;
    /// Of a dataset that is read: its chunks, also such that the layout does not tell.
    Extents m_chunk;
    unsigned long long m_chunkBytes = 0;
    bool m_hasKnownFilters = false;
    /// Elements of a chunk by what a filter says, which takes no others.
    std::optional<unsigned long long> m_filteredElements;
    /// Chunks that reach beyond the extents go through no filters.
    bool m_hasPlainEdges = false;
};

/// A group of datasets and groups.
class Group : public Object
{
public:
    /// \param twin as for Object
    Group(Handle handle, ContextPointer file, std::string name, Handle twin = {});

    /// \name In a file that is read
    /// @{
    [[nodiscard]] bool contains(const std::string& name) const { return m_links.contains(name); }
    [[nodiscard]] Group openGroup(const std::string& name) const;
    [[nodiscard]] Dataset openDataset(const std::string& name) const;
    /// A dataset of which the attributes alone are wanted.
    [[nodiscard]] Object openDescription(const std::string& name) const;
    /// @}

    [[nodiscard]] Group createGroup(const std::string& name);
    [[nodiscard]] Dataset createDataset(const std::string& name, const DatasetLayout& layout);
    void remove(const std::string& name);

private:
    void readLinks();
    [[nodiscard]] Handle openDatasetHandle(const std::string& name) const;
    /// Raises unless there is a member of this name that the library can read.
    void checkMember(const std::string& name, const QString& whatIsMissing) const;

    /// The addresses of hard links alone: others could lead to other files.
    std::map<std::string, unsigned long long> m_links;
    /// Many datasets are made alike, and a list takes as long to make as a dataset's header.
    std::map<Filters, Handle> m_datasetProperties;
};

/// An open file; as a group it is the root.
class File : public Group
{
public:
    /// Makes a new file, replacing what has its name.
    [[nodiscard]] static File create(const Formats::OutputPath& path);
    /// The same of a file that stays whole whenever the process ends: with what was there at the last
    /// `flush`.
    [[nodiscard]] static File createLasting(const Formats::OutputPath& path);
    /// Opens read only and without the library's file lock. \throws RTE::FileOpenError
    [[nodiscard]] static File open(const QString& path);

    /// The root once more, to be held by others.
    [[nodiscard]] Group root() const;
    /// Bytes of the file as it is.
    [[nodiscard]] unsigned long long size() const;
    void flush();
    /// Writes what is pending and closes; the file's datasets and groups have to be gone before.
    void close();

private:
    File(Handle file, Handle root, ContextPointer context, Handle twin = {}, Handle twinRoot = {});
    [[nodiscard]] static File create(const Formats::OutputPath& path, bool isLasting);
    void failIfNotWritten() const;

    Handle m_fileHandle;
    Handle m_fileTwin;
};

} // namespace BufferApi::Hdf5
