// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/Hdf5.h"
#include "Core/Buffer/Formats/Hdf5Call.h"
#include "Core/Buffer/Formats/Hdf5GlobalHeap.h"

#include <algorithm>
#include <cstring>

namespace BufferApi::Hdf5
{

namespace
{

herr_t collectName(hid_t, const char* name, const H5A_info_t*, void* names)
{
    static_cast<std::vector<std::string>*>(names)->emplace_back(name);
    return 0;
}

/// A text of fixed length in UTF-8; HDF5 knows no text of length 0, so an empty one is one null character.
Handle textType(const FileContext& file, const std::string& what, unsigned long long bytes)
{
    Handle type = checkedHandle(file, what, H5Tclose, [&] { return H5Tcopy(file.shared().text.get()); });
    checked(file, what, [&] { return H5Tset_size(type.get(), std::max<std::size_t>(bytes, 1)); });
    return type;
}

Handle listSpace(const FileContext& file, const std::string& what, unsigned long long count)
{
    return checkedHandle(file, what, H5Sclose, [&] {
        return count == 0 ? H5Screate(H5S_NULL)
                          : H5Screate_simple(1, reinterpret_cast<hsize_t*>(&count), nullptr);
    });
}

void writeAttribute(const FileContext& file, const std::string& what, hid_t owner, const std::string& name,
                    hid_t type, hid_t space, const void* data)
{
    const Handle attribute = checkedHandle(file, what, H5Aclose, [&] {
        return H5Acreate2(owner, name.c_str(), type, space, H5P_DEFAULT, H5P_DEFAULT);
    });
    if (data != nullptr) {
        checked(file, what, [&] { return H5Awrite(attribute.get(), type, data); });
    }
}

Handle spaceOf(const FileContext& file, const std::string& what, hid_t attribute)
{
    return checkedHandle(file, what, H5Sclose, [&] { return H5Aget_space(attribute); });
}

unsigned long long storedBytes(const FileContext& file, const std::string& what, hid_t attribute)
{
    return static_cast<unsigned long long>(
        checked(file, what, [&] { return static_cast<long long>(H5Aget_storage_size(attribute)); }));
}

unsigned long long elementBytes(const FileContext& file, const std::string& what, hid_t type)
{
    return static_cast<unsigned long long>(checked(file, what, [&] {
        const auto bytes = static_cast<long long>(H5Tget_size(type));
        return bytes == 0 ? -1 : bytes;
    }));
}

Attribute readText(const FileContext& file, const std::string& what, hid_t attribute, hid_t type)
{
    if (checked(file, what, [&] { return H5Tis_variable_str(type); }) > 0) {
        const bool isOne = storedBytes(file, what, attribute) == variableTextBytes;
        return isOne ? Attribute{Attribute::Kind::Text, Element::U8, readVariableText(file, what, attribute)}
                     : Attribute{};
    }
    const unsigned long long bytes = storedBytes(file, what, attribute);
    if (bytes != elementBytes(file, what, type)) {
        return {};
    }
    QByteArray text(static_cast<qsizetype>(bytes), '\0');
    checked(file, what, [&] { return H5Aread(attribute, type, text.data()); });
    text.truncate(static_cast<qsizetype>(qstrnlen(text.constData(), bytes)));
    return {Attribute::Kind::Text, Element::U8, std::move(text)};
}

Attribute readNumbers(const FileContext& file, const std::string& what, hid_t attribute, hid_t type)
{
    const FoundElement found = findElement(file, what, type);
    const unsigned long long count = storedBytes(file, what, attribute) / elementBytes(file, what, type);
    if (count > 1 || !found.isExact) {
        const Handle space = spaceOf(file, what, attribute);
        if (checked(file, what, [&] { return H5Sget_simple_extent_ndims(space.get()); }) > 1) {
            return {};
        }
        // A product that overflows makes few bytes of many elements, and all of them would be converted.
        const hssize_t elements =
            checked(file, what, [&] { return H5Sget_simple_extent_npoints(space.get()); });
        if (static_cast<unsigned long long>(elements) != count) {
            file.fail(QString::fromStdString(what) + QStringLiteral(": an attribute larger than its data"));
        }
    }
    const Element element = found.element.value_or(Element::F64);
    Attribute result{Attribute::Kind::Numbers, element, {}};
    result.bytes.resize(static_cast<qsizetype>(count * elementSize(element)));
    if (count > 0) {
        checked(file, what, [&] { return H5Aread(attribute, typeOf(element), result.bytes.data()); });
    }
    return result;
}

Attribute readAttribute(const FileContext& file, const std::string& what, hid_t attribute)
{
    const Handle type = checkedHandle(file, what, H5Tclose, [&] { return H5Aget_type(attribute); });
    switch (checked(file, what, [&] { return H5Tget_class(type.get()); })) {
    case H5T_STRING:
        return readText(file, what, attribute, type.get());
    case H5T_ENUM: // h5py's truth values
    case H5T_INTEGER:
    case H5T_FLOAT:
        return readNumbers(file, what, attribute, type.get());
    default:
        return {};
    }
}

std::vector<double> numbersOf(const Attribute& attribute)
{
    const auto as = [&](auto zero) {
        std::vector<double> numbers;
        const auto end = attribute.bytes.constEnd();
        for (auto next = attribute.bytes.constBegin(); next != end; next += sizeof(zero)) {
            std::memcpy(&zero, next, sizeof(zero));
            numbers.push_back(static_cast<double>(zero));
        }
        return numbers;
    };
    if (attribute.element == Element::I64) {
        return as(0LL);
    }
    return PixelTypes::visit(
        static_cast<int>(attribute.element), [&](auto tag) { return as(typename decltype(tag)::type{}); },
        [] { return RTE::LogicError(QStringLiteral("Unknown element type")); });
}

} // namespace

void Object::fail(const QString& reason, RTE::SourceLocation location) const
{
    m_file->fail(QString::fromStdString(m_name) + QStringLiteral(": ") + reason, location);
}

std::vector<std::string> Object::attributeNames() const
{
    std::vector<std::string> names;
    checked(*m_file, m_name, [&] {
        const hid_t id = m_handle.get();
        // To list them crashes when one of them cannot be understood; to look for one, which passes all of
        // them, only fails.
        if (H5Aexists(id, "\x7f") < 0) {
            return -1;
        }
        if (H5Aiterate2(id, H5_INDEX_CRT_ORDER, H5_ITER_INC, nullptr, collectName, &names) >= 0) {
            return 0;
        }
        names.clear();
        return static_cast<int>(H5Aiterate2(id, H5_INDEX_NAME, H5_ITER_INC, nullptr, collectName, &names));
    });
    return names;
}

Attribute Object::readAttribute(const std::string& name) const
{
    const Serial serial;
    const std::string what = m_name + "@" + name;
    const Handle attribute = checkedHandle(
        *m_file, what, H5Aclose, [&] { return H5Aopen(m_handle.get(), name.c_str(), H5P_DEFAULT); });
    return Hdf5::readAttribute(*m_file, what, attribute.get());
}

std::optional<Attribute> Attributes::find(const std::string& name) const
{
    const bool exists = std::find(m_names.begin(), m_names.end(), name) != m_names.end();
    return exists ? std::optional(m_object.readAttribute(name)) : std::nullopt;
}

std::optional<QByteArray> Attributes::findText(const std::string& name) const
{
    const auto attribute = find(name);
    return attribute && attribute->kind == Attribute::Kind::Text ? std::optional(attribute->bytes)
                                                                 : std::nullopt;
}

std::optional<std::vector<double>> Attributes::findNumbers(const std::string& name) const
{
    const auto attribute = find(name);
    return attribute && attribute->kind == Attribute::Kind::Numbers ? std::optional(numbersOf(*attribute))
                                                                    : std::nullopt;
}

std::optional<double> Attributes::findNumber(const std::string& name) const
{
    const auto numbers = findNumbers(name);
    return numbers && !numbers->empty() ? std::optional(numbers->front()) : std::nullopt;
}

void Object::writeText(const std::string& name, const QByteArray& utf8)
{
    const Serial serial;
    const std::string what = m_name + "@" + name;
    const Handle type = textType(*m_file, what, static_cast<unsigned long long>(utf8.size()));
    forEachTable(m_handle, m_twin, [&](hid_t id) {
        writeAttribute(*m_file, what, id, name, type.get(), m_file->shared().scalarSpace.get(),
                       utf8.constData());
    });
}

void Object::writeNumbers(const std::string& name, Element element, const QByteArray& bytes)
{
    const Serial serial;
    const std::string what = m_name + "@" + name;
    const auto count = static_cast<unsigned long long>(bytes.size()) / elementSize(element);
    const Handle space = listSpace(*m_file, what, count);
    const char* data = count == 0 ? nullptr : bytes.constData();
    forEachTable(m_handle, m_twin, [&](hid_t id) {
        writeAttribute(*m_file, what, id, name, typeOf(element), space.get(), data);
    });
}

void Object::writeScalar(const std::string& name, Element element, const void* value)
{
    const Serial serial;
    const std::string what = m_name + "@" + name;
    forEachTable(m_handle, m_twin, [&](hid_t id) {
        writeAttribute(*m_file, what, id, name, typeOf(element), m_file->shared().scalarSpace.get(), value);
    });
}

void Object::renameAttribute(const std::string& from, const std::string& to)
{
    forEachTable(m_handle, m_twin, [&](hid_t id) {
        checked(*m_file, m_name + "@" + from, [&] { return H5Arename(id, from.c_str(), to.c_str()); });
    });
}

void Object::removeAttribute(const std::string& name)
{
    forEachTable(m_handle, m_twin, [&](hid_t id) {
        checked(*m_file, m_name + "@" + name, [&] { return H5Adelete(id, name.c_str()); });
    });
}

} // namespace BufferApi::Hdf5
