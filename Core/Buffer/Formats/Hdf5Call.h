// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/Hdf5.h"

#include <mutex>

namespace BufferApi::Hdf5
{

/// Holds the one lock of the C library and keeps the library from printing meanwhile. A thread that holds it
/// already goes on, so that several calls can be made for the price of one lock.
class Serial
{
public:
    Serial();
    Serial(const Serial&) = delete;
    Serial& operator=(const Serial&) = delete;
    ~Serial();

private:
    H5E_auto2_t m_printer = nullptr;
    void* m_printerData = nullptr;
};

/// Gives the lock away while it lives, whether the thread holds it or not: who raises an error may call for
/// the application's log, which may wait for other threads.
class Unlocked
{
public:
    Unlocked();
    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;
    ~Unlocked();

private:
    unsigned int m_depth;
};

/// What the library says about its latest failure, of which it forgets; to be called under the lock of the
/// failed call.
[[nodiscard]] QString failureReason();

/// Makes one call under the lock. A failure of the file's bytes raises with its reason, a negative result
/// with `what` and the library's reason.
template <typename Call>
auto checked(const FileContext& file, const std::string& what, Call&& call,
             RTE::SourceLocation location = RTE::SourceLocation::current())
{
    QString reason;
    {
        const Serial serial;
        const auto result = call();
        reason = file.takeFailure();
        if (result >= 0 && reason.isNull()) {
            return result;
        }
        const QString libraryReason = failureReason();
        if (reason.isNull()) {
            reason = QString::fromStdString(what) + QStringLiteral(": ") + libraryReason;
        }
    }
    file.fail(reason, location);
}

/// The same for a call that makes an identifier.
template <typename Call>
[[nodiscard]] Handle checkedHandle(const FileContext& file, const std::string& what, Handle::Close close,
                                   Call&& call, RTE::SourceLocation location = RTE::SourceLocation::current())
{
    Handle handle;
    const auto keep = [&] {
        const hid_t id = call();
        handle = Handle(id, close);
        return id;
    };
    checked(file, what, keep, location);
    return handle;
}

/// Calls for an object of the file and, where there is one, for its twin.
template <typename Call>
void forEachTable(const Handle& main, const Handle& twin, Call&& call)
{
    call(main.get());
    if (twin.isOpen()) {
        call(twin.get());
    }
}

/// The twin of an object that was made, where its parent has a twin.
template <typename Make>
[[nodiscard]] Handle madeInTwin(const Handle& twinOfParent, Make&& make)
{
    return twinOfParent.isOpen() ? make(twinOfParent.get()) : Handle();
}

/// The library's type of an element; to be called under the lock.
[[nodiscard]] hid_t typeOf(Element element);

/// The element that a type of the file is read as, and whether the file holds it in just this form.
struct FoundElement
{
    std::optional<Element> element;
    bool isExact = false;
};

/// \param what names the numbers in an error, which there is when their type is damaged
[[nodiscard]] FoundElement findElement(const FileContext& file, const std::string& what, hid_t type);

/// Objects of the library that belong to no file. Still each file has its own, since the application may
/// close the library (`H5close`) when no file is open, and all identifiers end with that.
struct SharedObjects
{
    explicit SharedObjects(const FileContext& file);

    Handle driver;
    /// Chunks pass by the library's cache, so none is set aside for them.
    Handle datasetAccess;
    Handle scalarSpace;
    /// A text of fixed length in UTF-8, whose length is to be set.
    Handle text;
};

/// A list of properties for new objects: no times, attributes in order and within the object's header, which
/// carries a checksum.
[[nodiscard]] Handle creationProperties(const FileContext& file, hid_t (*propertyClass)());

} // namespace BufferApi::Hdf5
