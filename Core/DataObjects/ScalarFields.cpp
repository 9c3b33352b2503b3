// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarFields.h"

#include "Core/DataObjects/ScalarField.h"

#include <exception>
#include <stdexcept>
#include <typeinfo>

namespace DataObjects
{

namespace
{

/// What a move takes out of a collection that may end the memory its views look at when it is cleared: these
/// are copied.
ScalarFieldMap fieldsToTake(const ScalarFields& source)
{
    ScalarFieldMap taken = source.GetMapping();
    for (auto& [name, field] : taken) {
        if (!field->GetData().HasOwnerShip()) {
            field = field->CreateCopy();
        }
    }
    return taken;
}

} // namespace

ScalarFields::ScalarFields(const Math::Size2T<unsigned int>& size) : m_size(size) {}

ScalarFields::ScalarFields(unsigned int width, unsigned int height) : m_size(width, height) {}

ScalarFields::ScalarFields(const ScalarFields& other)
{
    ScalarFields::operator=(other);
}

ScalarFields::ScalarFields(ScalarFields&& other)
{
    *this = std::move(other);
}

ScalarFields::~ScalarFields() = default;

ScalarFields& ScalarFields::operator=(const ScalarFields& other)
{
    if (this == &other) {
        return *this;
    }
    Clear();
    m_size = other.GetSizeOfScalarFields();
    for (const QString& name : other.GetNames()) {
        Add(name, *other.Get(name));
    }
    return *this;
}

ScalarFields& ScalarFields::operator=(ScalarFields&& other)
{
    if (this == &other) {
        return *this;
    }
    if (typeid(*this) != typeid(ScalarFields)) {
        return *this = std::as_const(other);
    }
    if (typeid(other) == typeid(ScalarFields)) {
        m_map = std::exchange(other.m_map, {});
    } else {
        ScalarFieldMap taken = fieldsToTake(other);
        other.Clear();
        m_map = std::move(taken);
    }
    m_size = std::exchange(other.m_size, {});
    return *this;
}

unsigned int ScalarFields::size() const
{
    return static_cast<unsigned int>(m_map.size());
}

bool ScalarFields::empty() const
{
    return m_map.empty();
}

std::shared_ptr<ScalarFieldVariant> ScalarFields::operator[](const QString& name)
{
    return at(name);
}

std::shared_ptr<const ScalarFieldVariant> ScalarFields::operator[](const QString& name) const
{
    return at(name);
}

ScalarFieldMap::const_iterator ScalarFields::begin() const
{
    return m_map.begin();
}

ScalarFieldMap::iterator ScalarFields::begin()
{
    return m_map.begin();
}

ScalarFieldMap::const_iterator ScalarFields::end() const
{
    return m_map.end();
}

ScalarFieldMap::iterator ScalarFields::end()
{
    return m_map.end();
}

Math::Size2T<unsigned int> ScalarFields::GetSizeOfScalarFields() const
{
    return m_size;
}

unsigned int ScalarFields::GetCount() const
{
    return size();
}

bool ScalarFields::Contains(const QString& name) const
{
    return m_map.contains(name);
}

std::shared_ptr<ScalarFieldVariant> ScalarFields::Get(const QString& name)
{
    return existing(name);
}

std::shared_ptr<const ScalarFieldVariant> ScalarFields::Get(const QString& name) const
{
    return existing(name);
}

std::shared_ptr<ScalarFieldVariant> ScalarFields::Add(const QString& name, ScalarFieldVariant&& field)
{
    const auto moveIn = [&](auto tag) -> std::shared_ptr<ScalarFieldVariant> {
        using T = typename decltype(tag)::type;
        verifySize(field);
        ScalarFieldMap::verifyName(name);
        return put(name, std::make_shared<ScalarField<T>>(CastScalarFieldTo<T>(std::move(field))));
    };
    return PixelTypes::visit(static_cast<int>(field.GetDataType()), moveIn,
                             [] { return RTE::Exception(QStringLiteral("Unsupported scalar field type")); });
}

std::shared_ptr<ScalarFieldVariant> ScalarFields::Add(BufferApi::E_DataType type, const QString& name,
                                                      void* data)
{
    const auto add = [&](auto tag) { return addTyped<typename decltype(tag)::type>(name, data); };
    return PixelTypes::visit(type, add,
                             [] { return RTE::Exception(QStringLiteral("Unsupported scalar data type")); });
}

std::shared_ptr<ScalarFieldVariant> ScalarFields::Add(const QString& name,
                                                      std::unique_ptr<ScalarFieldVariant> field)
{
    RTE::verify(field != nullptr, "Scalar field is null");
    verifySize(*field);
    return put(name, std::move(field));
}

std::shared_ptr<ScalarFieldVariant> ScalarFields::Add(const QString& name, const ScalarFieldVariant& field)
{
    verifySize(field);
    ScalarFieldMap::verifyName(name);
    return put(name, field.CreateCopy());
}

std::shared_ptr<ScalarFieldVariant> ScalarFields::Add(const QString& name, float value)
{
    auto field = addTyped<float>(name, nullptr);
    CastScalarFieldTo<float>(*field).GetDataT().Fill(value);
    return field;
}

std::shared_ptr<ScalarFieldVariant> ScalarFields::Add(const QString& name)
{
    return addTyped<float>(name, nullptr);
}

void ScalarFields::Set(const QString& name, const ScalarFieldVariant& field)
{
    Get(name)->DeepCopyFrom(field);
}

void ScalarFields::Rename(const QString& oldName, const QString& newName)
{
    RTE::verify(!m_map.contains(newName), "Scalar field already contains item of the new name.");
    if (const auto entry = m_map.find(oldName); entry != m_map.end()) {
        m_map[newName] = entry->second;
        m_map.erase(entry);
    }
}

void ScalarFields::Remove(const QString& name)
{
    m_map.erase(name);
}

void ScalarFields::Clear()
{
    m_map.clear();
}

QList<QString> ScalarFields::GetNames() const
{
    QList<QString> names;
    names.reserve(static_cast<qsizetype>(m_map.size()));
    for (const auto& [name, field] : m_map) {
        names.append(name);
    }
    return names;
}

ScalarFieldMap ScalarFields::GetMapping() const
{
    return m_map;
}

template <typename T>
std::shared_ptr<ScalarFieldVariant> ScalarFields::addTyped(const QString& name, void* data)
{
    RTE::verify(!name.isEmpty(), "empty scalar field name is not allowed.");
    const auto entry = m_map.find(name);
    if (entry != m_map.end() && IsScalarFieldOfType<T>(*entry->second)) {
        entry->second->InitializeWithZeros();
        return entry->second;
    }
    auto pixels =
        data != nullptr ? ImageData<T>(static_cast<T*>(data), m_size, true) : ImageData<T>(m_size, T{0});
    return put(name, std::make_shared<ScalarField<T>>(std::move(pixels),
                                                      Zt::LinearScale(1.0, 0.0, QString(), QString())));
}

std::shared_ptr<ScalarFieldVariant> ScalarFields::put(const QString& name,
                                                      std::shared_ptr<ScalarFieldVariant> field)
{
    return m_map[name] = std::move(field);
}

const std::shared_ptr<ScalarFieldVariant>& ScalarFields::at(const QString& name) const
{
    const auto entry = m_map.find(name);
    if (entry == m_map.end()) {
        raiseNoKey();
    }
    return entry->second;
}

const std::shared_ptr<ScalarFieldVariant>& ScalarFields::existing(const QString& name) const
{
    const auto entry = m_map.find(name);
    if (entry == m_map.end()) {
        raiseNotExisting(name);
    }
    return entry->second;
}

void ScalarFields::raiseNoKey()
{
    // The one error outside the family: callers of operator[] expect what a map gives them.
    std::rethrow_exception(std::make_exception_ptr(std::out_of_range("invalid map<K, T> key")));
}

void ScalarFields::raiseNotExisting(const QString& name)
{
    RTE::raise(RTE::VerificationFailed(QStringLiteral("Scalar field '%1' is not existing.").arg(name)));
}

void ScalarFields::verifySize(const ScalarFieldVariant& field) const
{
    RTE::verify(field.GetSize() == m_size, "Source scalar field has wrong size.");
}

} // namespace DataObjects
