// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/Hdf5.h"

#include "Core/Buffer/Formats/Hdf5Bytes.h"
#include "Core/Buffer/Formats/Hdf5Call.h"
#include "Core/Buffer/Formats/Hdf5OldHeader.h"
#include "Core/Buffer/Formats/Hdf5Storage.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <utility>

namespace BufferApi::Hdf5
{

static_assert(std::endian::native == std::endian::little, "chunks are exchanged in the machine's order");

namespace
{

// Beyond this count attributes move to a heap whose large values carry no checksum.
constexpr unsigned attributesInHeader = 65535;

// So many links stay in a group's header, where they are found and written fastest, and for these it has room
// from the start; attributes may take it too.
constexpr unsigned linksInHeader = 64;
constexpr unsigned usualLinks = 40;
constexpr unsigned usualLinkName = 12;

constexpr std::array elements{Element::U8,  Element::U16, Element::I32, Element::U32,
                              Element::F32, Element::F64, Element::I64};

std::mutex& libraryMutex()
{
    static std::mutex mutex;
    return mutex;
}

/// How many guards of this thread hold the lock.
thread_local unsigned int holds = 0;

herr_t keepInnermost(unsigned position, const H5E_error2_t* error, void* reason)
{
    if (position == 0 && error->desc != nullptr) {
        *static_cast<QString*>(reason) = QString::fromUtf8(error->desc);
    }
    return 0;
}

herr_t collectLink(hid_t, const char* name, const H5L_info_t* info, void* links)
{
    if (info->type == H5L_TYPE_HARD) {
        static_cast<std::map<std::string, unsigned long long>*>(links)->emplace(name, info->u.address);
    }
    return 0;
}

Handle accessProperties(const FileContext& file, const std::shared_ptr<FileBytes>& bytes)
{
    Handle properties =
        checkedHandle(file, "file access", H5Pclose, [] { return H5Pcreate(H5P_FILE_ACCESS); });
    checked(file, "file access", [&] {
        const hid_t id = properties.get();
        return std::min(H5Pset_libver_bounds(id, H5F_LIBVER_V110, H5F_LIBVER_V110),
                        useBytes(id, file.shared().driver.get(), bytes));
    });
    return properties;
}

Handle datasetProperties(const FileContext& file, const Filters& filters)
{
    Handle properties = creationProperties(file, [] { return static_cast<hid_t>(H5P_DATASET_CREATE); });
    checked(file, "filters", [&] {
        const hid_t id = properties.get();
        herr_t worst = filters.shuffle ? H5Pset_shuffle(id) : 0;
        worst = filters.deflate ? std::min(worst, H5Pset_deflate(id, 1)) : worst;
        return filters.fletcher32 ? std::min(worst, H5Pset_fletcher32(id)) : worst;
    });
    return properties;
}

/// \param properties of a group, or of a file for its root
herr_t setGroupLayout(hid_t properties)
{
    return std::min({H5Pset_link_creation_order(properties, H5P_CRT_ORDER_TRACKED | H5P_CRT_ORDER_INDEXED),
                     H5Pset_link_phase_change(properties, linksInHeader, linksInHeader),
                     H5Pset_est_link_info(properties, usualLinks, usualLinkName)});
}

/// Begins a table of contents in the storage of the file.
Handle createTable(const FileContext& file, const std::shared_ptr<Storage>& storage, Storage::Table table)
{
    const std::shared_ptr<FileBytes> bytes(storage, &storage->bytes(table));
    const Handle access = accessProperties(file, bytes);
    const Handle properties = creationProperties(file, [] { return static_cast<hid_t>(H5P_FILE_CREATE); });
    checked(file, "properties", [&] {
        const hid_t id = properties.get();
        herr_t worst = setGroupLayout(id);
        // The storage alone knows when space may be used again.
        if (storage->isLasting()) {
            worst = std::min(worst, H5Pset_file_space_strategy(id, H5F_FSPACE_STRATEGY_NONE, 0, 1));
        }
        const bool isTwin = table == Storage::Table::Twin;
        return isTwin ? std::min(worst, H5Pset_userblock(id, Storage::twinAddress)) : worst;
    });
    const QByteArray name = QFile::encodeName(file.path());
    return checkedHandle(file, "create", H5Fclose, [&] {
        return H5Fcreate(name.constData(), H5F_ACC_TRUNC, properties.get(), access.get());
    });
}

Handle openRoot(const FileContext& context, const Handle& file)
{
    return checkedHandle(context, "/", H5Gclose, [&] { return H5Gopen2(file.get(), "/", H5P_DEFAULT); });
}

} // namespace

SharedObjects::SharedObjects(const FileContext& file)
    : driver(checkedHandle(file, "driver", H5FDunregister, registerDriver)),
      datasetAccess(
          checkedHandle(file, "dataset access", H5Pclose, [] { return H5Pcreate(H5P_DATASET_ACCESS); })),
      scalarSpace(checkedHandle(file, "space", H5Sclose, [] { return H5Screate(H5S_SCALAR); })),
      text(checkedHandle(file, "text", H5Tclose, [] { return H5Tcopy(H5T_C_S1); }))
{
    checked(file, "shared objects", [&] {
        return std::min({H5Pset_chunk_cache(datasetAccess.get(), 1, 0, 1.0),
                         H5Tset_cset(text.get(), H5T_CSET_UTF8), H5Tset_strpad(text.get(), H5T_STR_NULLPAD)});
    });
}

FileContext::FileContext(QString path, std::shared_ptr<InputBytes> bytes)
    : m_path(std::move(path)), m_bytes(std::move(bytes))
{
}

FileContext::FileContext(QString path, std::shared_ptr<Storage> storage)
    : m_path(std::move(path)), m_storage(std::move(storage))
{
}

FileContext::~FileContext() = default;

const SharedObjects& FileContext::shared() const
{
    if (!m_shared) {
        m_shared = std::make_unique<const SharedObjects>(*this);
    }
    return *m_shared;
}

Serial::Serial()
{
    if (holds++ == 0) {
        libraryMutex().lock();
        H5Eget_auto2(H5E_DEFAULT, &m_printer, &m_printerData);
        H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
    }
}

Serial::~Serial()
{
    if (holds == 1) {
        H5Eset_auto2(H5E_DEFAULT, m_printer, m_printerData);
        libraryMutex().unlock();
    }
    --holds;
}

Unlocked::Unlocked() : m_depth(std::exchange(holds, 0))
{
    if (m_depth > 0) {
        libraryMutex().unlock();
    }
}

Unlocked::~Unlocked()
{
    if (m_depth > 0) {
        libraryMutex().lock();
    }
    holds = m_depth;
}

QString failureReason()
{
    // What the library has read of a damaged header it never gives back, and at the end of the process it
    // would print that it cannot.
    static const int whenProcessEnds =
        std::atexit([] { static_cast<void>(H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr)); });
    static_cast<void>(whenProcessEnds);
    QString reason = QStringLiteral("unknown failure");
    H5Ewalk2(H5E_DEFAULT, H5E_WALK_UPWARD, keepInnermost, &reason);
    H5Eclear2(H5E_DEFAULT);
    return reason;
}

hid_t typeOf(Element element)
{
    switch (element) {
    case Element::U8:
        return H5T_STD_U8LE;
    case Element::U16:
        return H5T_STD_U16LE;
    case Element::I32:
        return H5T_STD_I32LE;
    case Element::U32:
        return H5T_STD_U32LE;
    case Element::F32:
        return H5T_IEEE_F32LE;
    case Element::F64:
        return H5T_IEEE_F64LE;
    case Element::I64:
        return H5T_STD_I64LE;
    }
    return H5I_INVALID_HID;
}

namespace
{

std::optional<Element> elementEqualTo(hid_t type)
{
    const std::size_t bytes = H5Tget_size(type);
    const auto* found = std::find_if(elements.begin(), elements.end(), [&](Element element) {
        return elementSize(element) == bytes && H5Tequal(type, typeOf(element)) > 0;
    });
    return found == elements.end() ? std::nullopt : std::optional(*found);
}

FoundElement lookForElement(hid_t fileType)
{
    if (const auto exact = elementEqualTo(fileType)) {
        return {exact, true};
    }
    const H5T_class_t kind = H5Tget_class(fileType);
    if (kind != H5T_INTEGER && kind != H5T_FLOAT) {
        return {};
    }
    const hid_t native = H5Tget_native_type(fileType, H5T_DIR_ASCEND);
    const auto similar = elementEqualTo(native);
    H5Tclose(native);
    const bool isSigned = kind == H5T_INTEGER && H5Tget_sign(fileType) == H5T_SGN_2;
    return {similar || !isSigned ? similar : std::optional(Element::I64), false};
}

/// A damaged type may say that its values reach beyond their bytes, and the library would convert what lies
/// there.
bool fitsIntoItsBytes(hid_t type)
{
    const H5T_class_t kind = H5Tget_class(type);
    if (kind != H5T_INTEGER && kind != H5T_FLOAT && kind != H5T_ENUM) {
        return true;
    }
    const std::size_t bits = 8 * H5Tget_size(type);
    const int offset = H5Tget_offset(type);
    const std::size_t precision = H5Tget_precision(type);
    if (offset < 0 || precision == 0 || precision > bits ||
        static_cast<std::size_t>(offset) > bits - precision) {
        return false;
    }
    if (kind != H5T_FLOAT) {
        return true;
    }
    std::size_t sign = 0;
    std::size_t exponent = 0;
    std::size_t exponentBits = 0;
    std::size_t mantissa = 0;
    std::size_t mantissaBits = 0;
    return H5Tget_fields(type, &sign, &exponent, &exponentBits, &mantissa, &mantissaBits) >= 0 &&
           sign < bits && exponentBits > 0 && exponentBits < bits && exponent <= bits - exponentBits &&
           mantissaBits > 0 && mantissaBits < bits && mantissa <= bits - mantissaBits;
}

} // namespace

FoundElement findElement(const FileContext& file, const std::string& what, hid_t type)
{
    FoundElement found;
    const bool isSound = checked(file, what, [&] {
        found = lookForElement(type);
        return found.isExact || fitsIntoItsBytes(type) ? 1 : 0;
    });
    if (!isSound) {
        file.fail(QString::fromStdString(what) + QStringLiteral(": its type of numbers is damaged"));
    }
    return found;
}

Handle creationProperties(const FileContext& file, hid_t (*propertyClass)())
{
    constexpr unsigned inOrder = H5P_CRT_ORDER_TRACKED | H5P_CRT_ORDER_INDEXED;
    Handle properties =
        checkedHandle(file, "properties", H5Pclose, [&] { return H5Pcreate(propertyClass()); });
    checked(file, "properties", [&] {
        const hid_t id = properties.get();
        return std::min({H5Pset_obj_track_times(id, false), H5Pset_attr_creation_order(id, inOrder),
                         H5Pset_attr_phase_change(id, attributesInHeader, 0)});
    });
    return properties;
}

unsigned long long saturatingProduct(const Extents& factors, unsigned long long product) noexcept
{
    for (const unsigned long long factor : factors) {
        if (__builtin_mul_overflow(product, factor, &product)) {
            return unlimited;
        }
    }
    return product;
}

unsigned long long elementSize(Element element) noexcept
{
    return element == Element::I64 ? sizeof(long long) : GetDataTypeSize(static_cast<E_DataType>(element));
}

void FileContext::fail(const QString& reason, RTE::SourceLocation location) const
{
    const Unlocked unlocked;
    if (m_storage) {
        RTE::raise(RTE::FileWriteError(QStringLiteral("Cannot write '%1': %2").arg(m_path, reason)),
                   location);
    }
    RTE::raise(RTE::FileReadError(QStringLiteral("Cannot read '%1': %2").arg(m_path, reason)), location);
}

QString FileContext::takeFailure() const
{
    return m_storage ? m_storage->failure() : m_bytes->takeFailure();
}

void FileContext::read(const FilePiece& place, void* destination) const
{
    const QString reason =
        m_bytes->tryReadStored({m_bytes->start() + place.address, place.bytes}, destination);
    if (!reason.isNull()) {
        fail(reason);
    }
}

unsigned long long FileContext::bytesFrom(unsigned long long address) const noexcept
{
    const unsigned long long bytes = m_bytes->size() - m_bytes->start();
    return bytes - std::min(address, bytes);
}

Handle::Handle(Handle&& other) noexcept
    : m_id(std::exchange(other.m_id, H5I_INVALID_HID)), m_close(other.m_close)
{
}

Handle& Handle::operator=(Handle&& other) noexcept
{
    std::swap(m_id, other.m_id);
    std::swap(m_close, other.m_close);
    return *this;
}

Handle::~Handle()
{
    close();
}

void Handle::close() noexcept
{
    if (m_id != H5I_INVALID_HID) {
        const Serial serial;
        m_close(release());
    }
}

hid_t Handle::release() noexcept
{
    return std::exchange(m_id, H5I_INVALID_HID);
}

Group::Group(Handle handle, ContextPointer file, std::string name, Handle twin)
    : Object(std::move(handle), std::move(file), std::move(name), std::move(twin))
{
    if (m_file->input() != nullptr) {
        readLinks();
    }
}

void Group::readLinks()
{
    checked(*m_file, m_name, [&] {
        return H5Literate(m_handle.get(), H5_INDEX_NAME, H5_ITER_NATIVE, nullptr, collectLink, &m_links);
    });
}

Group Group::openGroup(const std::string& name) const
{
    checkMember(name, QStringLiteral("there is no group '%1'"));
    return Group(checkedHandle(*m_file, name, H5Gclose,
                               [&] { return H5Gopen2(m_handle.get(), name.c_str(), H5P_DEFAULT); }),
                 m_file, name);
}

void Group::checkMember(const std::string& name, const QString& whatIsMissing) const
{
    const auto link = m_links.find(name);
    if (link == m_links.end()) {
        m_file->fail(whatIsMissing.arg(QString::fromStdString(name)));
    }
    checkHeader(*m_file, name, link->second);
}

Handle Group::openDatasetHandle(const std::string& name) const
{
    checkMember(name, QStringLiteral("there is no dataset '%1'"));
    return checkedHandle(*m_file, name, H5Dclose, [&] {
        return H5Dopen2(m_handle.get(), name.c_str(), m_file->shared().datasetAccess.get());
    });
}

Dataset Group::openDataset(const std::string& name) const
{
    const Serial serial;
    return Dataset(openDatasetHandle(name), m_file, name);
}

Object Group::openDescription(const std::string& name) const
{
    return Object(openDatasetHandle(name), m_file, name);
}

Group Group::createGroup(const std::string& name)
{
    const Handle properties =
        creationProperties(*m_file, [] { return static_cast<hid_t>(H5P_GROUP_CREATE); });
    checked(*m_file, name, [&] { return setGroupLayout(properties.get()); });
    const auto make = [&](hid_t parent) {
        return checkedHandle(*m_file, name, H5Gclose, [&] {
            return H5Gcreate2(parent, name.c_str(), H5P_DEFAULT, properties.get(), H5P_DEFAULT);
        });
    };
    return {make(m_handle.get()), m_file, name, madeInTwin(m_twin, make)};
}

Dataset Group::createDataset(const std::string& name, const DatasetLayout& layout)
{
    const Serial serial;
    Handle& properties = m_datasetProperties[layout.filters];
    if (!properties.isOpen()) {
        properties = datasetProperties(*m_file, layout.filters);
    }
    checked(*m_file, name, [&] {
        return H5Pset_chunk(properties.get(), static_cast<int>(layout.chunk.size()), layout.chunk.data());
    });
    const Handle space = checkedHandle(*m_file, name, H5Sclose, [&] {
        return H5Screate_simple(static_cast<int>(layout.extents.size()), layout.extents.data(),
                                layout.maximum.data());
    });
    const auto make = [&](hid_t parent) {
        return checkedHandle(*m_file, name, H5Dclose, [&] {
            return H5Dcreate2(parent, name.c_str(), typeOf(layout.element), space.get(), H5P_DEFAULT,
                              properties.get(), m_file->shared().datasetAccess.get());
        });
    };
    return {make(m_handle.get()), m_file, name, layout, madeInTwin(m_twin, make)};
}

void Group::remove(const std::string& name)
{
    forEachTable(m_handle, m_twin, [&](hid_t id) {
        checked(*m_file, name, [&] { return H5Ldelete(id, name.c_str(), H5P_DEFAULT); });
    });
}

File::File(Handle file, Handle root, ContextPointer context, Handle twin, Handle twinRoot)
    : Group(std::move(root), std::move(context), "/", std::move(twinRoot)), m_fileHandle(std::move(file)),
      m_fileTwin(std::move(twin))
{
}

File File::create(const Formats::OutputPath& path)
{
    return create(path, false);
}

File File::createLasting(const Formats::OutputPath& path)
{
    return create(path, true);
}

File File::create(const Formats::OutputPath& path, bool isLasting)
{
    const auto storage = std::make_shared<Storage>(path, isLasting);
    auto context = std::make_shared<const FileContext>(path.name, storage);
    Handle main = createTable(*context, storage, Storage::Table::Main);
    Handle twin = isLasting ? createTable(*context, storage, Storage::Table::Twin) : Handle();
    Handle mainRoot = openRoot(*context, main);
    Handle twinRoot = isLasting ? openRoot(*context, twin) : Handle();
    return File(std::move(main), std::move(mainRoot), std::move(context), std::move(twin),
                std::move(twinRoot));
}

File File::open(const QString& path)
{
    const auto bytes = std::make_shared<InputBytes>(path);
    auto context = std::make_shared<const FileContext>(path, bytes);
    checkRootHeader(*context);
    const Handle access = accessProperties(*context, bytes);
    const QByteArray encoded = QFile::encodeName(path);
    QString reason;
    Handle file;
    {
        const Serial serial;
        const hid_t id = H5Fopen(encoded.constData(), H5F_ACC_RDONLY, access.get());
        file = Handle(id, H5Fclose);
        reason = bytes->takeFailure();
        if (id < 0) {
            const QString libraryReason = failureReason();
            reason = reason.isNull() ? libraryReason : reason;
        }
    }
    if (!reason.isNull()) {
        RTE::raise(RTE::FileOpenError(QStringLiteral("Cannot open '%1': %2").arg(path, reason)));
    }
    Handle root = openRoot(*context, file);
    return File(std::move(file), std::move(root), std::move(context));
}

Group File::root() const
{
    return {openRoot(*m_file, m_fileHandle), m_file, m_name,
            m_fileTwin.isOpen() ? openRoot(*m_file, m_fileTwin) : Handle()};
}

unsigned long long File::size() const
{
    hsize_t bytes = 0;
    checked(*m_file, "size", [&] { return H5Fget_filesize(m_fileHandle.get(), &bytes); });
    return bytes;
}

void File::flush()
{
    forEachTable(m_fileHandle, m_fileTwin,
                 [&](hid_t id) { checked(*m_file, "flush", [&] { return H5Fflush(id, H5F_SCOPE_LOCAL); }); });
    Storage& storage = *m_file->storage();
    if (storage.isLasting()) {
        storage.commit();
    }
    failIfNotWritten();
}

void File::close()
{
    m_handle.close();
    m_twin.close();
    for (Handle* file : {&m_fileHandle, &m_fileTwin}) {
        if (file->isOpen()) {
            const hid_t id = file->release();
            checked(*m_file, "close", [&] { return H5Fclose(id); });
        }
    }
    m_file->storage()->finish();
    failIfNotWritten();
}

void File::failIfNotWritten() const
{
    const QString& failure = m_file->storage()->failure();
    if (!failure.isNull()) {
        m_file->fail(failure);
    }
}

} // namespace BufferApi::Hdf5
