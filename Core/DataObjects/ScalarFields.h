// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/DataType.h"
#include "Core/DataObjects/ScalarFieldMap.h"

#include <QList>

namespace DataObjects
{

/// The named scalar fields of an image or a vector field, all of them of the owner's size.
///
/// Names are case-sensitive, may hold any character and must not be empty. The fields are shared: one lives
/// as long as somebody holds it, also after it was removed. A copy of the collection shares none. The
/// operations are virtual because the collection of a frame writes through to it. Not synchronised.
///
/// \code
/// ScalarFields fields(width, height);
/// fields.Add("Peak ratio", 1.0F);
/// fields.Get("Peak ratio")->SetScaleI(scale);
/// for (const auto& [name, field] : fields) { … }
/// \endcode
class DATAOBJECTS_DATAOBJECTS_EXPORT ScalarFields
{
public:
    /// \name Construction and assignment
    /// @{
    explicit ScalarFields(const Math::Size2T<unsigned int>& size);
    ScalarFields(unsigned int width, unsigned int height);
    /// Takes the size and deep copies of all fields.
    ScalarFields(const ScalarFields& other);
    /// Takes size and fields, then clears `other` and makes its size 0 × 0.
    ///
    /// The fields are the same objects; only views are copied when they come out of a collection that may end
    /// their memory when it is cleared, as that of a frame does. Where clearing `other` raises, nothing
    /// changes. Out of a plain collection the move raises nothing.
    ScalarFields(ScalarFields&& other);
    virtual ~ScalarFields();
    /// Clears, then takes the size and adds deep copies of all fields; nothing happens on itself.
    virtual ScalarFields& operator=(const ScalarFields& other);
    /// As the move construction; nothing happens on itself. A collection that writes through to a frame is
    /// assigned by copy, and `other` stays as it was.
    ScalarFields& operator=(ScalarFields&& other);
    /// The copy assignment.
    void DeepCopyFrom(const ScalarFields& source) { *this = source; }
    /// The move assignment.
    void MoveFrom(ScalarFields&& source) { *this = std::move(source); }
    /// @}

    /// \name Queries
    /// @{

    /// Number of fields.
    [[nodiscard]] virtual unsigned int size() const;
    [[nodiscard]] virtual bool empty() const;
    /// The field of that name.
    /// \throws std::out_of_range "invalid map<K, T> key" when there is none; Get raises
    /// RTE::VerificationFailed
    [[nodiscard]] virtual std::shared_ptr<ScalarFieldVariant> operator[](const QString& name);
    [[nodiscard]] virtual std::shared_ptr<const ScalarFieldVariant> operator[](const QString& name) const;
    /// Name and field, ordered by name.
    [[nodiscard]] virtual ScalarFieldMap::const_iterator begin() const;
    [[nodiscard]] virtual ScalarFieldMap::iterator begin();
    [[nodiscard]] virtual ScalarFieldMap::const_iterator end() const;
    [[nodiscard]] virtual ScalarFieldMap::iterator end();
    /// The size that every field has.
    [[nodiscard]] virtual Math::Size2T<unsigned int> GetSizeOfScalarFields() const;
    /// Number of fields too.
    [[nodiscard]] virtual unsigned int GetCount() const;
    [[nodiscard]] virtual bool Contains(const QString& name) const;
    /// The field of that name. \throws RTE::VerificationFailed "Scalar field 'name' is not existing."
    [[nodiscard]] virtual std::shared_ptr<ScalarFieldVariant> Get(const QString& name);
    [[nodiscard]] virtual std::shared_ptr<const ScalarFieldVariant> Get(const QString& name) const;
    /// @}

    /// \name Adding
    /// All forms replace what has the name, except where it is said otherwise, and return the field that now
    /// has it. When they raise, the collection is as it was.
    /// @{

    /// Takes over pixels and scale and leaves `field` empty; when it raises, `field` keeps them.
    /// \throws RTE::Exception "Unsupported scalar field type"
    /// \throws RTE::VerificationFailed "Source scalar field has wrong size."
    /// \throws RTE::VerificationFailed "Empty scalar field names are not allowed."
    virtual std::shared_ptr<ScalarFieldVariant> Add(const QString& name, ScalarFieldVariant&& field);
    /// A field of this element type with scale factor 1 and offset 0.
    ///
    /// One of that name and type stays the same object, is set to 0, and `data` is not used: it remains the
    /// caller's. Else the new field takes ownership of `data`, an array of the collection's size that is
    /// freed with `delete[]`; with null it makes its own pixels, all 0. \throws RTE::Exception "Unsupported
    /// scalar data type" unless it is one of the six \throws RTE::VerificationFailed "empty scalar field name
    /// is not allowed."
    virtual std::shared_ptr<ScalarFieldVariant> Add(BufferApi::E_DataType type, const QString& name,
                                                    void* data);
    /// Takes over the object; raises as the form with a reference does.
    /// \throws RTE::VerificationFailed "Scalar field is null"
    virtual std::shared_ptr<ScalarFieldVariant> Add(const QString& name,
                                                    std::unique_ptr<ScalarFieldVariant> field);
    /// Adds a deep copy.
    /// \throws RTE::VerificationFailed "Source scalar field has wrong size."
    /// \throws RTE::VerificationFailed "Empty scalar field names are not allowed."
    virtual std::shared_ptr<ScalarFieldVariant> Add(const QString& name, const ScalarFieldVariant& field);
    /// A `float` field as the typed form makes it, filled with `value`.
    virtual std::shared_ptr<ScalarFieldVariant> Add(const QString& name, float value);
    /// A `float` field of zeros, as the typed form makes it.
    virtual std::shared_ptr<ScalarFieldVariant> Add(const QString& name);
    /// @}

    /// \name Change
    /// @{

    /// Copies pixels and scale into the field that has the name, seen by all who hold it.
    /// \throws RTE::VerificationFailed as Get and ScalarFieldVariant::DeepCopyFrom tell
    virtual void Set(const QString& name, const ScalarFieldVariant& field);
    /// Gives a field another name; nothing happens when none has the old one.
    /// \throws RTE::VerificationFailed "Scalar field already contains item of the new name.", also for its
    /// own \throws RTE::VerificationFailed "Empty scalar field names are not allowed."
    virtual void Rename(const QString& oldName, const QString& newName);
    /// Removes a field; nothing happens when none has the name.
    virtual void Remove(const QString& name);
    /// Removes all fields and keeps the size.
    virtual void Clear();
    /// @}

    /// \name Names
    /// @{

    /// In the order of the map.
    [[nodiscard]] virtual QList<QString> GetNames() const;
    /// A copy of the map, which shares the fields.
    [[nodiscard]] virtual ScalarFieldMap GetMapping() const;
    /// @}

protected:
    /// Enters the object itself, whatever its size, and returns it.
    /// \throws RTE::VerificationFailed "Empty scalar field names are not allowed."
    std::shared_ptr<ScalarFieldVariant> put(const QString& name, std::shared_ptr<ScalarFieldVariant> field);
    /// What operator[] raises for a missing name.
    [[noreturn]] static void raiseNoKey();
    /// What Get raises for a missing name.
    [[noreturn]] static void raiseNotExisting(const QString& name);

private:
    template <typename T>
    std::shared_ptr<ScalarFieldVariant> addTyped(const QString& name, void* data);
    [[nodiscard]] const std::shared_ptr<ScalarFieldVariant>& at(const QString& name) const;
    [[nodiscard]] const std::shared_ptr<ScalarFieldVariant>& existing(const QString& name) const;
    void verifySize(const ScalarFieldVariant& field) const;

    Math::Size2T<unsigned int> m_size;
    ScalarFieldMap m_map;
};

} // namespace DataObjects
